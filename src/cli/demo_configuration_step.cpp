// Demo step: the shared configuration file, a user's preference file, and how reads choose
// between them.

#include <string>

#include "cli/command_registry.hpp"
#include "cli/demo_steps.hpp"
#include "session/api_ini.hpp"
#include "session/app_class.hpp"

namespace fnrk::cli {
namespace {

void ShowRead(DemoContext& context, const session::ApiIni& ini, const std::string& section,
              const std::string& key, const std::string& why) {
    context.out << "  ReadINI [" << section << "] " << key << " = " << ini.ReadINI(section, key)
                << "  (" << why << ")\n";
}

void RunConfigurationStep(DemoContext& context) {
    session::ApiIni shared;
    shared.INIfile(context.sharedIni.string());
    shared.WriteINI("Install", "UserPath", context.usersFolder.string());
    shared.WriteINI("General", "Language", "F");
    shared.WriteINI("General", "Currency", "EUR");
    shared.WriteINI("Connection", "Mode", "LOCAL");
    context.out << "  wrote " << shared.INIfile()
                << ": [Install] UserPath, [General] Language=F, Currency=EUR, [Connection] "
                   "Mode=LOCAL\n";

    const std::string preferences =
        (context.usersFolder / "UsersPrefs" / (context.userName + ".ini")).string();
    session::ApiIni preference;
    preference.INIfile(preferences);
    preference.WriteINI("General", "Language", "N");
    preference.WriteINI("Connection", "Mode", "REMOTE");
    context.out << "  wrote " << preferences
                << ": [General] Language=N, [Connection] Mode=REMOTE\n";

    ShowRead(context, shared, "General", "Language", "the user's preference overrides");
    ShowRead(context, shared, "General", "Currency", "not in the preferences: shared file");
    ShowRead(context, shared, "Connection", "Mode", "machine-wide: never from a preference");
    ShowRead(context, shared, "Install", "UserPath", "from the installation's file");
    context.out << "  users folder      " << shared.GetUserDbfPath() << "\n"
                << "  preference folder " << shared.GetUsersPrefDirectory() << "\n";

    const session::AppClass app;
    context.out << "  root folder       " << app.RootPath() << "\n"
                << "  resources         " << app.ResourcePath() << "\n"
                << "  import folder     " << app.TransfertInPath() << "\n"
                << "  export folder     " << app.TransfertOutPath() << "\n";
}

const DemoStepRegistration kConfigurationStep("10-configuration", RunConfigurationStep);

}  // namespace
}  // namespace fnrk::cli

// fennrick demo [--dir DIR]: a sample installation, then every registered demo step on it.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/demo_steps.hpp"
#include "platform/environment.hpp"
#include "platform/file_system.hpp"
#include "platform/paths.hpp"
#include "platform/settings_store.hpp"
#include "session/session_user.hpp"

namespace fnrk::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDemoUser = "DEMO";

fs::path NewTemporaryFolder() {
    const std::string folder = platform::CreateTemporaryFolder("fennrick-demo-");
    if (folder.empty()) throw CommandFailure("cannot create a temporary folder for the demo");
    return folder;
}

// Points the settings store at the sample installation, so that the user's own settings are
// never read or changed.
void UseSampleSettings(const fs::path& root) {
    platform::SetEnvironmentValue("FNRK_SETTINGS_FILE", (root / "settings.ini").string());
    platform::UnsetEnvironmentValue("FNRK_MAIN_PATH");
    platform::UnsetEnvironmentValue("FNRK_USER_CODE");
    if (!platform::SaveSetting("Installation", "MainPath", root.string()) ||
        !platform::SaveSetting("Accounting", "UserCode", kDemoUser)) {
        throw CommandFailure("cannot write the settings file in " + root.string());
    }
}

void RunDemo(const std::string& dir) {
    const fs::path root = fs::absolute(dir.empty() ? NewTemporaryFolder() : fs::path(dir));
    DemoContext context{
        root,      root / "PRG", root / "USERS", root / "DATA" / "DEMO", root / "FennRick.ini",
        kDemoUser, std::cout};
    std::error_code error;
    for (const fs::path& folder :
         {context.programFolder, context.usersFolder / "UsersPrefs", context.dossierFolder}) {
        fs::create_directories(folder, error);
        if (error)
            throw CommandFailure("cannot create " + folder.string() + ": " + error.message());
    }
    UseSampleSettings(root);
    platform::SetProgramFolder(context.programFolder.string());
    session::CurrentUser() = session::SessionUser{kDemoUser, "F", "", ""};
    session::SetMessageLanguage("F");

    std::cout << "Sample installation in " << root.string() << "\n"
              << "  program folder  " << context.programFolder.string() << "\n"
              << "  users folder    " << context.usersFolder.string() << "\n"
              << "  dossier folder  " << context.dossierFolder.string() << "\n"
              << "  settings file   " << platform::SettingsFilePath().string() << "\n"
              << "  user            " << context.userName << "\n";
    RunDemoSteps(context);
}

void SetUpDemoCommand(CLI::App& app) {
    auto* demo =
        app.add_subcommand("demo", "build a sample installation and show the library at work");
    auto dir = std::make_shared<std::string>();
    demo->add_option("--dir", *dir,
                     "folder for the sample installation (default: a new temporary one)");
    demo->callback([dir] { RunDemo(*dir); });
}

const CommandRegistration kDemoCommand("demo", SetUpDemoCommand);

}  // namespace
}  // namespace fnrk::cli

// fennrick userext INSTALLDIR create
// fennrick userext INSTALLDIR set NAME TYPE KEY VALUE
// fennrick userext INSTALLDIR get NAME TYPE KEY            the value
// fennrick userext INSTALLDIR delete-user NAME             the number of rows deleted
// fennrick userext INSTALLDIR delete-all TYPE KEY          the number of rows deleted
// fennrick userext INSTALLDIR is-multi TYPE KEY            "yes" / "no"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "cli/command_registry.hpp"
#include "platform/environment.hpp"
#include "tables/shared_tables.hpp"
#include "users/users_ext.hpp"

namespace fnrk::cli {
namespace {

struct UserExtOptions {
    std::string installation;
    std::string name;
    std::string type;
    std::string key;
    std::string value;
};

// The external logins of INSTALLDIR: the installation folder is where the table lives.
users::UsersExt OpenLogins(const UserExtOptions& options) {
    const std::string folder = std::filesystem::absolute(options.installation).string();
    platform::SetEnvironmentValue("FNRK_MAIN_PATH", folder);
    tables::AdsClass& tables = tables::SharedAdsClass();
    tables.SetInteractive(false);
    tables.Initialize();
    return users::UsersExt(tables);
}

void Require(bool done, const std::string& what) {
    if (!done) throw CommandFailure(what);
}

void SetUpUserExtCommand(CLI::App& app) {
    auto* userext = app.add_subcommand("userext", "the users' external logins (USERSEXT.dbf)");
    userext->require_subcommand(1);
    auto options = std::make_shared<UserExtOptions>();
    userext->add_option("INSTALLDIR", options->installation, "installation folder")->required();
    auto add = [&](const char* name, const char* help, std::initializer_list<const char*> args,
                   auto run) {
        auto* command = userext->add_subcommand(name, help);
        for (const char* arg : args) {
            std::string& target = std::string_view(arg) == "NAME"   ? options->name
                                  : std::string_view(arg) == "TYPE" ? options->type
                                  : std::string_view(arg) == "KEY"  ? options->key
                                                                    : options->value;
            command->add_option(arg, target)->required();
        }
        command->callback([options, run] { run(*options); });
    };
    add("create", "create the table and its six tags (an existing one is replaced)", {},
        [](const UserExtOptions& o) {
            Require(OpenLogins(o).CreateUserExtended(), "cannot create the table");
        });
    add("set", "write a value", {"NAME", "TYPE", "KEY", "VALUE"}, [](const UserExtOptions& o) {
        Require(OpenLogins(o).UpdateUserExtended(o.name, o.type, o.key, o.value),
                "cannot write the value");
    });
    add("get", "print a value", {"NAME", "TYPE", "KEY"}, [](const UserExtOptions& o) {
        std::cout << OpenLogins(o).GetValueUserExtented(o.name, o.type, o.key) << "\n";
    });
    add("delete-user", "delete every value of a user", {"NAME"}, [](const UserExtOptions& o) {
        std::cout << OpenLogins(o).DeleteSpecificUser(o.name) << "\n";
    });
    add("delete-all", "delete a type and key for every user", {"TYPE", "KEY"},
        [](const UserExtOptions& o) {
            std::cout << OpenLogins(o).DeleteAllUsersExtended(o.type, o.key) << "\n";
        });
    add("is-multi", "does more than one user hold the type and key", {"TYPE", "KEY"},
        [](const UserExtOptions& o) {
            std::cout << (OpenLogins(o).IsMultiUserExtented(o.type, o.key) ? "yes" : "no") << "\n";
        });
}

const CommandRegistration kUserExtCommand("userext", SetUpUserExtCommand);

}  // namespace
}  // namespace fnrk::cli

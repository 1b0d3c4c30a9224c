// fennrick users --rights RIGHTS CODE...                      "CODE granted" / "CODE withdrawn"
// fennrick users USERSDIR --check-password NAME PASSWORD [CODESOC]   exit status 0 / 1
// fennrick users USERSDIR --logged-in NAME                    "yes" / "no"

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/command_registry.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "tables/shared_tables.hpp"
#include "users/menu_rights.hpp"
#include "users/user.hpp"

namespace fnrk::cli {
namespace {

struct UsersOptions {
    std::vector<std::string> arguments;  // the menu codes with --rights, else USERSDIR
    std::string rights;
    std::vector<std::string> checkPassword;
    std::string loggedIn;
};

// The user register of USERSDIR opened as "USERS"; its folder is then the users folder.
tables::AdsClass& OpenUsersFolder(const std::vector<std::string>& arguments) {
    if (arguments.size() != 1) throw CommandFailure("give one USERSDIR");
    tables::AdsClass& tables = tables::SharedAdsClass();
    tables.SetInteractive(false);
    tables.Initialize();
    std::string folder = std::filesystem::absolute(arguments.front()).string();
    if (!folder.empty() && folder.back() != platform::kPathSep) folder += platform::kPathSep;
    if (tables.OpenFile("USERS", folder + "USERS.DBF", "", "SHARED",
                        tables::AdsClass::kOpenQuiet) != 0) {
        throw CommandFailure("no user register " + folder + "USERS.DBF");
    }
    return tables;
}

void RunUsers(const UsersOptions& options, bool withRights) {
    if (withRights) {
        for (const std::string& code : options.arguments) {
            std::cout << code
                      << (users::IsMenuCodeGranted(options.rights, code) ? " granted"
                                                                         : " withdrawn")
                      << "\n";
        }
        return;
    }
    users::user person(OpenUsersFolder(options.arguments));
    if (!options.checkPassword.empty()) {
        const std::string& name = options.checkPassword[0];
        person.Register("", name, "", options.checkPassword[1], "");
        const std::string company =
            options.checkPassword.size() > 2 ? options.checkPassword[2] : std::string();
        if (!person.CheckPasswordOfUser(name, company)) throw CommandFailure("password refused");
        return;
    }
    if (!options.loggedIn.empty()) {
        std::cout << (person.IsUserLoggedInDossier(options.loggedIn) ? "yes" : "no") << "\n";
        return;
    }
    throw CommandFailure("give --check-password or --logged-in");
}

void SetUpUsersCommand(CLI::App& app) {
    auto* users = app.add_subcommand("users", "rights strings, passwords and log-ons of users");
    auto options = std::make_shared<UsersOptions>();
    users->add_option("ARGS", options->arguments, "USERSDIR, or the menu codes with --rights");
    auto* rights = users->add_option("--rights", options->rights,
                                     "the rights string that the menu codes are tested against");
    auto* check = users
                      ->add_option("--check-password", options->checkPassword,
                                   "NAME PASSWORD [CODESOC]: exit status 0 when accepted")
                      ->expected(2, 3)
                      ->excludes(rights);
    users->add_option("--logged-in", options->loggedIn, "NAME: is the user logged on")
        ->excludes(rights)
        ->excludes(check);
    users->callback([options, rights] { RunUsers(*options, rights->count() > 0); });
}

const CommandRegistration kUsersCommand("users", SetUpUsersCommand);

}  // namespace
}  // namespace fnrk::cli

#pragma once

// `fennrick demo` is a sequence of steps, each registered by its own file with a static
// DemoStepRegistration and run in name order ("10-configuration", "20-...") on one sample
// installation, so that a new step is a new file.

#include <filesystem>
#include <ostream>
#include <string>

namespace fnrk::cli {

struct DemoContext {
    std::filesystem::path root;           // the installation's root folder
    std::filesystem::path programFolder;  // <root>/PRG
    std::filesystem::path usersFolder;    // <root>/USERS, with UsersPrefs/
    std::filesystem::path dossierFolder;  // <root>/DATA/DEMO, one sample company
    std::filesystem::path sharedIni;      // <root>/FennRick.ini
    std::string userName;                 // the logged-on sample user
    std::ostream& out;
};

using DemoStep = void (*)(DemoContext& context);

struct DemoStepRegistration {
    DemoStepRegistration(const char* name, DemoStep step);
};

// Runs every registered step in name order, each under a "[name]" heading.
void RunDemoSteps(DemoContext& context);

}  // namespace fnrk::cli

#include "cli/command_registry.hpp"

#include <map>
#include <string>

namespace fnrk::cli {
namespace {

std::map<std::string, CommandSetup>& Registry() {
    static std::map<std::string, CommandSetup> registry;
    return registry;
}

}  // namespace

CommandRegistration::CommandRegistration(const char* name, CommandSetup setup) {
    Registry().emplace(name, setup);
}

void SetUpCommands(CLI::App& app) {
    for (const auto& [name, setup] : Registry()) setup(app);
}

}  // namespace fnrk::cli

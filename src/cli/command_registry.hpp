#pragma once

// Each *_commands.cpp of this folder registers its subcommands with a static CommandRegistration,
// so that adding a command group never touches main.cpp.

#include <CLI/CLI.hpp>

namespace fnrk::cli {

using CommandSetup = void (*)(CLI::App& app);

struct CommandRegistration {
    CommandRegistration(const char* name, CommandSetup setup);
};

// Adds every registered group to the application, in name order.
void SetUpCommands(CLI::App& app);

// Thrown by a command to end with an exit status and a message on standard error.
class CommandFailure : public std::runtime_error {
  public:
    CommandFailure(const std::string& message, int exitCode = 1)
        : std::runtime_error(message), exitCode_(exitCode) {}
    int exitCode() const { return exitCode_; }

  private:
    int exitCode_;
};

}  // namespace fnrk::cli

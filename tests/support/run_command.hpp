#pragma once

#include <string>
#include <vector>

namespace fnrk::testing {

struct CommandResult {
    int exitCode = -1;
    std::string out;  // standard output
    std::string err;  // standard error
};

// Runs a program with arguments (no shell), optional standard input, and collects its output.
CommandResult RunCommand(const std::vector<std::string>& argv, const std::string& input = "");

// Runs the `fennrick` command built with the tests.
CommandResult RunFennrick(const std::vector<std::string>& args, const std::string& input = "");

}  // namespace fnrk::testing

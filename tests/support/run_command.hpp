#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace fnrk::testing {

struct CommandResult {
    int exitCode = -1;
    std::string out;  // standard output
    std::string err;  // standard error
};

// Runs a program with arguments (no shell), optional standard input, and collects its output.
// `folder`, when given, is the program's working folder. Under wine a Linux program (python3, the
// shared tools) runs as well, its exit code included.
CommandResult RunCommand(const std::vector<std::string>& argv, const std::string& input = "",
                         const std::filesystem::path& folder = {});

// The path under which a Linux program started by RunCommand finds `path`: under wine the Unix
// form of the Windows path, elsewhere `path` itself.
std::string LinuxPath(const std::filesystem::path& path);

// Runs the `fennrick` command built with the tests.
CommandResult RunFennrick(const std::vector<std::string>& args, const std::string& input = "");

}  // namespace fnrk::testing

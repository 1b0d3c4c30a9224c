#include "platform/processes.hpp"

#include <filesystem>
#include <fstream>
#include <string>

#include <signal.h>
#include <unistd.h>

namespace fnrk::platform {

bool ProcessIsRunning(std::int64_t processId) {
    if (processId <= 0) return false;
    if (::kill(static_cast<pid_t>(processId), 0) != 0 && errno != EPERM) return false;
    // kill() succeeds on a zombie: the state letter in /proc tells it apart.
    std::ifstream stat("/proc/" + std::to_string(processId) + "/stat");
    std::string line;
    if (!std::getline(stat, line)) return true;
    const std::size_t close = line.rfind(')');
    return close == std::string::npos || close + 2 >= line.size() || line[close + 2] != 'Z';
}

std::int64_t CurrentProcessId() {
    return ::getpid();
}

std::string ExecutableFolder() {
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : executable.parent_path().string();
}

}  // namespace fnrk::platform

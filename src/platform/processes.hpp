#pragma once

// Questions about other processes of this machine.

#include <cstdint>
#include <string>

namespace fnrk::platform {

// Whether a process with this id is running now (a zombie counts as ended).
bool ProcessIsRunning(std::int64_t processId);

// Id of the calling process.
std::int64_t CurrentProcessId();

// Folder of the calling process's executable file; empty when the system does not say.
std::string ExecutableFolder();

}  // namespace fnrk::platform

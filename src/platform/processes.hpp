#pragma once

// Questions about other processes of this machine.

#include <cstdint>

namespace fnrk::platform {

// Whether a process with this id is running now (a zombie counts as ended).
bool ProcessIsRunning(std::int64_t processId);

// Id of the calling process.
std::int64_t CurrentProcessId();

}  // namespace fnrk::platform

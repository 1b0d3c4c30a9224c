#include <windows.h>

#include "platform/processes.hpp"

namespace fnrk::platform {

bool ProcessIsRunning(std::int64_t processId) {
    if (processId <= 0 || processId > MAXDWORD) return false;
    HANDLE process =
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(processId));
    if (process == nullptr) return GetLastError() == ERROR_ACCESS_DENIED;
    DWORD exitCode = 0;
    const bool running = GetExitCodeProcess(process, &exitCode) && exitCode == STILL_ACTIVE;
    CloseHandle(process);
    return running;
}

std::int64_t CurrentProcessId() {
    return GetCurrentProcessId();
}

}  // namespace fnrk::platform

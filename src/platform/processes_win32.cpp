#include <windows.h>

#include "platform/processes.hpp"

#include <filesystem>

#include "platform/utf8.hpp"

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

std::string ExecutableFolder() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return {};
        if (length < path.size()) {
            path.resize(length);
            break;
        }
        path.resize(path.size() * 2);  // cut short: a longer path
    }
    return Utf16ToUtf8(std::filesystem::path(path).parent_path().wstring());
}

}  // namespace fnrk::platform

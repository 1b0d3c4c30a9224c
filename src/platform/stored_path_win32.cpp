#include <windows.h>

#include "platform/stored_path.hpp"

namespace fnrk::platform {

std::filesystem::path StoredPath(const std::filesystem::path& path) {
    // Windows finds the name whatever its case; the search answers it as stored. A wildcard
    // would find some other name.
    const std::wstring name = path.filename().wstring();
    if (name.empty() || name.find_first_of(L"*?") != std::wstring::npos) return path;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return path;
    FindClose(search);
    return path.parent_path() / found.cFileName;
}

}  // namespace fnrk::platform

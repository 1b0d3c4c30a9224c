#include <windows.h>

#include <shlobj.h>

#include "platform/special_folders.hpp"
#include "platform/utf8.hpp"

namespace fnrk::platform {

std::string SpecialFolderPath(std::int32_t identifier) {
    // The shell's item list of the folder, made a path of at most MAX_PATH characters.
    LPITEMIDLIST items = nullptr;
    if (FAILED(SHGetSpecialFolderLocation(nullptr, identifier, &items)) || items == nullptr)
        return {};
    wchar_t path[MAX_PATH + 1] = {};
    const bool found = SHGetPathFromIDListW(items, path) != FALSE;
    CoTaskMemFree(items);
    return found ? Utf16ToUtf8(path) : std::string();
}

std::string SystemFolder() {
    wchar_t folder[256] = {};
    const UINT length = GetWindowsDirectoryW(folder, 255);
    return length == 0 || length > 255 ? std::string()
                                       : Utf16ToUtf8(std::wstring_view(folder, length));
}

}  // namespace fnrk::platform

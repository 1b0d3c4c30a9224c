#include <windows.h>

#include "platform/file_stamp.hpp"

namespace fnrk::platform {

// Not std::filesystem::last_write_time: the MinGW runtime gives it in whole seconds, and a file
// rewritten within the second at the same size would pass for unchanged.
std::optional<FileStamp> StampOf(const std::filesystem::path& path) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return std::nullopt;
    const auto written = (static_cast<std::uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) |
                         data.ftLastWriteTime.dwLowDateTime;
    const auto size = (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    return FileStamp{static_cast<std::int64_t>(written), size};
}

}  // namespace fnrk::platform

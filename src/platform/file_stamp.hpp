#pragma once

// What tells that a file changed without reading it.

#include <cstdint>
#include <filesystem>
#include <optional>

namespace fnrk::platform {

// A file's last write time, to the full resolution the file system keeps, and its size.
struct FileStamp {
    std::int64_t written = 0;  // in the host's own unit
    std::uintmax_t size = 0;
    bool operator==(const FileStamp&) const = default;
};

// Nothing when the file is missing or cannot be asked.
std::optional<FileStamp> StampOf(const std::filesystem::path& path);

}  // namespace fnrk::platform

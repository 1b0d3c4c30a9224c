#include "platform/file_stamp.hpp"

#include <sys/stat.h>

namespace fnrk::platform {

std::optional<FileStamp> StampOf(const std::filesystem::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    return FileStamp{
        static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec,
        static_cast<std::uintmax_t>(status.st_size)};
}

}  // namespace fnrk::platform

#include "platform/stored_path.hpp"

#include <system_error>

#include "platform/text.hpp"

namespace fnrk::platform {

std::filesystem::path StoredPath(const std::filesystem::path& path) {
    std::error_code error;
    if (!path.has_filename() || std::filesystem::exists(path, error)) return path;
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const std::string wanted = path.filename().string();
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
         it.increment(error)) {
        if (EqualsNoCase(it->path().filename().string(), wanted))
            return path.parent_path() / it->path().filename();
    }
    return path;
}

}  // namespace fnrk::platform

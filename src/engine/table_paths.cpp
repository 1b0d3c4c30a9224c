#include "engine/table_paths.hpp"

#include <filesystem>

#include "platform/stored_path.hpp"
#include "platform/text.hpp"

namespace fnrk::engine {

namespace fs = std::filesystem;

std::string ResolveTablePath(const std::string& folder, std::string_view name) {
    fs::path path(std::string{name});
    if (path.is_relative() && !folder.empty()) path = fs::path(folder) / path;
    if (!path.has_extension()) path += ".dbf";
    return platform::StoredPath(path).string();
}

std::string ConnectionFolder(std::string_view serverPath) {
    std::string folder = platform::Trim(serverPath);
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    // A bare drive ("Z:", the application's drive) means its root: Windows' stat does not
    // take "Z:" for a folder.
    if (folder.size() == 2 && folder[1] == ':') {
        folder += static_cast<char>(fs::path::preferred_separator);
    }
    std::error_code error;
    if (folder.empty() || !fs::is_directory(folder, error)) return {};
    return fs::absolute(folder, error).lexically_normal().string();
}

}  // namespace fnrk::engine

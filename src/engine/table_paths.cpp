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

namespace {

// A bare drive ("Z:", the application's drive) means its root: Windows takes "Z:" for the drive's
// current folder, and its stat for no folder at all.
std::string WithDriveRoot(std::string path) {
    if (path.size() == 2 && path[1] == ':')
        path += static_cast<char>(fs::path::preferred_separator);
    return path;
}

}  // namespace

std::string ConnectionFolder(std::string_view serverPath) {
    std::string folder = platform::Trim(serverPath);
    while (folder.size() > 1 &&
           (folder.back() == '/' || folder.back() == fs::path::preferred_separator))
        folder.pop_back();
    folder = WithDriveRoot(std::move(folder));
    std::error_code error;
    if (folder.empty() || !fs::is_directory(folder, error)) return {};
    return fs::absolute(folder, error).lexically_normal().string();
}

fs::path ConnectionLookupPath(std::string_view path) {
    const std::string trimmed = WithDriveRoot(platform::Trim(path));
    // absolute() refuses an empty path.
    if (trimmed.empty()) return {};
    std::error_code error;
    const fs::path absolute = fs::absolute(trimmed, error);
    return error ? fs::path() : absolute.lexically_normal();
}

}  // namespace fnrk::engine

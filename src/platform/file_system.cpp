#include "platform/file_system.hpp"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "platform/crypto.hpp"
#include "platform/paths.hpp"

namespace fnrk::platform {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> EntryNames(std::string_view folder, bool wantFolders) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(FileSystemPath(folder), error), end; !error && it != end;
         it.increment(error)) {
        std::error_code typeError;
        const bool isFolder = it->is_directory(typeError);
        const bool isFile = it->is_regular_file(typeError);
        if (wantFolders ? isFolder : isFile) names.push_back(it->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

bool FileExists(std::string_view path) {
    std::error_code error;
    return fs::is_regular_file(FileSystemPath(path), error);
}

bool FolderExists(std::string_view path) {
    std::error_code error;
    return fs::is_directory(FileSystemPath(path), error);
}

bool CreateFolder(std::string_view path) {
    std::error_code error;
    return fs::create_directory(FileSystemPath(path), error) && !error;
}

bool MoveFile(std::string_view source, std::string_view target) {
    const fs::path from = FileSystemPath(source);
    const fs::path to = FileSystemPath(target);
    std::error_code error;
    if (!fs::is_regular_file(from, error) || fs::exists(to, error)) return false;
    fs::rename(from, to, error);
    return !error;
}

bool DeleteFile(std::string_view path) {
    const fs::path file = FileSystemPath(path);
    std::error_code error;
    return fs::is_regular_file(file, error) && fs::remove(file, error);
}

bool CopyFile(std::string_view source, std::string_view target, bool overwrite) {
    const auto options = overwrite ? fs::copy_options::overwrite_existing : fs::copy_options::none;
    std::error_code error;
    return fs::copy_file(FileSystemPath(source), FileSystemPath(target), options, error) && !error;
}

std::string GetTempName() {
    return fmt::format("rad{:05X}.tmp", crypto::RandomNumber() & 0xFFFFF);
}

std::string CreateTemporaryFolder(std::string_view prefix) {
    std::error_code error;
    const fs::path temporary = fs::temp_directory_path(error);
    if (error) return {};
    // create_directory answers false for a folder that exists: another name is tried.
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path folder =
            temporary / fmt::format("{}{:06X}", prefix, crypto::RandomNumber() & 0xFFFFFF);
        if (fs::create_directory(folder, error)) return folder.string();
        if (error) return {};
    }
    return {};
}

std::vector<std::string> SubFolderNames(std::string_view folder) {
    return EntryNames(folder, true);
}

std::vector<std::string> FileNames(std::string_view folder) {
    return EntryNames(folder, false);
}

}  // namespace fnrk::platform

#include "utilities/file_names.hpp"

#include <filesystem>
#include <system_error>

#include "platform/paths.hpp"

namespace fnrk::utilities {

std::string ReplaceCharactersReminderFileName(std::string_view name) {
    std::string safe;
    safe.reserve(name.size());
    for (const char c : name) {
        const bool forbidden = static_cast<unsigned char>(c) < 0x20 || c == '\\' || c == '/' ||
                               c == ':' || c == '*' || c == '?' || c == '"' || c == '<' ||
                               c == '>' || c == '|';
        safe += forbidden ? '_' : c;
    }
    while (!safe.empty() && (safe.back() == ' ' || safe.back() == '.')) safe.pop_back();
    return safe;
}

bool CreateFolderRecursive(std::string_view path) {
    if (path.empty()) return false;
    const std::filesystem::path folder = platform::FileSystemPath(path);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return std::filesystem::is_directory(folder, error);
}

int getScreenDPI() {
    return 96;
}

}  // namespace fnrk::utilities

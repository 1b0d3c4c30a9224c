#include "platform/paths.hpp"

#include <cctype>
#include <optional>

#include "platform/processes.hpp"
#include "platform/settings_store.hpp"
#include "platform/stored_path.hpp"
#include "platform/text.hpp"

namespace fnrk::platform {
namespace {

#ifndef _WIN32  // Windows reads its drive letters itself
// "K:" at the start of the path, upper-cased, when there is one.
std::optional<std::string> LeadingDrive(std::string_view path) {
    if (path.size() < 2 || path[1] != ':' ||
        std::isalpha(static_cast<unsigned char>(path[0])) == 0) {
        return std::nullopt;
    }
    if (path.size() > 2 && path[2] != '\\' && path[2] != '/') return std::nullopt;
    return std::string(1, static_cast<char>(std::toupper(static_cast<unsigned char>(path[0])))) +
           ":";
}
#endif

std::optional<std::string>& ProgramFolderOverride() {
    static std::optional<std::string> folder;
    return folder;
}

}  // namespace

std::string NativePath(std::string_view path) {
#ifdef _WIN32
    return std::string(path);
#else
    std::string native(path);
    if (const auto drive = LeadingDrive(path)) {
        std::string mapped = DriveNetworkName(*drive);
        if (!mapped.empty()) {
            while (mapped.size() > 1 && mapped.back() == '/') mapped.pop_back();
            native = mapped + native.substr(2);
        }
    }
    for (char& c : native) {
        if (c == '\\') c = '/';
    }
    return native;
#endif
}

std::filesystem::path FileSystemPath(std::string_view path) {
    std::filesystem::path native(NativePath(path));
#ifndef _WIN32
    return StoredPath(native);
#else
    return native;
#endif
}

#ifndef _WIN32  // Windows asks its network (network_drives_win32.cpp)
std::string DriveNetworkName(std::string_view drive) {
    const auto letter = LeadingDrive(drive.substr(0, 2));
    if (!letter) return {};
    for (const auto& [name, folder] : SettingsDriveMap()) {
        if (EqualsNoCase(Trim(name), *letter)) return folder;
    }
    return {};
}
#endif

std::string ProgramFolder() {
    if (ProgramFolderOverride()) return *ProgramFolderOverride();
    return ExecutableFolder();
}

void SetProgramFolder(std::string folder) {
    ProgramFolderOverride() = std::move(folder);
}

}  // namespace fnrk::platform

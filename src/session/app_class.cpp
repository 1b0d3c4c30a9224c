#include "session/app_class.hpp"

#include <algorithm>

#include "platform/file_system.hpp"
#include "platform/paths.hpp"
#include "platform/special_folders.hpp"
#include "session/path_rules.hpp"
#include "session/session_user.hpp"

namespace fnrk::session {

using platform::kPathSep;

std::string AppClass::RootPath() const {
    return RootFolderOf(platform::ProgramFolder(), kPathSep);
}

std::string AppClass::ResourcePath() const {
    return RootPath() + kPathSep + "RESOURCES";
}

std::string AppClass::UserPrivatePath() const {
    return {};
}

std::string AppClass::OrgPath() const {
    return RootPath() + kPathSep + "RESOURCES" + kPathSep + "ORG";
}

std::string AppClass::TempPath() const {
    return SharedFacade().TempPath;
}

bool AppClass::MakeAnyDir(std::string_view path) const {
    // A path in Windows form ("K:\DATA\SOC1") is walked by its backslashes too; each folder,
    // drive root included, then reaches the file system through the drive map.
    std::string text(path);
    std::replace(text.begin(), text.end(), '\\', kPathSep);
    const std::string folder = WithTrailingSeparator(text, kPathSep);
    if (IsBareDriveRoot(folder, kPathSep) && platform::FolderExists(folder)) return true;
    const std::vector<std::string> folders = FoldersToCreate(folder, kPathSep);
    for (const std::string& each : folders) platform::CreateFolder(each);  // errors ignored
    return !folders.empty();
}

std::string AppClass::StrSwap(std::string_view text, std::string_view searched,
                              std::string_view replacement) const {
    return session::StrSwap(text, searched, replacement);
}

std::string AppClass::GetWinDir() const {
    return platform::SystemFolder();
}

std::string AppClass::FolderMadeOnDemand(std::string_view name) const {
    const std::string folder = RootPath() + kPathSep + std::string(name);
    // A plain-file lookup never finds a folder, so the folder is (harmlessly) made every time.
    if (!platform::FileExists(folder)) MakeAnyDir(folder);
    return folder;
}

std::string AppClass::TransfertInPath() const {
    return FolderMadeOnDemand("Import");
}

std::string AppClass::TransfertOutPath() const {
    return FolderMadeOnDemand("Export");
}

std::string AppClass::GetSpecialFolder(std::int32_t identifier) const {
    return platform::SpecialFolderPath(identifier);
}

AppClass& SharedAppClass() {
    static AppClass instance;
    return instance;
}

}  // namespace fnrk::session

#include "session/api_ini.hpp"

#include "platform/file_system.hpp"
#include "platform/ini_file.hpp"
#include "platform/paths.hpp"
#include "platform/settings_store.hpp"
#include "platform/text.hpp"
#include "session/app_class.hpp"
#include "session/path_rules.hpp"
#include "session/session_user.hpp"

namespace fnrk::session {
namespace {

using platform::kPathSep;
using platform::Trim;
using platform::UpperCase;

constexpr std::size_t kReadBuffer = 255;
constexpr std::size_t kProbeBuffer = 512;

bool IsUserPathKey(std::string_view section, std::string_view key) {
    return UpperCase(section) == "INSTALL" && UpperCase(key) == "USERPATH";
}

// Sections that describe the machine, never the user: a preference file cannot override them.
bool IsMachineWideSection(const std::string& upperSection) {
    return upperSection == "CONNECTION" || upperSection == "FIDUC" ||
           upperSection == "TERMINAL_SERVICES";
}

// Sections that, off terminal services, come from INIfile itself whatever the file choice.
bool IsWorkstationSection(const std::string& upperSection) {
    return upperSection == "CONNECTION" || upperSection == "INSTALL" || upperSection == "FIDUC";
}

std::string MainIniFile() {
    return platform::SettingsMainPath() + kPathSep + "FennRick.ini";
}

// The shared file: the one beside the users table when there is one, else the root folder's.
std::string SharedFileFor(const std::string& usersFolder) {
    const std::string besideUsers = usersFolder + "Fennrick.ini";
    if (platform::FileExists(besideUsers)) return besideUsers;
    return AppClass().RootPath() + kPathSep + "Fennrick.ini";
}

}  // namespace

bool IsTerminalServices() {
    // Only the "TS" switch: this platform has no version query that tells terminal services.
    const std::string rootFile = AppClass().RootPath() + kPathSep + "FennRick.ini";
    return UpperCase(platform::GetPrivateProfileString("Connection", "TS", "", kProbeBuffer,
                                                       rootFile)) == "ON";
}

std::string ApiIni::FileToRead(std::string_view section, std::string_view key) const {
    if (UpperCase(iniFile_).find("FENNRICK.INI") == std::string::npos) return iniFile_;
    if (IsUserPathKey(section, key)) return MainIniFile();

    const std::string usersFolder = GetUserDbfPath();
    // Trailing blanks of a padded user name are no part of a Windows file name.
    std::string user = platform::TrimRight(CurrentUser().Name);
    if (Trim(user).empty()) user = platform::SettingsUserCode();
    const std::string preferenceFile = usersFolder + "UsersPrefs" + kPathSep + user + ".ini";

    const std::string upperSection = UpperCase(section);
    std::string target;
    if (platform::FileExists(preferenceFile)) {
        const bool inPreferences = IsSpecifiedKeyExist(section, key, preferenceFile);
        target = IsMachineWideSection(upperSection) || !inPreferences ? SharedFileFor(usersFolder)
                                                                      : preferenceFile;
    } else {
        target = SharedFileFor(usersFolder);
    }
    if (IsWorkstationSection(upperSection) && !IsTerminalServices()) target = iniFile_;
    return target;
}

std::string ApiIni::ReadINI(std::string_view section, std::string_view key) const {
    if (Trim(iniFile_).empty()) return {};
    std::string value =
        platform::GetPrivateProfileString(section, key, "", kReadBuffer, FileToRead(section, key));
    if (IsUserPathKey(section, key)) {
        // The one path this class reads: made native before the separator rules look at it.
        value = WithoutUsersTableSuffix(platform::NativePath(value), kPathSep);
    }
    return value;
}

void ApiIni::WriteINI(std::string_view section, std::string_view key,
                      std::string_view value) const {
    if (Trim(iniFile_).empty()) return;
    platform::WritePrivateProfileString(section, key, value, iniFile_);
}

bool ApiIni::IsSpecifiedKeyExist(std::string_view section, std::string_view key,
                                 std::string_view file) const {
    static constexpr std::string_view kMissing = "KEY_NO_EXIST";
    return platform::GetPrivateProfileString(section, key, kMissing, kProbeBuffer, file) !=
           kMissing;
}

std::string ApiIni::GetUserDbfPath() const {
    ApiIni mainFile;
    mainFile.INIfile(MainIniFile());
    const std::string value = mainFile.ReadINI("Install", "UserPath");
    if (!Trim(value).empty()) return UsersFolderFromSetting(value, kPathSep);
    if (usersTable_ != nullptr) {
        if (const auto openFolder = usersTable_->OpenUsersTableFolder()) return *openFolder;
    }
    return platform::SettingsMainPath() + kPathSep;
}

std::string ApiIni::GetUsersPrefDirectory() const {
    const std::string folder = GetUserDbfPath() + "UsersPrefs";
    return platform::FolderExists(folder) ? folder : std::string();
}

ApiIni& SharedApiIni() {
    static ApiIni instance;
    return instance;
}

}  // namespace fnrk::session

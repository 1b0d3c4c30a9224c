#include "platform/settings_store.hpp"

#include <cstdlib>
#include <system_error>

#include "platform/environment.hpp"
#include "platform/ini_file.hpp"
#ifdef _WIN32
#include "platform/registry_settings.hpp"
#endif
#include "platform/special_folders.hpp"
#include "platform/text.hpp"

namespace fnrk::platform {
namespace {

// Large enough for any path or value kept in the store.
constexpr std::size_t kSettingBufferSize = 32768;

struct EnvironmentOverride {
    std::string_view section;
    std::string_view key;
    const char* variable;
};

constexpr EnvironmentOverride kOverrides[] = {
    {"Installation", "MainPath", "FNRK_MAIN_PATH"},
    {"Accounting", "UserCode", "FNRK_USER_CODE"},
};

#ifdef _WIN32
// The store is the registry, unless a settings file is named (tests, services).
bool InRegistry() {
    return EnvironmentValue("FNRK_SETTINGS_FILE").empty();
}
#endif

}  // namespace

std::filesystem::path SettingsFilePath() {
    if (const std::string file = EnvironmentValue("FNRK_SETTINGS_FILE"); !file.empty()) return file;
    const std::string appData = SpecialFolderPath(special_folder::kAppData);
    if (appData.empty()) return {};  // no home folder: defaults only, writes fail
    return std::filesystem::path(appData) / "fennrick" / "settings.ini";
}

std::string GetSetting(std::string_view section, std::string_view key,
                       std::string_view defaultValue) {
    for (const EnvironmentOverride& entry : kOverrides) {
        if (EqualsNoCase(entry.section, section) && EqualsNoCase(entry.key, key)) {
            if (const char* value = std::getenv(entry.variable)) return value;
        }
    }
#ifdef _WIN32
    if (InRegistry()) return ReadRegistrySetting(section, key).value_or(std::string(defaultValue));
#endif
    return ReadIniString(section, key, defaultValue, kSettingBufferSize, SettingsFilePath());
}

bool SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
#ifdef _WIN32
    if (InRegistry()) return WriteRegistrySetting(section, key, value);
#endif
    const std::filesystem::path file = SettingsFilePath();
    std::error_code error;
    if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), error);
    return WriteIniString(section, key, value, file);
}

std::string SettingsMainPath() {
    return GetSetting("Installation", "MainPath");
}

std::string SettingsUserCode() {
    return GetSetting("Accounting", "UserCode", "Fennrick");
}

std::vector<std::pair<std::string, std::string>> SettingsDriveMap() {
    return ReadIniSection("Drives", SettingsFilePath());
}

}  // namespace fnrk::platform

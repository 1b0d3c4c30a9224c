#pragma once

// The per-user application-settings store of the application "Fennrick": on Linux an INI file,
// $XDG_CONFIG_HOME/fennrick/settings.ini (~/.config when XDG_CONFIG_HOME is unset); on Windows
// the registry (registry_settings.hpp), where the desktop applications keep theirs.
// Environment variables let tests and services work without a home folder:
//   FNRK_SETTINGS_FILE  the settings file itself;
//   FNRK_MAIN_PATH      "Installation"/"MainPath", read before the file;
//   FNRK_USER_CODE      "Accounting"/"UserCode", read before the file.

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fnrk::platform {

std::filesystem::path SettingsFilePath();

// A value of the store; its environment variable first where it has one, then the file, then
// `defaultValue`.
std::string GetSetting(std::string_view section, std::string_view key,
                       std::string_view defaultValue = {});

// Writes a value to the settings file (creating it and its folder). False when it cannot.
bool SaveSetting(std::string_view section, std::string_view key, std::string_view value);

// "Installation"/"MainPath": folder of the shared installation; empty when not set.
std::string SettingsMainPath();

// "Accounting"/"UserCode": names the preference file when no user is logged on.
std::string SettingsUserCode();

// The "Drives" section: drive ("K:") and the folder it stands for ("/srv/bank"), in file order.
std::vector<std::pair<std::string, std::string>> SettingsDriveMap();

}  // namespace fnrk::platform

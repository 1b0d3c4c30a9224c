#pragma once

// Windows only: the per-user application settings in the registry, where the desktop
// applications keep theirs: one key per section under "HKEY_CURRENT_USER\Software\VB and VBA
// Program Settings\Fennrick", one string value per setting.

#include <optional>
#include <string>
#include <string_view>

namespace fnrk::platform {

// The value, or nullopt when the section or the key is not there.
std::optional<std::string> ReadRegistrySetting(std::string_view section, std::string_view key);
// False when the registry refuses the write.
bool WriteRegistrySetting(std::string_view section, std::string_view key, std::string_view value);

}  // namespace fnrk::platform

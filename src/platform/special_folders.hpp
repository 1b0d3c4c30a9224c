#pragma once

// Folders of the desktop environment, asked for by the shell's folder identifiers.

#include <cstdint>
#include <string>

namespace fnrk::platform {

namespace special_folder {
inline constexpr std::int32_t kDesktop = 0;
inline constexpr std::int32_t kPersonal = 5;  // documents
inline constexpr std::int32_t kMyMusic = 13;
inline constexpr std::int32_t kMyVideo = 14;
inline constexpr std::int32_t kDesktopDirectory = 16;
inline constexpr std::int32_t kTemplates = 21;
inline constexpr std::int32_t kAppData = 26;
inline constexpr std::int32_t kLocalAppData = 28;
inline constexpr std::int32_t kCommonAppData = 35;
inline constexpr std::int32_t kMyPictures = 39;
inline constexpr std::int32_t kProfile = 40;
}  // namespace special_folder

// The folder for `identifier`: on Windows the shell's; on Linux the XDG user folders (XDG_*_DIR
// variables, then user-dirs.dirs, then the usual name under the home folder), XDG_CONFIG_HOME for
// app data, XDG_DATA_HOME for local app data, /var/lib for common app data. Empty for an
// identifier without a counterpart or when the home folder is unknown.
std::string SpecialFolderPath(std::int32_t identifier);

// The Windows folder; there is none on Linux, so empty.
std::string SystemFolder();

}  // namespace fnrk::platform

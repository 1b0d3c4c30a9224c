#pragma once

// Native paths. Paths that come from data or configuration in Windows form ("K:\BANK\coda",
// "..\x") are translated here, once, at the file-system boundary, through the "Drives" map of the
// settings store, so that dossiers copied from Windows installations keep working.

#include <filesystem>
#include <string>
#include <string_view>

namespace fnrk::platform {

#ifdef _WIN32
inline constexpr char kPathSep = '\\';
#else
inline constexpr char kPathSep = '/';
#endif

// The text of `path` in native form: on Linux a leading drive ("K:") is replaced by its folder
// from the "Drives" map (left as it is when unmapped) and backslashes become "/". Unchanged on
// Windows.
std::string NativePath(std::string_view path);

// The path to hand to the file system: the native form, and, where the exact name does not exist,
// the entry of the same folder whose name matches it letter case aside (as Windows would find
// it: "Fennrick.ini" reaches "FennRick.ini").
std::filesystem::path FileSystemPath(std::string_view path);

// The network name of a drive ("K:" or "K:\..."): on Windows the remote name of the connected
// network drive ("\\server\share"), on Linux the folder mapped to it in the "Drives" map;
// empty when the drive is not a network drive or not mapped.
std::string DriveNetworkName(std::string_view drive);

// Folder of the running program, without trailing separator. A host embedding the library (and
// tests) may set it; by default it is the folder of the executable.
std::string ProgramFolder();
void SetProgramFolder(std::string folder);

}  // namespace fnrk::platform

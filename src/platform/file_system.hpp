#pragma once

// File-system helpers in the manner of the scripting file-system object. Paths may be in Windows
// form (they pass through FileSystemPath). Failures give false or an empty result, never an
// exception.

#include <string>
#include <string_view>
#include <vector>

namespace fnrk::platform {

bool FileExists(std::string_view path);    // a file, not a folder
bool FolderExists(std::string_view path);  // a folder, not a file
// Creates one folder; false when it exists already or its parent is missing.
bool CreateFolder(std::string_view path);
// Moves (renames) a file; false when the target exists or the source is missing.
bool MoveFile(std::string_view source, std::string_view target);
bool DeleteFile(std::string_view path);
bool CopyFile(std::string_view source, std::string_view target, bool overwrite = true);
// A random name for a temporary file, "radXXXXX.tmp" (five hexadecimal digits); nothing is
// created.
std::string GetTempName();

// Creates a new folder of its own in the system's temporary folder, "<prefix>XXXXXX" (six
// hexadecimal digits); its path, empty when none could be made.
std::string CreateTemporaryFolder(std::string_view prefix);
// Names (not paths) of the sub-folders / files of a folder, sorted; empty when it is missing.
std::vector<std::string> SubFolderNames(std::string_view folder);
std::vector<std::string> FileNames(std::string_view folder);

}  // namespace fnrk::platform

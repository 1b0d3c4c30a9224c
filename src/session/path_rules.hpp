#pragma once

// The text rules of the installation's paths, with the separator as a parameter so that they can
// be checked with both "\" and "/"; the classes call them with kPathSep.

#include <string>
#include <string_view>
#include <vector>

namespace fnrk::session {

// The installation's root folder from the program folder: a last "<sep>PRG" or "<sep>BIN" is
// dropped, else a last "<sep>PRG<sep>GIT<sep>FENNRICK" or "<sep>BIN<sep>GIT<sep>FENNRICK"
// (development installations); then a trailing separator (drive root) is dropped.
std::string RootFolderOf(std::string_view programFolder, char sep);

// Install/UserPath as ReadINI returns it: without a last "<sep>USERS.DBF", then without a
// trailing separator.
std::string WithoutUsersTableSuffix(std::string_view value, char sep);

// The users folder from a non-blank Install/UserPath: without a last "USERS.DBF", ending with the
// separator.
std::string UsersFolderFromSetting(std::string_view value, char sep);

// Three characters ending in ":" and the separator ("C:\").
bool IsBareDriveRoot(std::string_view path, char sep);

// MakeAnyDir's path: trimmed, ending with the separator.
std::string WithTrailingSeparator(std::string_view path, char sep);

// The folders MakeAnyDir creates for a path ending with the separator, left to right: the prefix
// up to each separator after the first.
std::vector<std::string> FoldersToCreate(std::string_view path, char sep);

// Every occurrence of `searched` replaced by `replacement`.
std::string StrSwap(std::string_view text, std::string_view searched, std::string_view replacement);

}  // namespace fnrk::session

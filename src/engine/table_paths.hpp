#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace fnrk::engine {

// The file a table name means: relative names are taken in `folder`; a name without extension
// gets ".dbf". The name is found letter case aside (tables copied from Windows differ in case
// only) and given as the file system stores it, so that every process names a table alike.
std::string ResolveTablePath(const std::string& folder, std::string_view name);

// The folder of a connection path, without trailing separators; empty when it is no folder.
std::string ConnectionFolder(std::string_view serverPath);

// A path to look a connection up by (its folder, or a table in it), absolute and in normal form as
// the connection folders are; empty when the path is empty.
std::filesystem::path ConnectionLookupPath(std::string_view path);

}  // namespace fnrk::engine

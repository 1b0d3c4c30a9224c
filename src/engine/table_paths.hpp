#pragma once

#include <string>
#include <string_view>

namespace fnrk::engine {

// The file a table name means: relative names are taken in `folder`; a name without extension
// gets ".dbf". Tables copied from Windows differ in letter case only, so when the exact name is
// missing a file of the same name in another letter case is taken.
std::string ResolveTablePath(const std::string& folder, std::string_view name);

// The folder of a connection path, without trailing separators; empty when it is no folder.
std::string ConnectionFolder(std::string_view serverPath);

}  // namespace fnrk::engine

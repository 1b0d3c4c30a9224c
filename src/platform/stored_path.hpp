#pragma once

// Names found whatever their letter case, spelled as the file system stores them.

#include <filesystem>

namespace fnrk::platform {

// `path` with its last part as the file system stores it: the entry of its folder whose name
// matches letter case aside ("stock.dbf" for "STOCK.DBF"), an exact match first where names may
// differ in case alone; `path` itself when no entry matches.
std::filesystem::path StoredPath(const std::filesystem::path& path);

}  // namespace fnrk::platform

#include "tables/archive_backend.hpp"

#include <filesystem>

namespace fnrk::tables {

std::string ArchiveFolder(std::string folder) {
    constexpr char separator = std::filesystem::path::preferred_separator;
    if (folder.empty() || folder.back() != separator) folder += separator;
    // A doubled separator at the end comes from callers that add their own; keep one.
    if (folder.size() >= 2 && folder[folder.size() - 2] == separator) folder.pop_back();
    return folder;
}

}  // namespace fnrk::tables

#include "utilities/cls_small_controls.hpp"

#include <filesystem>
#include <system_error>

#include "platform/paths.hpp"

namespace fnrk::utilities {

bool clsIO::IsDirectoryCreated(std::string_view path) const {
    if (path.empty()) return false;
    const std::filesystem::path folder = platform::FileSystemPath(path);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return std::filesystem::is_directory(folder, error);
}

std::int64_t clsProcess::WindowToProcessId(std::int64_t /*windowHandle*/) const {
    return 0;
}

std::string clsExcel::TabFormat(const std::vector<std::string>& cells) const {
    std::string row;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) row += '\t';
        for (const char c : cells[i]) row += (c == '\t' || c == '\r' || c == '\n') ? ' ' : c;
    }
    return row;
}

}  // namespace fnrk::utilities

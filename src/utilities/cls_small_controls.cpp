#include "utilities/cls_small_controls.hpp"

#include "utilities/file_names.hpp"

namespace fnrk::utilities {

bool clsIO::IsDirectoryCreated(std::string_view path) const {
    return CreateFolderRecursive(path);
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

#include "session/path_rules.hpp"

#include "platform/text.hpp"

namespace fnrk::session {
namespace {

using platform::Trim;
using platform::UpperCase;

// True when the upper-case text ends with `suffix` ("\" standing for the separator).
bool EndsWithUpper(std::string_view text, std::string_view suffix, char sep) {
    if (text.size() < suffix.size()) return false;
    std::string wanted(suffix);
    for (char& c : wanted) {
        if (c == '\\') c = sep;
    }
    return UpperCase(text.substr(text.size() - suffix.size())) == wanted;
}

}  // namespace

std::string RootFolderOf(std::string_view programFolder, char sep) {
    std::string root(programFolder);
    if (EndsWithUpper(root, "\\PRG", sep) || EndsWithUpper(root, "\\BIN", sep)) {
        root.resize(root.size() - 4);
    }
    if (EndsWithUpper(root, "\\PRG\\GIT\\FENNRICK", sep) ||
        EndsWithUpper(root, "\\BIN\\GIT\\FENNRICK", sep)) {
        root.resize(root.size() - 17);
    }
    if (!root.empty() && root.back() == sep) root.pop_back();
    return root;
}

std::string WithoutUsersTableSuffix(std::string_view value, char sep) {
    std::string result(value);
    if (EndsWithUpper(result, "\\USERS.DBF", sep)) result.resize(result.size() - 10);
    if (!result.empty() && result.back() == sep) result.pop_back();
    return result;
}

std::string UsersFolderFromSetting(std::string_view value, char sep) {
    std::string folder(value);
    if (EndsWithUpper(folder, "USERS.DBF", sep)) folder.resize(folder.size() - 9);
    if (folder.empty() || folder.back() != sep) folder += sep;
    return folder;
}

bool IsBareDriveRoot(std::string_view path, char sep) {
    return path.size() == 3 && path[1] == ':' && path[2] == sep;
}

std::string WithTrailingSeparator(std::string_view path, char sep) {
    std::string result = Trim(path);
    if (result.empty() || result.back() != sep) result += sep;
    return result;
}

std::vector<std::string> FoldersToCreate(std::string_view path, char sep) {
    std::vector<std::string> folders;
    const std::size_t first = path.find(sep);
    if (first == std::string_view::npos) return folders;
    std::size_t previousLength = first + 1;
    for (std::size_t pos = path.find(sep, first + 1); pos != std::string_view::npos;
         pos = path.find(sep, pos + 1)) {
        if (pos + 1 > previousLength) {
            folders.emplace_back(path.substr(0, pos + 1));
            previousLength = pos + 1;
        }
    }
    return folders;
}

std::string StrSwap(std::string_view text, std::string_view searched,
                    std::string_view replacement) {
    std::string result(text);
    if (searched.empty()) return result;
    if (replacement.find(searched) != std::string_view::npos) {
        // Searching again from the start would find the replacement itself for ever; one pass
        // from left to right gives the only result that ends.
        std::string swapped;
        std::size_t from = 0;
        for (std::size_t pos = result.find(searched); pos != std::string::npos;
             pos = result.find(searched, from)) {
            swapped.append(result, from, pos - from).append(replacement);
            from = pos + searched.size();
        }
        return swapped.append(result, from);
    }
    for (std::size_t pos = result.find(searched); pos != std::string::npos;
         pos = result.find(searched)) {
        result.replace(pos, searched.size(), replacement);
    }
    return result;
}

}  // namespace fnrk::session

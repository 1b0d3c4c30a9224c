#include "intake/coda_folders.hpp"

#include "intake/group_value.hpp"
#include "intake/network_paths.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"

namespace fnrk::intake {

namespace {

constexpr std::string_view kCodaGroup = "CODA_PARAMFILE";

std::string Escaped(const std::string& path) {
    std::string text;
    for (const char c : path) {
        text += c;
        if (c == '\\') text += c;
    }
    return text;
}

}  // namespace

std::string CodaFolders::Folder(std::string_view switchKey, std::string_view folderKey,
                                const std::string& fallback, bool escape) {
    if (!company_.IsCoda()) return {};
    const std::string group = company_.GetParamValue(kCodaGroup);
    std::string folder = platform::UpperCase(GroupValueItem(group, switchKey)) == "TRUE"
                             ? GroupValueItem(group, folderKey)
                             : std::string();
    if (platform::Trim(folder).empty()) folder = fallback;
    folder = NetworkFormOfPath(folder);
    return escape ? Escaped(folder) : folder;
}

std::string CodaFolders::DefaultFolder(bool escape) {
    const char sep = platform::kPathSep;
    return Folder("WITHDEFAULT", "DEFAULT", company_.pathName() + sep + "CODA" + sep, escape);
}

std::string CodaFolders::PdfFolder(bool escape) {
    const char sep = platform::kPathSep;
    return Folder("PROCESSCAN", "PROCESPDF", company_.pathName() + sep + "CODA" + sep + "PDF" + sep,
                  escape);
}

std::string CodaFolders::ProcessedFolder(bool escape) {
    return Folder("PROCES", "PROCESPATH", {}, escape);
}

}  // namespace fnrk::intake

#include "company/archive_tables.hpp"

#include "company/soc_param_col_class_api.hpp"
#include "platform/file_system.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"

namespace fnrk::company {

std::string ArchiveTables::ArchiveAlias(std::string_view alias) {
    return "ARCH" + platform::UpperCase(platform::Trim(alias));
}

std::string ArchiveTables::ArchivePrefix(std::int16_t bookYear) {
    const std::string folder = params_.IsPathBookYearArchive(bookYear);
    std::string name = params_.SocArchiveWithYear(bookYear);
    if (name.empty()) name = params_.socShortName();
    if (folder.empty() || name.empty()) return {};
    std::string prefix = platform::NativePath(folder);
    if (prefix.back() != platform::kPathSep) prefix += platform::kPathSep;
    return prefix + name;
}

std::string ArchiveTables::ArchivedTablePath(std::string_view alias, std::int16_t bookYear) {
    const std::string prefix = ArchivePrefix(bookYear);
    return prefix.empty() ? std::string() : tables::AdsClass::StandardTablePathOf(prefix, alias);
}

bool ArchiveTables::OpenArchived(std::string_view alias, std::int16_t bookYear) {
    const std::string prefix = ArchivePrefix(bookYear);
    if (prefix.empty()) return false;
    const std::string table = tables::AdsClass::StandardTablePathOf(prefix, alias);
    if (table.empty() || !platform::FileExists(table)) return false;
    std::string index = tables::AdsClass::StandardIndexPathOf(prefix, alias);
    if (!index.empty() && !platform::FileExists(index)) index.clear();
    const std::string archiveAlias = ArchiveAlias(alias);
    // Another year's copy may be open under the alias: the caller asked for this one.
    if (tables_.IsAlias(archiveAlias)) engine::IgnoreStatus(tables_.FileClose(archiveAlias));
    return tables_.OpenFile(archiveAlias, table, index, "SHARED") == engine::AE_SUCCESS;
}

}  // namespace fnrk::company

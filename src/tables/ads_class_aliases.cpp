// AdsClass: finding open tables by alias, the current table, closing, packing and emptying, and
// the state of an open table.

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "platform/file_system.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"
#include "tables/standard_tables.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

namespace {

// The alias table is examined up to this many entries.
constexpr std::size_t kMaxAliases = 99;

bool IsNumber(std::string_view text) {
    return !text.empty() && text.size() <= 10 && std::all_of(text.begin(), text.end(), [](char c) {
        return std::isdigit(static_cast<unsigned char>(c));
    });
}

// Aliases that FileCloseAll never closes, and the one it keeps on request.
constexpr const char* kUsersAlias = "USERS";
constexpr const char* kParamAlias = "PARAM";

// The alias that IsExternalOpen's trial open uses for a moment.
constexpr const char* kProbeAlias = "EXTERNALPROBE";

}  // namespace

AdsClass::Handle AdsClass::TableOfAlias(std::string_view alias) {
    const std::string name = platform::UpperCase(platform::Trim(alias));
    if (IsNumber(name)) return static_cast<Handle>(std::stoll(name));
    if (name.empty()) return 0;
    std::vector<Handle> tables;
    // A backend that fails to answer still leaves the tables of the others.
    IgnoreStatus(db_.GetAllTables(tables));
    if (tables.size() > kMaxAliases) tables.resize(kMaxAliases);
    for (Handle table : tables) {
        std::string tableAlias;
        if (db_.GetTableAlias(table, tableAlias) == AE_SUCCESS &&
            platform::UpperCase(tableAlias) == name) {
            return table;
        }
    }
    return 0;
}

bool AdsClass::MakeCurrent(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    if (table == 0) return false;
    currentTable_ = table;
    std::string name;
    currentAlias_ = db_.GetTableAlias(table, name) == AE_SUCCESS
                        ? platform::UpperCase(name)
                        : platform::UpperCase(platform::Trim(alias));
    // A SQL-kept table keeps its order with it, whoever set it; the engine's are kept here.
    Handle kept = 0;
    if (db_.GetActiveIndexHandle(table, kept) == AE_SUCCESS) {
        currentIndex_ = kept;
        return true;
    }
    const auto active = activeIndex_.find(table);
    currentIndex_ = active != activeIndex_.end() ? active->second : 0;
    return true;
}

void AdsClass::SetActiveIndex(Handle table, Handle index) {
    activeIndex_[table] = index;
    // The engine's tables answer that they keep no order: this object's map holds it.
    if (table < kEngineHandleStart) IgnoreStatus(db_.SetActiveIndexHandle(table, index));
}

std::string AdsClass::OpenTableFile(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    std::string path;
    if (table == 0 || db_.GetTableFilename(table, ADS_FULLPATHNAME, path) != AE_SUCCESS) return {};
    return path;
}

bool AdsClass::FileIsOpen(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    std::string name;
    return table != 0 && db_.GetTableAlias(table, name) == AE_SUCCESS;
}

bool AdsClass::IsAlias(std::string_view alias) {
    // A number is a handle, not an alias name.
    return !IsNumber(platform::Trim(alias)) && FileIsOpen(alias);
}

Status AdsClass::ActivateAlias(std::string_view alias) {
    if (platform::Trim(alias).empty()) return AE_SUCCESS;
    if (MakeCurrent(alias)) return AE_SUCCESS;
    ShowErrorBox("Alias " + std::string(alias) + " not found (ActivateAlias)");
    return AE_TABLE_NOT_FOUND;
}

std::vector<std::string> AdsClass::EnumerateAlias() {
    std::vector<Handle> tables;
    // A backend that fails to answer still leaves the tables of the others.
    IgnoreStatus(db_.GetAllTables(tables));
    if (tables.size() > kMaxAliases) tables.resize(kMaxAliases);
    std::vector<std::string> aliases;
    for (Handle table : tables) {
        std::string alias;
        if (db_.GetTableAlias(table, alias) == AE_SUCCESS) aliases.push_back(alias);
    }
    return aliases;
}

Status AdsClass::CloseAlias(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    if (table == 0) return AE_TABLE_NOT_FOUND;
    const Status status = db_.CloseTable(table);
    if (status != AE_SUCCESS) return status;
    activeIndex_.erase(table);
    RemoveTempIndexFile(table);
    if (table == currentTable_) {
        currentTable_ = 0;
        currentIndex_ = 0;
        currentAlias_.clear();
    }
    return AE_SUCCESS;
}

Status AdsClass::FileClose(std::string_view alias) {
    return CloseAlias(alias);
}

Status AdsClass::FileCloseAll(bool keepParam) {
    Status first = AE_SUCCESS;
    for (const std::string& alias : EnumerateAlias()) {
        const std::string name = platform::UpperCase(alias);
        if (name == kUsersAlias || (keepParam && name == kParamAlias)) continue;
        const Status status = CloseAlias(name);
        if (first == AE_SUCCESS) first = status;
    }
    return first;
}

Status AdsClass::PackAndClose(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    if (table == 0) return AE_TABLE_NOT_FOUND;
    const Status status = db_.PackTable(table);
    if (status != AE_SUCCESS) {
        ShowErrorBox(CatalogueText(210) + "\r\n" +
                     EngineFailureText(status, GetAdsLastError(), {}));
    }
    const Status closed = CloseAlias(alias);
    return status != AE_SUCCESS ? status : closed;
}

Status AdsClass::Zap(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    return table == 0 ? AE_TABLE_NOT_FOUND : db_.ZapTable(table);
}

bool AdsClass::IsOpenExclusive(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    bool exclusive = false;
    return table != 0 && db_.IsTableExclusive(table, exclusive) == AE_SUCCESS && exclusive;
}

bool AdsClass::IsOpenFileReadOnly(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    std::uint32_t options = 0;
    return table != 0 && db_.GetTableOpenOptions(table, options) == AE_SUCCESS &&
           (options & ADS_READONLY) != 0;
}

bool AdsClass::IsFileLocked(std::string_view alias) {
    const Handle table = TableOfAlias(alias);
    bool locked = false;
    return table != 0 && db_.IsTableLocked(table, locked) == AE_SUCCESS && locked;
}

bool AdsClass::FileOpenedElsewhere(const std::string& path) {
    if (!platform::FileExists(path)) return false;
    const std::string folder = std::filesystem::path(path).parent_path().string();
    const Handle connection = ConnectionForFolder(folder, false);
    Handle probe = 0;
    const Status status =
        db_.OpenTable(connection, path, kProbeAlias, ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                      ADS_IGNORERIGHTS, ADS_EXCLUSIVE, probe);
    if (status != AE_SUCCESS) return true;
    IgnoreStatus(db_.CloseTable(probe));  // the probe only asked whether it could open
    return false;
}

bool AdsClass::IsExternalOpen(std::string_view alias) {
    std::string path = OpenTableFile(alias);
    if (path.empty()) path = StandardTablePath(alias);
    return !path.empty() && FileOpenedElsewhere(path);
}

bool AdsClass::IsAnyFileExternalOpenExceptParam() {
    for (const std::string& alias : DossierTableNames()) {
        // Tables without a row of their own (ASSTMP, PAY) follow the alias + ".DBF" pattern.
        std::string path = StandardTablePath(alias);
        if (path.empty()) path = platform::Trim(dossier_.prefix) + "_" + alias + ".DBF";
        if (FileOpenedElsewhere(path)) return true;
    }
    return false;
}

}  // namespace fnrk::tables

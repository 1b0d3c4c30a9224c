// AdsClass: opening tables. OpenFile is the one routine that opens; the others name the file of a
// standard alias or of the dossier's parameter table and hand it on.

#include <filesystem>

#include "backend/connection_xml.hpp"
#include "platform/file_system.hpp"
#include "platform/messages.hpp"
#include "platform/paths.hpp"
#include "platform/settings_store.hpp"
#include "platform/text.hpp"
#include "session/api_ini.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"
#include "tables/open_modes.hpp"
#include "tables/standard_tables.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

namespace {

constexpr const char* kParameterError = "Parameter error";

// "Connection" settings of the shared configuration file.
struct ConnectionSettings {
    std::uint16_t serverType = ADS_LOCAL_SERVER;
    std::uint16_t cachedRecords = 0;
};

ConnectionSettings ReadConnectionSettings() {
    session::ApiIni ini;
    ini.INIfile(platform::SettingsMainPath() + platform::kPathSep + "FennRick.ini");
    // Under terminal services the section comes from the file beside the users table.
    ini.UsersTableFrom(session::SharedApiIni().UsersTable());
    ConnectionSettings settings;
    const std::string mode = platform::UpperCase(ini.ReadINI("Connection", "Mode"));
    if (mode == "CLIENTSERVER") {
        settings.serverType = ADS_REMOTE_SERVER;
    } else if (mode == "AUTOMATIC") {
        settings.serverType = ADS_LOCAL_SERVER | ADS_REMOTE_SERVER | ADS_AIS_SERVER;
    } else if (mode == "INTERNET") {
        settings.serverType = ADS_AIS_SERVER;
    }
    const std::string cached = platform::Trim(ini.ReadINI("Connection", "CachedRecords"));
    if (!cached.empty() && cached.find_first_not_of("0123456789") == std::string::npos &&
        cached.size() <= 5) {
        settings.cachedRecords = static_cast<std::uint16_t>(std::min(std::stoi(cached), 65535));
    }
    return settings;
}

bool IsUsersTable(std::string_view alias) {
    return alias == "USERS" || alias == "USERSEXT" || alias == "CO_BOARD";
}

// Why a path cannot be opened, as far as the file system tells; empty when nothing is wrong
// with it.
std::string DiagnosePath(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path file = platform::FileSystemPath(path);
    if (!fs::is_directory(file.parent_path(), error)) {
        return "Folder not found: " + file.parent_path().string();
    }
    if (!fs::exists(file, error)) return "File not found: " + path;
    if (fs::is_directory(file, error)) return "Not a file: " + path;
    const auto permissions = fs::status(file, error).permissions();
    if ((permissions & fs::perms::owner_read) == fs::perms::none) {
        return "File not readable: " + path;
    }
    return {};
}

// The structural index (the table's own name with ".cdx") opens with its table, wherever it is
// kept; only other index files are opened by name. No index file counts as structural too.
bool IsStructuralIndex(const std::string& table, std::string_view indexFile) {
    const std::string index = platform::Trim(indexFile);
    if (index.empty()) return true;
    const std::filesystem::path tablePath(table);
    const std::filesystem::path indexPath(index);
    return platform::UpperCase((tablePath.parent_path() / tablePath.stem()).string()) ==
               platform::UpperCase((indexPath.parent_path() / indexPath.stem()).string()) &&
           platform::UpperCase(indexPath.extension().string()) == ".CDX";
}

}  // namespace

AdsClass::Handle AdsClass::ConnectionForFolder(const std::string& folder, bool usersTable) {
    if (usersTable && usersConnection_ != 0) return usersConnection_;
    if (auto known = folderConnections_.find(folder); known != folderConnections_.end()) {
        if (usersTable) usersConnection_ = known->second;
        return known->second;
    }
    Handle connection = 0;
    Status status = AE_SUCCESS;
    const std::string description = folder + platform::kPathSep + "folder.data";
    const std::string marker = folder + platform::kPathSep + "FRSQL.DBF";
    backend::FolderXml sqlFolder;
    if (platform::FileExists(marker) && sqlFolder.Load(description)) {
        // A SQL-kept folder: its own description names its database. The current dossier,
        // the organisation folder and the SQL root have backends of their own; any other
        // folder is served by an Archive slot, the same one each time.
        BackendSlot slot = BackendSlot::Folder;
        if (!db_.RoutesToSlot(ArchiveFolder(folder), slot)) {
            const int archive = db_.ArchiveSlotFor(folder, {});
            if (archive < 0) return 0;
            connection = SqlDatabase::ArchiveHandleBase(archive);
        }
        status = db_.Connect26("<SQL>" + sqlFolder.GetConnectionString() + "<DIR>" + folder,
                               ADS_LOCAL_SERVER, connection);
    } else if (db_.FindConnection25(folder, connection) != AE_SUCCESS || connection == 0) {
        status = db_.Connect26(folder, ReadConnectionSettings().serverType, connection);
    }
    if (status != AE_SUCCESS) return 0;
    folderConnections_[folder] = connection;
    if (usersTable) usersConnection_ = connection;
    return connection;
}

AdsClass::Handle AdsClass::DossierConnection() {
    return ConnectionForFolder(std::filesystem::path(dossier_.prefix).parent_path().string(),
                               false);
}

AdsClass::Handle AdsClass::ConnectionOfTableFile(std::string_view alias, std::string_view path) {
    return ConnectionForFolder(std::filesystem::path(platform::Trim(path)).parent_path().string(),
                               IsUsersTable(platform::UpperCase(platform::Trim(alias))));
}

Status AdsClass::CreateTableFile(std::string_view alias, std::string_view path,
                                 std::string_view fields) {
    const Handle connection = ConnectionOfTableFile(alias, path);
    if (connection == 0) return AE_INVALID_CONNECTION_HANDLE;
    Handle table = 0;
    const Status status = db_.CreateTable(
        connection, platform::Trim(path), platform::UpperCase(platform::Trim(alias)), ADS_CDX,
        ADS_ANSI, ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, fields, table);
    if (status != AE_SUCCESS) return status;
    return db_.CloseTable(table);
}

Status AdsClass::OpenFile(std::string_view alias, std::string_view path, std::string_view indexFile,
                          std::string_view openMode, std::int32_t flags) {
    std::uint32_t options = 0;
    if (!OpenOptionsOf(openMode, options)) {
        ShowErrorBox(kParameterError);
        return AE_INVALID_OPTION;
    }
    const bool quiet = (flags & kOpenQuiet) != 0;
    const std::string name = platform::UpperCase(platform::Trim(alias));
    const std::string file = platform::Trim(path);
    const ConnectionSettings settings = ReadConnectionSettings();
    const std::string folder = std::filesystem::path(file).parent_path().string();
    const Handle connection = ConnectionForFolder(folder, IsUsersTable(name));

    if (TableOfAlias(name) != 0) CloseAlias(name);
    auto open = [&](Handle& table) {
        return db_.OpenTable(connection, file, name, ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                             ADS_IGNORERIGHTS, options, table);
    };
    Handle table = 0;
    Status status = open(table);
    if (status == AE_SERVER_FILE_NOT_FOUND) {
        if (const std::string diagnosis = DiagnosePath(file); !diagnosis.empty() && !quiet) {
            platform::ShowMessage(diagnosis, platform::message_style::kExclamation,
                                  platform::kErrorTitle);
        }
        status = open(table);
    }
    if (status == AE_SUCCESS && !IsStructuralIndex(file, indexFile)) {
        std::vector<Handle> orders;
        status = db_.OpenIndex(table, platform::Trim(indexFile), orders);
        // The structural index opens with its table.
        if (status == AE_INDEX_ALREADY_OPEN) status = AE_SUCCESS;
        if (status != AE_SUCCESS) {
            const std::string text = GetAdsLastError();
            IgnoreStatus(db_.CloseTable(table));  // the index failure is the one reported
            table = 0;
            if (!quiet) {
                ShowErrorBox("File open error:\r\nCode error ADS: " + std::to_string(status) +
                             "\r\nFile: " + std::string(indexFile) +
                             "\r\nDescription error: " + text);
            }
            return status;
        }
    }
    if (status != AE_SUCCESS) {
        if (!quiet) {
            ShowErrorBox("File open error:\r\nCode error ADS: " + std::to_string(status) +
                         "\r\nFile: " + file + "\r\nDescription error: " + GetAdsLastError());
        }
        return status;
    }
    // A cache size is a hint: a table that refuses it works uncached.
    if (settings.cachedRecords > 0) IgnoreStatus(db_.CacheRecords(table, settings.cachedRecords));
    SetActiveIndex(table, 0);
    currentTable_ = table;
    currentAlias_ = name;
    currentIndex_ = 0;
    return AE_SUCCESS;
}

std::string AdsClass::StandardTablePath(std::string_view alias) const {
    return StandardTablePathOf(dossier_.prefix, alias);
}

std::string AdsClass::StandardIndexPath(std::string_view alias) const {
    return StandardIndexPathOf(dossier_.prefix, alias);
}

std::string AdsClass::StandardTablePathOf(std::string_view prefix, std::string_view alias) {
    const auto row = StandardTableOf(platform::UpperCase(platform::Trim(alias)));
    if (!row) return {};
    return platform::Trim(prefix) + "_" + row->tableFile;
}

std::string AdsClass::StandardIndexPathOf(std::string_view prefix, std::string_view alias) {
    const auto row = StandardTableOf(platform::UpperCase(platform::Trim(alias)));
    if (!row || row->indexFile.empty()) return {};
    return platform::Trim(prefix) + "_" + row->indexFile;
}

Status AdsClass::FileOpen(std::string_view alias, std::string_view openMode, bool withoutIndex) {
    const std::string name = platform::UpperCase(platform::Trim(alias));
    const std::string table = StandardTablePath(name);
    if (table.empty()) {
        ShowErrorBox("Alias " + name + " not found (FileOpen)");
        return AE_TABLE_NOT_FOUND;
    }
    const std::string index = withoutIndex ? std::string() : StandardIndexPath(name);
    const Status status = OpenFile(name, table, index, openMode);
    if (status == AE_SUCCESS && name == "ACTTOT" && !withoutIndex) {
        Handle totals = 0;
        if (db_.GetIndexHandle(currentTable_, kPeriodTotalsTag, totals) == AE_SUCCESS) {
            SetActiveIndex(currentTable_, totals);
            currentIndex_ = totals;
        }
    }
    return status;
}

Status AdsClass::FileOpenExternal(std::string_view alias, std::string_view path,
                                  std::string_view openMode) {
    return OpenFile(alias, path, {}, openMode);
}

Status AdsClass::FileOpenAll() {
    Status first = AE_SUCCESS;
    for (const std::string& alias : OpenAllTableNames()) {
        const Status status = FileOpen(alias, "SHARED");
        if (first == AE_SUCCESS) first = status;
    }
    return first;
}

Status AdsClass::FileOpenParam(std::string_view openMode, bool alternate) {
    const std::string mode = platform::UpperCase(platform::Trim(openMode));
    if (mode != "SHARED" && mode != "EXCLUSIVE") {
        ShowErrorBox(kParameterError);
        return AE_INVALID_OPTION;
    }
    return OpenFile(alternate ? "ALTPARAM" : "PARAM", StandardTablePath("PARAM"),
                    StandardIndexPath("PARAM"), mode);
}

Status AdsClass::FileOpenParamWithoutIndex() {
    return OpenFile("PARAMRO", StandardTablePath("PARAM"), {}, "READONLY");
}

Status AdsClass::FileOpenParamWithoutIndexWithoutRO() {
    return OpenFile("PARAM", StandardTablePath("PARAM"), {}, "SHARED");
}

Status AdsClass::FileOpenACTWithoutIndex() {
    // The entries file under its standard name, so that it is found where names are cased.
    return OpenFile("ACTRO", StandardTablePath("ACT"), {}, "SHARED");
}

bool AdsClass::FileExistParam() {
    const std::string path = StandardTablePath("PARAM");
    if (platform::FileExists(path)) return true;
    // A SQL-kept dossier holds its tables in its database, not as files.
    const Handle connection = DossierConnection();
    bool exists = false;
    return connection > 0 && connection < kEngineHandleStart &&
           db_.TableExists(connection, path, exists) == AE_SUCCESS && exists;
}

bool AdsClass::FileExistParamIndex() const {
    return platform::FileExists(StandardIndexPath("PARAM"));
}

}  // namespace fnrk::tables

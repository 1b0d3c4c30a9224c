#include "engine/engine.hpp"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <vector>

#include "engine/dbf/field_list.hpp"
#include "engine/error_text.hpp"
#include "engine/order/order_registry.hpp"
#include "engine/table_paths.hpp"
#include "platform/local_time.hpp"
#include "platform/text.hpp"

namespace fnrk::engine {

namespace {

constexpr std::uint32_t kEngineMajor = 11;
constexpr std::uint32_t kEngineMinor = 10;

}  // namespace

Engine::Engine() = default;

Engine::~Engine() {
    // Closing writes what is pending; a destructor has no one to tell of a failure.
    IgnoreStatus(CloseAllTables());
}

Status Engine::Report(Status status, std::string message) {
    if (status != AE_SUCCESS) {
        lastError_ = status;
        lastErrorText_ = message.empty() ? ErrorText(status) : std::move(message);
    }
    return status;
}

cursor::TableCursor* Engine::FindTable(Handle table) {
    // An index handle stands for its table too.
    if (orders_ != nullptr) orders_->FindOrder(table, &table);
    if (table != 0 && table == lastTable_.handle) return lastTable_.cursor;
    const auto found = tables_.find(table);
    if (found == tables_.end()) return nullptr;
    lastTable_ = {table, found->second.cursor.get()};
    return lastTable_.cursor;
}

// --- connections and global settings

Status Engine::Connect26(std::string_view serverPath, std::uint16_t serverTypes,
                         Handle& connection) {
    connection = 0;
    if (serverTypes > (ADS_LOCAL_SERVER | ADS_REMOTE_SERVER | ADS_AIS_SERVER))
        return Report(AE_INVALID_OPTION);
    std::string folder = ConnectionFolder(serverPath);
    if (folder.empty()) return Report(AE_INVALID_PATH, "not a folder: " + std::string(serverPath));
    connection = nextHandle_++;
    connections_[connection] = Connection{std::move(folder), serverTypes};
    return AE_SUCCESS;
}

Status Engine::Connect60(std::string_view serverPath, std::uint16_t serverTypes,
                         std::string_view userName, std::string_view password,
                         std::uint32_t /*options*/, Handle& connection) {
    // A ".add" file is a data dictionary, whose users log in; plain folders carry no users and
    // take the credentials as given.
    const std::string path = platform::Trim(serverPath);
    if (platform::EqualsNoCase(std::filesystem::path(path).extension().string(), ".add"))
        return ConnectDictionary(path, userName, password, connection);
    return Connect26(serverPath, serverTypes, connection);
}

Status Engine::FindConnection25(std::string_view fullPath, Handle& connection) {
    connection = 0;
    const std::filesystem::path wanted = ConnectionLookupPath(fullPath);
    // A trailing separator leaves an empty last part, whose parent is the folder itself.
    for (const auto& [handle, entry] : connections_) {
        const std::filesystem::path folder(entry.folder);
        if (!wanted.empty() && (wanted == folder || wanted.parent_path() == folder)) {
            connection = handle;
            return AE_SUCCESS;
        }
    }
    return Report(AE_NO_CONNECTION, "no connection to " + std::string(fullPath));
}

Status Engine::Disconnect(Handle connection) {
    if (connection != 0 && !connections_.contains(connection))
        return Report(AE_INVALID_CONNECTION_HANDLE);
    // Each table closes as CloseTable closes it: its pending record is written while its
    // indexes still take the keys, then the orders (which refer to its files) go.
    std::vector<Handle> closing;
    for (const auto& [handle, table] : tables_)
        if (connection == 0 || table.connection == connection) closing.push_back(handle);
    // Each table's own failure was reported when it happened; the connection goes regardless.
    for (const Handle handle : closing) IgnoreStatus(CloseTable(handle));
    if (connection == 0) {
        connections_.clear();
    } else {
        connections_.erase(connection);
    }
    handleLongs_.erase(connection);
    return AE_SUCCESS;
}

Status Engine::GetConnectionType(Handle connection, std::uint16_t& connectionType) {
    if (!connections_.contains(connection)) return Report(AE_INVALID_CONNECTION_HANDLE);
    connectionType = ADS_LOCAL_SERVER;  // every table is opened in this process
    return AE_SUCCESS;
}

Status Engine::SetServerType(std::uint16_t serverTypes) {
    return Report(settings_.SetServerType(serverTypes));
}

Status Engine::SetDateFormat(std::string_view format) {
    return Report(settings_.SetDateFormat(format));
}

Status Engine::SetEpoch(std::uint16_t century) {
    return Report(settings_.SetEpoch(century));
}

Status Engine::ShowDeleted(bool showDeleted) {
    settings_.showDeleted = showDeleted;
    return AE_SUCCESS;
}

Status Engine::GetDeleted(bool& showDeleted) {
    showDeleted = settings_.showDeleted;
    return AE_SUCCESS;
}

Status Engine::GetVersion(std::uint32_t& major, std::uint32_t& minor, std::string& letter,
                          std::string& description) {
    major = kEngineMajor;
    minor = kEngineMinor;
    letter = "a";
    description = "Fennrick embedded table engine";
    return AE_SUCCESS;
}

Status Engine::GetLastError(Status& errorCode, std::string& text) {
    errorCode = lastError_;
    text = lastErrorText_;
    return AE_SUCCESS;
}

Status Engine::GetErrorString(Status errorCode, std::string& text) {
    text = ErrorText(errorCode);
    if (text.empty()) return Report(AE_UNKNOWN_ERRCODE);
    return AE_SUCCESS;
}

Status Engine::GetServerTime(Handle connection, std::string& date, std::int32_t& time,
                             std::string& timeText) {
    if (!connections_.contains(connection)) return Report(AE_INVALID_CONNECTION_HANDLE);
    const std::time_t now = std::time(nullptr);
    const std::tm local = platform::LocalTime(now);
    date = expr::FormatDate(
        expr::JulianFromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
        settings_.dates);
    time = ((local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec) * 1000;
    char text[16];
    const int hour12 = local.tm_hour % 12 == 0 ? 12 : local.tm_hour % 12;
    std::snprintf(text, sizeof text, "%02d:%02d:%02d %s", hour12 % 100, local.tm_min % 100,
                  local.tm_sec % 100, local.tm_hour < 12 ? "AM" : "PM");
    timeText = text;
    return AE_SUCCESS;
}

Status Engine::CloseAllTables() {
    // Not one by one through tables_ itself: CloseTable erases from it.
    std::vector<Handle> closing;
    for (const auto& [handle, table] : tables_) closing.push_back(handle);
    Status first = AE_SUCCESS;
    for (const Handle handle : closing) {
        const Status status = CloseTable(handle);
        if (first == AE_SUCCESS) first = status;
    }
    return first;
}

Status Engine::GetAllTables(std::vector<Handle>& tables) {
    tables.clear();
    for (const auto& [handle, table] : tables_) tables.push_back(handle);
    return AE_SUCCESS;
}

Status Engine::GetNumOpenTables(std::uint16_t& count) {
    count = static_cast<std::uint16_t>(tables_.size());
    return AE_SUCCESS;
}

Status Engine::CacheOpenCursors(std::uint16_t count) {
    cachedCursors_ = count;  // kept for SQL cursors
    return AE_SUCCESS;
}

Status Engine::RegisterCallbackFunction(ProgressCallback callback, std::uint32_t callbackId) {
    progress_ = std::move(callback);
    progressId_ = callbackId;
    return AE_SUCCESS;
}

Status Engine::ClearCallbackFunction() {
    progress_ = nullptr;
    return AE_SUCCESS;
}

// --- tables

Status Engine::OpenPath(Handle connection, std::string_view name, std::string& path) {
    std::string folder;
    if (connection != 0) {
        const auto found = connections_.find(connection);
        if (found == connections_.end()) return Report(AE_INVALID_CONNECTION_HANDLE);
        folder = found->second.folder;
    }
    if (platform::Trim(name).empty()) return Report(AE_INVALID_PATH, "no table name");
    if (std::optional<std::string> listed = DictionaryTablePath(connection, name)) {
        path = *listed;
        return AE_SUCCESS;
    }
    path = ResolveTablePath(folder, platform::Trim(name));
    return AE_SUCCESS;
}

bool Engine::AliasTaken(Handle connection, const std::string& alias) const {
    for (const auto& [handle, table] : tables_) {
        if (table.connection == connection && table.cursor->alias() == alias) return true;
    }
    return false;
}

Status Engine::Register(Handle connection, std::unique_ptr<cursor::TableCursor> cursor,
                        std::uint32_t options, Handle& table) {
    table = nextHandle_++;
    tables_[table] = OpenedTable{connection, std::move(cursor), options};
    return AE_SUCCESS;
}

namespace {

Status CheckOpenKinds(std::uint16_t tableType, std::uint16_t charType, std::uint16_t lockType) {
    if (tableType != ADS_CDX && tableType != ADS_VFP && tableType != ADS_DEFAULT)
        return AE_INVALID_TABLETYPE;
    if (charType != ADS_ANSI && charType != ADS_DEFAULT) return AE_INVALID_CHARSETTYPE;
    if (lockType != ADS_COMPATIBLE_LOCKING && lockType != ADS_PROPRIETARY_LOCKING)
        return AE_INVALID_LOCKTYPE;
    return AE_SUCCESS;
}

std::string AliasFor(std::string_view alias, const std::string& path) {
    const std::string trimmed = platform::Trim(alias);
    return platform::UpperCase(trimmed.empty() ? std::filesystem::path(path).stem().string()
                                               : trimmed);
}

}  // namespace

Status Engine::CreateTable(Handle connection, std::string_view name, std::string_view alias,
                           std::uint16_t tableType, std::uint16_t charType, std::uint16_t lockType,
                           std::uint16_t /*checkRights*/, std::uint16_t memoSize,
                           std::string_view fields, Handle& table) {
    table = 0;
    if (Status status = CheckOpenKinds(tableType, charType, lockType); status != AE_SUCCESS)
        return Report(status);
    if (memoSize != 0 && (memoSize < 32 || memoSize > 8192))
        return Report(AE_INVALID_MEMO_BLOCK_SIZE);
    std::vector<dbf::Field> parsed;
    if (std::string problem = dbf::ParseFieldList(fields, parsed); !problem.empty())
        return Report(AE_INVALID_FIELDDEF, problem);
    std::string path;
    if (Status status = OpenPath(connection, name, path); status != AE_SUCCESS) return status;
    const std::string tableAlias = AliasFor(alias, path);
    if (AliasTaken(connection, tableAlias)) return Report(AE_DUPLICATE_ALIAS);
    std::string message;
    if (Status status = dbf::TableFile::Create(path, std::move(parsed), memoSize, message);
        status != AE_SUCCESS)
        return Report(status, message);
    auto cursor = std::make_unique<cursor::TableCursor>(settings_);
    if (Status status =
            cursor->Open(path, tableAlias, {.exclusive = true, .readOnly = false}, message);
        status != AE_SUCCESS)
        return Report(status, message);
    if (Status status = Register(connection, std::move(cursor), ADS_EXCLUSIVE, table);
        status != AE_SUCCESS)
        return status;
    return AttachIndexes(table);
}

Status Engine::OpenTable(Handle connection, std::string_view name, std::string_view alias,
                         std::uint16_t tableType, std::uint16_t charType, std::uint16_t lockType,
                         std::uint16_t /*checkRights*/, std::uint32_t options, Handle& table) {
    table = 0;
    if (Status status = CheckOpenKinds(tableType, charType, lockType); status != AE_SUCCESS)
        return Report(status);
    if ((options & ~(ADS_EXCLUSIVE | ADS_READONLY | ADS_SHARED)) != 0 ||
        ((options & ADS_EXCLUSIVE) && (options & ADS_SHARED)))
        return Report(AE_INVALID_OPTION);
    return OpenTableFile(connection, name, alias, options, true, table);
}

Status Engine::OpenTableWithoutIndexes(Handle connection, std::string_view name, Handle& table) {
    // Read-only: writes would leave the closed index's tags behind.
    return OpenTableFile(connection, name, "", ADS_READONLY | ADS_SHARED, false, table);
}

Status Engine::OpenTableFile(Handle connection, std::string_view name, std::string_view alias,
                             std::uint32_t options, bool structural, Handle& table) {
    table = 0;
    std::string path;
    if (Status status = OpenPath(connection, name, path); status != AE_SUCCESS) return status;
    const std::string tableAlias = AliasFor(alias, path);
    if (AliasTaken(connection, tableAlias)) return Report(AE_DUPLICATE_ALIAS);
    auto cursor = std::make_unique<cursor::TableCursor>(settings_);
    std::string message;
    const dbf::OpenRequest request{.exclusive = (options & ADS_EXCLUSIVE) != 0,
                                   .readOnly = (options & ADS_READONLY) != 0};
    if (Status status = cursor->Open(path, tableAlias, request, message); status != AE_SUCCESS)
        return Report(status, message);
    if (Status status = Register(connection, std::move(cursor), options, table);
        status != AE_SUCCESS)
        return status;
    if (Status status = AttachIndexes(table, structural); status != AE_SUCCESS) {
        const std::string text = lastErrorText_;
        IgnoreStatus(CloseTable(table));  // the index failure is the one reported
        table = 0;
        return Report(status, text);
    }
    ApplyConnectionPassword(table);
    return AE_SUCCESS;
}

Status Engine::CloseTable(Handle table) {
    const auto found = tables_.find(table);
    if (found == tables_.end()) return Report(AE_INVALID_TABLE_HANDLE);
    const Status status = found->second.cursor->Flush();
    DetachIndexes(table);
    if (lastTable_.handle == table) lastTable_ = {};
    tables_.erase(found);
    handleLongs_.erase(table);
    return Report(status);
}

Status Engine::GetTableHandle(Handle connection, std::string_view name, Handle& table) {
    table = 0;
    const std::string wanted = platform::UpperCase(platform::Trim(name));
    for (const auto& [handle, entry] : tables_) {
        if (connection != 0 && entry.connection != connection) continue;
        const std::filesystem::path path(entry.cursor->file().path());
        if (entry.cursor->alias() == wanted ||
            platform::UpperCase(path.filename().string()) == wanted ||
            platform::UpperCase(path.stem().string()) == wanted) {
            table = handle;
            return AE_SUCCESS;
        }
    }
    return Report(AE_TABLE_NOT_FOUND, "no open table " + std::string(name));
}

Status Engine::GetTableAlias(Handle table, std::string& alias) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    alias = cursor->alias();
    return AE_SUCCESS;
}

Status Engine::GetTableFilename(Handle table, std::uint16_t nameOption, std::string& name) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    const std::filesystem::path path(cursor->file().path());
    switch (nameOption) {
        case ADS_BASENAME:
            name = path.stem().string();
            return AE_SUCCESS;
        case ADS_BASENAMEANDEXT:
            name = path.filename().string();
            return AE_SUCCESS;
        case ADS_FULLPATHNAME:
            name = std::filesystem::absolute(path).string();
            return AE_SUCCESS;
        default:
            return Report(AE_INVALID_OPTION);
    }
}

Status Engine::GetTableOpenOptions(Handle table, std::uint32_t& options) {
    const auto found = tables_.find(table);
    if (found == tables_.end()) return Report(AE_INVALID_TABLE_HANDLE);
    options = found->second.options;
    return AE_SUCCESS;
}

Status Engine::IsTableExclusive(Handle table, bool& exclusive) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    exclusive = cursor->file().exclusive();
    return AE_SUCCESS;
}

Status Engine::PackTable(Handle table) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    if (progress_ && progress_(0, progressId_) != 0) return AE_SUCCESS;
    std::string message;
    const Status status = cursor->Pack(message);
    if (progress_) progress_(100, progressId_);
    return Report(status, message);
}

Status Engine::ZapTable(Handle table) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    std::string message;
    const Status status = cursor->Zap(message);
    return Report(status, message);
}

Status Engine::FlushFileBuffers(Handle table) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    return Report(cursor->Flush());
}

Status Engine::CacheRecords(Handle table, std::uint16_t records) {
    cursor::TableCursor* cursor = FindTable(table);
    if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
    cursor->file().SetReadAhead(records);
    return AE_SUCCESS;
}

Status Engine::SetHandleLong(Handle object, std::uint32_t value) {
    if (!tables_.contains(object) && !connections_.contains(object))
        return Report(AE_INVALID_HANDLE);
    handleLongs_[object] = value;
    return AE_SUCCESS;
}

Status Engine::GetHandleLong(Handle object, std::uint32_t& value) {
    if (!tables_.contains(object) && !connections_.contains(object))
        return Report(AE_INVALID_HANDLE);
    const auto found = handleLongs_.find(object);
    value = found == handleLongs_.end() ? 0 : found->second;
    return AE_SUCCESS;
}

Status Engine::GetHandleType(Handle object, std::uint16_t& type) {
    if (tables_.contains(object)) {
        type = ADS_TABLE;
    } else if (connections_.contains(object)) {
        type = ADS_CONNECTION;
    } else {
        return Report(AE_INVALID_HANDLE);
    }
    return AE_SUCCESS;
}

}  // namespace fnrk::engine

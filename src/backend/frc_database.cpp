#include "backend/frc_database.hpp"

#include <chrono>
#include <ctime>
#include <filesystem>

#include "engine/error_text.hpp"
#include "platform/local_time.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

FRCDatabase::FRCDatabase() = default;

FRCDatabase::~FRCDatabase() {
    // Cursors, then tables, then the sessions they use.
    if (statements_) statements_->CloseAll();
    statements_.reset();
    tables_.clear();
    connections_.clear();
}

Status FRCDatabase::Report(Status status, std::string message) {
    // Success leaves the last failure to be asked for.
    if (status != AE_SUCCESS) {
        lastError_ = status;
        lastErrorText_ = message.empty() ? ErrorText(status) : std::move(message);
    }
    return status;
}

Handle FRCDatabase::NewHandle() {
    // Handles are never reused within a session, so a stale one is never someone else's; they
    // stay within the backend's range, which ends below the engine's handles.
    if (issued_ + 1 >= kBackendHandleRange ||
        handleStart_ + issued_ + 1 >= engine::kEngineHandleStart)
        return 0;
    return handleStart_ + ++issued_;
}

FRCDatabase::Connection* FRCDatabase::FindConnection(Handle connection) {
    auto found = connections_.find(connection);
    return found == connections_.end() ? nullptr : found->second.get();
}

FRCDatabase::OpenTableEntry* FRCDatabase::FindTable(Handle table) {
    auto found = tables_.find(table);
    return found == tables_.end() ? nullptr : &found->second;
}

Status FRCDatabase::ResolveTable(Handle table, OpenTableEntry*& entry) {
    entry = FindTable(table);
    return entry ? AE_SUCCESS : Report(AE_INVALID_TABLE_HANDLE);
}

Status FRCDatabase::ResolveIndex(Handle index, Target& target) {
    auto found = indexes_.find(index);
    if (found == indexes_.end()) return Report(AE_INVALID_INDEX_HANDLE);
    target.handle = found->second.table;
    target.entry = FindTable(target.handle);
    auto position =
        target.entry ? target.entry->table->layout().TagIndex(found->second.tag) : std::nullopt;
    if (!position) return Report(AE_INVALID_INDEX_HANDLE);
    target.order = *position;
    return AE_SUCCESS;
}

Status FRCDatabase::Resolve(Handle object, Target& target) {
    if ((target.entry = FindTable(object))) {
        target.handle = object;
        target.order.reset();
        return AE_SUCCESS;
    }
    if (indexes_.contains(object)) return ResolveIndex(object, target);
    return Report(AE_INVALID_TABLE_HANDLE);
}

Status FRCDatabase::ResolveField(Handle table, std::string_view field, OpenTableEntry*& entry,
                                 const dbf::Field*& found) {
    Target target;
    if (Status status = Resolve(table, target); status != AE_SUCCESS) return status;
    entry = target.entry;
    found = entry->table->FindField(field);
    return found ? AE_SUCCESS : Report(AE_INVALID_FIELDNAME, std::string(field));
}

Handle FRCDatabase::IndexHandleFor(Handle table, const std::string& tag) {
    for (const auto& [handle, index] : indexes_) {
        if (index.table == table && index.tag == tag) return handle;
    }
    Handle handle = NewHandle();
    if (handle != 0) indexes_[handle] = IndexEntry{table, tag};
    return handle;
}

// --- connections

Status FRCDatabase::Connect(std::string_view path, std::uint16_t serverType, Handle& connection) {
    return Guarded([&] {
        // Archive slot 4 has a backend for the settings and the error texts, and no range.
        if (handleStart_ >= engine::kEngineHandleStart)
            return Report(AE_ALLOCATION_FAILED, "this backend owns no handle range: handles from " +
                                                    std::to_string(handleStart_) +
                                                    " are the engine's");
        std::string problem;
        auto target = ParseConnectionPath(path, problem);
        if (!target) return Report(AE_INVALID_PATH, problem);
        const SqlDialect* dialect = DialectOf(target->driver);
        if (!dialect) return Report(AE_INVALID_PATH, "unknown driver " + target->driver);
        auto added = std::make_unique<Connection>();
        added->path = path;
        added->dialect = dialect;
        added->serverType = serverType;
        added->session = dialect->Open(*target);
        added->target = std::move(*target);
        TableStore::EnsureCatalog(*added->session, *dialect);
        Handle handle = NewHandle();
        if (handle == 0) return Report(AE_ALLOCATION_FAILED, "no handles left");
        connections_[handle] = std::move(added);
        connection = handle;
        return AE_SUCCESS;
    });
}

Status FRCDatabase::Connect26(std::string_view serverPath, std::uint16_t serverTypes,
                              Handle& connection) {
    return Connect(serverPath, serverTypes, connection);
}

Status FRCDatabase::Connect60(std::string_view serverPath, std::uint16_t serverTypes,
                              std::string_view userName, std::string_view password, std::uint32_t,
                              Handle& connection) {
    // A ".add" file is a data dictionary, whose users log in; otherwise users and passwords
    // belong to the SQL server's own configuration.
    const std::string path = platform::Trim(serverPath);
    if (platform::EqualsNoCase(std::filesystem::path(path).extension().string(), ".add"))
        return ConnectDictionary(path, userName, password, connection);
    return Connect(serverPath, serverTypes, connection);
}

Status FRCDatabase::FindConnection25(std::string_view fullPath, Handle& connection) {
    for (const auto& [handle, open] : connections_) {
        if (open->path == fullPath) {
            connection = handle;
            return AE_SUCCESS;
        }
    }
    return Report(AE_NO_CONNECTION, "no connection to " + WithoutPassword(fullPath));
}

void FRCDatabase::CloseTableEntry(Handle table) {
    std::erase_if(indexes_, [&](const auto& index) { return index.second.table == table; });
    tables_.erase(table);
}

Status FRCDatabase::Disconnect(Handle connection) {
    if (connection != 0 && !FindConnection(connection)) return Report(AE_INVALID_CONNECTION_HANDLE);
    if (statements_) statements_->CloseAll(connection);
    std::vector<Handle> closing;
    for (const auto& [handle, entry] : tables_) {
        if (connection == 0 || entry.connection == connection) closing.push_back(handle);
    }
    for (Handle handle : closing) CloseTableEntry(handle);
    if (connection == 0) {
        connections_.clear();
    } else {
        connections_.erase(connection);
    }
    return AE_SUCCESS;
}

Status FRCDatabase::GetConnectionType(Handle connection, std::uint16_t& connectionType) {
    Connection* open = FindConnection(connection);
    if (!open) return Report(AE_INVALID_CONNECTION_HANDLE);
    connectionType = open->serverType;
    return AE_SUCCESS;
}

// --- settings

Status FRCDatabase::SetServerType(std::uint16_t serverTypes) {
    return Report(settings_.SetServerType(serverTypes));
}

Status FRCDatabase::SetDateFormat(std::string_view format) {
    return Report(settings_.SetDateFormat(format));
}

Status FRCDatabase::SetEpoch(std::uint16_t century) {
    return Report(settings_.SetEpoch(century));
}

Status FRCDatabase::ShowDeleted(bool showDeleted) {
    settings_.showDeleted = showDeleted;
    return AE_SUCCESS;
}

Status FRCDatabase::GetDeleted(bool& showDeleted) {
    showDeleted = settings_.showDeleted;
    return AE_SUCCESS;
}

Status FRCDatabase::GetVersion(std::uint32_t& major, std::uint32_t& minor, std::string& letter,
                               std::string& description) {
    major = 1;
    minor = 0;
    letter.clear();
    description = "Fennrick SQL backend";
    return AE_SUCCESS;
}

Status FRCDatabase::GetLastError(Status& errorCode, std::string& text) {
    errorCode = lastError_;
    text = lastErrorText_;
    return AE_SUCCESS;
}

Status FRCDatabase::GetErrorString(Status errorCode, std::string& text) {
    text = ErrorText(errorCode);
    return text.empty() ? Report(AE_UNKNOWN_ERRCODE) : AE_SUCCESS;
}

Status FRCDatabase::GetServerTime(Handle connection, std::string& date, std::int32_t& time,
                                  std::string& timeText) {
    if (!FindConnection(connection)) return Report(AE_INVALID_CONNECTION_HANDLE);
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const std::tm local = platform::LocalTime(seconds);
    date = expr::FormatDate(
        expr::JulianFromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
        settings_.dates);
    time = ((local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec) * 1000;
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);
    timeText = text;
    return AE_SUCCESS;
}

Status FRCDatabase::CloseAllTables() {
    indexes_.clear();
    tables_.clear();
    return AE_SUCCESS;
}

Status FRCDatabase::GetAllTable(std::vector<Handle>& tables) {
    tables.clear();
    for (const auto& [handle, entry] : tables_) tables.push_back(handle);
    return AE_SUCCESS;
}

Status FRCDatabase::GetAllTables(std::vector<Handle>& tables) {
    return GetAllTable(tables);
}

Status FRCDatabase::GetNumOpenTables(std::uint16_t& count) {
    count = static_cast<std::uint16_t>(tables_.size());
    return AE_SUCCESS;
}

Status FRCDatabase::CacheOpenCursors(std::uint16_t) {
    return AE_SUCCESS;
}

Status FRCDatabase::RegisterCallbackFunction(ProgressCallback callback, std::uint32_t) {
    callback_ = std::move(callback);
    return AE_SUCCESS;
}

Status FRCDatabase::ClearCallbackFunction() {
    callback_ = nullptr;
    return AE_SUCCESS;
}

Status FRCDatabase::MgGetConfigInfo(Handle, MgmtConfig& config) {
    // A SQL database has no figures of the engine's server; the record says so with zeros.
    config = MgmtConfig{};
    config.lNumConnections = static_cast<std::int32_t>(connections_.size());
    config.lNumTables = static_cast<std::int32_t>(tables_.size());
    config.lNumIndexes = static_cast<std::int32_t>(indexes_.size());
    return AE_SUCCESS;
}

}  // namespace fnrk::backend

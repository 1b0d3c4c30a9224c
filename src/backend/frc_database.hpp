#pragma once

// FRCDatabase: the engine's operation set over SQL databases (SQLite embedded; the dialect
// decides the engine). Each connection opens one database; tables, index tags, records and
// locks live in it (see TableStore and RecordLocks). Handles are handed out from handleStart
// up, within the backend's range.
//
// Not offered (AE_NOT_IMPLEMENTED): encryption, SQL statements and data dictionaries; a SQL
// dossier keeps its data in the database's own care.

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "backend/backend_table.hpp"
#include "backend/sql_backend.hpp"
#include "backend/sql_dialect.hpp"
#include "engine/cursor/engine_settings.hpp"

namespace fnrk::backend {

class FRCDatabase final : public SqlBackend {
  public:
    using MgmtConfig = engine::MgmtConfig;
    using ProgressCallback = engine::ProgressCallback;

    FRCDatabase();
    ~FRCDatabase() override;

    Handle handleStart() const override { return handleStart_; }
    void handleStart(Handle start) override { handleStart_ = start; }
    std::string TypeOfConnection() const override { return typeOfConnection_; }
    void TypeOfConnection(std::string_view type) override { typeOfConnection_ = type; }

    Status TableCopy(Handle connection, std::string_view from, std::string_view to) override;
    Status TableExists(Handle connection, std::string_view name, bool& exists) override;
    Status DropTable(Handle connection, std::string_view name) override;
    Status GetAllTable(std::vector<Handle>& tables) override;
    Status InitCopyTableContents(Handle to) override;
    Status CloseCopyTableContents(Handle to) override;
    Status RefreshTable(Handle table) override;

    // --- connections and global settings
    Status Connect26(std::string_view serverPath, std::uint16_t serverTypes,
                     Handle& connection) override;
    Status Connect60(std::string_view serverPath, std::uint16_t serverTypes,
                     std::string_view userName, std::string_view password, std::uint32_t options,
                     Handle& connection) override;
    Status FindConnection25(std::string_view fullPath, Handle& connection) override;
    Status Disconnect(Handle connection) override;
    Status GetConnectionType(Handle connection, std::uint16_t& connectionType) override;
    Status SetServerType(std::uint16_t serverTypes) override;
    Status SetDateFormat(std::string_view format) override;
    Status SetEpoch(std::uint16_t century) override;
    Status ShowDeleted(bool showDeleted) override;
    Status GetDeleted(bool& showDeleted) override;
    Status GetVersion(std::uint32_t& major, std::uint32_t& minor, std::string& letter,
                      std::string& description) override;
    Status GetLastError(Status& errorCode, std::string& text) override;
    Status GetErrorString(Status errorCode, std::string& text) override;
    Status GetServerTime(Handle connection, std::string& date, std::int32_t& time,
                         std::string& timeText) override;
    Status CloseAllTables() override;
    Status GetAllTables(std::vector<Handle>& tables) override;
    Status GetNumOpenTables(std::uint16_t& count) override;
    Status CacheOpenCursors(std::uint16_t count) override;
    Status RegisterCallbackFunction(ProgressCallback callback, std::uint32_t callbackId) override;
    Status ClearCallbackFunction() override;
    Status MgGetConfigInfo(Handle managementConnection, MgmtConfig& config) override;

    // --- tables
    Status CreateTable(Handle connection, std::string_view name, std::string_view alias,
                       std::uint16_t tableType, std::uint16_t charType, std::uint16_t lockType,
                       std::uint16_t checkRights, std::uint16_t memoSize, std::string_view fields,
                       Handle& table) override;
    Status OpenTable(Handle connection, std::string_view name, std::string_view alias,
                     std::uint16_t tableType, std::uint16_t charType, std::uint16_t lockType,
                     std::uint16_t checkRights, std::uint32_t options, Handle& table) override;
    Status CloseTable(Handle table) override;
    Status GetTableHandle(Handle connection, std::string_view name, Handle& table) override;
    Status GetTableAlias(Handle table, std::string& alias) override;
    Status GetTableFilename(Handle table, std::uint16_t nameOption, std::string& name) override;
    Status GetTableOpenOptions(Handle table, std::uint32_t& options) override;
    Status IsTableExclusive(Handle table, bool& exclusive) override;
    Status GetRecordCount(Handle table, std::uint16_t filterOption, std::uint32_t& count) override;
    Status GetRecordLength(Handle table, std::uint32_t& length) override;
    Status GetNumFields(Handle table, std::uint16_t& count) override;
    Status GetFieldName(Handle table, std::uint16_t fieldNumber, std::string& name) override;
    Status GetFieldNum(Handle table, std::string_view field, std::uint16_t& number) override;
    Status GetFieldType(Handle table, std::string_view field, std::uint16_t& type) override;
    Status GetFieldLength(Handle table, std::string_view field, std::uint32_t& length) override;
    Status GetFieldDecimals(Handle table, std::string_view field, std::uint16_t& decimals) override;
    Status GetFieldOffset(Handle table, std::string_view field, std::uint32_t& offset) override;
    Status PackTable(Handle table) override;
    Status ZapTable(Handle table) override;
    Status FlushFileBuffers(Handle table) override;
    Status CacheRecords(Handle table, std::uint16_t records) override;
    Status SetHandleLong(Handle object, std::uint32_t value) override;
    Status GetHandleLong(Handle object, std::uint32_t& value) override;
    Status GetHandleType(Handle object, std::uint16_t& type) override;
    // Copies the records visible in `from` (filterOption as GetRecordCount) into `to`.
    Status CopyTableContents(Handle from, Handle to, std::uint16_t filterOption) override;

    // --- records and navigation
    Status GotoTop(Handle object) override;
    Status GotoBottom(Handle object) override;
    Status GotoRecord(Handle table, std::uint32_t record) override;
    Status Skip(Handle object, std::int32_t records) override;
    Status AtBOF(Handle table, bool& atBof) override;
    Status AtEOF(Handle table, bool& atEof) override;
    Status GetRecordNum(Handle table, std::uint16_t filterOption, std::uint32_t& record) override;
    Status AppendRecord(Handle table) override;
    Status DeleteRecord(Handle table) override;
    Status RecallRecord(Handle table) override;
    Status IsRecordDeleted(Handle table, bool& deleted) override;
    Status IsRecordVisible(Handle object, bool& visible) override;
    // A memo field's bytes in the record say only whether there is a memo (see MarkMemo); SetRecord
    // empties the memo of a field whose bytes name none and keeps the record's own otherwise.
    Status GetRecord(Handle table, std::string& record) override;
    Status SetRecord(Handle object, std::string_view record) override;

    // --- fields (by name; "ALIAS->" prefixes are not accepted here)
    Status GetString(Handle table, std::string_view field, std::string& value,
                     std::uint16_t trimOption) override;
    Status SetString(Handle object, std::string_view field, std::string_view value) override;
    Status GetShort(Handle table, std::string_view field, std::int16_t& value) override;
    Status SetShort(Handle object, std::string_view field, std::int16_t value) override;
    Status GetLong(Handle table, std::string_view field, std::int32_t& value) override;
    Status SetLong(Handle object, std::string_view field, std::int32_t value) override;
    Status GetDouble(Handle table, std::string_view field, double& value) override;
    Status SetDouble(Handle object, std::string_view field, double value) override;
    Status GetLogical(Handle table, std::string_view field, bool& value) override;
    Status SetLogical(Handle object, std::string_view field, bool value) override;
    // Dates as text in the format set by SetDateFormat (epoch applies to two-digit years).
    Status GetDate(Handle table, std::string_view field, std::string& date) override;
    Status SetDate(Handle object, std::string_view field, std::string_view date) override;
    Status GetJulian(Handle table, std::string_view field, std::int32_t& julian) override;
    Status SetJulian(Handle object, std::string_view field, std::int32_t julian) override;
    Status GetMemoLength(Handle table, std::string_view field, std::uint32_t& length) override;
    Status GetMemoDataType(Handle table, std::string_view field, std::uint16_t& type) override;
    Status GetBinary(Handle table, std::string_view field, std::uint32_t offset,
                     std::uint32_t maxLength, std::string& data) override;
    Status GetBinaryLength(Handle table, std::string_view field, std::uint32_t& length) override;
    Status SetBinary(Handle table, std::string_view field, std::uint16_t binaryType,
                     std::uint32_t totalLength, std::uint32_t offset,
                     std::string_view data) override;

    // --- filters and searches
    Status SetFilter(Handle table, std::string_view expression) override;
    Status GetFilter(Handle table, std::string& expression) override;
    Status ClearFilter(Handle table) override;
    Status SetAOF(Handle table, std::string_view expression, std::uint16_t resolveOptions) override;
    Status GetAOF(Handle table, std::string& expression) override;
    Status GetAOFOptLevel(Handle table, std::uint16_t& level,
                          std::string& nonOptimizedPart) override;
    Status ClearAOF(Handle table) override;
    Status Locate(Handle table, std::string_view expression, bool forward, bool& found) override;
    Status Continue(Handle table, bool& found) override;

    // --- locks
    Status LockRecord(Handle table, std::uint32_t record) override;
    Status UnlockRecord(Handle table, std::uint32_t record) override;
    Status LockTable(Handle table) override;
    Status UnlockTable(Handle table) override;
    Status IsTableLocked(Handle table, bool& locked) override;
    Status IsRecordLocked(Handle table, std::uint32_t record, bool& locked) override;
    Status GetNumLocks(Handle table, std::uint16_t& count) override;

    // --- indexes. Seek and scope keys are bytes: text for ADS_STRINGKEY, the 8 bytes of a
    // host-order double for ADS_DOUBLEKEY, the index's own key bytes for ADS_RAWKEY.
    Status CreateIndex(Handle object, std::string_view fileName, std::string_view tag,
                       std::string_view expression, std::string_view condition,
                       std::string_view whileCondition, std::uint32_t options,
                       Handle& index) override;
    Status OpenIndex(Handle table, std::string_view fileName,
                     std::vector<Handle>& indexes) override;
    Status CloseIndex(Handle index) override;
    Status GetIndexHandle(Handle table, std::string_view orderName, Handle& index) override;
    Status GetIndexHandleByOrder(Handle table, std::uint16_t order, Handle& index) override;
    Status GetIndexOrderByHandle(Handle index, std::uint16_t& order) override;
    Status GetAllIndexes(Handle table, std::vector<Handle>& indexes) override;
    Status GetIndexName(Handle index, std::string& name) override;
    Status GetIndexExpr(Handle index, std::string& expression) override;
    Status GetIndexCondition(Handle index, std::string& condition) override;
    Status GetKeyLength(Handle index, std::uint16_t& length) override;
    Status IsIndexDescending(Handle index, bool& descending) override;
    Status IsIndexCompound(Handle index, bool& compound) override;
    Status IsIndexUnique(Handle index, bool& unique) override;
    Status GetKeyCount(Handle index, std::uint16_t filterOption, std::uint32_t& count) override;
    Status ExtractKey(Handle index, std::string& key) override;
    Status Seek(Handle index, std::string_view key, std::uint16_t dataType, std::uint16_t seekType,
                bool& found) override;
    Status SeekLast(Handle index, std::string_view key, std::uint16_t dataType,
                    bool& found) override;
    Status SetScope(Handle index, std::uint16_t scopeOption, std::string_view scope,
                    std::uint16_t dataType) override;
    Status GetScope(Handle index, std::uint16_t scopeOption, std::string& scope) override;
    Status ClearScope(Handle index, std::uint16_t scopeOption) override;
    Status GetRelKeyPos(Handle index, double& position) override;
    Status SetRelKeyPos(Handle index, double position) override;
    Status Reindex(Handle object) override;

    // --- encryption
    Status EnableEncryption(Handle table, std::string_view password) override;
    Status EncryptTable(Handle table) override;
    Status DecryptTable(Handle table) override;
    Status IsTableEncrypted(Handle table, bool& encrypted) override;

    // --- SQL statements; a cursor handle works with every table operation above
    Status CreateSQLStatement(Handle connection, Handle& statement) override;
    Status PrepareSQL(Handle statement, std::string_view sql) override;
    Status ExecuteSQL(Handle statement, Handle& cursor) override;
    Status ExecuteSQLDirect(Handle statement, std::string_view sql, Handle& cursor) override;
    Status GetSQLStatementHandle(Handle cursor, Handle& statement) override;
    Status ClearSQLParams(Handle statement) override;
    Status CloseSQLStatement(Handle statement) override;
    Status StmtSetTableRights(Handle statement, std::uint16_t checkRights) override;
    Status StmtSetTableReadOnly(Handle statement, std::uint16_t readOnly) override;
    Status StmtSetTableLockType(Handle statement, std::uint16_t lockType) override;
    Status StmtSetTableCharType(Handle statement, std::uint16_t charType) override;
    Status StmtSetTableType(Handle statement, std::uint16_t tableType) override;
    Status StmtEnableEncryption(Handle statement, std::string_view password) override;
    Status StmtSetTablePassword(Handle statement, std::string_view tableName,
                                std::string_view password) override;

    // --- data dictionaries
    Status DDCreate(std::string_view dictionaryPath, std::uint16_t encrypt,
                    std::string_view description, Handle& dictionary) override;
    Status DDAddTable(Handle dictionary, std::string_view tableName, std::string_view tablePath,
                      std::uint16_t tableType, std::uint16_t charType, std::string_view indexFiles,
                      std::string_view comments) override;
    Status DDAddView(Handle dictionary, std::string_view name, std::string_view comments,
                     std::string_view sql) override;
    Status DDCreateUser(Handle dictionary, std::string_view groupName, std::string_view userName,
                        std::string_view password, std::string_view description) override;
    Status DDSetDatabaseProperty(Handle dictionary, std::uint16_t propertyId,
                                 std::string_view value) override;
    Status DDSetUserProperty(Handle dictionary, std::string_view userName, std::uint16_t propertyId,
                             std::string_view value) override;

  private:
    struct Connection {
        std::string path;
        ConnectionTarget target;
        const SqlDialect* dialect = nullptr;
        std::unique_ptr<SqlSession> session;
        std::uint16_t serverType = engine::ADS_LOCAL_SERVER;
    };
    struct OpenTableEntry {
        Handle connection = 0;
        std::string alias;
        std::string fileName;
        std::uint32_t handleLong = 0;
        std::unique_ptr<BackendTable> table;
    };
    struct IndexEntry {
        Handle table = 0;
        std::string tag;
    };
    // A table, or a table walked in a tag's order (index handle).
    struct Target {
        Handle handle = 0;  // the table's handle
        OpenTableEntry* entry = nullptr;
        Order order;
        BackendTable& table() const { return *entry->table; }
    };

    template <class Call>
    Status Guarded(Call call);
    // Resolve the handle, then run the body and report its status: `body(table, order)` for a
    // table or index handle, `body(table, field)` for a field of one, `body(table, tag index,
    // tag)` for an index handle.
    template <class Body>
    Status OnTable(Handle object, Body body);
    template <class Body>
    Status OnField(Handle object, std::string_view field, Body body);
    template <class Body>
    Status OnIndex(Handle index, Body body);
    Status Report(Status status, std::string message = {});
    Handle NewHandle();
    Connection* FindConnection(Handle connection);
    OpenTableEntry* FindTable(Handle table);
    // Table handles and index handles; AE_INVALID_HANDLE otherwise.
    Status Resolve(Handle object, Target& target);
    Status ResolveTable(Handle table, OpenTableEntry*& entry);
    Status ResolveIndex(Handle index, Target& target);
    Status ResolveField(Handle table, std::string_view field, OpenTableEntry*& entry,
                        const engine::dbf::Field*& found);
    Handle IndexHandleFor(Handle table, const std::string& tag);
    Status OpenByName(Handle connection, std::string_view name, std::string_view alias,
                      std::uint32_t options, Handle& table);
    Status Connect(std::string_view path, std::uint16_t serverType, Handle& connection);
    void CloseTableEntry(Handle table);

    Handle handleStart_ = 0;
    Handle issued_ = 0;
    std::string typeOfConnection_;
    engine::cursor::EngineSettings settings_;
    std::uint16_t serverType_ = engine::ADS_LOCAL_SERVER;
    ProgressCallback callback_;
    std::map<Handle, std::unique_ptr<Connection>> connections_;
    std::map<Handle, OpenTableEntry> tables_;
    std::map<Handle, IndexEntry> indexes_;
    Status lastError_ = engine::AE_SUCCESS;
    std::string lastErrorText_;
};

template <class Call>
Status FRCDatabase::Guarded(Call call) {
    try {
        return call();
    } catch (const SqlFailure& failure) {
        return Report(engine::AE_SQL_ERROR, failure.what());
    } catch (const engine::expr::ExpressionError& error) {
        return Report(engine::AE_INVALID_EXPRESSION, error.what());
    } catch (const std::bad_alloc&) {
        return Report(engine::AE_ALLOCATION_FAILED);
    }
}

template <class Body>
Status FRCDatabase::OnTable(Handle object, Body body) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != engine::AE_SUCCESS) return status;
        return Report(body(target.table(), target.order));
    });
}

template <class Body>
Status FRCDatabase::OnField(Handle object, std::string_view field, Body body) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        const engine::dbf::Field* found = nullptr;
        if (Status status = ResolveField(object, field, entry, found);
            status != engine::AE_SUCCESS) {
            return status;
        }
        return Report(body(*entry->table, *found));
    });
}

template <class Body>
Status FRCDatabase::OnIndex(Handle index, Body body) {
    return Guarded([&] {
        Target target;
        if (Status status = ResolveIndex(index, target); status != engine::AE_SUCCESS) {
            return status;
        }
        const std::size_t tag = *target.order;
        return Report(body(target.table(), tag, target.table().layout().tags[tag]));
    });
}

}  // namespace fnrk::backend

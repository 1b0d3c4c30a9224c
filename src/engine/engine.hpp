#pragma once

// The embedded table engine: the operation set over DBF / FPT files in folders, run in-process.
// It maps handles to connections and open tables and hands each call to the units below
// (cursor/, dbf/, memo/, lock/, expr/, order/). SQL statements run through sql/, encryption
// through crypt/, data dictionaries through dictionary/.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/cursor/engine_settings.hpp"
#include "engine/cursor/table_cursor.hpp"
#include "engine/operations.hpp"

namespace fnrk::engine {

namespace crypt {
class FileCipher;
struct EncryptionMark;
}  // namespace crypt
namespace dictionary {
class DataDictionary;
}
namespace order {
class OrderRegistry;
}
namespace sql {
class StatementRegistry;
struct StatementSettings;
}  // namespace sql

class Engine final : public Operations {
  public:
    Engine();
    ~Engine() override;

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

    // The open table behind a handle, or null (for the index layer and tools of this engine).
    cursor::TableCursor* FindTable(Handle table);

  private:
    struct Connection {
        std::string folder;
        std::uint16_t serverTypes = ADS_LOCAL_SERVER;
        std::string dictionary{};  // the data dictionary's file, for a connection to one
        std::string user{};
        std::string password{};  // also opens the dictionary's encrypted tables
    };
    struct OpenedTable {
        Handle connection = 0;
        std::unique_ptr<cursor::TableCursor> cursor;
        std::uint32_t options = 0;
        std::string password{};  // given by EnableEncryption, for EncryptTable
    };

    // Remembers a failure for GetLastError and returns its status (success passes through).
    Status Report(Status status, std::string message = {});
    // Runs `body(cursor)` on an open table / `body(cursor, field)` on one of its fields by name,
    // reporting a bad handle, an unknown field or the status the body returns.
    template <class Body>
    Status WithTable(Handle table, Body body) {
        cursor::TableCursor* cursor = FindTable(table);
        if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
        return Report(body(cursor));
    }
    template <class Body>
    Status WithField(Handle table, std::string_view name, Body body) {
        cursor::TableCursor* cursor = nullptr;
        const dbf::Field* field = nullptr;
        if (Status status = TableField(table, name, cursor, field); status != AE_SUCCESS)
            return status;
        return Report(body(cursor, field));
    }
    Status TableField(Handle table, std::string_view field, cursor::TableCursor*& cursor,
                      const dbf::Field*& found);
    Status OpenPath(Handle connection, std::string_view name, std::string& path);
    Status Register(Handle connection, std::unique_ptr<cursor::TableCursor> cursor,
                    std::uint32_t options, Handle& table);
    bool AliasTaken(Handle connection, const std::string& alias) const;
    // Index orders and optimized filters (engine_index.cpp): the structural index is opened
    // with its table, and index handles navigate in their tag's order.
    order::OrderRegistry& Orders();
    Status AttachIndexes(Handle table);
    void DetachIndexes(Handle table);
    // Rewrites a table under `cipher` (null: plain) with `mark` in its header (null: none),
    // and its open index files with it (engine_crypt.cpp).
    Status RecodeTable(Handle table, std::shared_ptr<const crypt::FileCipher> cipher,
                       const crypt::EncryptionMark* mark);
    // Data dictionaries (engine_dictionary.cpp): connections to them, their tables opening by
    // name, their views in statements.
    Status ConnectDictionary(std::string_view path, std::string_view user,
                             std::string_view password, Handle& connection);
    std::optional<std::string> DictionaryTablePath(Handle connection, std::string_view name);
    std::optional<std::string> DictionaryView(Handle connection, std::string_view name);
    void ApplyConnectionPassword(Handle table);
    Status OnDictionary(
        Handle dictionary,
        const std::function<Status(dictionary::DataDictionary&, std::string&)>& body);
    // SQL statements (engine_sql.cpp).
    sql::StatementRegistry& Statements();
    Status OnStatement(Handle statement,
                       const std::function<Status(sql::StatementSettings&)>& body);

    cursor::EngineSettings settings_;
    std::map<Handle, Connection> connections_;
    std::map<Handle, OpenedTable> tables_;
    std::map<Handle, std::uint32_t> handleLongs_;
    Handle nextHandle_ = kEngineHandleStart;
    std::uint16_t serverTypes_ = ADS_LOCAL_SERVER;
    std::uint16_t cachedCursors_ = 0;
    Status lastError_ = AE_SUCCESS;
    std::string lastErrorText_;
    ProgressCallback progress_;
    std::uint32_t progressId_ = 0;
    // Shared, not unique: this header leaves the registry's type incomplete.
    std::shared_ptr<sql::StatementRegistry> statements_;
    // Declared last: it refers to the open tables and goes first.
    std::unique_ptr<order::OrderRegistry> orders_;
};

}  // namespace fnrk::engine

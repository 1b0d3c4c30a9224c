#pragma once

// The operation set of the table engine. The embedded engine (Engine) and the SQL backend
// (FRCDatabase) both offer it, with the same names, arguments and statuses, so that the dispatch
// layer can send any call to either.
//
// Conventions, carried over from the client engine's C API:
// - every operation returns a Status (0 = success, else an AE_* number of errors.hpp);
// - results come back through the last reference arguments;
// - a text buffer and its length become one std::string (UTF-8; the engine converts to and from
//   the table's Windows-1252); byte buffers (records, binary memos, raw keys) are std::string
//   bytes;
// - arrays of handles become std::vector<Handle>;
// - "object" handles accept a table or an index order, as in the C API (navigation through an
//   index handle follows that index); "table" handles accept a table or a SQL cursor.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/constants.hpp"
#include "engine/errors.hpp"
#include "engine/mgmt_config.hpp"

namespace fnrk::engine {

// Progress of long operations (index builds, packs, copies): percent done and the id given at
// registration; a non-zero return asks the operation to stop.
using ProgressCallback = std::function<std::uint32_t(std::uint16_t percent, std::uint32_t id)>;

class Operations {
  public:
    virtual ~Operations() = default;

    // --- connections and global settings
    virtual Status Connect26(std::string_view serverPath, std::uint16_t serverTypes,
                             Handle& connection) = 0;
    virtual Status Connect60(std::string_view serverPath, std::uint16_t serverTypes,
                             std::string_view userName, std::string_view password,
                             std::uint32_t options, Handle& connection) = 0;
    virtual Status FindConnection25(std::string_view fullPath, Handle& connection) = 0;
    virtual Status Disconnect(Handle connection) = 0;
    virtual Status GetConnectionType(Handle connection, std::uint16_t& connectionType) = 0;
    virtual Status SetServerType(std::uint16_t serverTypes) = 0;
    virtual Status SetDateFormat(std::string_view format) = 0;
    virtual Status SetEpoch(std::uint16_t century) = 0;
    virtual Status ShowDeleted(bool showDeleted) = 0;
    virtual Status GetDeleted(bool& showDeleted) = 0;
    virtual Status GetVersion(std::uint32_t& major, std::uint32_t& minor, std::string& letter,
                              std::string& description) = 0;
    virtual Status GetLastError(Status& errorCode, std::string& text) = 0;
    virtual Status GetErrorString(Status errorCode, std::string& text) = 0;
    virtual Status GetServerTime(Handle connection, std::string& date, std::int32_t& time,
                                 std::string& timeText) = 0;
    virtual Status CloseAllTables() = 0;
    virtual Status GetAllTables(std::vector<Handle>& tables) = 0;
    virtual Status GetNumOpenTables(std::uint16_t& count) = 0;
    virtual Status CacheOpenCursors(std::uint16_t count) = 0;
    virtual Status RegisterCallbackFunction(ProgressCallback callback,
                                            std::uint32_t callbackId) = 0;
    virtual Status ClearCallbackFunction() = 0;
    virtual Status MgGetConfigInfo(Handle managementConnection, MgmtConfig& config) = 0;

    // --- tables
    virtual Status CreateTable(Handle connection, std::string_view name, std::string_view alias,
                               std::uint16_t tableType, std::uint16_t charType,
                               std::uint16_t lockType, std::uint16_t checkRights,
                               std::uint16_t memoSize, std::string_view fields, Handle& table) = 0;
    virtual Status OpenTable(Handle connection, std::string_view name, std::string_view alias,
                             std::uint16_t tableType, std::uint16_t charType,
                             std::uint16_t lockType, std::uint16_t checkRights,
                             std::uint32_t options, Handle& table) = 0;
    virtual Status CloseTable(Handle table) = 0;
    virtual Status GetTableHandle(Handle connection, std::string_view name, Handle& table) = 0;
    virtual Status GetTableAlias(Handle table, std::string& alias) = 0;
    virtual Status GetTableFilename(Handle table, std::uint16_t nameOption, std::string& name) = 0;
    virtual Status GetTableOpenOptions(Handle table, std::uint32_t& options) = 0;
    virtual Status IsTableExclusive(Handle table, bool& exclusive) = 0;
    virtual Status GetRecordCount(Handle table, std::uint16_t filterOption,
                                  std::uint32_t& count) = 0;
    virtual Status GetRecordLength(Handle table, std::uint32_t& length) = 0;
    virtual Status GetNumFields(Handle table, std::uint16_t& count) = 0;
    virtual Status GetFieldName(Handle table, std::uint16_t fieldNumber, std::string& name) = 0;
    virtual Status GetFieldNum(Handle table, std::string_view field, std::uint16_t& number) = 0;
    virtual Status GetFieldType(Handle table, std::string_view field, std::uint16_t& type) = 0;
    virtual Status GetFieldLength(Handle table, std::string_view field, std::uint32_t& length) = 0;
    virtual Status GetFieldDecimals(Handle table, std::string_view field,
                                    std::uint16_t& decimals) = 0;
    virtual Status GetFieldOffset(Handle table, std::string_view field, std::uint32_t& offset) = 0;
    virtual Status PackTable(Handle table) = 0;
    virtual Status ZapTable(Handle table) = 0;
    virtual Status FlushFileBuffers(Handle table) = 0;
    virtual Status CacheRecords(Handle table, std::uint16_t records) = 0;
    virtual Status SetHandleLong(Handle object, std::uint32_t value) = 0;
    virtual Status GetHandleLong(Handle object, std::uint32_t& value) = 0;
    virtual Status GetHandleType(Handle object, std::uint16_t& type) = 0;
    // Copies the records visible in `from` (filterOption as GetRecordCount) into `to`.
    virtual Status CopyTableContents(Handle from, Handle to, std::uint16_t filterOption) = 0;

    // --- records and navigation
    virtual Status GotoTop(Handle object) = 0;
    virtual Status GotoBottom(Handle object) = 0;
    virtual Status GotoRecord(Handle table, std::uint32_t record) = 0;
    virtual Status Skip(Handle object, std::int32_t records) = 0;
    virtual Status AtBOF(Handle table, bool& atBof) = 0;
    virtual Status AtEOF(Handle table, bool& atEof) = 0;
    virtual Status GetRecordNum(Handle table, std::uint16_t filterOption,
                                std::uint32_t& record) = 0;
    virtual Status AppendRecord(Handle table) = 0;
    virtual Status DeleteRecord(Handle table) = 0;
    virtual Status RecallRecord(Handle table) = 0;
    virtual Status IsRecordDeleted(Handle table, bool& deleted) = 0;
    virtual Status IsRecordVisible(Handle object, bool& visible) = 0;
    virtual Status GetRecord(Handle table, std::string& record) = 0;
    virtual Status SetRecord(Handle object, std::string_view record) = 0;

    // --- fields (by name; "ALIAS->" prefixes are not accepted here)
    virtual Status GetString(Handle table, std::string_view field, std::string& value,
                             std::uint16_t trimOption) = 0;
    virtual Status SetString(Handle object, std::string_view field, std::string_view value) = 0;
    virtual Status GetShort(Handle table, std::string_view field, std::int16_t& value) = 0;
    virtual Status SetShort(Handle object, std::string_view field, std::int16_t value) = 0;
    virtual Status GetLong(Handle table, std::string_view field, std::int32_t& value) = 0;
    virtual Status SetLong(Handle object, std::string_view field, std::int32_t value) = 0;
    virtual Status GetDouble(Handle table, std::string_view field, double& value) = 0;
    virtual Status SetDouble(Handle object, std::string_view field, double value) = 0;
    virtual Status GetLogical(Handle table, std::string_view field, bool& value) = 0;
    virtual Status SetLogical(Handle object, std::string_view field, bool value) = 0;
    // Dates as text in the format set by SetDateFormat (epoch applies to two-digit years).
    virtual Status GetDate(Handle table, std::string_view field, std::string& date) = 0;
    virtual Status SetDate(Handle object, std::string_view field, std::string_view date) = 0;
    virtual Status GetJulian(Handle table, std::string_view field, std::int32_t& julian) = 0;
    virtual Status SetJulian(Handle object, std::string_view field, std::int32_t julian) = 0;
    virtual Status GetMemoLength(Handle table, std::string_view field, std::uint32_t& length) = 0;
    virtual Status GetMemoDataType(Handle table, std::string_view field, std::uint16_t& type) = 0;
    virtual Status GetBinary(Handle table, std::string_view field, std::uint32_t offset,
                             std::uint32_t maxLength, std::string& data) = 0;
    virtual Status GetBinaryLength(Handle table, std::string_view field, std::uint32_t& length) = 0;
    virtual Status SetBinary(Handle table, std::string_view field, std::uint16_t binaryType,
                             std::uint32_t totalLength, std::uint32_t offset,
                             std::string_view data) = 0;

    // --- filters and searches
    virtual Status SetFilter(Handle table, std::string_view expression) = 0;
    virtual Status GetFilter(Handle table, std::string& expression) = 0;
    virtual Status ClearFilter(Handle table) = 0;
    virtual Status SetAOF(Handle table, std::string_view expression,
                          std::uint16_t resolveOptions) = 0;
    virtual Status GetAOF(Handle table, std::string& expression) = 0;
    virtual Status GetAOFOptLevel(Handle table, std::uint16_t& level,
                                  std::string& nonOptimizedPart) = 0;
    virtual Status ClearAOF(Handle table) = 0;
    virtual Status Locate(Handle table, std::string_view expression, bool forward, bool& found) = 0;
    virtual Status Continue(Handle table, bool& found) = 0;

    // --- locks
    virtual Status LockRecord(Handle table, std::uint32_t record) = 0;
    virtual Status UnlockRecord(Handle table, std::uint32_t record) = 0;
    virtual Status LockTable(Handle table) = 0;
    virtual Status UnlockTable(Handle table) = 0;
    virtual Status IsTableLocked(Handle table, bool& locked) = 0;
    virtual Status IsRecordLocked(Handle table, std::uint32_t record, bool& locked) = 0;
    virtual Status GetNumLocks(Handle table, std::uint16_t& count) = 0;

    // --- indexes. Seek and scope keys are bytes: text for ADS_STRINGKEY, the 8 bytes of a
    // host-order double for ADS_DOUBLEKEY, the index's own key bytes for ADS_RAWKEY.
    virtual Status CreateIndex(Handle object, std::string_view fileName, std::string_view tag,
                               std::string_view expression, std::string_view condition,
                               std::string_view whileCondition, std::uint32_t options,
                               Handle& index) = 0;
    virtual Status OpenIndex(Handle table, std::string_view fileName,
                             std::vector<Handle>& indexes) = 0;
    virtual Status CloseIndex(Handle index) = 0;
    virtual Status GetIndexHandle(Handle table, std::string_view orderName, Handle& index) = 0;
    virtual Status GetIndexHandleByOrder(Handle table, std::uint16_t order, Handle& index) = 0;
    virtual Status GetIndexOrderByHandle(Handle index, std::uint16_t& order) = 0;
    virtual Status GetAllIndexes(Handle table, std::vector<Handle>& indexes) = 0;
    virtual Status GetIndexName(Handle index, std::string& name) = 0;
    virtual Status GetIndexExpr(Handle index, std::string& expression) = 0;
    virtual Status GetIndexCondition(Handle index, std::string& condition) = 0;
    virtual Status GetKeyLength(Handle index, std::uint16_t& length) = 0;
    virtual Status IsIndexDescending(Handle index, bool& descending) = 0;
    virtual Status IsIndexCompound(Handle index, bool& compound) = 0;
    virtual Status IsIndexUnique(Handle index, bool& unique) = 0;
    virtual Status GetKeyCount(Handle index, std::uint16_t filterOption, std::uint32_t& count) = 0;
    virtual Status ExtractKey(Handle index, std::string& key) = 0;
    virtual Status Seek(Handle index, std::string_view key, std::uint16_t dataType,
                        std::uint16_t seekType, bool& found) = 0;
    virtual Status SeekLast(Handle index, std::string_view key, std::uint16_t dataType,
                            bool& found) = 0;
    virtual Status SetScope(Handle index, std::uint16_t scopeOption, std::string_view scope,
                            std::uint16_t dataType) = 0;
    virtual Status GetScope(Handle index, std::uint16_t scopeOption, std::string& scope) = 0;
    virtual Status ClearScope(Handle index, std::uint16_t scopeOption) = 0;
    virtual Status GetRelKeyPos(Handle index, double& position) = 0;
    virtual Status SetRelKeyPos(Handle index, double position) = 0;
    virtual Status Reindex(Handle object) = 0;

    // --- encryption
    virtual Status EnableEncryption(Handle table, std::string_view password) = 0;
    virtual Status EncryptTable(Handle table) = 0;
    virtual Status DecryptTable(Handle table) = 0;
    virtual Status IsTableEncrypted(Handle table, bool& encrypted) = 0;

    // --- SQL statements; a cursor handle works with every table operation above
    virtual Status CreateSQLStatement(Handle connection, Handle& statement) = 0;
    virtual Status PrepareSQL(Handle statement, std::string_view sql) = 0;
    virtual Status ExecuteSQL(Handle statement, Handle& cursor) = 0;
    virtual Status ExecuteSQLDirect(Handle statement, std::string_view sql, Handle& cursor) = 0;
    virtual Status GetSQLStatementHandle(Handle cursor, Handle& statement) = 0;
    virtual Status ClearSQLParams(Handle statement) = 0;
    virtual Status CloseSQLStatement(Handle statement) = 0;
    virtual Status StmtSetTableRights(Handle statement, std::uint16_t checkRights) = 0;
    virtual Status StmtSetTableReadOnly(Handle statement, std::uint16_t readOnly) = 0;
    virtual Status StmtSetTableLockType(Handle statement, std::uint16_t lockType) = 0;
    virtual Status StmtSetTableCharType(Handle statement, std::uint16_t charType) = 0;
    virtual Status StmtSetTableType(Handle statement, std::uint16_t tableType) = 0;
    virtual Status StmtEnableEncryption(Handle statement, std::string_view password) = 0;
    virtual Status StmtSetTablePassword(Handle statement, std::string_view tableName,
                                        std::string_view password) = 0;

    // --- data dictionaries
    virtual Status DDCreate(std::string_view dictionaryPath, std::uint16_t encrypt,
                            std::string_view description, Handle& dictionary) = 0;
    virtual Status DDAddTable(Handle dictionary, std::string_view tableName,
                              std::string_view tablePath, std::uint16_t tableType,
                              std::uint16_t charType, std::string_view indexFiles,
                              std::string_view comments) = 0;
    virtual Status DDAddView(Handle dictionary, std::string_view name, std::string_view comments,
                             std::string_view sql) = 0;
    virtual Status DDCreateUser(Handle dictionary, std::string_view groupName,
                                std::string_view userName, std::string_view password,
                                std::string_view description) = 0;
    virtual Status DDSetDatabaseProperty(Handle dictionary, std::uint16_t propertyId,
                                         std::string_view value) = 0;
    virtual Status DDSetUserProperty(Handle dictionary, std::string_view userName,
                                     std::uint16_t propertyId, std::string_view value) = 0;
};

}  // namespace fnrk::engine

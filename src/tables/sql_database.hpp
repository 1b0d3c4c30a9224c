#pragma once

// SqlDatabase: every table operation of the library passes here. Each wrapper has the engine
// function's name, arguments and status, and sends the call to the embedded engine or to one of
// the SQL backends, by the range of its handle, or for calls that open or connect by name, by
// the path. Global settings are broadcast to the engine and every backend.
//
// Handle ranges (fixed by the contract with the backends):
//   0 .. 299,999 Folder, 300,000 .. User, 600,000 .. Org, 900,000 .. Origin,
//   1,200,000 / 1,500,000 / 1,800,000 / 2,100,000 .. 2,399,999 Archive 0 / 1 / 2 / 3,
//   2,400,000 and above: the engine.

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backend/mgmt_config_memory.hpp"
#include "backend/sql_backend.hpp"
#include "engine/operations.hpp"
#include "tables/archive_backend.hpp"

namespace fnrk::tables {

// The backend kinds that own a handle range, in range order (the number is the range index).
enum class BackendSlot { Folder, User, Org, Origin, Archive0, Archive1, Archive2, Archive3 };

inline constexpr int kArchiveSlots = 5;

using BackendFactory = std::function<std::unique_ptr<backend::SqlBackend>()>;

class SqlDatabase final : public engine::Operations {
  public:
    using Handle = engine::Handle;
    using Status = engine::Status;
    using MgmtConfig = engine::MgmtConfig;
    using ProgressCallback = engine::ProgressCallback;

    // `engine` is the process's table engine; `makeBackend` creates a SQL backend object each
    // time a slot needs one.
    SqlDatabase(engine::Operations& engine, BackendFactory makeBackend);

    // --- where things are (the routing by path reads them)
    void SetSqlRootPath(std::string path) { sqlRootPath_ = std::move(path); }
    const std::string& SqlRootPath() const { return sqlRootPath_; }
    void SetOrgPath(std::string path) { orgPath_ = std::move(path); }
    void SetDossierFolder(std::string folder) { dossierFolder_ = std::move(folder); }
    // Holds "users.data" and "org.data".
    void SetApplicationFolder(std::string folder) { applicationFolder_ = std::move(folder); }

    // --- backend slots
    backend::SqlBackend* Backend(BackendSlot slot) const;
    bool IsConnected(BackendSlot slot) const { return connected_[static_cast<int>(slot)]; }
    // Creates (or replaces) Archive slot `index` for `folder`; an index outside 0 to 4 throws
    // std::out_of_range and changes nothing.
    ArchiveBackend& CreateArchiveBackend(int index, std::string_view folder,
                                         std::string_view tempPath);
    ArchiveBackend* Archive(int index) const;

    // The configuration record copied, member by member, into a "MGMT_CONFIG_MEMORY" object.
    Status MgGetConfigInfo(Handle managementConnection, backend::MGMT_CONFIG_MEMORY& memory);

    // Operations of the SQL backends only; for an engine handle the caller does the file work.
    Status TableCopy(Handle connection, std::string_view from, std::string_view to);
    Status TableExists(Handle connection, std::string_view name, bool& exists);
    Status DropTable(Handle connection, std::string_view name);

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

  private:
    template <class Call>
    Status Routed(Handle handle, Call call);
    template <class Call>
    Status RoutedByName(Handle handle, std::string_view path, Call call);
    template <class Call>
    Status Broadcast(Call call);
    template <class Call>
    Status ConnectThrough(std::string_view serverPath, Handle& connection, Call connect);

    // The slot whose range holds a handle from 1 to 2,399,999.
    static BackendSlot SlotOfHandle(Handle handle);
    // The slot a path belongs to by the path tests, whether or not it is connected.
    bool MatchPath(std::string_view path, BackendSlot& slot) const;
    // The engine, or the backend a handle (or, for a handle of 0 or less, a path) routes to;
    // nullptr when the owning backend does not exist.
    engine::Operations* Owner(Handle handle, std::string_view path = {});
    // The backend (never the engine) that owns a connection handle or path; nullptr otherwise.
    backend::SqlBackend* SqlOwner(Handle connection, std::string_view path);
    backend::SqlBackend& BackendForConnect(BackendSlot slot);
    std::string FixedDatabasePath(Handle kind, std::string_view serverPath) const;
    void MarkConnected(Handle connection);
    // Org, User, Folder, Origin, then the Archive slots' databases: the broadcast order.
    std::vector<backend::SqlBackend*> BroadcastOrder() const;

    engine::Operations& engine_;
    BackendFactory makeBackend_;
    std::array<std::unique_ptr<backend::SqlBackend>, 4> singles_;  // Folder, User, Org, Origin
    std::array<std::unique_ptr<ArchiveBackend>, kArchiveSlots> archives_;
    std::array<bool, 8> connected_{};
    std::string sqlRootPath_;
    std::string orgPath_;
    std::string dossierFolder_;
    std::string applicationFolder_;
    // The global settings broadcast so far, given to backends made later.
    std::optional<std::string> dateFormat_;
    std::optional<std::uint16_t> epoch_;
    std::optional<bool> showDeleted_;
};

template <class Call>
SqlDatabase::Status SqlDatabase::Routed(Handle handle, Call call) {
    engine::Operations* owner = Owner(handle);
    return owner ? call(*owner) : engine::AE_INVALID_HANDLE;
}

template <class Call>
SqlDatabase::Status SqlDatabase::RoutedByName(Handle handle, std::string_view path, Call call) {
    engine::Operations* owner = Owner(handle, path);
    return owner ? call(*owner) : engine::AE_INVALID_HANDLE;
}

}  // namespace fnrk::tables

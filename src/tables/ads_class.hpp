#pragma once

// AdsClass: the table-access object of the library. It opens a dossier's tables under their
// aliases, works on the current table (records, fields, locks, the logbook) and keeps named
// queries. It calls nothing but the wrappers of SqlDatabase, so a dossier kept as files and one
// kept in SQL behave alike.
//
// The class is split over several files by concern:
//   ads_class_connections.cpp  Initialize, connections, versions, last error, waitFileExist
//   ads_class_open.cpp         OpenFile, FileOpen and the standard tables, parameter tables
//   ads_class_aliases.cpp      alias lookup, ActivateAlias, closing, pack and zap, state tests
//   ads_class_encryption.cpp   encryption switches and the data dictionary
//   ads_class_navigation.cpp   moving through the current table and record tests
//   ads_class_fields.cpp       field reads, writes, record buffers and structure facts
//                              (conversions in field_values.cpp, captions in field_captions.cpp)
//   ads_class_locks.cpp        record and table locks, flushing, document locks
//   logbook.cpp                the dossier's logbook
//   ads_messages.cpp           the three-language message catalogue and the boxes built from it
//   ads_class_queries*.cpp     named queries, filters and SQL cursors (see the marked section)
// The standard tables' files are listed in standard_tables.cpp; the process's shared instance is
// SharedAdsClass() (shared_tables.hpp).

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/constants.hpp"
#include "engine/errors.hpp"
#include "tables/field_values.hpp"
#include "tables/named_query.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables {

// FieldValue (field_values.hpp): text (dates as "DD/MM/YYYY"), number or logical;
// std::monostate stands for "no value" (an unknown field or a failed read).

// What the session tells the table layer about the current dossier (it comes from the company
// parameters). Paths are native.
struct DossierSettings {
    // The data folder followed by the company's short name: "/data/SOC1/SOC1". Standard table
    // files are this prefix + "_" + the table file ("/data/SOC1/SOC1_act.dbf").
    std::string prefix;
    std::string companyCode;    // CODESOC of logbook entries
    bool logbookOn = false;     // the dossier keeps a logbook
    std::string tablePassword;  // password of the dossier's table encryption; empty: none
};

class AdsClass {
  public:
    using Handle = engine::Handle;
    using Status = engine::Status;

    // `db` is the process's dispatch; it must outlive this object.
    explicit AdsClass(SqlDatabase& db);
    ~AdsClass();
    AdsClass(const AdsClass&) = delete;
    AdsClass& operator=(const AdsClass&) = delete;

    SqlDatabase& Database() const { return db_; }
    // The alias of the current table (upper case); empty when none is current.
    const std::string& GetCurrentAlias() const { return currentAlias_; }
    DossierSettings& Dossier() { return dossier_; }
    const DossierSettings& Dossier() const { return dossier_; }
    // The dossier's prefix and the dispatch's dossier folder (routing test of the Folder backend)
    // in one step.
    void SetDossierPrefix(std::string prefix);
    // An interactive object asks the user (Retry/Cancel) when a lock fails; otherwise the first
    // failure is the answer. Interactive by default.
    bool Interactive() const { return interactive_; }
    void SetInteractive(bool interactive) { interactive_ = interactive; }

    // ===== connections
    // Once per object: date format, close all tables, epoch, hidden deleted records, connection
    // to the local server of the application's drive. A second call does nothing.
    Status Initialize();
    Status FindConnection();
    Status disconnect();
    bool IsClientServer();
    bool IsInternetServer();
    Handle LocalConnection() const { return localConnection_; }
    // The connection of the dossier's folder (a SQL connection for a SQL-kept dossier),
    // connecting first when needed; 0 when it cannot be had.
    Handle DossierConnection();
    Handle UsersConnection() const { return usersConnection_; }
    // The connection a table file opened under `alias` goes through (a SQL connection for a
    // SQL-kept folder), connecting first when needed; 0 when it cannot be had. Tables that a
    // module creates are created on it.
    Handle ConnectionOfTableFile(std::string_view alias, std::string_view path);
    // Creates the table `path` with `fields` ("NAME,C,15,0;...") on that connection and closes
    // it again; an existing table is an error.
    Status CreateTableFile(std::string_view alias, std::string_view path, std::string_view fields);

    // ===== opening and closing tables
    // The one routine that opens a table. The structural index (the table's name with ".cdx")
    // opens with the table; an `indexFile` of another name is opened besides.
    // `openMode` "SHARED", "EXCLUSIVE" or "READONLY" (any case); anything else is refused with
    // "Parameter error". `flags` is a sum of the kOpen* values below.
    static constexpr std::int32_t kOpenQuiet = 1;  // no message box when the open fails
    Status OpenFile(std::string_view alias, std::string_view path, std::string_view indexFile,
                    std::string_view openMode, std::int32_t flags = 0);
    Status FileOpen(std::string_view alias, std::string_view openMode = "SHARED",
                    bool withoutIndex = false);
    Status FileOpenExternal(std::string_view alias, std::string_view path,
                            std::string_view openMode = "SHARED");
    Status FileOpenAll();
    Status FileOpenParam(std::string_view openMode = "SHARED", bool alternate = false);
    Status FileOpenParamWithoutIndex();
    Status FileOpenParamWithoutIndexWithoutRO();
    Status FileOpenACTWithoutIndex();
    bool FileExistParam();
    bool FileExistParamIndex() const;
    // The file a standard alias opens, with and without the dossier prefix; empty for an alias
    // that is not a standard one.
    std::string StandardTablePath(std::string_view alias) const;
    std::string StandardIndexPath(std::string_view alias) const;
    // The same for the dossier whose files start with `prefix` (folder and short name), such
    // as an archived book year's copy of the company.
    static std::string StandardTablePathOf(std::string_view prefix, std::string_view alias);
    static std::string StandardIndexPathOf(std::string_view prefix, std::string_view alias);

    // The full path of the file open under `alias`; empty when it is not open.
    std::string OpenTableFile(std::string_view alias);
    bool FileIsOpen(std::string_view alias);
    bool IsAlias(std::string_view alias);
    Status ActivateAlias(std::string_view alias);
    std::vector<std::string> EnumerateAlias();
    Status CloseAlias(std::string_view alias);
    Status FileClose(std::string_view alias);
    Status FileCloseAll(bool keepParam = false);
    Status PackAndClose(std::string_view alias);
    Status Zap(std::string_view alias);

    bool IsOpenExclusive(std::string_view alias);
    bool IsOpenFileReadOnly(std::string_view alias);
    // Somebody else (another process or connection) has the table's file open: it cannot be
    // opened exclusively. A table this object has open counts too: close it first.
    bool IsExternalOpen(std::string_view alias);
    bool IsAnyFileExternalOpenExceptParam();
    bool IsFileLocked(std::string_view alias);

    bool FileIsEncrypted(std::string_view alias);
    bool MakeFileEncrypt(bool encrypt, std::string_view alias);
    bool IsAllFilesEncrypted();
    Status BuildDataDictionnary();

    std::int32_t GetOpenTableCount();
    std::string GetAdsLastError();
    Status GetAdsLastErrorNumber();
    // The catalogue text of `number` in `language` ("N" Dutch, "E" English, else French).
    static std::string ConvertADSErrNumToString(std::int32_t number, std::string_view language);
    // Waits until `path` exists (`waitForExistence`) or no longer exists, polling with a short
    // sleep, for at most `seconds`. True when the wait succeeded.
    static bool waitFileExist(std::string_view path, bool waitForExistence, double seconds);
    std::string Version();
    double GetADSVersionNumber();

    // ===== the current table: navigation
    Status moveNext();
    Status MovePrevious();
    Status MoveTop();
    Status MoveBottom();
    Status MoveAbsolute(std::uint32_t record);
    Status MoveRelative(std::int32_t records);
    // Seeks `key` (text) in the active index; true when found. A soft seek stays on the next key.
    bool seekKey(std::string_view key, bool softSeek = false);
    bool LocateInCurrentAlias(std::string_view expression, bool forward = true);
    std::uint32_t recno();
    // Position of the current record in the active order (1 = first), scopes respected.
    std::uint32_t CurRecOrder();
    bool SelectionEof();
    bool SelectionBof();
    std::uint32_t SelectionRecCount();
    double GetApproximatePositionInGrid();
    bool IsDeleted();
    bool IsLocked();
    bool IsRecordInCurrentScope();
    bool IsRecordInCursor();

    // ===== the current table: fields by name
    std::string GetStringValue(std::string_view field);
    double GetDoubleValue(std::string_view field);
    std::string GetDateValue(std::string_view field);  // "DD/MM/YYYY", "  /  /    " when empty
    bool GetLogicalValue(std::string_view field);
    FieldValue GetFieldValue(std::string_view field);
    std::string GetBlobString(std::string_view field);
    std::string GetRecordValue();
    bool FieldExist(std::string_view field);
    std::uint32_t FieldLength(std::string_view field);
    std::uint16_t FieldDecimals(std::string_view field);
    std::uint32_t FieldOffset(std::string_view field);
    std::string FieldType(std::string_view field);  // one letter, empty for an unknown field
    std::uint32_t GetFieldWidth(std::string_view field);
    std::uint32_t RecordSize();
    std::uint16_t IndexKeyLength();
    // A caption for a field name in the message language; the name itself when none is known.
    static std::string GetFieldDescription(std::string_view field);

    bool PutFieldValue(std::string_view field, const FieldValue& value);
    bool PutBlobValue(std::string_view field, std::string_view data);
    bool PutRecValue(std::string_view buffer);
    bool UpdateBufferValue(std::string& buffer, std::string_view field, const FieldValue& value);
    Status RecordAdd();
    Status RecordDelete();

    // ===== locks and flushing
    bool RecLock(std::string_view alias, std::uint32_t record);
    bool LockTable(std::string_view alias);
    Status FlushAndUnlock(std::string_view alias);
    Status FlushButDontUnlock(std::string_view alias);
    std::uint16_t GetLockNumberOnServer();
    // Locks the records of one document (journal code and document number) in the entries,
    // accounts and customers tables through the lock aliases "ACTLOCKS", "ACFLOCKS" and
    // "CSFLOCKS"; see ads_class_locks.cpp for how the records are chosen. Released with
    // FlushAndUnlock on those aliases.
    bool SetAllLocksInExistingDocument(std::string_view journalCode, std::string_view docNumber);

    // ===== logbook
    bool CreateLogbook();
    bool WriteInLogBook(std::string_view action, std::string_view program, std::string_view alias,
                        std::uint32_t record, std::string_view param);
    static bool ThisFileHasALogField(std::string_view alias);
    // Appends one line to a text file (created when missing); false when it cannot be written.
    static bool WriteLogInFile(std::string_view path, std::string_view line);

    // ===== named queries, filters, SQL cursors (queries and cursors are added here)
    // Queries are kept by NamedQueryKey (name and form number, 25 characters). An index name
    // that matches no tag of the table is kept as "tag_err". While a temporary-entry switch is
    // on, queries on "ACT" never show temporary entries.
    Status AddQuery(std::string_view name, std::int32_t formNum, std::string_view alias,
                    std::string_view indexName, std::string_view filter, std::uint32_t recordNumber,
                    std::string_view comment);
    bool RemoveQuery(std::string_view name, std::int32_t formNum);
    bool IsQuery(std::string_view name, std::int32_t formNum) const;
    // Restores the view: alias, order, filter, key range, record. An unknown query shows
    // "QueryName " + name + " not found ...".
    Status ActivateQuery(std::string_view name, std::int32_t formNum);
    std::int32_t QueryCount() const { return static_cast<std::int32_t>(queries_.size()); }
    // One property of a query; "NOT$FOUND" for an unknown query.
    std::string QueryAlias(std::string_view name, std::int32_t formNum) const;
    std::string QueryRecNum(std::string_view name, std::int32_t formNum) const;
    std::string QueryComment(std::string_view name, std::int32_t formNum) const;
    std::string QueryIndex(std::string_view name, std::int32_t formNum) const;
    std::string QueryFilter(std::string_view name, std::int32_t formNum) const;
    bool SetQueryRecNum(std::string_view name, std::int32_t formNum, std::uint32_t record);
    // The key range restored with the query (empty ends: none).
    bool SetQueryScope(std::string_view name, std::int32_t formNum, std::string_view begScope,
                       std::string_view endScope);
    // The session's two temporary-entry switches (set by the entry screens).
    void SetTemporaryEntrySwitches(bool first, bool second);

    // Adds tag `tag` on `expression` to the structural index of the table open under `alias`
    // (open exclusively), which becomes current in the order it had.
    Status CreateIndexTag(std::string_view alias, std::string_view tag,
                          std::string_view expression);
    // The current table's order, by a tag name or its start (empty: natural order).
    bool SetIndex(std::string_view tag);
    std::string GetIndexTagName();
    std::string CurrentIndexCondition();
    std::string CurrentIndexKeyExpr();
    std::string GetCurrentIndexKeyData();
    // Top and bottom scopes of the active order; an empty key clears that end.
    Status SetScope(std::string_view lowKey, std::string_view highKey);
    // Filters are always the engine's optimized filter, resolved dynamically; an empty
    // expression clears it.
    Status SetFilterOnCurrentAlias(std::string_view expression);
    Status SetOptimizedFilter(std::string_view expression);
    Status ClearOptimizedFilter();
    std::string CurrentFilterExpression();

    // Runs a statement on the dossier's connection and returns its cursor (0 on failure, after
    // showing the engine's error). Every SELECT gives a static cursor.
    Handle ExecuteSQL(std::string_view statement);
    // The same on the connection of the user register (the one "USERS" was opened on).
    Handle ExecuteUsersSQL(std::string_view statement);
    // The company rows of a user in the user register, ordered by company code; the path
    // cursor ends with sentinel rows.
    Handle LoadUserCursor(std::string_view userName);
    Handle LoadPathCursor(std::string_view userName);
    Handle GetSQLStatementHandle() const { return statement_; }
    std::uint32_t CursorRecCount(Handle cursor);
    Handle CursorIndexHandle(Handle cursor);
    std::uint32_t GetNumberOfRecordsInCursor(Handle cursor);
    std::uint32_t GetRecordNumberFromPositionInCursor(Handle cursor, std::uint32_t position);
    Status CloseCursor(Handle cursor);
    Status CloseSql(Handle statement);
    // A temporary order on `keyExpression` for one view of `alias`, made its active order.
    Status BuildTempIndex(std::string_view alias, std::string_view keyExpression);

  private:
    Handle RunStatement(Handle connection, std::string_view statement);
    const NamedQuery* FindQuery(std::string_view name, std::int32_t formNum) const;

    // Removes the temporary index file made for `table`, once the table is closed.
    void RemoveTempIndexFile(Handle table);
    void RemoveTempIndexFiles();

    std::map<std::string, NamedQuery> queries_;
    bool temporaryEntries_[2] = {false, false};
    Handle statement_ = 0;  // the statement of the last cursor
    // The temporary index file of each table that has one: it goes when the table closes, so
    // that no session leaves files in the temporary folder.
    std::map<Handle, std::filesystem::path> tempIndexFiles_;

  public:
    // ===== end of named queries, filters, SQL cursors

  private:
    // --- shared state, read and written by every part of the class
    // The current table: its handle (0 when none), the alias it was activated by (upper case)
    // and its active index handle (0 = natural order). ActivateAlias sets all three;
    // navigation moves through currentIndex_ when it is set, else through currentTable_.
    Handle currentTable_ = 0;
    std::string currentAlias_;
    Handle currentIndex_ = 0;
    // The order last made active per open table (0 = natural order): the engine's API has no
    // call that tells it, so the layer remembers what it set. Closing a table drops its entry.
    std::map<Handle, Handle> activeIndex_;
    // Connections: the dossier's local server and the users' connection (kUsersSqlConnection
    // when the user register is SQL-kept). 0: not connected.
    Handle localConnection_ = 0;
    Handle usersConnection_ = 0;
    // Connections opened for table folders by OpenFile, by folder (native, no trailing sep).
    std::map<std::string, Handle> folderConnections_;
    bool initialized_ = false;
    bool interactive_ = true;
    DossierSettings dossier_;
    SqlDatabase& db_;

    // --- helpers shared by the parts
    // The table handle of an alias (numeric text: the handle itself); 0 when it is not open.
    Handle TableOfAlias(std::string_view alias);
    // Makes `index` the order of `table` (0: natural order), here and, for a SQL-kept table,
    // with the table in its backend.
    void SetActiveIndex(Handle table, Handle index);
    // The handle that navigation works through: the active index, else the table.
    Handle NavigationHandle() const { return currentIndex_ != 0 ? currentIndex_ : currentTable_; }
    // Makes `alias` current quietly; false when it is not open.
    bool MakeCurrent(std::string_view alias);
    // Record numbers of the table open under `alias` that meet the condition, in table order;
    // leaves that alias current.
    std::vector<std::uint32_t> LocateAll(std::string_view alias, const std::string& condition);
    // Opens the table open under `alias` a second time under `lockAlias`, unless it is open.
    bool OpenLockAlias(std::string_view alias, std::string_view lockAlias);
    // The connection for a table in `folder` (connecting first when needed); 0 on failure.
    Handle ConnectionForFolder(const std::string& folder, bool usersTable);
    // Appends one logbook entry (the logbook open or opened under "LOGBOOK"); the current
    // table is left as it was.
    bool AppendLogEntry(std::string_view action, std::string_view program, std::string_view alias,
                        std::uint32_t record, std::string_view param);
    // The file at `path` cannot be opened exclusively: somebody has it open.
    bool FileOpenedElsewhere(const std::string& path);
    // The engine type number of a field of the current table; 0 when unknown.
    std::uint16_t EngineFieldType(std::string_view field);
};

// The users' connection while the user register is SQL-kept: the base of the User range.
inline constexpr engine::Handle kUsersSqlConnection = 300'000;

// The engine's field type number as the layer's one-letter type ("" when not one of them).
std::string FieldTypeLetter(std::uint16_t engineType);

}  // namespace fnrk::tables

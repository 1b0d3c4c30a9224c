// AdsClass: SQL statements and their cursors, and temporary orders.

#include <unistd.h>

#include <filesystem>

#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"

namespace fnrk::tables {

using namespace engine;  // status and option numbers

namespace {

// What other parts of the host application read from the handles' user value: a cursor made
// here, and a table that one of its statements named.
constexpr std::uint32_t kCursorTag = 5;
constexpr std::uint32_t kNamedTableTag = 9;
// The longest ROWID read from an engine cursor and from a SQL backend cursor.
constexpr std::size_t kEngineRowIdLength = 20;
constexpr std::size_t kSqlRowIdLength = 250;
constexpr std::size_t kMaxTablesExamined = 99;

}  // namespace

Handle AdsClass::ExecuteSQL(std::string_view statement) {
    // The statement names the dossier's tables by the aliases they are open under there.
    return RunStatement(
        platform::Trim(dossier_.prefix).empty() ? localConnection_ : DossierConnection(),
        statement);
}

Handle AdsClass::ExecuteUsersSQL(std::string_view statement) {
    return RunStatement(usersConnection_ != 0 ? usersConnection_ : localConnection_, statement);
}

Handle AdsClass::LoadUserCursor(std::string_view userName) {
    return ExecuteUsersSQL(UserCursorStatement(userName));
}

Handle AdsClass::LoadPathCursor(std::string_view userName) {
    return ExecuteUsersSQL(PathCursorStatement(userName));
}

Handle AdsClass::RunStatement(Handle connection, std::string_view statement) {
    Handle handle = 0;
    Status status = db_.CreateSQLStatement(connection, handle);
    if (status == AE_SUCCESS) status = db_.ClearSQLParams(handle);
    if (status == AE_SUCCESS) status = db_.StmtSetTableType(handle, ADS_CDX);
    if (status == AE_SUCCESS) status = db_.StmtSetTableRights(handle, ADS_IGNORERIGHTS);
    if (status == AE_SUCCESS) status = db_.StmtSetTableCharType(handle, ADS_ANSI);
    if (status == AE_SUCCESS) status = db_.StmtSetTableReadOnly(handle, ADS_CURSOR_READONLY);
    if (status == AE_SUCCESS) status = db_.StmtSetTableLockType(handle, ADS_COMPATIBLE_LOCKING);

    // The open tables the statement names; encrypted ones get the dossier's password.
    const std::string upper = platform::UpperCase(statement);
    std::vector<Handle> named;
    std::vector<Handle> tables;
    // A backend that fails to answer still leaves the tables of the others.
    IgnoreStatus(db_.GetAllTables(tables));
    if (tables.size() > kMaxTablesExamined) tables.resize(kMaxTablesExamined);
    for (Handle table : tables) {
        std::string alias;
        if (db_.GetTableAlias(table, alias) != AE_SUCCESS || alias.empty() ||
            upper.find(platform::UpperCase(alias)) == std::string::npos)
            continue;
        named.push_back(table);
        bool encrypted = false;
        if (status == AE_SUCCESS && db_.IsTableEncrypted(table, encrypted) == AE_SUCCESS &&
            encrypted) {
            status = db_.StmtEnableEncryption(handle, dossier_.tablePassword);
            if (status == AE_SUCCESS)
                status = db_.StmtSetTablePassword(handle, alias, dossier_.tablePassword);
        }
    }

    Handle cursor = 0;
    if (status == AE_SUCCESS) status = db_.PrepareSQL(handle, WithStaticCursor(statement));
    if (status == AE_SUCCESS) status = db_.ExecuteSQL(handle, cursor);
    if (status != AE_SUCCESS) {
        ShowErrorBox(GetAdsLastError());
        // The statement's failure is the one shown.
        if (handle != 0) IgnoreStatus(db_.CloseSQLStatement(handle));
        return 0;
    }
    statement_ = handle;
    // Tags of handles this object just opened or found open: they cannot be refused.
    if (cursor != 0) IgnoreStatus(db_.SetHandleLong(cursor, kCursorTag));
    for (Handle table : named) IgnoreStatus(db_.SetHandleLong(table, kNamedTableTag));
    return cursor;
}

std::uint32_t AdsClass::CursorRecCount(Handle cursor) {
    std::uint32_t count = 0;
    return db_.GetRecordCount(cursor, ADS_IGNOREFILTERS, count) == AE_SUCCESS ? count : 0;
}

std::uint32_t AdsClass::GetNumberOfRecordsInCursor(Handle cursor) {
    return CursorRecCount(cursor);
}

Handle AdsClass::CursorIndexHandle(Handle cursor) {
    Handle index = 0;
    return db_.GetIndexHandleByOrder(cursor, 1, index) == AE_SUCCESS ? index : 0;
}

std::uint32_t AdsClass::GetRecordNumberFromPositionInCursor(Handle cursor, std::uint32_t position) {
    std::string rowId;
    if (db_.GotoRecord(cursor, position) != AE_SUCCESS ||
        db_.GetString(cursor, "ROWID", rowId, ADS_RTRIM) != AE_SUCCESS)
        return 0;
    if (cursor >= kEngineHandleStart)
        return RecordNumberOfEngineRowId(platform::LeftChars(rowId, kEngineRowIdLength));
    return RecordNumberOfSqlRowId(platform::LeftChars(rowId, kSqlRowIdLength));
}

Status AdsClass::CloseCursor(Handle cursor) {
    return db_.CloseTable(cursor);
}

Status AdsClass::CloseSql(Handle statement) {
    const Status status = db_.CloseSQLStatement(statement);
    if (status == AE_SUCCESS && statement == statement_) statement_ = 0;
    return status;
}

Status AdsClass::BuildTempIndex(std::string_view alias, std::string_view keyExpression) {
    if (Status status = ActivateAlias(alias); status != AE_SUCCESS) return status;
    if (currentTable_ == 0) return AE_NO_TABLE;
    // One temporary file per table of this process, made again at each call.
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() /
        ("fnrk-temp-" + std::to_string(::getpid()) + "-" + std::to_string(currentTable_) + ".cdx");
    Handle index = 0;
    if (db_.GetIndexHandle(currentTable_, "TEMPINDEX", index) == AE_SUCCESS) {
        // The old temporary index goes; building the new one reports what fails.
        IgnoreStatus(db_.CloseIndex(index));
        if (currentIndex_ == index) currentIndex_ = 0;
    }
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    const Status status = db_.CreateIndex(currentTable_, file.string(), "TEMPINDEX", keyExpression,
                                          "", "", ADS_COMPOUND, index);
    if (status != AE_SUCCESS) return status;
    tempIndexFiles_[currentTable_] = file;
    currentIndex_ = index;
    SetActiveIndex(currentTable_, index);
    return AE_SUCCESS;
}

void AdsClass::RemoveTempIndexFile(Handle table) {
    const auto made = tempIndexFiles_.find(table);
    if (made == tempIndexFiles_.end()) return;
    std::error_code ignored;  // a file already gone is what is wanted
    std::filesystem::remove(made->second, ignored);
    tempIndexFiles_.erase(made);
}

void AdsClass::RemoveTempIndexFiles() {
    while (!tempIndexFiles_.empty()) RemoveTempIndexFile(tempIndexFiles_.begin()->first);
}

}  // namespace fnrk::tables

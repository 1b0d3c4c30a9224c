#pragma once

// A backend (and engine) that records which operations reach it, for the routing tests. Every
// call appends "<name>.<operation>" to a log shared by all recorders and answers `answer`.
// Connecting hands out `nextConnection` (else handleStart + 1); GetLastError answers
// `lastErrorText`.

#include <string>
#include <vector>

#include "backend/sql_backend.hpp"

namespace fnrk::tables::testing {

using engine::Handle;
using engine::MgmtConfig;
using engine::ProgressCallback;
using engine::Status;

class RecordingBackend final : public backend::SqlBackend {
  public:
    RecordingBackend(std::string name, std::vector<std::string>& log)
        : name_(std::move(name)), log_(log) {}

    Status answer = engine::AE_SUCCESS;
    Handle nextConnection = 0;
    std::string lastPath;  // the path the last connect was given
    std::string lastErrorText;
    Status lastErrorCode = engine::AE_SUCCESS;
    std::vector<Handle> openTables;
    MgmtConfig config;

    Handle handleStart() const override { return handleStart_; }
    void handleStart(Handle start) override { handleStart_ = start; }
    std::string TypeOfConnection() const override { return type_; }
    void TypeOfConnection(std::string_view type) override { type_ = type; }

    Status Connect26(std::string_view path, std::uint16_t, Handle& connection) override {
        return Connected(path, connection, "Connect26");
    }
    Status Connect60(std::string_view path, std::uint16_t, std::string_view, std::string_view,
                     std::uint32_t, Handle& connection) override {
        return Connected(path, connection, "Connect60");
    }
    Status FindConnection25(std::string_view path, Handle& connection) override {
        return Connected(path, connection, "FindConnection25");
    }
    Status GetLastError(Status& code, std::string& text) override {
        code = lastErrorCode;
        text = lastErrorText;
        return Record("GetLastError");
    }
    Status GetAllTable(std::vector<Handle>& tables) override {
        tables = openTables;
        return Record("GetAllTable");
    }
    Status GetAllTables(std::vector<Handle>& tables) override {
        tables = openTables;
        return Record("GetAllTables");
    }
    Status MgGetConfigInfo(Handle, MgmtConfig& out) override {
        out = config;
        return Record("MgGetConfigInfo");
    }
    Status TableCopy(Handle, std::string_view, std::string_view) override {
        return Record("TableCopy");
    }
    Status TableExists(Handle, std::string_view, bool&) override { return Record("TableExists"); }
    Status DropTable(Handle, std::string_view) override { return Record("DropTable"); }
    Status InitCopyTableContents(Handle) override { return Record("InitCopyTableContents"); }
    Status CloseCopyTableContents(Handle) override { return Record("CloseCopyTableContents"); }
    Status RefreshTable(Handle) override { return Record("RefreshTable"); }

    Status Disconnect(Handle) override { return Record("Disconnect"); }
    Status GetConnectionType(Handle, std::uint16_t&) override {
        return Record("GetConnectionType");
    }
    Status SetServerType(std::uint16_t) override { return Record("SetServerType"); }
    Status SetDateFormat(std::string_view) override { return Record("SetDateFormat"); }
    Status SetEpoch(std::uint16_t) override { return Record("SetEpoch"); }
    Status ShowDeleted(bool) override { return Record("ShowDeleted"); }
    Status GetDeleted(bool&) override { return Record("GetDeleted"); }
    // Answers its own name, so that a test sees whose answer the caller got.
    Status GetVersion(std::uint32_t& major, std::uint32_t&, std::string&,
                      std::string& description) override {
        major = 1;
        description = name_;
        return Record("GetVersion");
    }
    Status GetErrorString(Status, std::string&) override { return Record("GetErrorString"); }
    Status GetServerTime(Handle, std::string&, std::int32_t&, std::string&) override {
        return Record("GetServerTime");
    }
    Status CloseAllTables() override { return Record("CloseAllTables"); }
    Status GetNumOpenTables(std::uint16_t&) override { return Record("GetNumOpenTables"); }
    Status CacheOpenCursors(std::uint16_t) override { return Record("CacheOpenCursors"); }
    Status RegisterCallbackFunction(ProgressCallback, std::uint32_t) override {
        return Record("RegisterCallbackFunction");
    }
    Status ClearCallbackFunction() override { return Record("ClearCallbackFunction"); }
    Status CreateTable(Handle, std::string_view, std::string_view, std::uint16_t, std::uint16_t,
                       std::uint16_t, std::uint16_t, std::uint16_t, std::string_view,
                       Handle&) override {
        return Record("CreateTable");
    }
    Status OpenTable(Handle, std::string_view, std::string_view, std::uint16_t, std::uint16_t,
                     std::uint16_t, std::uint16_t, std::uint32_t, Handle&) override {
        return Record("OpenTable");
    }
    Status CloseTable(Handle) override { return Record("CloseTable"); }
    Status GetTableHandle(Handle, std::string_view, Handle&) override {
        return Record("GetTableHandle");
    }
    Status GetTableAlias(Handle, std::string&) override { return Record("GetTableAlias"); }
    Status GetTableFilename(Handle, std::uint16_t, std::string&) override {
        return Record("GetTableFilename");
    }
    Status GetTableOpenOptions(Handle, std::uint32_t&) override {
        return Record("GetTableOpenOptions");
    }
    Status IsTableExclusive(Handle, bool&) override { return Record("IsTableExclusive"); }
    Status GetRecordCount(Handle, std::uint16_t, std::uint32_t&) override {
        return Record("GetRecordCount");
    }
    Status GetRecordLength(Handle, std::uint32_t&) override { return Record("GetRecordLength"); }
    Status GetNumFields(Handle, std::uint16_t&) override { return Record("GetNumFields"); }
    Status GetFieldName(Handle, std::uint16_t, std::string&) override {
        return Record("GetFieldName");
    }
    Status GetFieldNum(Handle, std::string_view, std::uint16_t&) override {
        return Record("GetFieldNum");
    }
    Status GetFieldType(Handle, std::string_view, std::uint16_t&) override {
        return Record("GetFieldType");
    }
    Status GetFieldLength(Handle, std::string_view, std::uint32_t&) override {
        return Record("GetFieldLength");
    }
    Status GetFieldDecimals(Handle, std::string_view, std::uint16_t&) override {
        return Record("GetFieldDecimals");
    }
    Status GetFieldOffset(Handle, std::string_view, std::uint32_t&) override {
        return Record("GetFieldOffset");
    }
    Status PackTable(Handle) override { return Record("PackTable"); }
    Status ZapTable(Handle) override { return Record("ZapTable"); }
    Status FlushFileBuffers(Handle) override { return Record("FlushFileBuffers"); }
    Status CacheRecords(Handle, std::uint16_t) override { return Record("CacheRecords"); }
    Status SetHandleLong(Handle, std::uint32_t) override { return Record("SetHandleLong"); }
    Status GetHandleLong(Handle, std::uint32_t&) override { return Record("GetHandleLong"); }
    Status GetHandleType(Handle, std::uint16_t&) override { return Record("GetHandleType"); }
    Status CopyTableContents(Handle, Handle, std::uint16_t) override {
        return Record("CopyTableContents");
    }
    Status GotoTop(Handle) override { return Record("GotoTop"); }
    Status GotoBottom(Handle) override { return Record("GotoBottom"); }
    Status GotoRecord(Handle, std::uint32_t) override { return Record("GotoRecord"); }
    Status Skip(Handle, std::int32_t) override { return Record("Skip"); }
    Status AtBOF(Handle, bool&) override { return Record("AtBOF"); }
    Status AtEOF(Handle, bool&) override { return Record("AtEOF"); }
    Status GetRecordNum(Handle, std::uint16_t, std::uint32_t&) override {
        return Record("GetRecordNum");
    }
    Status AppendRecord(Handle) override { return Record("AppendRecord"); }
    Status DeleteRecord(Handle) override { return Record("DeleteRecord"); }
    Status RecallRecord(Handle) override { return Record("RecallRecord"); }
    Status IsRecordDeleted(Handle, bool&) override { return Record("IsRecordDeleted"); }
    Status IsRecordVisible(Handle, bool&) override { return Record("IsRecordVisible"); }
    Status GetRecord(Handle, std::string&) override { return Record("GetRecord"); }
    Status SetRecord(Handle, std::string_view) override { return Record("SetRecord"); }
    Status GetString(Handle, std::string_view, std::string&, std::uint16_t) override {
        return Record("GetString");
    }
    Status SetString(Handle, std::string_view, std::string_view) override {
        return Record("SetString");
    }
    Status GetShort(Handle, std::string_view, std::int16_t&) override { return Record("GetShort"); }
    Status SetShort(Handle, std::string_view, std::int16_t) override { return Record("SetShort"); }
    Status GetLong(Handle, std::string_view, std::int32_t&) override { return Record("GetLong"); }
    Status SetLong(Handle, std::string_view, std::int32_t) override { return Record("SetLong"); }
    Status GetDouble(Handle, std::string_view, double&) override { return Record("GetDouble"); }
    Status SetDouble(Handle, std::string_view, double) override { return Record("SetDouble"); }
    Status GetLogical(Handle, std::string_view, bool&) override { return Record("GetLogical"); }
    Status SetLogical(Handle, std::string_view, bool) override { return Record("SetLogical"); }
    Status GetDate(Handle, std::string_view, std::string&) override { return Record("GetDate"); }
    Status SetDate(Handle, std::string_view, std::string_view) override {
        return Record("SetDate");
    }
    Status GetJulian(Handle, std::string_view, std::int32_t&) override {
        return Record("GetJulian");
    }
    Status SetJulian(Handle, std::string_view, std::int32_t) override {
        return Record("SetJulian");
    }
    Status GetMemoLength(Handle, std::string_view, std::uint32_t&) override {
        return Record("GetMemoLength");
    }
    Status GetMemoDataType(Handle, std::string_view, std::uint16_t&) override {
        return Record("GetMemoDataType");
    }
    Status GetBinary(Handle, std::string_view, std::uint32_t, std::uint32_t,
                     std::string&) override {
        return Record("GetBinary");
    }
    Status GetBinaryLength(Handle, std::string_view, std::uint32_t&) override {
        return Record("GetBinaryLength");
    }
    Status SetBinary(Handle, std::string_view, std::uint16_t, std::uint32_t, std::uint32_t,
                     std::string_view) override {
        return Record("SetBinary");
    }
    Status SetFilter(Handle, std::string_view) override { return Record("SetFilter"); }
    Status GetFilter(Handle, std::string&) override { return Record("GetFilter"); }
    Status ClearFilter(Handle) override { return Record("ClearFilter"); }
    Status SetAOF(Handle, std::string_view, std::uint16_t) override { return Record("SetAOF"); }
    Status GetAOF(Handle, std::string&) override { return Record("GetAOF"); }
    Status GetAOFOptLevel(Handle, std::uint16_t&, std::string&) override {
        return Record("GetAOFOptLevel");
    }
    Status ClearAOF(Handle) override { return Record("ClearAOF"); }
    Status Locate(Handle, std::string_view, bool, bool&) override { return Record("Locate"); }
    Status Continue(Handle, bool&) override { return Record("Continue"); }
    Status LockRecord(Handle, std::uint32_t) override { return Record("LockRecord"); }
    Status UnlockRecord(Handle, std::uint32_t) override { return Record("UnlockRecord"); }
    Status LockTable(Handle) override { return Record("LockTable"); }
    Status UnlockTable(Handle) override { return Record("UnlockTable"); }
    Status IsTableLocked(Handle, bool&) override { return Record("IsTableLocked"); }
    Status IsRecordLocked(Handle, std::uint32_t, bool&) override {
        return Record("IsRecordLocked");
    }
    Status GetNumLocks(Handle, std::uint16_t&) override { return Record("GetNumLocks"); }
    Status CreateIndex(Handle, std::string_view, std::string_view, std::string_view,
                       std::string_view, std::string_view, std::uint32_t, Handle&) override {
        return Record("CreateIndex");
    }
    Status OpenIndex(Handle, std::string_view, std::vector<Handle>&) override {
        return Record("OpenIndex");
    }
    Status CloseIndex(Handle) override { return Record("CloseIndex"); }
    Status GetIndexHandle(Handle, std::string_view, Handle&) override {
        return Record("GetIndexHandle");
    }
    Status GetIndexHandleByOrder(Handle, std::uint16_t, Handle&) override {
        return Record("GetIndexHandleByOrder");
    }
    Status GetIndexOrderByHandle(Handle, std::uint16_t&) override {
        return Record("GetIndexOrderByHandle");
    }
    Status GetAllIndexes(Handle, std::vector<Handle>&) override { return Record("GetAllIndexes"); }
    Status GetIndexName(Handle, std::string&) override { return Record("GetIndexName"); }
    Status GetIndexExpr(Handle, std::string&) override { return Record("GetIndexExpr"); }
    Status GetIndexCondition(Handle, std::string&) override { return Record("GetIndexCondition"); }
    Status GetKeyLength(Handle, std::uint16_t&) override { return Record("GetKeyLength"); }
    Status IsIndexDescending(Handle, bool&) override { return Record("IsIndexDescending"); }
    Status IsIndexCompound(Handle, bool&) override { return Record("IsIndexCompound"); }
    Status IsIndexUnique(Handle, bool&) override { return Record("IsIndexUnique"); }
    Status GetKeyCount(Handle, std::uint16_t, std::uint32_t&) override {
        return Record("GetKeyCount");
    }
    Status ExtractKey(Handle, std::string&) override { return Record("ExtractKey"); }
    Status Seek(Handle, std::string_view, std::uint16_t, std::uint16_t, bool&) override {
        return Record("Seek");
    }
    Status SeekLast(Handle, std::string_view, std::uint16_t, bool&) override {
        return Record("SeekLast");
    }
    Status SetScope(Handle, std::uint16_t, std::string_view, std::uint16_t) override {
        return Record("SetScope");
    }
    Status GetScope(Handle, std::uint16_t, std::string&) override { return Record("GetScope"); }
    Status ClearScope(Handle, std::uint16_t) override { return Record("ClearScope"); }
    Status GetRelKeyPos(Handle, double&) override { return Record("GetRelKeyPos"); }
    Status SetRelKeyPos(Handle, double) override { return Record("SetRelKeyPos"); }
    Status Reindex(Handle) override { return Record("Reindex"); }
    Status EnableEncryption(Handle, std::string_view) override {
        return Record("EnableEncryption");
    }
    Status EncryptTable(Handle) override { return Record("EncryptTable"); }
    Status DecryptTable(Handle) override { return Record("DecryptTable"); }
    Status IsTableEncrypted(Handle, bool&) override { return Record("IsTableEncrypted"); }
    Status CreateSQLStatement(Handle, Handle&) override { return Record("CreateSQLStatement"); }
    Status PrepareSQL(Handle, std::string_view) override { return Record("PrepareSQL"); }
    Status ExecuteSQL(Handle, Handle&) override { return Record("ExecuteSQL"); }
    Status ExecuteSQLDirect(Handle, std::string_view, Handle&) override {
        return Record("ExecuteSQLDirect");
    }
    Status GetSQLStatementHandle(Handle, Handle&) override {
        return Record("GetSQLStatementHandle");
    }
    Status ClearSQLParams(Handle) override { return Record("ClearSQLParams"); }
    Status CloseSQLStatement(Handle) override { return Record("CloseSQLStatement"); }
    Status StmtSetTableRights(Handle, std::uint16_t) override {
        return Record("StmtSetTableRights");
    }
    Status StmtSetTableReadOnly(Handle, std::uint16_t) override {
        return Record("StmtSetTableReadOnly");
    }
    Status StmtSetTableLockType(Handle, std::uint16_t) override {
        return Record("StmtSetTableLockType");
    }
    Status StmtSetTableCharType(Handle, std::uint16_t) override {
        return Record("StmtSetTableCharType");
    }
    Status StmtSetTableType(Handle, std::uint16_t) override { return Record("StmtSetTableType"); }
    Status StmtEnableEncryption(Handle, std::string_view) override {
        return Record("StmtEnableEncryption");
    }
    Status StmtSetTablePassword(Handle, std::string_view, std::string_view) override {
        return Record("StmtSetTablePassword");
    }
    Status DDCreate(std::string_view, std::uint16_t, std::string_view, Handle&) override {
        return Record("DDCreate");
    }
    Status DDAddTable(Handle, std::string_view, std::string_view, std::uint16_t, std::uint16_t,
                      std::string_view, std::string_view) override {
        return Record("DDAddTable");
    }
    Status DDAddView(Handle, std::string_view, std::string_view, std::string_view) override {
        return Record("DDAddView");
    }
    Status DDCreateUser(Handle, std::string_view, std::string_view, std::string_view,
                        std::string_view) override {
        return Record("DDCreateUser");
    }
    Status DDSetDatabaseProperty(Handle, std::uint16_t, std::string_view) override {
        return Record("DDSetDatabaseProperty");
    }
    Status DDSetUserProperty(Handle, std::string_view, std::uint16_t, std::string_view) override {
        return Record("DDSetUserProperty");
    }

  private:
    Status Record(const char* operation) {
        // Backends made by the dispatch are known by their handle range's start.
        log_.push_back((name_.empty() ? std::to_string(handleStart_) : name_) + "." + operation);
        return answer;
    }
    Status Connected(std::string_view path, Handle& connection, const char* operation) {
        lastPath = path;
        if (answer == engine::AE_SUCCESS) {
            connection = nextConnection != 0 ? nextConnection : handleStart_ + 1;
        }
        return Record(operation);
    }

    std::string name_;
    std::vector<std::string>& log_;
    Handle handleStart_ = 0;
    std::string type_;
};

}  // namespace fnrk::tables::testing

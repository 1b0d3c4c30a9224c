// The per-handle wrappers: each sends the call, unchanged, to the engine or to the backend
// that owns the handle; calls that open by name (handle 0) go where the name's path routes.

#include "tables/sql_database.hpp"

namespace fnrk::tables {

using engine::Handle;
using engine::Status;

Status SqlDatabase::GetConnectionType(Handle connection, std::uint16_t& connectionType) {
    return Routed(connection, [&](engine::Operations& o) {
        return o.GetConnectionType(connection, connectionType);
    });
}

Status SqlDatabase::GetServerTime(Handle connection, std::string& date, std::int32_t& time,
                                  std::string& timeText) {
    return Routed(connection, [&](engine::Operations& o) {
        return o.GetServerTime(connection, date, time, timeText);
    });
}

Status SqlDatabase::CreateTable(Handle connection, std::string_view name, std::string_view alias,
                                std::uint16_t tableType, std::uint16_t charType,
                                std::uint16_t lockType, std::uint16_t checkRights,
                                std::uint16_t memoSize, std::string_view fields, Handle& table) {
    return RoutedByName(connection, name, [&](engine::Operations& o) {
        return o.CreateTable(connection, name, alias, tableType, charType, lockType, checkRights,
                             memoSize, fields, table);
    });
}

Status SqlDatabase::OpenTable(Handle connection, std::string_view name, std::string_view alias,
                              std::uint16_t tableType, std::uint16_t charType,
                              std::uint16_t lockType, std::uint16_t checkRights,
                              std::uint32_t options, Handle& table) {
    return RoutedByName(connection, name, [&](engine::Operations& o) {
        return o.OpenTable(connection, name, alias, tableType, charType, lockType, checkRights,
                           options, table);
    });
}

Status SqlDatabase::CloseTable(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.CloseTable(table); });
}

Status SqlDatabase::GetTableHandle(Handle connection, std::string_view name, Handle& table) {
    return RoutedByName(connection, name, [&](engine::Operations& o) {
        return o.GetTableHandle(connection, name, table);
    });
}

Status SqlDatabase::GetTableAlias(Handle table, std::string& alias) {
    return Routed(table, [&](engine::Operations& o) { return o.GetTableAlias(table, alias); });
}

Status SqlDatabase::GetTableFilename(Handle table, std::uint16_t nameOption, std::string& name) {
    return Routed(
        table, [&](engine::Operations& o) { return o.GetTableFilename(table, nameOption, name); });
}

Status SqlDatabase::GetTableOpenOptions(Handle table, std::uint32_t& options) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetTableOpenOptions(table, options); });
}

Status SqlDatabase::IsTableExclusive(Handle table, bool& exclusive) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.IsTableExclusive(table, exclusive); });
}

Status SqlDatabase::GetRecordCount(Handle table, std::uint16_t filterOption, std::uint32_t& count) {
    return Routed(
        table, [&](engine::Operations& o) { return o.GetRecordCount(table, filterOption, count); });
}

Status SqlDatabase::GetRecordLength(Handle table, std::uint32_t& length) {
    return Routed(table, [&](engine::Operations& o) { return o.GetRecordLength(table, length); });
}

Status SqlDatabase::GetNumFields(Handle table, std::uint16_t& count) {
    return Routed(table, [&](engine::Operations& o) { return o.GetNumFields(table, count); });
}

Status SqlDatabase::GetFieldName(Handle table, std::uint16_t fieldNumber, std::string& name) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetFieldName(table, fieldNumber, name); });
}

Status SqlDatabase::GetFieldNum(Handle table, std::string_view field, std::uint16_t& number) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetFieldNum(table, field, number); });
}

Status SqlDatabase::GetFieldType(Handle table, std::string_view field, std::uint16_t& type) {
    return Routed(table, [&](engine::Operations& o) { return o.GetFieldType(table, field, type); });
}

Status SqlDatabase::GetFieldLength(Handle table, std::string_view field, std::uint32_t& length) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetFieldLength(table, field, length); });
}

Status SqlDatabase::GetFieldDecimals(Handle table, std::string_view field,
                                     std::uint16_t& decimals) {
    return Routed(
        table, [&](engine::Operations& o) { return o.GetFieldDecimals(table, field, decimals); });
}

Status SqlDatabase::GetFieldOffset(Handle table, std::string_view field, std::uint32_t& offset) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetFieldOffset(table, field, offset); });
}

Status SqlDatabase::PackTable(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.PackTable(table); });
}

Status SqlDatabase::ZapTable(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.ZapTable(table); });
}

Status SqlDatabase::FlushFileBuffers(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.FlushFileBuffers(table); });
}

Status SqlDatabase::CacheRecords(Handle table, std::uint16_t records) {
    return Routed(table, [&](engine::Operations& o) { return o.CacheRecords(table, records); });
}

Status SqlDatabase::SetHandleLong(Handle object, std::uint32_t value) {
    return Routed(object, [&](engine::Operations& o) { return o.SetHandleLong(object, value); });
}

Status SqlDatabase::GetHandleLong(Handle object, std::uint32_t& value) {
    return Routed(object, [&](engine::Operations& o) { return o.GetHandleLong(object, value); });
}

Status SqlDatabase::GetHandleType(Handle object, std::uint16_t& type) {
    return Routed(object, [&](engine::Operations& o) { return o.GetHandleType(object, type); });
}

Status SqlDatabase::CopyTableContents(Handle from, Handle to, std::uint16_t filterOption) {
    return Routed(
        from, [&](engine::Operations& o) { return o.CopyTableContents(from, to, filterOption); });
}

Status SqlDatabase::GotoTop(Handle object) {
    return Routed(object, [&](engine::Operations& o) { return o.GotoTop(object); });
}

Status SqlDatabase::GotoBottom(Handle object) {
    return Routed(object, [&](engine::Operations& o) { return o.GotoBottom(object); });
}

Status SqlDatabase::GotoRecord(Handle table, std::uint32_t record) {
    return Routed(table, [&](engine::Operations& o) { return o.GotoRecord(table, record); });
}

Status SqlDatabase::Skip(Handle object, std::int32_t records) {
    return Routed(object, [&](engine::Operations& o) { return o.Skip(object, records); });
}

Status SqlDatabase::AtBOF(Handle table, bool& atBof) {
    return Routed(table, [&](engine::Operations& o) { return o.AtBOF(table, atBof); });
}

Status SqlDatabase::AtEOF(Handle table, bool& atEof) {
    return Routed(table, [&](engine::Operations& o) { return o.AtEOF(table, atEof); });
}

Status SqlDatabase::GetRecordNum(Handle table, std::uint16_t filterOption, std::uint32_t& record) {
    return Routed(
        table, [&](engine::Operations& o) { return o.GetRecordNum(table, filterOption, record); });
}

Status SqlDatabase::AppendRecord(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.AppendRecord(table); });
}

Status SqlDatabase::DeleteRecord(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.DeleteRecord(table); });
}

Status SqlDatabase::RecallRecord(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.RecallRecord(table); });
}

Status SqlDatabase::IsRecordDeleted(Handle table, bool& deleted) {
    return Routed(table, [&](engine::Operations& o) { return o.IsRecordDeleted(table, deleted); });
}

Status SqlDatabase::IsRecordVisible(Handle object, bool& visible) {
    return Routed(object,
                  [&](engine::Operations& o) { return o.IsRecordVisible(object, visible); });
}

Status SqlDatabase::GetRecord(Handle table, std::string& record) {
    return Routed(table, [&](engine::Operations& o) { return o.GetRecord(table, record); });
}

Status SqlDatabase::SetRecord(Handle object, std::string_view record) {
    return Routed(object, [&](engine::Operations& o) { return o.SetRecord(object, record); });
}

Status SqlDatabase::GetString(Handle table, std::string_view field, std::string& value,
                              std::uint16_t trimOption) {
    return Routed(
        table, [&](engine::Operations& o) { return o.GetString(table, field, value, trimOption); });
}

Status SqlDatabase::SetString(Handle object, std::string_view field, std::string_view value) {
    return Routed(object, [&](engine::Operations& o) { return o.SetString(object, field, value); });
}

Status SqlDatabase::GetShort(Handle table, std::string_view field, std::int16_t& value) {
    return Routed(table, [&](engine::Operations& o) { return o.GetShort(table, field, value); });
}

Status SqlDatabase::SetShort(Handle object, std::string_view field, std::int16_t value) {
    return Routed(object, [&](engine::Operations& o) { return o.SetShort(object, field, value); });
}

Status SqlDatabase::GetLong(Handle table, std::string_view field, std::int32_t& value) {
    return Routed(table, [&](engine::Operations& o) { return o.GetLong(table, field, value); });
}

Status SqlDatabase::SetLong(Handle object, std::string_view field, std::int32_t value) {
    return Routed(object, [&](engine::Operations& o) { return o.SetLong(object, field, value); });
}

Status SqlDatabase::GetDouble(Handle table, std::string_view field, double& value) {
    return Routed(table, [&](engine::Operations& o) { return o.GetDouble(table, field, value); });
}

Status SqlDatabase::SetDouble(Handle object, std::string_view field, double value) {
    return Routed(object, [&](engine::Operations& o) { return o.SetDouble(object, field, value); });
}

Status SqlDatabase::GetLogical(Handle table, std::string_view field, bool& value) {
    return Routed(table, [&](engine::Operations& o) { return o.GetLogical(table, field, value); });
}

Status SqlDatabase::SetLogical(Handle object, std::string_view field, bool value) {
    return Routed(object,
                  [&](engine::Operations& o) { return o.SetLogical(object, field, value); });
}

Status SqlDatabase::GetDate(Handle table, std::string_view field, std::string& date) {
    return Routed(table, [&](engine::Operations& o) { return o.GetDate(table, field, date); });
}

Status SqlDatabase::SetDate(Handle object, std::string_view field, std::string_view date) {
    return Routed(object, [&](engine::Operations& o) { return o.SetDate(object, field, date); });
}

Status SqlDatabase::GetJulian(Handle table, std::string_view field, std::int32_t& julian) {
    return Routed(table, [&](engine::Operations& o) { return o.GetJulian(table, field, julian); });
}

Status SqlDatabase::SetJulian(Handle object, std::string_view field, std::int32_t julian) {
    return Routed(object,
                  [&](engine::Operations& o) { return o.SetJulian(object, field, julian); });
}

Status SqlDatabase::GetMemoLength(Handle table, std::string_view field, std::uint32_t& length) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetMemoLength(table, field, length); });
}

Status SqlDatabase::GetMemoDataType(Handle table, std::string_view field, std::uint16_t& type) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetMemoDataType(table, field, type); });
}

Status SqlDatabase::GetBinary(Handle table, std::string_view field, std::uint32_t offset,
                              std::uint32_t maxLength, std::string& data) {
    return Routed(table, [&](engine::Operations& o) {
        return o.GetBinary(table, field, offset, maxLength, data);
    });
}

Status SqlDatabase::GetBinaryLength(Handle table, std::string_view field, std::uint32_t& length) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetBinaryLength(table, field, length); });
}

Status SqlDatabase::SetBinary(Handle table, std::string_view field, std::uint16_t binaryType,
                              std::uint32_t totalLength, std::uint32_t offset,
                              std::string_view data) {
    return Routed(table, [&](engine::Operations& o) {
        return o.SetBinary(table, field, binaryType, totalLength, offset, data);
    });
}

Status SqlDatabase::SetFilter(Handle table, std::string_view expression) {
    return Routed(table, [&](engine::Operations& o) { return o.SetFilter(table, expression); });
}

Status SqlDatabase::GetFilter(Handle table, std::string& expression) {
    return Routed(table, [&](engine::Operations& o) { return o.GetFilter(table, expression); });
}

Status SqlDatabase::ClearFilter(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.ClearFilter(table); });
}

Status SqlDatabase::SetAOF(Handle table, std::string_view expression,
                           std::uint16_t resolveOptions) {
    return Routed(
        table, [&](engine::Operations& o) { return o.SetAOF(table, expression, resolveOptions); });
}

Status SqlDatabase::GetAOF(Handle table, std::string& expression) {
    return Routed(table, [&](engine::Operations& o) { return o.GetAOF(table, expression); });
}

Status SqlDatabase::GetAOFOptLevel(Handle table, std::uint16_t& level,
                                   std::string& nonOptimizedPart) {
    return Routed(table, [&](engine::Operations& o) {
        return o.GetAOFOptLevel(table, level, nonOptimizedPart);
    });
}

Status SqlDatabase::ClearAOF(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.ClearAOF(table); });
}

Status SqlDatabase::Locate(Handle table, std::string_view expression, bool forward, bool& found) {
    return Routed(
        table, [&](engine::Operations& o) { return o.Locate(table, expression, forward, found); });
}

Status SqlDatabase::Continue(Handle table, bool& found) {
    return Routed(table, [&](engine::Operations& o) { return o.Continue(table, found); });
}

Status SqlDatabase::LockRecord(Handle table, std::uint32_t record) {
    return Routed(table, [&](engine::Operations& o) { return o.LockRecord(table, record); });
}

Status SqlDatabase::UnlockRecord(Handle table, std::uint32_t record) {
    return Routed(table, [&](engine::Operations& o) { return o.UnlockRecord(table, record); });
}

Status SqlDatabase::LockTable(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.LockTable(table); });
}

Status SqlDatabase::UnlockTable(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.UnlockTable(table); });
}

Status SqlDatabase::IsTableLocked(Handle table, bool& locked) {
    return Routed(table, [&](engine::Operations& o) { return o.IsTableLocked(table, locked); });
}

Status SqlDatabase::IsRecordLocked(Handle table, std::uint32_t record, bool& locked) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.IsRecordLocked(table, record, locked); });
}

Status SqlDatabase::GetNumLocks(Handle table, std::uint16_t& count) {
    return Routed(table, [&](engine::Operations& o) { return o.GetNumLocks(table, count); });
}

Status SqlDatabase::CreateIndex(Handle object, std::string_view fileName, std::string_view tag,
                                std::string_view expression, std::string_view condition,
                                std::string_view whileCondition, std::uint32_t options,
                                Handle& index) {
    return Routed(object, [&](engine::Operations& o) {
        return o.CreateIndex(object, fileName, tag, expression, condition, whileCondition, options,
                             index);
    });
}

Status SqlDatabase::OpenIndex(Handle table, std::string_view fileName,
                              std::vector<Handle>& indexes) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.OpenIndex(table, fileName, indexes); });
}

Status SqlDatabase::CloseIndex(Handle index) {
    return Routed(index, [&](engine::Operations& o) { return o.CloseIndex(index); });
}

Status SqlDatabase::GetIndexHandle(Handle table, std::string_view orderName, Handle& index) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.GetIndexHandle(table, orderName, index); });
}

Status SqlDatabase::GetIndexHandleByOrder(Handle table, std::uint16_t order, Handle& index) {
    return Routed(
        table, [&](engine::Operations& o) { return o.GetIndexHandleByOrder(table, order, index); });
}

Status SqlDatabase::GetIndexOrderByHandle(Handle index, std::uint16_t& order) {
    return Routed(index,
                  [&](engine::Operations& o) { return o.GetIndexOrderByHandle(index, order); });
}

Status SqlDatabase::GetAllIndexes(Handle table, std::vector<Handle>& indexes) {
    return Routed(table, [&](engine::Operations& o) { return o.GetAllIndexes(table, indexes); });
}

Status SqlDatabase::GetIndexName(Handle index, std::string& name) {
    return Routed(index, [&](engine::Operations& o) { return o.GetIndexName(index, name); });
}

Status SqlDatabase::GetIndexExpr(Handle index, std::string& expression) {
    return Routed(index, [&](engine::Operations& o) { return o.GetIndexExpr(index, expression); });
}

Status SqlDatabase::GetIndexCondition(Handle index, std::string& condition) {
    return Routed(index,
                  [&](engine::Operations& o) { return o.GetIndexCondition(index, condition); });
}

Status SqlDatabase::GetKeyLength(Handle index, std::uint16_t& length) {
    return Routed(index, [&](engine::Operations& o) { return o.GetKeyLength(index, length); });
}

Status SqlDatabase::IsIndexDescending(Handle index, bool& descending) {
    return Routed(index,
                  [&](engine::Operations& o) { return o.IsIndexDescending(index, descending); });
}

Status SqlDatabase::IsIndexCompound(Handle index, bool& compound) {
    return Routed(index, [&](engine::Operations& o) { return o.IsIndexCompound(index, compound); });
}

Status SqlDatabase::IsIndexUnique(Handle index, bool& unique) {
    return Routed(index, [&](engine::Operations& o) { return o.IsIndexUnique(index, unique); });
}

Status SqlDatabase::GetKeyCount(Handle index, std::uint16_t filterOption, std::uint32_t& count) {
    return Routed(index,
                  [&](engine::Operations& o) { return o.GetKeyCount(index, filterOption, count); });
}

Status SqlDatabase::ExtractKey(Handle index, std::string& key) {
    return Routed(index, [&](engine::Operations& o) { return o.ExtractKey(index, key); });
}

Status SqlDatabase::Seek(Handle index, std::string_view key, std::uint16_t dataType,
                         std::uint16_t seekType, bool& found) {
    return Routed(index, [&](engine::Operations& o) {
        return o.Seek(index, key, dataType, seekType, found);
    });
}

Status SqlDatabase::SeekLast(Handle index, std::string_view key, std::uint16_t dataType,
                             bool& found) {
    return Routed(index,
                  [&](engine::Operations& o) { return o.SeekLast(index, key, dataType, found); });
}

Status SqlDatabase::SetScope(Handle index, std::uint16_t scopeOption, std::string_view scope,
                             std::uint16_t dataType) {
    return Routed(index, [&](engine::Operations& o) {
        return o.SetScope(index, scopeOption, scope, dataType);
    });
}

Status SqlDatabase::GetScope(Handle index, std::uint16_t scopeOption, std::string& scope) {
    return Routed(index,
                  [&](engine::Operations& o) { return o.GetScope(index, scopeOption, scope); });
}

Status SqlDatabase::ClearScope(Handle index, std::uint16_t scopeOption) {
    return Routed(index, [&](engine::Operations& o) { return o.ClearScope(index, scopeOption); });
}

Status SqlDatabase::GetRelKeyPos(Handle index, double& position) {
    return Routed(index, [&](engine::Operations& o) { return o.GetRelKeyPos(index, position); });
}

Status SqlDatabase::SetRelKeyPos(Handle index, double position) {
    return Routed(index, [&](engine::Operations& o) { return o.SetRelKeyPos(index, position); });
}

Status SqlDatabase::Reindex(Handle object) {
    return Routed(object, [&](engine::Operations& o) { return o.Reindex(object); });
}

Status SqlDatabase::EnableEncryption(Handle table, std::string_view password) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.EnableEncryption(table, password); });
}

Status SqlDatabase::EncryptTable(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.EncryptTable(table); });
}

Status SqlDatabase::DecryptTable(Handle table) {
    return Routed(table, [&](engine::Operations& o) { return o.DecryptTable(table); });
}

Status SqlDatabase::IsTableEncrypted(Handle table, bool& encrypted) {
    return Routed(table,
                  [&](engine::Operations& o) { return o.IsTableEncrypted(table, encrypted); });
}

Status SqlDatabase::CreateSQLStatement(Handle connection, Handle& statement) {
    return Routed(connection, [&](engine::Operations& o) {
        return o.CreateSQLStatement(connection, statement);
    });
}

Status SqlDatabase::PrepareSQL(Handle statement, std::string_view sql) {
    return Routed(statement, [&](engine::Operations& o) { return o.PrepareSQL(statement, sql); });
}

Status SqlDatabase::ExecuteSQL(Handle statement, Handle& cursor) {
    return Routed(statement,
                  [&](engine::Operations& o) { return o.ExecuteSQL(statement, cursor); });
}

Status SqlDatabase::ExecuteSQLDirect(Handle statement, std::string_view sql, Handle& cursor) {
    return Routed(statement, [&](engine::Operations& o) {
        return o.ExecuteSQLDirect(statement, sql, cursor);
    });
}

Status SqlDatabase::GetSQLStatementHandle(Handle cursor, Handle& statement) {
    return Routed(
        cursor, [&](engine::Operations& o) { return o.GetSQLStatementHandle(cursor, statement); });
}

Status SqlDatabase::ClearSQLParams(Handle statement) {
    return Routed(statement, [&](engine::Operations& o) { return o.ClearSQLParams(statement); });
}

Status SqlDatabase::CloseSQLStatement(Handle statement) {
    return Routed(statement, [&](engine::Operations& o) { return o.CloseSQLStatement(statement); });
}

Status SqlDatabase::StmtSetTableRights(Handle statement, std::uint16_t checkRights) {
    return Routed(statement, [&](engine::Operations& o) {
        return o.StmtSetTableRights(statement, checkRights);
    });
}

Status SqlDatabase::StmtSetTableReadOnly(Handle statement, std::uint16_t readOnly) {
    return Routed(statement, [&](engine::Operations& o) {
        return o.StmtSetTableReadOnly(statement, readOnly);
    });
}

Status SqlDatabase::StmtSetTableLockType(Handle statement, std::uint16_t lockType) {
    return Routed(statement, [&](engine::Operations& o) {
        return o.StmtSetTableLockType(statement, lockType);
    });
}

Status SqlDatabase::StmtSetTableCharType(Handle statement, std::uint16_t charType) {
    return Routed(statement, [&](engine::Operations& o) {
        return o.StmtSetTableCharType(statement, charType);
    });
}

Status SqlDatabase::StmtSetTableType(Handle statement, std::uint16_t tableType) {
    return Routed(statement,
                  [&](engine::Operations& o) { return o.StmtSetTableType(statement, tableType); });
}

Status SqlDatabase::StmtEnableEncryption(Handle statement, std::string_view password) {
    return Routed(statement, [&](engine::Operations& o) {
        return o.StmtEnableEncryption(statement, password);
    });
}

Status SqlDatabase::StmtSetTablePassword(Handle statement, std::string_view tableName,
                                         std::string_view password) {
    return Routed(statement, [&](engine::Operations& o) {
        return o.StmtSetTablePassword(statement, tableName, password);
    });
}

Status SqlDatabase::DDCreate(std::string_view dictionaryPath, std::uint16_t encrypt,
                             std::string_view description, Handle& dictionary) {
    return RoutedByName(0, dictionaryPath, [&](engine::Operations& o) {
        return o.DDCreate(dictionaryPath, encrypt, description, dictionary);
    });
}

Status SqlDatabase::DDAddTable(Handle dictionary, std::string_view tableName,
                               std::string_view tablePath, std::uint16_t tableType,
                               std::uint16_t charType, std::string_view indexFiles,
                               std::string_view comments) {
    return Routed(dictionary, [&](engine::Operations& o) {
        return o.DDAddTable(dictionary, tableName, tablePath, tableType, charType, indexFiles,
                            comments);
    });
}

Status SqlDatabase::DDAddView(Handle dictionary, std::string_view name, std::string_view comments,
                              std::string_view sql) {
    return Routed(dictionary, [&](engine::Operations& o) {
        return o.DDAddView(dictionary, name, comments, sql);
    });
}

Status SqlDatabase::DDCreateUser(Handle dictionary, std::string_view groupName,
                                 std::string_view userName, std::string_view password,
                                 std::string_view description) {
    return Routed(dictionary, [&](engine::Operations& o) {
        return o.DDCreateUser(dictionary, groupName, userName, password, description);
    });
}

Status SqlDatabase::DDSetDatabaseProperty(Handle dictionary, std::uint16_t propertyId,
                                          std::string_view value) {
    return Routed(dictionary, [&](engine::Operations& o) {
        return o.DDSetDatabaseProperty(dictionary, propertyId, value);
    });
}

Status SqlDatabase::DDSetUserProperty(Handle dictionary, std::string_view userName,
                                      std::uint16_t propertyId, std::string_view value) {
    return Routed(dictionary, [&](engine::Operations& o) {
        return o.DDSetUserProperty(dictionary, userName, propertyId, value);
    });
}

}  // namespace fnrk::tables

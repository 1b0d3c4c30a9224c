// SQL statements of the engine (sql/): statement handles live beside the table handles, and a
// query's static cursor is an ordinary open table of the statement's connection.

#include "engine/engine.hpp"
#include "engine/sql/statement_registry.hpp"
#include "platform/text.hpp"

namespace fnrk::engine {

sql::StatementRegistry& Engine::Statements() {
    if (!statements_) {
        statements_ = std::make_shared<sql::StatementRegistry>(
            *this, [this](Handle connection, std::string_view name) {
                return DictionaryView(connection, name);
            });
    }
    return *statements_;
}

Status Engine::OnStatement(Handle statement,
                           const std::function<Status(sql::StatementSettings&)>& body) {
    sql::StatementSettings* settings = Statements().Settings(statement);
    if (settings == nullptr) return Report(AE_INVALID_SQLSTATEMENT_HANDLE);
    return Report(body(*settings));
}

Status Engine::CreateSQLStatement(Handle connection, Handle& statement) {
    statement = 0;
    if (connections_.find(connection) == connections_.end())
        return Report(AE_INVALID_CONNECTION_HANDLE);
    statement = nextHandle_++;
    Statements().Add(statement, connection);
    return AE_SUCCESS;
}

Status Engine::PrepareSQL(Handle statement, std::string_view sql) {
    std::string message;
    const Status status = Statements().Prepare(statement, sql, message);
    return Report(status, std::move(message));
}

Status Engine::ExecuteSQL(Handle statement, Handle& cursor) {
    std::string message;
    const Status status = Statements().Execute(statement, cursor, message);
    return Report(status, std::move(message));
}

Status Engine::ExecuteSQLDirect(Handle statement, std::string_view sql, Handle& cursor) {
    cursor = 0;
    if (Status status = PrepareSQL(statement, sql); status != AE_SUCCESS) return status;
    return ExecuteSQL(statement, cursor);
}

Status Engine::GetSQLStatementHandle(Handle cursor, Handle& statement) {
    return Report(Statements().StatementOf(cursor, statement));
}

Status Engine::ClearSQLParams(Handle statement) {
    // Statements take no parameters here: their values are written into the text.
    return OnStatement(statement, [](sql::StatementSettings&) { return AE_SUCCESS; });
}

Status Engine::CloseSQLStatement(Handle statement) {
    return Report(Statements().Close(statement));
}

Status Engine::StmtSetTableRights(Handle statement, std::uint16_t checkRights) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetCheckRights(settings, checkRights); });
}

Status Engine::StmtSetTableReadOnly(Handle statement, std::uint16_t readOnly) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetReadOnly(settings, readOnly); });
}

Status Engine::StmtSetTableLockType(Handle statement, std::uint16_t lockType) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetLockType(settings, lockType); });
}

Status Engine::StmtSetTableCharType(Handle statement, std::uint16_t charType) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetCharType(settings, charType); });
}

Status Engine::StmtSetTableType(Handle statement, std::uint16_t tableType) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetTableType(settings, tableType); });
}

Status Engine::StmtEnableEncryption(Handle statement, std::string_view password) {
    return OnStatement(statement, [&](sql::StatementSettings& settings) {
        settings.password = std::string(password);
        return AE_SUCCESS;
    });
}

Status Engine::StmtSetTablePassword(Handle statement, std::string_view tableName,
                                    std::string_view password) {
    return OnStatement(statement, [&](auto& settings) {
        return sql::SetTablePassword(settings, tableName, password);
    });
}

}  // namespace fnrk::engine

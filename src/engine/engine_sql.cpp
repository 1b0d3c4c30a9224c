// SQL statements of the engine (sql/): statement handles live beside the table handles, and a
// query's static cursor is an ordinary open table of the statement's connection.

#include <algorithm>
#include <filesystem>
#include <vector>

#include "engine/engine.hpp"
#include "engine/sql/statement_registry.hpp"
#include "platform/text.hpp"

namespace fnrk::engine {

namespace {

// Sets a numeric setting of a statement when the value is one of `allowed`, else refuses it.
std::function<Status(sql::StatementSettings&)> Choice(
    std::uint16_t value, std::vector<std::uint16_t> allowed, Status refusal,
    std::uint16_t sql::StatementSettings::*setting) {
    return [=](sql::StatementSettings& settings) {
        if (std::find(allowed.begin(), allowed.end(), value) == allowed.end()) return refusal;
        settings.*setting = value;
        return AE_SUCCESS;
    };
}

}  // namespace

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
    return OnStatement(
        statement, Choice(checkRights, {ADS_CHECKRIGHTS, ADS_IGNORERIGHTS}, AE_INVALID_RIGHTSOPTION,
                          &sql::StatementSettings::checkRights));
}

Status Engine::StmtSetTableReadOnly(Handle statement, std::uint16_t readOnly) {
    return OnStatement(statement, Choice(readOnly, {ADS_CURSOR_READONLY, ADS_CURSOR_READWRITE},
                                         AE_INVALID_OPTION, &sql::StatementSettings::readOnly));
}

Status Engine::StmtSetTableLockType(Handle statement, std::uint16_t lockType) {
    return OnStatement(statement,
                       Choice(lockType, {ADS_COMPATIBLE_LOCKING, ADS_PROPRIETARY_LOCKING},
                              AE_INVALID_LOCKTYPE, &sql::StatementSettings::lockType));
}

Status Engine::StmtSetTableCharType(Handle statement, std::uint16_t charType) {
    return OnStatement(statement, Choice(charType, {ADS_ANSI, ADS_DEFAULT}, AE_INVALID_CHARSETTYPE,
                                         &sql::StatementSettings::charType));
}

Status Engine::StmtSetTableType(Handle statement, std::uint16_t tableType) {
    return OnStatement(statement, Choice(tableType, {ADS_CDX, ADS_VFP, ADS_DEFAULT},
                                         AE_INVALID_TABLETYPE, &sql::StatementSettings::tableType));
}

Status Engine::StmtEnableEncryption(Handle statement, std::string_view password) {
    return OnStatement(statement, [&](sql::StatementSettings& settings) {
        settings.password = std::string(password);
        return AE_SUCCESS;
    });
}

Status Engine::StmtSetTablePassword(Handle statement, std::string_view tableName,
                                    std::string_view password) {
    return OnStatement(statement, [&](sql::StatementSettings& settings) {
        const std::string name =
            platform::UpperCase(std::filesystem::path(platform::Trim(tableName)).stem().string());
        if (name.empty()) return AE_INVALID_OBJECT_NAME;
        settings.passwords[name] = std::string(password);
        return AE_SUCCESS;
    });
}

}  // namespace fnrk::engine

// SQL statements over a SQL-kept dossier: the engine's statement runner works through this
// backend's own operations, so a statement reads and writes the database's tables as any
// other caller does. Static cursors become tables of the connection's database under names of
// their own, dropped when their statement closes; ROWIDs end in the record number as 8 decimal
// digits.

#include "backend/frc_database.hpp"
#include "platform/crypto.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers

namespace {

class CursorTablesInDatabase final : public sql::CursorTables {
  public:
    explicit CursorTablesInDatabase(FRCDatabase& backend) : backend_(backend) {
        // Unique between workstations of one database, whose process numbers may meet.
        prefix_ = "fnrk_cursor_" + std::to_string(platform::crypto::RandomNumber()) + "_";
    }
    std::string NewName() override { return prefix_ + std::to_string(++next_); }
    void Remove(Handle connection, const std::string& name) override {
        // A cursor's table left behind is harmless: its name is never handed out again.
        engine::IgnoreStatus(backend_.DropTable(connection, name));
    }

  private:
    FRCDatabase& backend_;
    std::string prefix_;
    std::uint32_t next_ = 0;
};

}  // namespace

sql::StatementRegistry& FRCDatabase::Statements() {
    if (!statements_) {
        statements_ = std::make_unique<sql::StatementRegistry>(
            *this,
            [this](Handle connection, std::string_view name) {
                return DictionaryView(connection, name);
            },
            std::make_unique<CursorTablesInDatabase>(*this), sql::RowIdStyle::Decimal);
    }
    return *statements_;
}

Status FRCDatabase::OnStatement(Handle statement,
                                const std::function<Status(sql::StatementSettings&)>& body) {
    sql::StatementSettings* settings = Statements().Settings(statement);
    if (settings == nullptr) return Report(AE_INVALID_SQLSTATEMENT_HANDLE);
    return Report(body(*settings));
}

Status FRCDatabase::CreateSQLStatement(Handle connection, Handle& statement) {
    statement = 0;
    if (!FindConnection(connection)) return Report(AE_INVALID_CONNECTION_HANDLE);
    statement = NewHandle();
    if (statement == 0) return Report(AE_ALLOCATION_FAILED, "no handles left");
    Statements().Add(statement, connection);
    return AE_SUCCESS;
}

Status FRCDatabase::PrepareSQL(Handle statement, std::string_view sql) {
    return Guarded([&] {
        std::string message;
        const Status status = Statements().Prepare(statement, sql, message);
        return Report(status, std::move(message));
    });
}

Status FRCDatabase::ExecuteSQL(Handle statement, Handle& cursor) {
    return Guarded([&] {
        std::string message;
        const Status status = Statements().Execute(statement, cursor, message);
        return Report(status, std::move(message));
    });
}

Status FRCDatabase::ExecuteSQLDirect(Handle statement, std::string_view sql, Handle& cursor) {
    cursor = 0;
    if (Status status = PrepareSQL(statement, sql); status != AE_SUCCESS) return status;
    return ExecuteSQL(statement, cursor);
}

Status FRCDatabase::GetSQLStatementHandle(Handle cursor, Handle& statement) {
    return Report(Statements().StatementOf(cursor, statement));
}

Status FRCDatabase::ClearSQLParams(Handle statement) {
    // Statements take no parameters: their values are written into the text.
    return OnStatement(statement, [](sql::StatementSettings&) { return AE_SUCCESS; });
}

Status FRCDatabase::CloseSQLStatement(Handle statement) {
    return Guarded([&] { return Report(Statements().Close(statement)); });
}

Status FRCDatabase::StmtSetTableRights(Handle statement, std::uint16_t checkRights) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetCheckRights(settings, checkRights); });
}

Status FRCDatabase::StmtSetTableReadOnly(Handle statement, std::uint16_t readOnly) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetReadOnly(settings, readOnly); });
}

Status FRCDatabase::StmtSetTableLockType(Handle statement, std::uint16_t lockType) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetLockType(settings, lockType); });
}

Status FRCDatabase::StmtSetTableCharType(Handle statement, std::uint16_t charType) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetCharType(settings, charType); });
}

Status FRCDatabase::StmtSetTableType(Handle statement, std::uint16_t tableType) {
    return OnStatement(statement,
                       [&](auto& settings) { return sql::SetTableType(settings, tableType); });
}

Status FRCDatabase::StmtEnableEncryption(Handle statement, std::string_view password) {
    return OnStatement(statement, [&](sql::StatementSettings& settings) {
        settings.password = std::string(password);
        return AE_SUCCESS;
    });
}

Status FRCDatabase::StmtSetTablePassword(Handle statement, std::string_view tableName,
                                         std::string_view password) {
    return OnStatement(statement, [&](auto& settings) {
        return sql::SetTablePassword(settings, tableName, password);
    });
}

}  // namespace fnrk::backend

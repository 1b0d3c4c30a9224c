#include "engine/sql/statement_runner.hpp"

#include <sqlite3.h>

#include <memory>

#include "engine/sql/dialect.hpp"
#include "engine/sql/row_id.hpp"
#include "engine/sql/table_module.hpp"
#include "engine/sql/text_functions.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::sql {

namespace {

constexpr std::string_view kNoSuchTable = "no such table: ";
constexpr int kMaxTables = 64;

struct DatabaseCloser {
    void operator()(sqlite3* db) const { sqlite3_close(db); }
};
struct StatementCloser {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, DatabaseCloser>;
using Statement = std::unique_ptr<sqlite3_stmt, StatementCloser>;

std::string WithoutSchema(std::string name) {
    for (std::string_view schema : {"main.", "temp."}) {
        if (name.compare(0, schema.size(), schema) == 0) return name.substr(schema.size());
    }
    return name;
}

bool IsBlank(const char* text) {
    return text == nullptr ||
           std::string_view(text).find_first_not_of(" \t\r\n;") == std::string_view::npos;
}

// Runs exactly one statement: text after it is refused, never run.
bool Execute(sqlite3* db, const std::string& sql, std::string& message) {
    sqlite3_stmt* raw = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &raw, &tail) !=
        SQLITE_OK) {
        message = sqlite3_errmsg(db);
        return false;
    }
    const Statement statement(raw);
    if (raw == nullptr || !IsBlank(tail)) {
        message = "a declaration must be exactly one statement";
        return false;
    }
    const int rc = sqlite3_step(raw);
    if (rc == SQLITE_DONE || rc == SQLITE_ROW) return true;
    message = sqlite3_errmsg(db);
    return false;
}

// Statements read and write the tables of their folder only: attaching other database files
// (which would create them) is refused.
int RefuseAttach(void*, int action, const char*, const char*, const char*, const char*) {
    return action == SQLITE_ATTACH || action == SQLITE_DETACH ? SQLITE_DENY : SQLITE_OK;
}

// Declares the table or view `name` in `db`; false with a message when it names nothing.
bool DeclareName(TableSource& source, sqlite3* db, const std::string& name, std::string& message) {
    Operations& engine = source.engine;
    Handle open = 0;
    std::string path;
    if (engine.GetTableHandle(source.connection, name, open) == AE_SUCCESS &&
        engine.GetTableFilename(open, ADS_FULLPATHNAME, path) == AE_SUCCESS)
        return Execute(db, TableDeclaration(name, path), message);
    if (source.views) {
        if (const std::optional<std::string> view = source.views(source.connection, name)) {
            return Execute(db, ViewDeclaration(name, RewriteDialect(*view).text), message);
        }
    }
    Handle table = 0;
    if (source.OpenTable(name, true, table, message) != AE_SUCCESS) return false;
    const Status status = engine.GetTableFilename(table, ADS_FULLPATHNAME, path);
    IgnoreStatus(engine.CloseTable(table));  // opened only to be named
    if (status != AE_SUCCESS) {
        message = "cannot name the file of table " + name;
        return false;
    }
    return Execute(db, TableDeclaration(name, path), message);
}

std::string Positioned(sqlite3* db, const RewrittenStatement& rewritten, std::string reason) {
    const int offset = sqlite3_error_offset(db);
    if (offset < 0) return reason;
    return "at position " +
           std::to_string(rewritten.OriginalOffset(static_cast<std::size_t>(offset)) + 1) + ": " +
           reason;
}

Status Prepare(TableSource& source, sqlite3* db, const RewrittenStatement& rewritten,
               Statement& prepared, std::string& message) {
    for (int declared = 0; declared <= kMaxTables; ++declared) {
        sqlite3_stmt* statement = nullptr;
        const char* tail = nullptr;
        const int rc = sqlite3_prepare_v2(
            db, rewritten.text.c_str(), static_cast<int>(rewritten.text.size()), &statement, &tail);
        prepared.reset(statement);
        if (rc == SQLITE_OK) {
            if (statement == nullptr) {
                message = "empty statement";
                return AE_INVALID_STATEMENT;
            }
            const std::string rest = platform::Trim(tail == nullptr ? "" : tail);
            if (!rest.empty() && rest != ";") {
                auto at = static_cast<std::size_t>(tail - rewritten.text.c_str());
                at = rewritten.text.find_first_not_of(" \t\r\n", at);
                message = "at position " + std::to_string(rewritten.OriginalOffset(at) + 1) +
                          ": one statement at a time";
                return AE_SQL_ERROR;
            }
            return AE_SUCCESS;
        }
        if (sqlite3_errcode(db) == SQLITE_AUTH) {
            message =
                "ATTACH and DETACH are refused: a statement works on the tables of its "
                "folder only";
            return AE_SQL_ERROR;
        }
        const std::string error = sqlite3_errmsg(db);
        if (error.compare(0, kNoSuchTable.size(), kNoSuchTable) != 0) {
            message = Positioned(db, rewritten, error);
            return AE_SQL_ERROR;
        }
        const std::string name = WithoutSchema(error.substr(kNoSuchTable.size()));
        std::string problem;
        if (!DeclareName(source, db, name, problem)) {
            message = Positioned(db, rewritten, error) + " (" + problem + ")";
            return AE_TABLE_NOT_FOUND;
        }
    }
    message = "too many tables in one statement";
    return AE_SQL_ERROR;
}

std::optional<FieldInfo> SourceField(const TableSource& source, sqlite3_stmt* statement,
                                     int column) {
    const char* table = sqlite3_column_table_name(statement, column);
    const char* origin = sqlite3_column_origin_name(statement, column);
    if (table == nullptr || origin == nullptr) return std::nullopt;
    const std::string name = platform::UpperCase(origin);
    if (name == "ROWID")
        return FieldInfo{"ROWID", ADS_STRING,
                         static_cast<std::uint32_t>(RowIdLength(source.rowIds)), 0};
    const auto found = source.declaredTables.find(platform::UpperCase(table));
    if (found == source.declaredTables.end()) return std::nullopt;
    for (const FieldInfo& field : found->second) {
        if (platform::UpperCase(field.name) == name) return field;
    }
    return std::nullopt;
}

SqlValue ColumnValue(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
        case SQLITE_INTEGER:
            return static_cast<std::int64_t>(sqlite3_column_int64(statement, column));
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement, column);
        case SQLITE_NULL:
            return std::monostate{};
        default: {
            const auto* text = sqlite3_column_text(statement, column);
            return std::string(text == nullptr ? "" : reinterpret_cast<const char*>(text),
                               static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
        }
    }
}

}  // namespace

Status RunStatement(TableSource& source, std::string_view statement, RunMode mode,
                    StatementResult& result, std::string& message) {
    result = StatementResult{};
    sqlite3* opened = nullptr;
    if (sqlite3_open_v2(":memory:", &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) !=
        SQLITE_OK) {
        sqlite3_close(opened);
        message = "cannot open the SQL engine";
        return AE_ALLOCATION_FAILED;
    }
    Database db(opened);
    if (RegisterTableModule(db.get(), source) != SQLITE_OK ||
        RegisterTextFunctions(db.get()) != SQLITE_OK ||
        sqlite3_set_authorizer(db.get(), RefuseAttach, nullptr) != SQLITE_OK) {
        message = sqlite3_errmsg(db.get());
        return AE_ALLOCATION_FAILED;
    }
    const RewrittenStatement rewritten = RewriteDialect(statement);
    Statement prepared;
    if (Status status = Prepare(source, db.get(), rewritten, prepared, message);
        status != AE_SUCCESS)
        return status;
    sqlite3_stmt* run = prepared.get();
    const int columns = sqlite3_column_count(run);
    result.query = columns > 0;
    for (int i = 0; i < columns; ++i)
        result.columns.push_back(
            {OriginalSpelling(sqlite3_column_name(run, i)), SourceField(source, run, i)});
    if (mode == RunMode::PrepareOnly) return AE_SUCCESS;
    int rc = SQLITE_ROW;
    while ((rc = sqlite3_step(run)) == SQLITE_ROW) {
        std::vector<SqlValue> row;
        row.reserve(static_cast<std::size_t>(columns));
        for (int i = 0; i < columns; ++i) row.push_back(ColumnValue(run, i));
        result.rows.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) {
        message = sqlite3_errmsg(db.get());
        result.rows.clear();
        return AE_SQL_ERROR;
    }
    result.changes = static_cast<std::uint64_t>(sqlite3_changes64(db.get()));
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::sql

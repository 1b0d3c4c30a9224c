#include "backend/sqlite_session.hpp"

#include <sqlite3.h>

namespace fnrk::backend {

namespace {

constexpr int kBusyTimeoutMs = 5000;

struct StatementReset {
    sqlite3_stmt* statement;
    ~StatementReset() {
        sqlite3_reset(statement);
        sqlite3_clear_bindings(statement);
    }
};

void Bind(sqlite3_stmt* statement, int index, const SqlValue& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        sqlite3_bind_int64(statement, index, *number);
    } else if (const auto* real = std::get_if<double>(&value)) {
        sqlite3_bind_double(statement, index, *real);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        sqlite3_bind_text(statement, index, text->data(), static_cast<int>(text->size()),
                          SQLITE_TRANSIENT);
    } else if (const auto* blob = std::get_if<Blob>(&value)) {
        sqlite3_bind_blob(statement, index, blob->bytes.data(),
                          static_cast<int>(blob->bytes.size()), SQLITE_TRANSIENT);
    } else {
        sqlite3_bind_null(statement, index);
    }
}

SqlValue Column(sqlite3_stmt* statement, int index) {
    switch (sqlite3_column_type(statement, index)) {
        case SQLITE_INTEGER:
            return static_cast<std::int64_t>(sqlite3_column_int64(statement, index));
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement, index);
        case SQLITE_TEXT: {
            const auto* text = sqlite3_column_text(statement, index);
            return std::string(reinterpret_cast<const char*>(text),
                               static_cast<std::size_t>(sqlite3_column_bytes(statement, index)));
        }
        case SQLITE_BLOB: {
            const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, index));
            auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, index));
            return Blob{bytes ? std::string(bytes, size) : std::string()};
        }
        default:
            return std::monostate{};
    }
}

}  // namespace

SqliteSession::SqliteSession(const std::string& file) {
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(file.c_str(), &db_, flags, nullptr) != SQLITE_OK) {
        std::string message = db_ ? sqlite3_errmsg(db_) : "out of memory";
        sqlite3_close(db_);
        db_ = nullptr;
        throw SqlFailure("cannot open " + file + ": " + message);
    }
    sqlite3_busy_timeout(db_, kBusyTimeoutMs);
    Execute("PRAGMA journal_mode=WAL");
    Execute("PRAGMA synchronous=NORMAL");
}

SqliteSession::~SqliteSession() {
    for (auto& [text, statement] : statements_) sqlite3_finalize(statement);
    sqlite3_close(db_);
}

void SqliteSession::Fail(std::string_view what) {
    throw SqlFailure(std::string(what) + ": " + sqlite3_errmsg(db_));
}

sqlite3_stmt* SqliteSession::Prepared(std::string_view sql, std::span<const SqlValue> parameters) {
    std::string key(sql);
    auto found = statements_.find(key);
    sqlite3_stmt* statement = nullptr;
    if (found != statements_.end()) {
        statement = found->second;
    } else {
        if (sqlite3_prepare_v2(db_, key.c_str(), static_cast<int>(key.size()), &statement,
                               nullptr) != SQLITE_OK) {
            Fail(key);
        }
        statements_.emplace(std::move(key), statement);
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        Bind(statement, static_cast<int>(i + 1), parameters[i]);
    }
    return statement;
}

void SqliteSession::Execute(std::string_view sql, std::span<const SqlValue> parameters) {
    sqlite3_stmt* statement = Prepared(sql, parameters);
    StatementReset reset{statement};
    int step;
    while ((step = sqlite3_step(statement)) == SQLITE_ROW) {
    }
    if (step != SQLITE_DONE) Fail(sql);
}

std::vector<SqlRow> SqliteSession::Query(std::string_view sql,
                                         std::span<const SqlValue> parameters) {
    sqlite3_stmt* statement = Prepared(sql, parameters);
    StatementReset reset{statement};
    std::vector<SqlRow> rows;
    const int columns = sqlite3_column_count(statement);
    int step;
    while ((step = sqlite3_step(statement)) == SQLITE_ROW) {
        SqlRow row;
        row.reserve(static_cast<std::size_t>(columns));
        for (int column = 0; column < columns; ++column) row.push_back(Column(statement, column));
        rows.push_back(std::move(row));
    }
    if (step != SQLITE_DONE) Fail(sql);
    return rows;
}

std::int64_t SqliteSession::Changes() {
    return sqlite3_changes64(db_);
}

// Transactions nest: only the outermost Begin / Commit reach the database.
void SqliteSession::Begin() {
    if (depth_ == 0) Execute("BEGIN IMMEDIATE");
    ++depth_;
}
void SqliteSession::Commit() {
    if (depth_ > 0 && --depth_ == 0) Execute("COMMIT");
}
void SqliteSession::Rollback() {
    depth_ = 0;
    if (!sqlite3_get_autocommit(db_)) Execute("ROLLBACK");
}

}  // namespace fnrk::backend

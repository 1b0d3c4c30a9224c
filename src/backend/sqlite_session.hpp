#pragma once

// SqlSession over one SQLite database file. Statements are prepared once per text and kept.
// Several connections (of this process or others) may use the same file: writers wait for each
// other up to a few seconds (write-ahead log, busy timeout).

#include <memory>
#include <string>
#include <unordered_map>

#include "backend/sql_session.hpp"

struct sqlite3;
struct sqlite3_stmt;

namespace fnrk::backend {

class SqliteSession final : public SqlSession {
  public:
    // Opens (creating when missing) the database file; throws SqlFailure.
    explicit SqliteSession(const std::string& file);
    ~SqliteSession() override;
    SqliteSession(const SqliteSession&) = delete;
    SqliteSession& operator=(const SqliteSession&) = delete;

    void Execute(std::string_view sql, std::span<const SqlValue> parameters = {}) override;
    std::vector<SqlRow> Query(std::string_view sql,
                              std::span<const SqlValue> parameters = {}) override;
    std::int64_t Changes() override;
    void Begin() override;
    void Commit() override;
    void Rollback() override;

  private:
    sqlite3_stmt* Prepared(std::string_view sql, std::span<const SqlValue> parameters);
    [[noreturn]] void Fail(std::string_view what);

    sqlite3* db_ = nullptr;
    int depth_ = 0;
    std::unordered_map<std::string, sqlite3_stmt*> statements_;
};

}  // namespace fnrk::backend

#pragma once

// SqlSession over one connection to a PostgreSQL server (libpq). Statements are prepared once
// per text and kept. The connection works in the target's schema (created when missing).
// Write transactions of one schema follow one another, as SQLite's do: appends number their
// records from the highest one, and unique tags check their keys, without racing each other.
// The connection also holds the advisory locks of the tables opened on it.

#include <memory>
#include <string>
#include <unordered_map>

#include "backend/advisory_locks.hpp"
#include "backend/connection_target.hpp"
#include "backend/sql_session.hpp"

struct pg_conn;

namespace fnrk::backend {

// `name` as a PostgreSQL identifier, in double quotes.
std::string QuotedName(std::string_view name);

class PostgresSession final : public SqlSession {
  public:
    // Connects; throws SqlFailure (whose text never holds the password).
    explicit PostgresSession(const ConnectionTarget& target);
    ~PostgresSession() override;
    PostgresSession(const PostgresSession&) = delete;
    PostgresSession& operator=(const PostgresSession&) = delete;

    void Execute(std::string_view sql, std::span<const SqlValue> parameters = {}) override;
    std::vector<SqlRow> Query(std::string_view sql,
                              std::span<const SqlValue> parameters = {}) override;
    std::int64_t Changes() override;
    void Begin() override;
    void Commit() override;
    void Rollback() override;

    AdvisoryLockBook& locks() { return *locks_; }
    // Lock keys of a table of this session's schema.
    std::int32_t TableLockKey(const std::string& table) const;

  private:
    std::vector<SqlRow> Run(std::string_view sql, std::span<const SqlValue> parameters);
    const std::string& Prepared(std::string_view sql, int parameterCount);
    [[noreturn]] void Fail(std::string_view what, const char* message);

    pg_conn* connection_ = nullptr;
    std::string schema_;
    std::int64_t writerKey_ = 0;
    int depth_ = 0;
    std::int64_t changes_ = 0;
    std::unordered_map<std::string, std::string> statements_;  // SQL text to prepared name
    std::unique_ptr<AdvisoryLockBook> locks_;
};

}  // namespace fnrk::backend

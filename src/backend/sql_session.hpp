#pragma once

// One connection to a SQL database, whatever its engine: statements with positional
// parameters ("?"), rows as values. A failure throws SqlFailure with the database's message;
// the backend turns it into a status at its API.

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace fnrk::backend {

struct Blob {
    std::string bytes;
    bool operator==(const Blob&) const = default;
};

// NULL, integer, real, UTF-8 text, bytes.
using SqlValue = std::variant<std::monostate, std::int64_t, double, std::string, Blob>;
using SqlRow = std::vector<SqlValue>;

class SqlFailure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class SqlSession {
  public:
    virtual ~SqlSession() = default;
    virtual void Execute(std::string_view sql, std::span<const SqlValue> parameters = {}) = 0;
    virtual std::vector<SqlRow> Query(std::string_view sql,
                                      std::span<const SqlValue> parameters = {}) = 0;
    // Rows changed by the last Execute.
    virtual std::int64_t Changes() = 0;
    virtual void Begin() = 0;
    virtual void Commit() = 0;
    virtual void Rollback() = 0;
};

// A transaction that rolls back unless committed.
class SqlTransaction {
  public:
    explicit SqlTransaction(SqlSession& session) : session_(session) { session_.Begin(); }
    ~SqlTransaction() {
        if (!done_) session_.Rollback();
    }
    SqlTransaction(const SqlTransaction&) = delete;
    SqlTransaction& operator=(const SqlTransaction&) = delete;
    void Commit() {
        session_.Commit();
        done_ = true;
    }

  private:
    SqlSession& session_;
    bool done_ = false;
};

}  // namespace fnrk::backend

#pragma once

// What differs from one SQL engine to the next: column types, how to reach a database and how
// locks between workstations are kept. The SQL text of the backend is otherwise common
// (row-value comparisons, ON CONFLICT, LIMIT), so a further engine is one more dialect.

#include <memory>
#include <string>
#include <string_view>

#include "backend/connection_target.hpp"
#include "backend/sql_session.hpp"
#include "backend/table_locks.hpp"

namespace fnrk::backend {

enum class ColumnKind { Integer, Real, Text, Bytes };

class SqlDialect {
  public:
    virtual ~SqlDialect() = default;
    virtual std::string_view TypeName(ColumnKind kind) const = 0;
    // Opens a session on the target; throws SqlFailure.
    virtual std::unique_ptr<SqlSession> Open(const ConnectionTarget& target) const = 0;
    // The locks of one open table of `session` (a session this dialect opened).
    virtual std::unique_ptr<TableLocks> NewLocks(SqlSession& session,
                                                 const std::string& table) const = 0;
};

const SqlDialect& SqliteDialect();
const SqlDialect& PostgresDialect();

// The dialect of a driver name (case-insensitive); nullptr for an unknown driver.
const SqlDialect* DialectOf(std::string_view driver);

}  // namespace fnrk::backend

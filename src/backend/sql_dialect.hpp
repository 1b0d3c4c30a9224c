#pragma once

// What differs from one SQL engine to the next: column types and how to reach a database. The
// SQL text of the backend is otherwise common (row-value comparisons, ON CONFLICT, LIMIT), so
// a further engine is one more dialect.

#include <memory>
#include <string_view>

#include "backend/connection_target.hpp"
#include "backend/sql_session.hpp"

namespace fnrk::backend {

enum class ColumnKind { Integer, Real, Text, Bytes };

class SqlDialect {
  public:
    virtual ~SqlDialect() = default;
    virtual std::string_view TypeName(ColumnKind kind) const = 0;
    // Opens a session on the target; throws SqlFailure.
    virtual std::unique_ptr<SqlSession> Open(const ConnectionTarget& target) const = 0;
};

// The dialect of a driver name (case-insensitive); nullptr for an unknown driver.
const SqlDialect* DialectOf(std::string_view driver);

}  // namespace fnrk::backend

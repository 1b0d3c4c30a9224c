#include "backend/sql_dialect.hpp"

#include "platform/text.hpp"

namespace fnrk::backend {

const SqlDialect* DialectOf(std::string_view driver) {
    if (platform::EqualsNoCase(driver, "SQLite")) return &SqliteDialect();
    if (platform::EqualsNoCase(driver, "PostgreSQL")) return &PostgresDialect();
    return nullptr;
}

}  // namespace fnrk::backend

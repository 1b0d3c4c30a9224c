#include "backend/sql_dialect.hpp"
#include "backend/sqlite_session.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

namespace {

class SqliteDialect final : public SqlDialect {
  public:
    std::string_view TypeName(ColumnKind kind) const override {
        switch (kind) {
            case ColumnKind::Integer:
                return "INTEGER";
            case ColumnKind::Real:
                return "REAL";
            case ColumnKind::Text:
                return "TEXT";
            case ColumnKind::Bytes:
                break;
        }
        return "BLOB";
    }
    std::unique_ptr<SqlSession> Open(const ConnectionTarget& target) const override {
        return std::make_unique<SqliteSession>(target.database);
    }
};

}  // namespace

const SqlDialect* DialectOf(std::string_view driver) {
    static const SqliteDialect sqlite;
    if (platform::EqualsNoCase(driver, "SQLite")) return &sqlite;
    return nullptr;
}

}  // namespace fnrk::backend

#include "backend/catalog_locks.hpp"
#include "backend/sql_dialect.hpp"
#include "backend/sqlite_session.hpp"

namespace fnrk::backend {

namespace {

class Sqlite final : public SqlDialect {
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
        auto session = std::make_unique<SqliteSession>(target.database);
        CatalogLocks::EnsureCatalog(*session);
        return session;
    }
    std::unique_ptr<TableLocks> NewLocks(SqlSession& session,
                                         const std::string& table) const override {
        return std::make_unique<CatalogLocks>(session, table);
    }
};

}  // namespace

const SqlDialect& SqliteDialect() {
    static const Sqlite dialect;
    return dialect;
}

}  // namespace fnrk::backend

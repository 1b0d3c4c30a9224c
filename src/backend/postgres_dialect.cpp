#include "backend/advisory_locks.hpp"
#include "backend/postgres_session.hpp"
#include "backend/sql_dialect.hpp"

namespace fnrk::backend {

namespace {

class Postgres final : public SqlDialect {
  public:
    std::string_view TypeName(ColumnKind kind) const override {
        switch (kind) {
            case ColumnKind::Integer:
                return "BIGINT";
            case ColumnKind::Real:
                return "DOUBLE PRECISION";
            case ColumnKind::Text:
                return "TEXT";
            case ColumnKind::Bytes:
                break;
        }
        return "BYTEA";
    }
    std::unique_ptr<SqlSession> Open(const ConnectionTarget& target) const override {
        return std::make_unique<PostgresSession>(target);
    }
    std::unique_ptr<TableLocks> NewLocks(SqlSession& session,
                                         const std::string& table) const override {
        return std::make_unique<AdvisoryTableLocks>(static_cast<PostgresSession&>(session), table);
    }
};

}  // namespace

const SqlDialect& PostgresDialect() {
    static const Postgres dialect;
    return dialect;
}

}  // namespace fnrk::backend

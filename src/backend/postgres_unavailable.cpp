// PostgreSQL in a build without libpq (the Windows build): every way in fails with the reason,
// which the backend reports as the connection's error.

#include "backend/sql_dialect.hpp"
#include "backend/sql_session.hpp"
#include "backend/staged_schema.hpp"

namespace fnrk::backend {

namespace {

[[noreturn]] void NotAvailable() {
    throw SqlFailure("PostgreSQL is not available in this build (built without libpq)");
}

class UnavailablePostgres final : public SqlDialect {
  public:
    std::string_view TypeName(ColumnKind) const override { NotAvailable(); }
    std::unique_ptr<SqlSession> Open(const ConnectionTarget&) const override { NotAvailable(); }
    std::unique_ptr<TableLocks> NewLocks(SqlSession&, const std::string&) const override {
        NotAvailable();
    }
};

}  // namespace

const SqlDialect& PostgresDialect() {
    static const UnavailablePostgres dialect;
    return dialect;
}

StagedSchemaClaim::StagedSchemaClaim(std::string_view, const std::string&) {
    NotAvailable();
}

StagedSchemaClaim::~StagedSchemaClaim() = default;

void DropAbandonedStagedSchemas(std::string_view) {
    NotAvailable();
}

void PublishStagedSchema(std::string_view, const std::string&) {
    NotAvailable();
}

void DropStagedSchema(std::string_view, const std::string&) {
    NotAvailable();
}

}  // namespace fnrk::backend

#include "backend/staged_schema.hpp"

#include <algorithm>
#include <vector>

#include "backend/connection_target.hpp"
#include "backend/postgres_session.hpp"
#include "backend/sql_session.hpp"

namespace fnrk::backend {

namespace {

// The catalog a connection creates in a schema as soon as it connects; an empty one in the
// target is replaced by the staged one.
constexpr const char* kCatalogTables[] = {"fnrk_table", "fnrk_tag", "fnrk_crypt", "fnrk_lock",
                                          "fnrk_open"};

ConnectionTarget TargetOf(std::string_view connectionPath) {
    std::string error;
    auto target = ParseConnectionPath(connectionPath, error);
    if (!target) throw SqlFailure(error);
    if (target->schema.empty()) target->schema = "public";
    return *target;
}

constexpr std::string_view kStagingPrefix = "fnrk_copying_";

// Takes (or, with !take, gives back) the claim on a staging schema; false when another holds it.
bool Claim(SqlSession& session, const std::string& staging, bool take) {
    SqlValue parameters[] = {staging};
    const auto rows = session.Query(take ? "SELECT pg_try_advisory_lock(hashtext(?))"
                                         : "SELECT pg_advisory_unlock(hashtext(?))",
                                    parameters);
    return !rows.empty() && rows[0][0] == SqlValue(std::int64_t{1});
}

std::vector<std::string> TablesOf(SqlSession& session, const std::string& schema) {
    SqlValue parameters[] = {schema};
    std::vector<std::string> names;
    for (const SqlRow& row :
         session.Query("SELECT tablename FROM pg_tables WHERE schemaname = ?", parameters))
        names.push_back(std::get<std::string>(row.at(0)));
    return names;
}

}  // namespace

void PublishStagedSchema(std::string_view connectionPath, const std::string& staging) {
    const ConnectionTarget target = TargetOf(connectionPath);
    PostgresSession session(target);
    SqlTransaction transaction(session);
    const std::string into = QuotedName(target.schema);
    const std::vector<std::string> present = TablesOf(session, target.schema);
    for (const char* catalog : kCatalogTables) {
        if (std::find(present.begin(), present.end(), catalog) == present.end()) continue;
        if (std::string_view(catalog) == "fnrk_table" &&
            !session.Query("SELECT 1 FROM " + into + ".fnrk_table LIMIT 1").empty())
            throw SqlFailure("schema " + target.schema + " already holds tables");
        session.Execute("DROP TABLE " + into + "." + catalog);
    }
    for (const std::string& table : TablesOf(session, staging))
        session.Execute("ALTER TABLE " + QuotedName(staging) + "." + QuotedName(table) +
                        " SET SCHEMA " + into);
    session.Execute("DROP SCHEMA " + QuotedName(staging));
    transaction.Commit();
}

StagedSchemaClaim::StagedSchemaClaim(std::string_view connectionPath, const std::string& staging)
    : session_(std::make_unique<PostgresSession>(TargetOf(connectionPath))) {
    if (!Claim(*session_, staging, true)) throw SqlFailure("another copy is building " + staging);
}

StagedSchemaClaim::~StagedSchemaClaim() = default;  // the connection's end gives the claim back

void DropAbandonedStagedSchemas(std::string_view connectionPath) {
    PostgresSession session(TargetOf(connectionPath));
    SqlValue pattern[] = {std::string(kStagingPrefix.substr(0, 4)) + "%"};
    for (const SqlRow& row :
         session.Query("SELECT nspname FROM pg_namespace WHERE nspname LIKE ?", pattern)) {
        const auto& staging = std::get<std::string>(row.at(0));
        const std::string_view id = std::string_view(staging).substr(kStagingPrefix.size());
        if (!staging.starts_with(kStagingPrefix) || id.empty() ||
            id.find_first_not_of("0123456789") != std::string_view::npos)
            continue;                                  // not a name a copy gives
        if (!Claim(session, staging, true)) continue;  // its copy runs
        session.Execute("DROP SCHEMA IF EXISTS " + QuotedName(staging) + " CASCADE");
        Claim(session, staging, false);
    }
}

void DropStagedSchema(std::string_view connectionPath, const std::string& staging) {
    PostgresSession session(TargetOf(connectionPath));
    session.Execute("DROP SCHEMA IF EXISTS " + QuotedName(staging) + " CASCADE");
}

}  // namespace fnrk::backend

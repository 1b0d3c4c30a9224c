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

void DropStagedSchema(std::string_view connectionPath, const std::string& staging) {
    PostgresSession session(TargetOf(connectionPath));
    session.Execute("DROP SCHEMA IF EXISTS " + QuotedName(staging) + " CASCADE");
}

}  // namespace fnrk::backend

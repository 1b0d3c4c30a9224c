#pragma once

// A dossier copied into a PostgreSQL database is built in a schema of its own and moved into
// its place at the end, in one transaction: until then nothing of it stands where it belongs,
// and a copy that fails or dies leaves only the staging schema behind. The copy claims its
// schema for as long as it runs (an advisory lock of a connection of its own, which the server
// drops when the process dies), so that a later copy tells an abandoned one from a live one.

#include <memory>
#include <string>
#include <string_view>

namespace fnrk::backend {

class SqlSession;

// The claim on a staging schema, held from before the schema is made until the copy ends.
class StagedSchemaClaim {
  public:
    // Throws SqlFailure when the database cannot be reached or another copy holds the claim.
    StagedSchemaClaim(std::string_view connectionPath, const std::string& staging);
    ~StagedSchemaClaim();
    StagedSchemaClaim(const StagedSchemaClaim&) = delete;
    StagedSchemaClaim& operator=(const StagedSchemaClaim&) = delete;

  private:
    std::unique_ptr<SqlSession> session_;  // the PostgreSQL connection that holds the claim
};

// Drops every staging schema of the database that no running copy claims. Throws SqlFailure
// when the database cannot be reached.
void DropAbandonedStagedSchemas(std::string_view connectionPath);

// Moves every table of schema `staging` into the schema that `connectionPath` (a PostgreSQL
// connection path) names, and drops `staging`. The target must hold no table yet (only an
// empty catalog); otherwise nothing moves. Throws SqlFailure with the reason.
void PublishStagedSchema(std::string_view connectionPath, const std::string& staging);

// Drops schema `staging` with everything in it; a schema that is not there is no failure.
// Throws SqlFailure when the database cannot be reached.
void DropStagedSchema(std::string_view connectionPath, const std::string& staging);

}  // namespace fnrk::backend

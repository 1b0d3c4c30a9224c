#pragma once

// A dossier copied into a PostgreSQL database is built in a schema of its own and moved into
// its place at the end, in one transaction: until then nothing of it stands where it belongs,
// and a copy that fails or dies leaves only the staging schema behind.

#include <string>
#include <string_view>

namespace fnrk::backend {

// Moves every table of schema `staging` into the schema that `connectionPath` (a PostgreSQL
// connection path) names, and drops `staging`. The target must hold no table yet (only an
// empty catalog); otherwise nothing moves. Throws SqlFailure with the reason.
void PublishStagedSchema(std::string_view connectionPath, const std::string& staging);

// Drops schema `staging` with everything in it; a schema that is not there is no failure.
// Throws SqlFailure when the database cannot be reached.
void DropStagedSchema(std::string_view connectionPath, const std::string& staging);

}  // namespace fnrk::backend

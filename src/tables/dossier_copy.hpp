#pragma once

// Copies a whole dossier between places of any kind (a folder of table files, a SQLite database,
// a PostgreSQL database): every table with its records as stored (deleted ones and record
// numbers kept, memos included) and its index tags in their order.
//
// The copy is complete or absent: it is built under a temporary name beside the target (a
// folder or file ".copying-<pid>", or a schema "fnrk_copying_<pid>") and put in place only when
// every table is there. A failed copy removes what it built; one that is killed leaves it under
// the temporary name, never under the target's, until a later copy to the same target finds
// its process gone (a staging schema: its claim given up) and removes it.

#include <cstddef>
#include <functional>
#include <string>

#include "engine/errors.hpp"
#include "tables/dossier_place.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables {

// Told before each table is copied and once at the end (with `done` equal to `total`).
using DossierCopyProgress =
    std::function<void(const std::string& table, std::size_t done, std::size_t total)>;

// Copies the dossier at `from` to `to`, which must not hold a dossier yet (an empty folder or
// an empty PostgreSQL schema may be there). Encrypted tables are opened with `password` and
// copied encrypted with it; without one they are refused. A failure answers its status with the
// reason in `error`, which never holds a password.
[[nodiscard]] engine::Status CopyDossier(SqlDatabase& db, const DossierPlace& from,
                                         const DossierPlace& to, const std::string& password,
                                         const DossierCopyProgress& progress, std::string& error);

}  // namespace fnrk::tables

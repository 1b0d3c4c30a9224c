#pragma once

// Where a dossier's tables are kept: a folder of table files, a SQLite database file or a
// PostgreSQL database, as a user names it ("/data/soc1", "sqlite:/data/soc1.sqlite",
// "postgresql://office/soc1" or a libpq connection string "host=... dbname=...").

#include <string>
#include <string_view>

namespace fnrk::tables {

struct DossierPlace {
    enum class Kind { Folder, Sqlite, Postgres };
    Kind kind = Kind::Folder;
    std::string where;   // the folder, the SQLite file, or the PostgreSQL URI / connection string
    std::string schema;  // PostgreSQL only: the schema holding the tables; empty is "public"
};

// The place a text names; a folder or SQLite path is made absolute. Throws std::invalid_argument
// for a "sqlite:" without a path and a PostgreSQL connection string holding ";".
DossierPlace ParseDossierPlace(std::string_view text);

// What SqlDatabase::Connect26 takes to reach the place.
std::string ConnectionPath(const DossierPlace& place);

// A place shown in a message: its kind and location, a PostgreSQL one without its password.
std::string Shown(const DossierPlace& place);

}  // namespace fnrk::tables

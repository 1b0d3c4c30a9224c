#pragma once

// What a backend connection path names. Forms accepted:
//   "<SQL>Driver=SQLite;Database=dossier.sqlite<DIR>/data/soc1/"
//   "Driver=SQLite;Database=/data/db.sqlite"
//   "/data/soc1/"                      (a folder: its "fennrick.sqlite")
//   "Driver=PostgreSQL;Server=db.office;Port=5432;Database=fennrick;User=ann;Password=...;
//    Schema=soc1"                      (Server may be a Unix socket folder; Schema, the
//                                       schema holding the dossier, defaults to "public")
// A relative SQLite Database is taken from the "<DIR>" folder. Text before "<SQL>" is ignored.

#include <optional>
#include <string>
#include <string_view>

namespace fnrk::backend {

struct ConnectionTarget {
    std::string driver = "SQLite";
    std::string database;  // file (SQLite) or database name
    std::string folder;    // the dossier folder behind "<DIR>", if any
    std::string server;    // host, port and user for server engines
    std::string port;
    std::string user;
    std::string password;
    std::string schema;
};

// The database file a folder gets when nothing else is named.
inline constexpr std::string_view kDefaultDatabaseFile = "fennrick.sqlite";

// No value when the text is malformed (an item without "=", an unknown key).
std::optional<ConnectionTarget> ParseConnectionPath(std::string_view path, std::string& error);

// The path as it may be shown: the value of every item but Driver, Server, Port, Database,
// User and Schema (a Password, or what a misspelt key may hold) replaced by "***".
std::string WithoutPassword(std::string_view path);

}  // namespace fnrk::backend

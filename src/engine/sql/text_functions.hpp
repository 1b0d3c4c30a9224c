#pragma once

// Text functions of the statement dialect that SQLite lacks: LEFT(text, n) and RIGHT(text, n),
// counting characters (not bytes) of UTF-8 text.

struct sqlite3;

namespace fnrk::engine::sql {

int RegisterTextFunctions(sqlite3* db);

}  // namespace fnrk::engine::sql

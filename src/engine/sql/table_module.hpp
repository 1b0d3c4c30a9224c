#pragma once

// The SQLite virtual-table module over engine tables. A statement names a table; the runner
// declares it with TableDeclaration, and the module then reads it through the engine's
// operations: natural order for a plain scan, an index tag's scope for equality and range
// conditions on a field the tag is keyed on, a direct jump for "ROWID = ...". Deleted records
// show only when the engine shows them. INSERT, UPDATE and DELETE go through PendingWrites, so
// they keep the indexes and apply only when the statement has succeeded.

#include <string>
#include <string_view>

#include "engine/sql/table_source.hpp"

struct sqlite3;

namespace fnrk::engine::sql {

inline constexpr std::string_view kTableModule = "fnrk_table";

// Registers the module on `db`; `source` must outlive `db`.
int RegisterTableModule(sqlite3* db, TableSource& source);

// The statement that declares `name` as the table file `path`.
std::string TableDeclaration(std::string_view name, std::string_view path);
// The statement that declares `name` as a view of the query `sql` (one statement: the runner
// refuses anything after it).
std::string ViewDeclaration(std::string_view name, std::string_view sql);

}  // namespace fnrk::engine::sql

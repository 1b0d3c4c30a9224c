#pragma once

// The rows of a query written into a table file of their own and opened as an engine table, so
// that every navigation and field function takes the cursor handle. Columns that show a table
// field keep its type, length and decimals; computed columns are typed from their values.
// Field names are the column names made valid (letters, digits and "_", at most 10, unique;
// a computed column without a usable name is "EXPR").

#include <string>
#include <vector>

#include "engine/sql/statement_runner.hpp"

namespace fnrk::engine::sql {

// The fields the cursor of `result` gets.
std::vector<FieldInfo> CursorFields(const StatementResult& result);

// Creates the file `path` with the rows of `result` and leaves it open at its first row.
[[nodiscard]] Status MaterializeCursor(TableSource& source, const std::string& path,
                                       const StatementResult& result, bool readOnly, Handle& cursor,
                                       std::string& message);

}  // namespace fnrk::engine::sql

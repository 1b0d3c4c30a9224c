#pragma once

// The index half of `fennrick table`: tags, dump --tag, seek, index, reindex, and the check of
// a SQL-kept table, which is its records and tags read back through the table layer.

#include <string>
#include <vector>

#include "cli/table_access.hpp"

namespace fnrk::cli {

// Every record (deleted ones too) as `table dump` prints them, in the order of a tag.
void DumpInTagOrder(const TableSource& source, const std::string& tag);

// Problems of a SQL-kept table: records that cannot be read, tags that loop or do not list
// every record once.
std::vector<std::string> CheckSqlTable(const TableSource& source);

}  // namespace fnrk::cli

#pragma once

// A field of a record buffer (the table file's layout, Windows-1252) as a typed SQL column and
// back: text right-trimmed in UTF-8, numbers as reals, dates as "YYYYMMDD", logicals as 0 / 1,
// blank values as NULL. Memo fields are not in the record: their text lives in its own column.

#include <string>

#include "backend/sql_dialect.hpp"
#include "backend/sql_session.hpp"
#include "engine/dbf/field.hpp"

namespace fnrk::backend {

ColumnKind ColumnKindOf(char fieldType);
SqlValue ColumnValue(const std::string& record, const engine::dbf::Field& field);
// Writes the column's value into the record buffer (blank for NULL).
void StoreColumn(const SqlValue& value, const engine::dbf::Field& field, std::string& record);

}  // namespace fnrk::backend

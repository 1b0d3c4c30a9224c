#pragma once

// A field of a record buffer (the table file's layout, Windows-1252) as a typed SQL column and
// back: text right-trimmed in UTF-8, numbers as reals (currency as integer ten-thousandths),
// dates as "YYYYMMDD", logicals as 0 / 1, blank values as NULL, date-and-time values as their
// stored bytes. Memo fields are not in the record: their text lives in its own column.

#include <string>

#include "backend/sql_dialect.hpp"
#include "backend/sql_session.hpp"
#include "engine/dbf/field.hpp"

namespace fnrk::backend {

ColumnKind ColumnKindOf(char fieldType);
SqlValue ColumnValue(const std::string& record, const engine::dbf::Field& field);
// Writes the column's value into the record buffer (blank for NULL).
void StoreColumn(const SqlValue& value, const engine::dbf::Field& field, std::string& record);

// A memo field's bytes in the record buffer only tell whether there is a memo, the backend having
// no memo blocks: blank for an empty memo, as a table file has it, otherwise block number 1,
// which no memo file hands out (its header fills the first blocks).
void MarkMemo(const engine::dbf::Field& field, bool hasMemo, std::string& record);
// Whether a memo field's bytes in a record buffer name a memo (not blank, not block 0).
bool NamesMemo(const std::string& record, const engine::dbf::Field& field);

}  // namespace fnrk::backend

#pragma once

// Fields of engine tables as SQL values and back. Character fields are text as stored (blank
// padded; the columns compare with trailing blanks ignored), numbers are integers or reals
// (blank numbers are NULL), dates are ISO "YYYY-MM-DD" text (the empty date is NULL), logicals
// are 1 / 0, memos are text.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "engine/operations.hpp"

struct sqlite3_context;
struct sqlite3_value;

namespace fnrk::engine::sql {

struct FieldInfo {
    std::string name;
    std::uint16_t type = ADS_STRING;  // ADS_STRING, ADS_NUMERIC, ... as GetFieldType gives them
    std::uint32_t length = 0;
    std::uint16_t decimals = 0;
};

// A value ready to be written to a field: blank, text, number, julian day or logical.
struct BlankValue {};
struct JulianDay {
    std::int32_t day = 0;
};
using FieldValue = std::variant<BlankValue, std::string, double, JulianDay, bool>;

[[nodiscard]] Status ReadFieldInfos(Operations& engine, Handle table,
                                    std::vector<FieldInfo>& fields);

// The column type a field is declared with in SQL.
std::string SqlColumnType(const FieldInfo& field);

// Sets the result of `context` to the field's value in the current record.
[[nodiscard]] Status ResultFieldValue(Operations& engine, Handle table, const FieldInfo& field,
                                      sqlite3_context* context);

// Converts a SQL value for the field; empty on success, else why it does not fit.
std::string ToFieldValue(const FieldInfo& field, sqlite3_value* value, FieldValue& out);

[[nodiscard]] Status WriteFieldValue(Operations& engine, Handle table, const FieldInfo& field,
                                     const FieldValue& value);

// "YYYY-MM-DD" of a julian day, and back (none for anything else).
std::string IsoDate(std::int32_t julian);
std::optional<std::int32_t> JulianFromIso(std::string_view text);

}  // namespace fnrk::engine::sql

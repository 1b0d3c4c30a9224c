#pragma once

// Conversions of a caller's field value (text, number or logical) to what a field of a given
// letter type takes, and the stored form of a value inside a raw record buffer.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace fnrk::tables {

// The empty date as the date routines give and take it.
inline constexpr std::string_view kEmptyDate = "  /  /    ";

using FieldValue = std::variant<std::monostate, std::string, double, bool>;

// Text as written to a character field: numbers in their shortest form, logicals "T" / "F".
std::string ValueAsText(const FieldValue& value);
// A number, or a text that is one (blanks around it allowed); false for anything else.
bool ValueAsNumber(const FieldValue& value, double& number);
// A logical; texts "T", ".T.", "Y", "TRUE" (any case) and non-zero numbers are true.
bool ValueAsLogical(const FieldValue& value);

enum class StoredText { Ok, UnsupportedType, BadValue, TooLong };

// The bytes a field of type `letter` ("C", "N", "L", "D"), `length` and `decimals` holds for
// `value` inside a record buffer (text in Windows-1252, numbers right-aligned, dates YYYYMMDD,
// an empty date blank). Other types are not supported.
StoredText StoredFieldText(const std::string& letter, std::uint32_t length, std::uint16_t decimals,
                           const FieldValue& value, std::string& stored);

}  // namespace fnrk::tables

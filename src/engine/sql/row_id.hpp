#pragma once

// "ROWID" values of SQL results: 18 characters, 12 naming the table and 6 giving the record
// number in base 64, most significant digit first, over the alphabet
// "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/".
//
// The table part is the 64-bit FNV-1a digest of the table's file name (no folder, no extension,
// upper case) written as 12 digits of the same alphabet, most significant first. It depends on
// nothing but the name, so a dossier copied to another folder keeps its ROWIDs.
//
// Statements over a SQL-kept dossier give the same table part followed by the record number as
// 8 decimal digits (RowIdStyle::Decimal), 20 characters in all.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fnrk::engine::sql {

inline constexpr std::size_t kRowIdLength = 18;
inline constexpr std::size_t kRowIdTableLength = 12;
inline constexpr std::size_t kRowIdRecordLength = 6;
inline constexpr std::size_t kDecimalRowIdRecordLength = 8;

enum class RowIdStyle { Base64, Decimal };

// The length of a whole ROWID.
std::size_t RowIdLength(RowIdStyle style);

// The 12 characters naming the table whose file is `path` (or a bare table name).
std::string RowIdTablePart(std::string_view path);
// `tablePart` (12 characters) followed by the record number's digits.
std::string MakeRowId(std::string_view tablePart, std::uint32_t record,
                      RowIdStyle style = RowIdStyle::Base64);
// The record number of the last 6 (8) characters; none when the text is shorter or holds a
// character outside the alphabet (not a decimal digit).
std::optional<std::uint32_t> RowIdRecord(std::string_view rowId,
                                         RowIdStyle style = RowIdStyle::Base64);

}  // namespace fnrk::engine::sql

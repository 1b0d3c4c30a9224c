#pragma once

// Values of one field inside a record buffer. Text is Windows-1252 bytes as stored; numbers in
// N and F fields are right-aligned ASCII with the field's decimals.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/dbf/field.hpp"

namespace fnrk::engine::dbf {

inline std::string_view FieldBytes(const char* record, const Field& field) {
    return {record + field.offset, field.length};
}

// The number a numeric-like field (N F I B Y) holds; blank text is 0.
double ReadNumber(const char* record, const Field& field);

// Stores a number in a numeric-like field, rounded to its decimals. False, and nothing written,
// when the number does not fit (too many digits, or not finite).
bool WriteNumber(char* record, const Field& field, double value);

// Currency (Y): a signed 64-bit count of ten-thousandths, read and written exactly.
inline constexpr std::int64_t kMoneyScale = 10'000;
std::int64_t ReadMoney(const char* record, const Field& field);
void WriteMoney(char* record, const Field& field, std::int64_t units);

// Date and time (T): the julian day (0 for none), then the milliseconds since midnight.
inline constexpr std::int32_t kMillisecondsPerDay = 86'400'000;
struct Stamp {
    std::int32_t julian = 0;
    std::int32_t milliseconds = 0;
};
Stamp ReadStamp(const char* record, const Field& field);
void WriteStamp(char* record, const Field& field, Stamp stamp);

// Logical fields: "T", "t", "Y", "y" are true; anything else false.
bool ReadLogical(const char* record, const Field& field);
void WriteLogical(char* record, const Field& field, bool value);

// Text cut to the field's length or padded with blanks.
void WriteText(char* record, const Field& field, std::string_view text);

// Memo block numbers: 10 ASCII digits (blank for none) or a 4-byte integer in Visual FoxPro.
// A pointer that is not a block number (other characters, beyond 32 bits) reads as no block:
// MemoBlockValid tells it apart from a blank one.
std::uint32_t ReadMemoBlock(const char* record, const Field& field);
bool MemoBlockValid(const char* record, const Field& field);
void WriteMemoBlock(char* record, const Field& field, std::uint32_t block);

// What an empty field holds in every byte: zero for the types stored as binary (integer, double,
// currency, datetime, a 4-byte memo block number), a blank otherwise.
char EmptyByte(const Field& field);
// True when every byte of the field is its empty byte.
bool IsBlank(const char* record, const Field& field);
// A new record: not deleted, every field empty.
std::string BlankRecord(const std::vector<Field>& fields, std::size_t recordLength);

}  // namespace fnrk::engine::dbf

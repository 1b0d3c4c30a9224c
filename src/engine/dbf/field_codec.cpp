#include "engine/dbf/field_codec.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>

#include "engine/io/byte_order.hpp"

namespace fnrk::engine::dbf {

namespace {

// Parses right-aligned ASCII digits the way xBase does: leading blanks skipped, stops at the
// first character that cannot continue the number.
double ParseNumberText(std::string_view text) {
    std::size_t start = 0;
    while (start < text.size() && text[start] == ' ') ++start;
    const char* first = text.data() + start;
    const char* last = text.data() + text.size();
    if (first < last && *first == '+') ++first;
    double value = 0;
    std::from_chars(first, last, value, std::chars_format::fixed);
    return value;
}

std::int64_t ReadLe64(const char* p) {
    std::uint64_t value = 0;
    for (int i = 7; i >= 0; --i) value = (value << 8) | static_cast<unsigned char>(p[i]);
    return static_cast<std::int64_t>(value);
}

void WriteLe64(char* p, std::uint64_t value) {
    for (int i = 0; i < 8; ++i) p[i] = static_cast<char>((value >> (8 * i)) & 0xFF);
}

// Digits right-aligned in a field of `width` bytes; the caller checked that they fit.
void RightAlign(char* out, std::size_t width, std::string_view digits) {
    const std::size_t pad = width > digits.size() ? width - digits.size() : 0;
    std::memset(out, ' ', pad);
    std::memcpy(out + pad, digits.data(), std::min(width, digits.size()));
}

}  // namespace

double ReadNumber(const char* record, const Field& field) {
    const char* p = record + field.offset;
    switch (field.type) {
        case 'I':
            return static_cast<std::int32_t>(io::ReadLe32(p));
        case 'B': {
            double value = 0;
            std::memcpy(&value, p, sizeof value);
            return value;
        }
        case 'Y':
            return static_cast<double>(ReadMoney(record, field)) / kMoneyScale;
        default:
            return ParseNumberText(FieldBytes(record, field));
    }
}

bool WriteNumber(char* record, const Field& field, double value) {
    if (!std::isfinite(value)) return false;
    char* p = record + field.offset;
    switch (field.type) {
        case 'I': {
            const double rounded = std::round(value);
            if (rounded < -2147483648.0 || rounded > 2147483647.0) return false;
            io::WriteLe32(p, static_cast<std::uint32_t>(static_cast<std::int32_t>(rounded)));
            return true;
        }
        case 'B':
            std::memcpy(p, &value, sizeof value);
            return true;
        case 'Y': {
            const double scaled = std::round(value * kMoneyScale);
            if (std::fabs(scaled) >= 9.2e18) return false;
            WriteMoney(record, field, static_cast<std::int64_t>(scaled));
            return true;
        }
        default:
            break;
    }
    char text[400];  // enough for any finite double with up to 20 decimals
    const int decimals = std::min<int>(field.decimals, 20);
    // Exactly rounded, as "%.*f" writes it, without going through printf.
    auto written =
        std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
    if (written.ec != std::errc()) return false;
    std::string_view digits(text, static_cast<std::size_t>(written.ptr - text));
    // A value that rounds to zero is stored without a minus sign.
    if (digits[0] == '-' && digits.find_first_not_of("0.", 1) == std::string_view::npos)
        digits.remove_prefix(1);
    if (digits.size() > field.length) return false;
    RightAlign(p, field.length, digits);
    return true;
}

namespace {

// Binary fields that a blank-filling program appended hold blanks: they read as empty.
bool HoldsBlanks(const char* record, const Field& field) {
    return std::all_of(record + field.offset, record + field.offset + field.length,
                       [](char c) { return c == ' '; });
}

}  // namespace

std::int64_t ReadMoney(const char* record, const Field& field) {
    return HoldsBlanks(record, field) ? 0 : ReadLe64(record + field.offset);
}

void WriteMoney(char* record, const Field& field, std::int64_t units) {
    WriteLe64(record + field.offset, static_cast<std::uint64_t>(units));
}

Stamp ReadStamp(const char* record, const Field& field) {
    if (HoldsBlanks(record, field)) return {};
    const char* p = record + field.offset;
    return {static_cast<std::int32_t>(io::ReadLe32(p)),
            static_cast<std::int32_t>(io::ReadLe32(p + 4))};
}

void WriteStamp(char* record, const Field& field, Stamp stamp) {
    char* p = record + field.offset;
    io::WriteLe32(p, static_cast<std::uint32_t>(stamp.julian));
    io::WriteLe32(p + 4, static_cast<std::uint32_t>(stamp.milliseconds));
}

bool ReadLogical(const char* record, const Field& field) {
    const char c = record[field.offset];
    return c == 'T' || c == 't' || c == 'Y' || c == 'y';
}

void WriteLogical(char* record, const Field& field, bool value) {
    record[field.offset] = value ? 'T' : 'F';
}

void WriteText(char* record, const Field& field, std::string_view text) {
    const std::size_t n = std::min<std::size_t>(text.size(), field.length);
    std::memcpy(record + field.offset, text.data(), n);
    std::memset(record + field.offset + n, ' ', field.length - n);
}

namespace {

// The block a memo pointer names (0: none), or nothing when the bytes are not a block number.
std::optional<std::uint32_t> ParseMemoBlock(const char* record, const Field& field) {
    // Four blanks are no block: records that a blank-filling program appended.
    if (field.length == 4)
        return std::memcmp(record + field.offset, "    ", 4) == 0
                   ? 0
                   : io::ReadLe32(record + field.offset);
    const std::string_view text = FieldBytes(record, field);
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return 0;
    const char* last = text.data() + text.find_last_not_of(' ') + 1;
    std::uint32_t block = 0;
    const auto [end, error] = std::from_chars(text.data() + first, last, block);
    if (error != std::errc{} || end != last) return std::nullopt;
    return block;
}

}  // namespace

std::uint32_t ReadMemoBlock(const char* record, const Field& field) {
    return ParseMemoBlock(record, field).value_or(0);
}

bool MemoBlockValid(const char* record, const Field& field) {
    return ParseMemoBlock(record, field).has_value();
}

void WriteMemoBlock(char* record, const Field& field, std::uint32_t block) {
    char* p = record + field.offset;
    if (field.length == 4) {
        io::WriteLe32(p, block);
        return;
    }
    if (block == 0) {
        std::memset(p, ' ', field.length);
        return;
    }
    char text[16];
    const int written = std::snprintf(text, sizeof text, "%u", block);
    RightAlign(p, field.length, std::string_view(text, static_cast<std::size_t>(written)));
}

char EmptyByte(const Field& field) {
    const bool binary = field.type == 'I' || field.type == 'B' || field.type == 'Y' ||
                        field.type == 'T' || (IsMemoType(field.type) && field.length == 4);
    return binary ? '\0' : ' ';
}

bool IsBlank(const char* record, const Field& field) {
    const char blank = EmptyByte(field);
    for (std::uint32_t i = 0; i < field.length; ++i) {
        if (record[field.offset + i] != blank) return false;
    }
    return true;
}

std::string BlankRecord(const std::vector<Field>& fields, std::size_t recordLength) {
    std::string record(recordLength, ' ');
    for (const Field& field : fields) {
        if (field.offset + field.length <= recordLength)
            std::memset(record.data() + field.offset, EmptyByte(field), field.length);
    }
    return record;
}

}  // namespace fnrk::engine::dbf

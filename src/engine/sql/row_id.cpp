#include "engine/sql/row_id.hpp"

#include <filesystem>

#include "platform/text.hpp"

namespace fnrk::engine::sql {

namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// `count` base-64 digits of `value`, most significant first.
std::string Base64Digits(std::uint64_t value, std::size_t count) {
    std::string digits(count, kDigits[0]);
    for (std::size_t i = count; i-- > 0;) {
        digits[i] = kDigits[value & 63U];
        value >>= 6;
    }
    return digits;
}

}  // namespace

std::string RowIdTablePart(std::string_view path) {
    const std::string name =
        platform::UpperCase(std::filesystem::path(std::string(path)).stem().string());
    std::uint64_t digest = 14695981039346656037ULL;
    for (const unsigned char c : name) {
        digest ^= c;
        digest *= 1099511628211ULL;
    }
    return Base64Digits(digest, kRowIdTableLength);
}

std::size_t RowIdLength(RowIdStyle style) {
    return kRowIdTableLength +
           (style == RowIdStyle::Decimal ? kDecimalRowIdRecordLength : kRowIdRecordLength);
}

std::string MakeRowId(std::string_view tablePart, std::uint32_t record, RowIdStyle style) {
    if (style == RowIdStyle::Decimal) {
        std::string digits = std::to_string(record);
        if (digits.size() < kDecimalRowIdRecordLength)
            digits.insert(0, kDecimalRowIdRecordLength - digits.size(), '0');
        return std::string(tablePart) + digits;
    }
    return std::string(tablePart) + Base64Digits(record, kRowIdRecordLength);
}

std::optional<std::uint32_t> RowIdRecord(std::string_view rowId, RowIdStyle style) {
    if (style == RowIdStyle::Decimal) {
        if (rowId.size() < kDecimalRowIdRecordLength) return std::nullopt;
        std::uint64_t value = 0;
        for (const char c : rowId.substr(rowId.size() - kDecimalRowIdRecordLength)) {
            if (c < '0' || c > '9') return std::nullopt;
            value = value * 10 + static_cast<std::uint64_t>(c - '0');
        }
        return static_cast<std::uint32_t>(value);
    }
    if (rowId.size() < kRowIdRecordLength) return std::nullopt;
    std::uint64_t value = 0;
    for (const char c : rowId.substr(rowId.size() - kRowIdRecordLength)) {
        const std::size_t digit = kDigits.find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        value = value * 64 + digit;
    }
    if (value > UINT32_MAX) return std::nullopt;
    return static_cast<std::uint32_t>(value);
}

}  // namespace fnrk::engine::sql

#include "tables/field_values.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>

#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::tables {
namespace {

bool ParseNumber(std::string_view text, double& number) {
    const std::string trimmed = platform::Trim(text);
    if (trimmed.empty()) return false;
    const char* end = trimmed.data() + trimmed.size();
    const auto result = std::from_chars(trimmed.data(), end, number);
    return result.ec == std::errc{} && result.ptr == end;
}

// Digits of `text` from `from` for `count` characters, as a number; -1 when one is not a digit.
int DigitsAt(std::string_view text, std::size_t from, std::size_t count) {
    int number = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        if (!std::isdigit(static_cast<unsigned char>(text[i]))) return -1;
        number = number * 10 + (text[i] - '0');
    }
    return number;
}

// "DD/MM/YYYY" as "YYYYMMDD"; an empty or blank date as eight blanks.
bool StoredDate(std::string_view date, std::string& stored) {
    if (platform::Trim(date).empty() || date == kEmptyDate) {
        stored.assign(8, ' ');
        return true;
    }
    if (date.size() != 10 || date[2] != '/' || date[5] != '/') return false;
    const int day = DigitsAt(date, 0, 2);
    const int month = DigitsAt(date, 3, 2);
    const int year = DigitsAt(date, 6, 4);
    if (day < 1 || day > 31 || month < 1 || month > 12 || year < 0) return false;
    stored = std::string(date.substr(6, 4)) + std::string(date.substr(3, 2)) +
             std::string(date.substr(0, 2));
    return true;
}

}  // namespace

std::string ValueAsText(const FieldValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* number = std::get_if<double>(&value)) {
        char buffer[64];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, *number);
        return std::string(buffer, result.ptr);
    }
    if (const auto* logical = std::get_if<bool>(&value)) return *logical ? "T" : "F";
    return {};
}

bool ValueAsNumber(const FieldValue& value, double& number) {
    if (const auto* given = std::get_if<double>(&value)) {
        number = *given;
        return true;
    }
    if (const auto* text = std::get_if<std::string>(&value)) return ParseNumber(*text, number);
    if (const auto* logical = std::get_if<bool>(&value)) {
        number = *logical ? 1 : 0;
        return true;
    }
    return false;
}

bool ValueAsLogical(const FieldValue& value) {
    if (const auto* logical = std::get_if<bool>(&value)) return *logical;
    if (const auto* number = std::get_if<double>(&value)) return *number != 0;
    if (const auto* text = std::get_if<std::string>(&value)) {
        const std::string upper = platform::UpperCase(platform::Trim(*text));
        return upper == "T" || upper == ".T." || upper == "Y" || upper == "TRUE";
    }
    return false;
}

StoredText StoredFieldText(const std::string& letter, std::uint32_t length, std::uint16_t decimals,
                           const FieldValue& value, std::string& stored) {
    if (letter == "C") {
        stored = platform::Utf8ToCp1252(ValueAsText(value));
        if (stored.size() > length) return StoredText::TooLong;
        stored.resize(length, ' ');
        return StoredText::Ok;
    }
    if (letter == "N") {
        double number = 0;
        if (!ValueAsNumber(value, number)) return StoredText::BadValue;
        char buffer[64];
        const int written = std::snprintf(buffer, sizeof buffer, "%*.*f", static_cast<int>(length),
                                          static_cast<int>(decimals), number);
        if (written < 0 || static_cast<std::uint32_t>(written) > length) return StoredText::TooLong;
        stored.assign(buffer, static_cast<std::size_t>(written));
        return StoredText::Ok;
    }
    if (letter == "L") {
        stored = ValueAsLogical(value) ? "T" : "F";
        return StoredText::Ok;
    }
    if (letter == "D") {
        if (std::holds_alternative<double>(value) || std::holds_alternative<bool>(value))
            return StoredText::BadValue;
        return StoredDate(ValueAsText(value), stored) ? StoredText::Ok : StoredText::BadValue;
    }
    return StoredText::UnsupportedType;
}

}  // namespace fnrk::tables

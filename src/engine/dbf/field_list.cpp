#include "engine/dbf/field_list.hpp"

#include <charconv>

#include "platform/text.hpp"

namespace fnrk::engine::dbf {

namespace {

constexpr std::size_t kMaxNameLength = 10;
constexpr int kMaxCharLength = 255;

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end == std::string_view::npos ? end : end - start));
        if (end == std::string_view::npos) return parts;
        start = end + 1;
    }
}

// Field type letter for a type name, or '\0'.
char TypeLetter(std::string_view upperName) {
    struct Alias {
        std::string_view name;
        char letter;
    };
    static constexpr Alias kAliases[] = {
        {"CHARACTER", 'C'}, {"CHAR", 'C'},    {"C", 'C'},       {"NUMERIC", 'N'},
        {"N", 'N'},         {"DATE", 'D'},    {"D", 'D'},       {"LOGICAL", 'L'},
        {"L", 'L'},         {"MEMO", 'M'},    {"M", 'M'},       {"BINARY", 'P'},
        {"DOUBLE", 'B'},    {"INTEGER", 'I'}, {"FLOAT", 'F'},   {"F", 'F'},
        {"CURRENCY", 'Y'},  {"MONEY", 'Y'},   {"Y", 'Y'},       {"DATETIME", 'T'},
        {"TIMESTAMP", 'T'}, {"T", 'T'},       {"GENERAL", 'G'}, {"IMAGE", 'G'},
        {"G", 'G'}};
    for (const Alias& alias : kAliases) {
        if (alias.name == upperName) return alias.letter;
    }
    return '\0';
}

bool ParseCount(std::string_view text, int& value) {
    const std::string trimmed = platform::Trim(text);
    if (trimmed.empty()) {
        value = 0;
        return true;
    }
    const auto result = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), value);
    return result.ec == std::errc() && result.ptr == trimmed.data() + trimmed.size() && value >= 0;
}

std::string ParseOne(std::string_view definition, Field& field) {
    const std::vector<std::string_view> parts = Split(definition, ',');
    if (parts.size() < 2 || parts.size() > 4)
        return "bad field definition '" + std::string(definition) + "'";
    field.name = platform::UpperCase(platform::Trim(parts[0]));
    if (field.name.empty() || field.name.size() > kMaxNameLength)
        return "bad field name '" + field.name + "'";
    for (char c : field.name) {
        if (!(std::isalnum(static_cast<unsigned char>(c)) || c == '_'))
            return "bad field name '" + field.name + "'";
    }
    field.type = TypeLetter(platform::UpperCase(platform::Trim(parts[1])));
    if (field.type == '\0') return "unknown field type '" + std::string(parts[1]) + "'";
    int length = 0;
    int decimals = 0;
    if ((parts.size() > 2 && !ParseCount(parts[2], length)) ||
        (parts.size() > 3 && !ParseCount(parts[3], decimals)))
        return "bad length or decimals for " + field.name;
    switch (field.type) {
        case 'C':
            if (length < 1 || length > kMaxCharLength) return "bad length for " + field.name;
            decimals = 0;
            break;
        case 'N':
        case 'F':
            if (length < 1 || length > 20) return "bad length for " + field.name;
            if (decimals > 0 && decimals + 2 > length) return "bad decimals for " + field.name;
            break;
        case 'B':
            length = 8;
            break;
        case 'Y':  // ten-thousandths
            length = 8;
            decimals = 4;
            break;
        case 'T':
            length = 8;
            decimals = 0;
            break;
        case 'D':
            length = 8;
            decimals = 0;
            break;
        case 'L':
            length = 1;
            decimals = 0;
            break;
        case 'I':
            length = 4;
            decimals = 0;
            break;
        default:  // memo, binary memo and general
            length = 10;
            decimals = 0;
            break;
    }
    field.length = static_cast<std::uint16_t>(length);
    field.decimals = static_cast<std::uint8_t>(decimals);
    return {};
}

}  // namespace

std::string ParseFieldList(std::string_view text, std::vector<Field>& fields) {
    fields.clear();
    for (std::string_view definition : Split(text, ';')) {
        if (platform::Trim(definition).empty()) continue;
        Field field;
        if (std::string problem = ParseOne(definition, field); !problem.empty()) return problem;
        for (const Field& earlier : fields) {
            if (earlier.name == field.name) return "duplicate field name " + field.name;
        }
        fields.push_back(std::move(field));
    }
    if (fields.empty()) return "no fields";
    constexpr std::size_t kMaxFields = 255;
    if (fields.size() > kMaxFields) return "too many fields";
    return {};
}

}  // namespace fnrk::engine::dbf

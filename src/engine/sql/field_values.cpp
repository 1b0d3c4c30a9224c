#include "engine/sql/field_values.hpp"

#include <sqlite3.h>

#include <charconv>
#include <cmath>
#include <cstdio>

#include "engine/expr/dates.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::sql {

namespace {

bool IsNumber(std::uint16_t type) {
    return type == ADS_NUMERIC || type == ADS_DOUBLE || type == ADS_INTEGER ||
           type == ADS_CURDOUBLE || type == ADS_MONEY;
}

bool IsText(std::uint16_t type) {
    return type == ADS_STRING || type == ADS_MEMO;
}

// The field's stored width of a number, or none when it does not fit.
bool NumberFits(const FieldInfo& field, double number) {
    if (!std::isfinite(number)) return false;
    if (field.type != ADS_NUMERIC) return true;
    char text[64];
    const int written = std::snprintf(text, sizeof text, "%.*f", field.decimals, number);
    return written > 0 && static_cast<std::uint32_t>(written) <= field.length;
}

}  // namespace

Status ReadFieldInfos(Operations& engine, Handle table, std::vector<FieldInfo>& fields) {
    fields.clear();
    std::uint16_t count = 0;
    if (Status status = engine.GetNumFields(table, count); status != AE_SUCCESS) return status;
    for (std::uint16_t number = 1; number <= count; ++number) {
        FieldInfo field;
        if (Status status = engine.GetFieldName(table, number, field.name); status != AE_SUCCESS)
            return status;
        if (Status status = engine.GetFieldType(table, field.name, field.type);
            status != AE_SUCCESS)
            return status;
        if (Status status = engine.GetFieldLength(table, field.name, field.length);
            status != AE_SUCCESS)
            return status;
        if (Status status = engine.GetFieldDecimals(table, field.name, field.decimals);
            status != AE_SUCCESS)
            return status;
        fields.push_back(std::move(field));
    }
    return AE_SUCCESS;
}

std::string SqlColumnType(const FieldInfo& field) {
    if (field.type == ADS_STRING) return "TEXT COLLATE RTRIM";
    if (field.type == ADS_LOGICAL || field.type == ADS_INTEGER) return "INTEGER";
    if (IsNumber(field.type))
        return field.decimals == 0 && field.type == ADS_NUMERIC ? "INTEGER" : "REAL";
    return "TEXT";
}

Status ResultFieldValue(Operations& engine, Handle table, const FieldInfo& field,
                        sqlite3_context* context) {
    if (field.type == ADS_LOGICAL) {
        bool value = false;
        if (Status status = engine.GetLogical(table, field.name, value); status != AE_SUCCESS)
            return status;
        sqlite3_result_int(context, value ? 1 : 0);
        return AE_SUCCESS;
    }
    if (field.type == ADS_DATE) {
        std::int32_t julian = 0;
        if (Status status = engine.GetJulian(table, field.name, julian); status != AE_SUCCESS)
            return status;
        if (julian == 0) {
            sqlite3_result_null(context);
        } else {
            const std::string iso = IsoDate(julian);
            sqlite3_result_text(context, iso.data(), static_cast<int>(iso.size()),
                                SQLITE_TRANSIENT);
        }
        return AE_SUCCESS;
    }
    std::string text;
    if (Status status = engine.GetString(table, field.name, text, ADS_NONE); status != AE_SUCCESS)
        return status;
    if (IsNumber(field.type)) {
        const std::string trimmed = platform::Trim(text);
        if (trimmed.empty()) {
            sqlite3_result_null(context);
            return AE_SUCCESS;
        }
        if (field.decimals == 0) {
            long long integer = 0;
            const auto [end, error] =
                std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), integer);
            if (error == std::errc() && end == trimmed.data() + trimmed.size()) {
                sqlite3_result_int64(context, integer);
                return AE_SUCCESS;
            }
        }
        double number = 0;
        if (Status status = engine.GetDouble(table, field.name, number); status != AE_SUCCESS)
            return status;
        sqlite3_result_double(context, number);
        return AE_SUCCESS;
    }
    sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    return AE_SUCCESS;
}

std::string ToFieldValue(const FieldInfo& field, sqlite3_value* value, FieldValue& out) {
    const int kind = sqlite3_value_type(value);
    if (kind == SQLITE_NULL) {
        out = BlankValue{};
        return {};
    }
    if (IsText(field.type)) {
        const char* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        std::string utf8(text == nullptr ? "" : text);
        if (field.type == ADS_STRING &&
            platform::Utf8ToCp1252(platform::TrimRight(utf8)).size() > field.length)
            return "value too long for field " + field.name;
        out = std::move(utf8);
        return {};
    }
    if (field.type == ADS_DATE) {
        const char* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const std::optional<std::int32_t> julian = JulianFromIso(text == nullptr ? "" : text);
        if (!julian) return "not a date for field " + field.name;
        out = JulianDay{*julian};
        return {};
    }
    if (field.type == ADS_LOGICAL) {
        if (sqlite3_value_numeric_type(value) == SQLITE_INTEGER) {
            out = sqlite3_value_int64(value) != 0;
            return {};
        }
        const std::string text =
            platform::UpperCase(reinterpret_cast<const char*>(sqlite3_value_text(value)));
        if (text == "T" || text == ".T." || text == "TRUE")
            out = true;
        else if (text == "F" || text == ".F." || text == "FALSE")
            out = false;
        else
            return "not a logical value for field " + field.name;
        return {};
    }
    if (IsNumber(field.type)) {
        const int numeric = sqlite3_value_numeric_type(value);
        if (numeric != SQLITE_INTEGER && numeric != SQLITE_FLOAT)
            return "not a number for field " + field.name;
        const double number = sqlite3_value_double(value);
        if (!NumberFits(field, number)) return "number too large for field " + field.name;
        out = number;
        return {};
    }
    return "field " + field.name + " cannot be written by SQL";
}

Status WriteFieldValue(Operations& engine, Handle table, const FieldInfo& field,
                       const FieldValue& value) {
    if (std::holds_alternative<BlankValue>(value)) return engine.SetString(table, field.name, "");
    if (const auto* text = std::get_if<std::string>(&value))
        return engine.SetString(table, field.name, *text);
    if (const auto* number = std::get_if<double>(&value))
        return engine.SetDouble(table, field.name, *number);
    if (const auto* julian = std::get_if<JulianDay>(&value))
        return engine.SetJulian(table, field.name, julian->day);
    return engine.SetLogical(table, field.name, std::get<bool>(value));
}

std::string IsoDate(std::int32_t julian) {
    const expr::CivilDate date = expr::CivilFromJulian(julian);
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", date.year, date.month, date.day);
    return text;
}

std::optional<std::int32_t> JulianFromIso(std::string_view text) {
    const std::string trimmed = platform::Trim(text);
    std::string digits;
    if (trimmed.size() == 10 && trimmed[4] == '-' && trimmed[7] == '-')
        digits = trimmed.substr(0, 4) + trimmed.substr(5, 2) + trimmed.substr(8, 2);
    else if (trimmed.size() == 8)
        digits = trimmed;
    else
        return std::nullopt;
    int parts[3] = {0, 0, 0};
    const std::size_t offsets[3] = {0, 4, 6};
    const std::size_t lengths[3] = {4, 2, 2};
    for (int i = 0; i < 3; ++i) {
        const char* begin = digits.data() + offsets[i];
        const auto [end, error] = std::from_chars(begin, begin + lengths[i], parts[i]);
        if (error != std::errc() || end != begin + lengths[i]) return std::nullopt;
    }
    if (!expr::IsValidDate(parts[0], parts[1], parts[2])) return std::nullopt;
    return expr::JulianFromCivil(parts[0], parts[1], parts[2]);
}

}  // namespace fnrk::engine::sql

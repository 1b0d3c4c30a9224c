#include "engine/sql/static_cursor.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <set>

#include "engine/crypt/password_hash.hpp"
#include "engine/field_list_types.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::sql {

namespace {

constexpr std::size_t kFieldNameLength = 10;
constexpr std::uint32_t kMaxCharacterLength = 254;
constexpr std::uint32_t kMaxNumberLength = 20;
constexpr int kMaxDecimals = 6;

std::string ValidName(const std::string& column) {
    std::string name;
    for (const char c : platform::UpperCase(column)) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_')
            name += c;
        else if (!name.empty() && name.back() != '_')
            name += '_';
    }
    while (!name.empty() && name.back() == '_') name.pop_back();
    if (name.empty() || std::isalpha(static_cast<unsigned char>(name[0])) == 0) return "EXPR";
    return name.substr(0, kFieldNameLength);
}

std::string UniqueName(const std::string& wanted, std::set<std::string>& taken) {
    std::string name = wanted;
    for (int suffix = 1; !taken.insert(name).second; ++suffix) {
        const std::string tail = "_" + std::to_string(suffix);
        name = wanted.substr(0, kFieldNameLength - tail.size()) + tail;
    }
    return name;
}

std::string NumberText(double number, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, number);
    return text;
}

int DecimalsOf(double number) {
    std::string text = NumberText(number, kMaxDecimals);
    while (text.back() == '0') text.pop_back();
    return static_cast<int>(text.size() - text.find('.') - 1);
}

std::string AsText(const SqlValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* integer = std::get_if<std::int64_t>(&value)) return std::to_string(*integer);
    if (const auto* number = std::get_if<double>(&value))
        return NumberText(*number, DecimalsOf(*number));
    return {};
}

// The field a computed column needs for its values.
FieldInfo InferField(const StatementResult& result, std::size_t column) {
    bool text = false, numeric = false, real = false;
    std::size_t longest = 1;
    std::size_t integerDigits = 1;
    int decimals = 0;
    for (const auto& row : result.rows) {
        const SqlValue& value = row[column];
        std::optional<double> number;
        if (const auto* integer = std::get_if<std::int64_t>(&value))
            number = static_cast<double>(*integer);
        if (const auto* fraction = std::get_if<double>(&value)) {
            number = *fraction;
            real = true;
            decimals = std::max(decimals, DecimalsOf(*fraction));
        }
        if (number) {
            numeric = true;
            integerDigits = std::max(integerDigits, NumberText(*number, 0).size());
        }
        if (std::holds_alternative<std::string>(value)) text = true;
        if (!std::holds_alternative<std::monostate>(value))
            longest = std::max(longest, platform::Utf8ToCp1252(AsText(value)).size());
    }
    FieldInfo field;
    if (text || !numeric) {
        field.type = longest > kMaxCharacterLength ? ADS_MEMO : ADS_STRING;
        field.length = field.type == ADS_MEMO ? 10 : static_cast<std::uint32_t>(longest);
        return field;
    }
    field.type = ADS_NUMERIC;
    field.decimals = static_cast<std::uint16_t>(real ? decimals : 0);
    const std::size_t width = integerDigits + (field.decimals > 0 ? field.decimals + 1 : 0);
    field.length = static_cast<std::uint32_t>(std::min<std::size_t>(width, kMaxNumberLength));
    return field;
}

std::string FieldList(const std::vector<FieldInfo>& fields) {
    std::string list;
    for (const FieldInfo& field : fields) {
        if (!list.empty()) list += ';';
        // Every column is one of the types the field list names.
        list += field.name + ',' + std::string(FieldListTypeName(field.type));
        if (field.type == ADS_STRING || field.type == ADS_NUMERIC)
            list += ',' + std::to_string(field.length) + ',' + std::to_string(field.decimals);
    }
    return list;
}

// The value of a result column as its cursor field takes it; none leaves the field blank.
std::optional<FieldValue> CursorValue(const FieldInfo& field, const SqlValue& value) {
    if (std::holds_alternative<std::monostate>(value)) return std::nullopt;
    switch (field.type) {
        case ADS_NUMERIC: {
            if (const auto* number = std::get_if<double>(&value)) return FieldValue(*number);
            if (const auto* integer = std::get_if<std::int64_t>(&value))
                return FieldValue(static_cast<double>(*integer));
            return FieldValue(std::strtod(std::get<std::string>(value).c_str(), nullptr));
        }
        case ADS_DATE:
            if (const std::optional<std::int32_t> julian = JulianFromIso(AsText(value)))
                return FieldValue(JulianDay{*julian});
            return std::nullopt;
        case ADS_LOGICAL:
            if (const auto* integer = std::get_if<std::int64_t>(&value))
                return FieldValue(*integer != 0);
            return FieldValue(platform::UpperCase(AsText(value)).starts_with("T"));
        default:
            return FieldValue(AsText(value));
    }
}

bool CarriesSource(const FieldInfo& field) {
    return field.type == ADS_STRING || field.type == ADS_NUMERIC || field.type == ADS_DATE ||
           field.type == ADS_LOGICAL || field.type == ADS_MEMO;
}

std::string LastErrorText(Operations& engine) {
    Status code = AE_SUCCESS;
    std::string text;
    IgnoreStatus(engine.GetLastError(code, text));  // empty when there is none
    return text;
}

}  // namespace

std::vector<FieldInfo> CursorFields(const StatementResult& result) {
    std::vector<FieldInfo> fields;
    std::set<std::string> taken;
    for (std::size_t i = 0; i < result.columns.size(); ++i) {
        const ResultColumn& column = result.columns[i];
        FieldInfo field =
            column.source && CarriesSource(*column.source) ? *column.source : InferField(result, i);
        field.name = UniqueName(ValidName(column.name), taken);
        fields.push_back(std::move(field));
    }
    return fields;
}

Status MaterializeCursor(TableSource& source, const std::string& path,
                         const StatementResult& result, bool readOnly, Handle& cursor,
                         std::string& message) {
    Operations& engine = source.engine;
    const std::vector<FieldInfo> fields = CursorFields(result);
    // Rows of an encrypted table reach the disk only encrypted, under a password that dies with
    // the process.
    const std::string password = source.readsEncrypted ? crypt::RandomPassword() : std::string();
    std::string alias;
    Status status = AE_DUPLICATE_ALIAS;
    for (int attempt = 0; attempt < 100 && status == AE_DUPLICATE_ALIAS; ++attempt) {
        alias = "SQLCURSOR" + std::to_string(++source.nextAlias);
        status = engine.CreateTable(source.connection, path, alias, ADS_CDX, ADS_ANSI,
                                    ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, FieldList(fields),
                                    cursor);
    }
    if (status == AE_SUCCESS && !password.empty()) {
        status = engine.EnableEncryption(cursor, password);
        if (status == AE_SUCCESS) status = engine.EncryptTable(cursor);
    }
    for (std::size_t row = 0; status == AE_SUCCESS && row < result.rows.size(); ++row) {
        status = engine.AppendRecord(cursor);
        for (std::size_t i = 0; status == AE_SUCCESS && i < fields.size(); ++i) {
            if (const std::optional<FieldValue> value = CursorValue(fields[i], result.rows[row][i]))
                status = WriteFieldValue(engine, cursor, fields[i], *value);
        }
    }
    if (status == AE_SUCCESS && readOnly) {
        // Reopened read-only: a static cursor is a snapshot, not a way to write.
        status = engine.CloseTable(cursor);
        if (status == AE_SUCCESS)
            status = engine.OpenTable(source.connection, path, alias, ADS_CDX, ADS_ANSI,
                                      ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS,
                                      ADS_EXCLUSIVE | ADS_READONLY, cursor);
        if (status == AE_SUCCESS && !password.empty())
            status = engine.EnableEncryption(cursor, password);
    }
    if (status == AE_SUCCESS) status = engine.GotoTop(cursor);
    if (status != AE_SUCCESS) {
        message = "cannot build the cursor: " + LastErrorText(engine);
        if (cursor != 0) IgnoreStatus(engine.CloseTable(cursor));  // the failure is the answer
        cursor = 0;
    }
    return status;
}

}  // namespace fnrk::engine::sql

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "backend/backend_table.hpp"
#include "engine/constants.hpp"
#include "engine/dbf/field_codec.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

namespace {

bool IsNumeric(char type) {
    return type == 'N' || type == 'F' || type == 'I' || type == 'B' || type == 'Y';
}

std::string Trimmed(std::string text, std::uint16_t trimOption) {
    switch (trimOption) {
        case ADS_LTRIM:
            return platform::TrimLeft(text);
        case ADS_RTRIM:
            return platform::TrimRight(text);
        case ADS_TRIM:
            return platform::Trim(text);
        default:
            return text;
    }
}

std::string NumberText(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

std::int32_t StoredJulian(const std::string& record, const dbf::Field& field) {
    return expr::Stod(dbf::FieldBytes(record.data(), field)).value_or(0);
}

}  // namespace

const dbf::Field* BackendTable::FindField(std::string_view name) const {
    return layout_.Find(name);
}

std::size_t FieldIndex(const TableLayout& layout, const dbf::Field& field) {
    return static_cast<std::size_t>(&field - layout.fields.data());
}

Status BackendTable::GetText(const dbf::Field& field, std::string& text, std::uint16_t trimOption) {
    const std::string& record = current_.record;
    std::string value;
    switch (field.type) {
        case 'D':
            value = expr::FormatDate(StoredJulian(record, field), settings_.dates);
            break;
        case 'L':
            value.assign(1, dbf::ReadLogical(record.data(), field) ? 'T' : 'F');
            break;
        case 'I':
        case 'B':
        case 'Y':
            value = NumberText(dbf::ReadNumber(record.data(), field));
            break;
        case 'M':
            value = platform::Cp1252ToUtf8(current_.memos[FieldIndex(layout_, field)]);
            break;
        case 'G':
        case 'P':
            value = current_.memos[FieldIndex(layout_, field)];
            break;
        default:
            value = platform::Cp1252ToUtf8(dbf::FieldBytes(record.data(), field));
            break;
    }
    text = Trimmed(std::move(value), trimOption);
    return AE_SUCCESS;
}

Status BackendTable::SetText(const dbf::Field& field, std::string_view text) {
    switch (field.type) {
        case 'D': {
            const auto julian = expr::ParseDate(text, settings_.dates);
            if (!julian) return AE_INVALID_DATE;
            return SetJulian(field, *julian);
        }
        case 'L': {
            const std::string trimmed = platform::Trim(text);
            const char c = trimmed.empty() ? 'F' : trimmed[0];
            return SetLogical(field, c == 'T' || c == 't' || c == 'Y' || c == 'y' || c == '1');
        }
        case 'M':
            return SetMemo(field, platform::Utf8ToCp1252(text));
        case 'G':
        case 'P':
            return SetMemo(field, text);
        case 'C': {
            if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
            dbf::WriteText(current_.record.data(), field, platform::Utf8ToCp1252(text));
            return AE_SUCCESS;
        }
        default: {
            const std::string trimmed = platform::Trim(text);
            char* end = nullptr;
            const double value = std::strtod(trimmed.c_str(), &end);
            if (!trimmed.empty() && end != trimmed.c_str() + trimmed.size()) {
                return AE_INVALID_VALUE;
            }
            return SetNumber(field, value);
        }
    }
}

Status BackendTable::GetNumber(const dbf::Field& field, double& value) {
    const std::string& record = current_.record;
    if (IsNumeric(field.type)) {
        value = dbf::ReadNumber(record.data(), field);
    } else if (field.type == 'D') {
        value = StoredJulian(record, field);
    } else if (field.type == 'L') {
        value = dbf::ReadLogical(record.data(), field) ? 1 : 0;
    } else {
        return AE_INVALID_FIELD_TYPE;
    }
    return AE_SUCCESS;
}

Status BackendTable::SetNumber(const dbf::Field& field, double value) {
    if (field.type == 'D') {
        if (value != std::floor(value) || std::fabs(value) > 1e8) return AE_INVALID_DATE;
        return SetJulian(field, static_cast<std::int32_t>(value));
    }
    if (field.type == 'L') return SetLogical(field, value != 0);
    if (!IsNumeric(field.type)) return AE_INVALID_FIELD_TYPE;
    // Tried on a copy first so that a value that does not fit changes nothing.
    std::string probe = layout_.BlankRecord();
    if (!dbf::WriteNumber(probe.data(), field, value)) return AE_VALUE_OVERFLOW;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    dbf::WriteNumber(current_.record.data(), field, value);
    return AE_SUCCESS;
}

Status BackendTable::GetLogical(const dbf::Field& field, bool& value) {
    if (field.type != 'L') return AE_INVALID_FIELD_TYPE;
    value = dbf::ReadLogical(current_.record.data(), field);
    return AE_SUCCESS;
}

Status BackendTable::SetLogical(const dbf::Field& field, bool value) {
    if (field.type != 'L') return AE_INVALID_FIELD_TYPE;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    dbf::WriteLogical(current_.record.data(), field, value);
    return AE_SUCCESS;
}

Status BackendTable::GetJulian(const dbf::Field& field, std::int32_t& julian) {
    if (field.type != 'D') return AE_INVALID_FIELD_TYPE;
    julian = StoredJulian(current_.record, field);
    return AE_SUCCESS;
}

Status BackendTable::SetJulian(const dbf::Field& field, std::int32_t julian) {
    if (field.type != 'D') return AE_INVALID_FIELD_TYPE;
    if (julian != 0) {
        const expr::CivilDate date = expr::CivilFromJulian(julian);
        if (!expr::IsValidDate(date.year, date.month, date.day)) return AE_INVALID_DATE;
    }
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    expr::WriteDtos(julian, current_.record.data() + field.offset);
    return AE_SUCCESS;
}

Status BackendTable::GetMemo(const dbf::Field& field, std::string& data) {
    if (!dbf::IsMemoType(field.type)) return AE_INVALID_FIELD_TYPE;
    data = current_.memos[FieldIndex(layout_, field)];
    return AE_SUCCESS;
}

Status BackendTable::SetMemo(const dbf::Field& field, std::string_view data) {
    if (!dbf::IsMemoType(field.type)) return AE_INVALID_FIELD_TYPE;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    current_.memos[FieldIndex(layout_, field)] = data;
    return AE_SUCCESS;
}

}  // namespace fnrk::backend

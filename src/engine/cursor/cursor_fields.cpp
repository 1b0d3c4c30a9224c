#include <cmath>
#include <cstdio>

#include "engine/constants.hpp"
#include "engine/cursor/table_cursor.hpp"
#include "engine/dbf/field_codec.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::cursor {

namespace {

bool IsNumeric(char type) {
    return type == 'N' || type == 'F' || type == 'I' || type == 'B' || type == 'Y';
}

std::string ApplyTrim(std::string text, std::uint16_t trimOption) {
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

}  // namespace

Status TableCursor::GetText(const dbf::Field& field, std::string& text, std::uint16_t trimOption) {
    const char* record = CurrentRecord();
    std::string value;
    switch (field.type) {
        case 'D': {
            const auto julian = expr::Stod(dbf::FieldBytes(record, field));
            value = expr::FormatDate(julian.value_or(0), settings_.dates);
            break;
        }
        case 'L':
            value.assign(1, dbf::ReadLogical(record, field) ? 'T' : 'F');
            break;
        case 'I':
        case 'B':
        case 'Y':
            value = NumberText(dbf::ReadNumber(record, field));
            break;
        case 'M':
        case 'G':
        case 'P': {
            memo::MemoBlock memo;
            if (Status status = GetMemo(field, memo); status != AE_SUCCESS) return status;
            value = field.type == 'M' ? platform::Cp1252ToUtf8(memo.data) : std::move(memo.data);
            break;
        }
        default:
            value = platform::Cp1252ToUtf8(dbf::FieldBytes(record, field));
            break;
    }
    text = ApplyTrim(std::move(value), trimOption);
    return AE_SUCCESS;
}

Status TableCursor::SetText(const dbf::Field& field, std::string_view text) {
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
            return SetMemo(field, memo::kMemoTypeText, platform::Utf8ToCp1252(text));
        case 'G':
        case 'P':
            return SetMemo(field, memo::kMemoTypeBinary, text);
        case 'C': {
            if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
            dbf::WriteText(edit_.data(), field, platform::Utf8ToCp1252(text));
            return AE_SUCCESS;
        }
        default: {
            const std::string trimmed = platform::Trim(text);
            char* end = nullptr;
            const double value = std::strtod(trimmed.c_str(), &end);
            if (!trimmed.empty() && end != trimmed.c_str() + trimmed.size())
                return AE_INVALID_VALUE;
            return SetNumber(field, value);
        }
    }
}

Status TableCursor::GetNumber(const dbf::Field& field, double& value) {
    const char* record = CurrentRecord();
    if (IsNumeric(field.type)) {
        value = dbf::ReadNumber(record, field);
    } else if (field.type == 'D') {
        value = expr::Stod(dbf::FieldBytes(record, field)).value_or(0);
    } else if (field.type == 'L') {
        value = dbf::ReadLogical(record, field) ? 1 : 0;
    } else {
        return AE_INVALID_FIELD_TYPE;
    }
    return AE_SUCCESS;
}

Status TableCursor::SetNumber(const dbf::Field& field, double value) {
    if (field.type == 'D') {
        if (value != std::floor(value) || std::fabs(value) > 1e8) return AE_INVALID_DATE;
        return SetJulian(field, static_cast<std::int32_t>(value));
    }
    if (field.type == 'L') return SetLogical(field, value != 0);
    if (!IsNumeric(field.type)) return AE_INVALID_FIELD_TYPE;
    // Checked on a copy first so that a value that does not fit changes nothing.
    char probe[32];
    dbf::Field atStart = field;
    atStart.offset = 0;
    if (field.length > sizeof probe || !dbf::WriteNumber(probe, atStart, value))
        return AE_VALUE_OVERFLOW;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    dbf::WriteNumber(edit_.data(), field, value);
    return AE_SUCCESS;
}

Status TableCursor::GetLogical(const dbf::Field& field, bool& value) {
    if (field.type != 'L') return AE_INVALID_FIELD_TYPE;
    value = dbf::ReadLogical(CurrentRecord(), field);
    return AE_SUCCESS;
}

Status TableCursor::SetLogical(const dbf::Field& field, bool value) {
    if (field.type != 'L') return AE_INVALID_FIELD_TYPE;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    dbf::WriteLogical(edit_.data(), field, value);
    return AE_SUCCESS;
}

Status TableCursor::GetJulian(const dbf::Field& field, std::int32_t& julian) {
    if (field.type != 'D') return AE_INVALID_FIELD_TYPE;
    julian = expr::Stod(dbf::FieldBytes(CurrentRecord(), field)).value_or(0);
    return AE_SUCCESS;
}

Status TableCursor::SetJulian(const dbf::Field& field, std::int32_t julian) {
    if (field.type != 'D') return AE_INVALID_FIELD_TYPE;
    if (julian != 0) {
        const expr::CivilDate date = expr::CivilFromJulian(julian);
        if (!expr::IsValidDate(date.year, date.month, date.day)) return AE_INVALID_DATE;
    }
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    expr::WriteDtos(julian, edit_.data() + field.offset);
    return AE_SUCCESS;
}

Status TableCursor::GetMemo(const dbf::Field& field, memo::MemoBlock& memo) {
    if (!dbf::IsMemoType(field.type)) return AE_INVALID_FIELD_TYPE;
    memo = {};
    const std::uint32_t block = dbf::ReadMemoBlock(CurrentRecord(), field);
    if (block == 0) return AE_SUCCESS;
    memo::MemoFile* file = file_.memo();
    if (file == nullptr) return AE_NO_MEMO_FILE;
    return file->Read(block, memo).empty() ? AE_SUCCESS : AE_CORRUPT_TABLE;
}

Status TableCursor::SetMemo(const dbf::Field& field, std::uint32_t type, std::string_view data) {
    if (!dbf::IsMemoType(field.type)) return AE_INVALID_FIELD_TYPE;
    memo::MemoFile* file = file_.memo();
    if (file == nullptr) return AE_NO_MEMO_FILE;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    std::uint32_t block = dbf::ReadMemoBlock(edit_.data(), field);
    if (!file->Write(block, type, data).empty()) return AE_PERMISSION_DENIED;
    dbf::WriteMemoBlock(edit_.data(), field, block);
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::cursor

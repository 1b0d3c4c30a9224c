#include "engine/cursor/record_functions.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "engine/constants.hpp"
#include "engine/dbf/field_codec.hpp"
#include "engine/memo/memo_file.hpp"
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

std::int32_t StoredJulian(const char* record, const dbf::Field& field) {
    return expr::Stod(dbf::FieldBytes(record, field)).value_or(0);
}

}  // namespace

Status RecordFunctions::GetText(const dbf::Field& field, std::string& text,
                                std::uint16_t trimOption) {
    const char* record = RecordBytes().data();
    std::string value;
    switch (field.type) {
        case 'D':
            value = expr::FormatDate(StoredJulian(record, field), settings_.dates);
            break;
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
            if (Status status = ReadMemo(field, value); status != AE_SUCCESS) return status;
            if (field.type == 'M') value = platform::Cp1252ToUtf8(value);
            break;
        }
        default:
            value = platform::Cp1252ToUtf8(dbf::FieldBytes(record, field));
            break;
    }
    text = ApplyTrim(std::move(value), trimOption);
    return AE_SUCCESS;
}

Status RecordFunctions::SetText(const dbf::Field& field, std::string_view text) {
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
            return WriteMemo(field, memo::kMemoTypeText, platform::Utf8ToCp1252(text));
        case 'G':
        case 'P':
            return WriteMemo(field, memo::kMemoTypeBinary, text);
        case 'C': {
            if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
            dbf::WriteText(EditedRecord(), field, platform::Utf8ToCp1252(text));
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

Status RecordFunctions::GetNumber(const dbf::Field& field, double& value) {
    const char* record = RecordBytes().data();
    if (IsNumeric(field.type)) {
        value = dbf::ReadNumber(record, field);
    } else if (field.type == 'D') {
        value = StoredJulian(record, field);
    } else if (field.type == 'L') {
        value = dbf::ReadLogical(record, field) ? 1 : 0;
    } else {
        return AE_INVALID_FIELD_TYPE;
    }
    return AE_SUCCESS;
}

Status RecordFunctions::SetNumber(const dbf::Field& field, double value) {
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
    dbf::WriteNumber(EditedRecord(), field, value);
    return AE_SUCCESS;
}

Status RecordFunctions::GetLogical(const dbf::Field& field, bool& value) {
    if (field.type != 'L') return AE_INVALID_FIELD_TYPE;
    value = dbf::ReadLogical(RecordBytes().data(), field);
    return AE_SUCCESS;
}

Status RecordFunctions::SetLogical(const dbf::Field& field, bool value) {
    if (field.type != 'L') return AE_INVALID_FIELD_TYPE;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    dbf::WriteLogical(EditedRecord(), field, value);
    return AE_SUCCESS;
}

Status RecordFunctions::GetJulian(const dbf::Field& field, std::int32_t& julian) {
    if (field.type != 'D') return AE_INVALID_FIELD_TYPE;
    julian = StoredJulian(RecordBytes().data(), field);
    return AE_SUCCESS;
}

Status RecordFunctions::SetJulian(const dbf::Field& field, std::int32_t julian) {
    if (field.type != 'D') return AE_INVALID_FIELD_TYPE;
    if (julian != 0) {
        const expr::CivilDate date = expr::CivilFromJulian(julian);
        if (!expr::IsValidDate(date.year, date.month, date.day)) return AE_INVALID_DATE;
    }
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    expr::WriteDtos(julian, EditedRecord() + field.offset);
    return AE_SUCCESS;
}

std::optional<expr::Expression> RecordFunctions::CompileCondition(std::string_view text,
                                                                  std::string& message) {
    try {
        expr::Expression expression =
            expr::Expression::Compile(text, *FieldNames(), settings_.dates);
        if (expression.type() != expr::ValueType::Logical) {
            message = "the expression is not logical";
            return std::nullopt;
        }
        return expression;
    } catch (const expr::ExpressionError& error) {
        message = error.what();
        return std::nullopt;
    }
}

bool RecordFunctions::LocateMatches() {
    const std::string_view records[] = {RecordBytes()};
    return locate_->EvaluateLogical({records, CurrentRecordNumber(), &settings_.dates});
}

Status RecordFunctions::Locate(std::string_view expression, bool forward, bool& found,
                               std::string& message) {
    found = false;
    auto compiled = CompileCondition(expression, message);
    if (!compiled) return AE_INVALID_EXPRESSION;
    locate_ = std::move(compiled);
    locateForward_ = forward;
    if (Status status = StepToEnd(forward); status != AE_SUCCESS) return status;
    if (PastEnd(true)) return AE_SUCCESS;
    if (LocateMatches()) {
        found = true;
        return AE_SUCCESS;
    }
    return Continue(found);
}

Status RecordFunctions::Continue(bool& found) {
    found = false;
    if (!locate_) return AE_INVALID_CONTINUE;
    for (;;) {
        if (Status status = StepBy(locateForward_ ? 1 : -1); status != AE_SUCCESS) return status;
        if (PastEnd(locateForward_)) break;
        if (LocateMatches()) {
            found = true;
            return AE_SUCCESS;
        }
    }
    MoveBeyondLast();
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::cursor

#include "engine/cursor/record_functions.hpp"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>

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

bool IsValidJulian(std::int32_t julian) {
    if (julian == 0) return true;
    const expr::CivilDate date = expr::CivilFromJulian(julian);
    return expr::IsValidDate(date.year, date.month, date.day);
}

// Ten-thousandths as a decimal number, without the zeros that end its fraction.
std::string MoneyText(std::int64_t units) {
    const std::uint64_t magnitude =
        units < 0 ? 0 - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
    std::string text = (units < 0 ? "-" : "") + std::to_string(magnitude / dbf::kMoneyScale);
    std::string fraction = std::to_string(magnitude % dbf::kMoneyScale);
    fraction.insert(0, 4 - fraction.size(), '0');
    fraction.erase(fraction.find_last_not_of('0') + 1);
    if (!fraction.empty()) text += "." + fraction;
    return text;
}

// A plain decimal number ("-12.3456") in ten-thousandths, a fifth decimal and beyond rounded
// half away from zero; no value for any other text or a number beyond 64 bits.
std::optional<std::int64_t> ParseMoney(std::string_view text) {
    bool negative = false;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        negative = text[0] == '-';
        text.remove_prefix(1);
    }
    const std::size_t dot = text.find('.');
    const std::string_view whole = text.substr(0, dot);
    const std::string_view fraction =
        dot == std::string_view::npos ? std::string_view() : text.substr(dot + 1);
    auto digits = [](std::string_view part) {
        return part.find_first_not_of("0123456789") == std::string_view::npos;
    };
    if ((whole.empty() && fraction.empty()) || !digits(whole) || !digits(fraction))
        return std::nullopt;
    // At most 2^63 ten-thousandths: the largest negative number.
    const std::uint64_t limit =
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1 : 0);
    std::uint64_t magnitude = 0;
    auto append = [&](unsigned digit) {
        if (magnitude > (limit - digit) / 10) return false;
        magnitude = magnitude * 10 + digit;
        return true;
    };
    for (const char c : whole)
        if (!append(static_cast<unsigned>(c - '0'))) return std::nullopt;
    for (std::size_t place = 0; place < 4; ++place)
        if (!append(place < fraction.size() ? static_cast<unsigned>(fraction[place] - '0') : 0))
            return std::nullopt;
    if (fraction.size() > 4 && fraction[4] >= '5') {
        if (magnitude == limit) return std::nullopt;
        ++magnitude;
    }
    return negative ? static_cast<std::int64_t>(0 - magnitude)
                    : static_cast<std::int64_t>(magnitude);
}

// "HH:MM:SS.mmm" for milliseconds since midnight.
std::string TimeText(std::int32_t milliseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03d", milliseconds / 3'600'000,
                  milliseconds / 60'000 % 60, milliseconds / 1000 % 60, milliseconds % 1000);
    return text;
}

// "HH:MM", "HH:MM:SS" or "HH:MM:SS.mmm" (fewer digits of milliseconds read as tenths or
// hundredths) as milliseconds since midnight.
std::optional<std::int32_t> ParseTime(std::string_view text) {
    int hours = 0, minutes = 0, seconds = 0, fraction = 0, scale = 1000;
    auto number = [&text](int& value, std::size_t width) {
        if (text.size() < width || !std::isdigit(static_cast<unsigned char>(text[0]))) return false;
        const auto [end, error] = std::from_chars(text.data(), text.data() + width, value);
        if (error != std::errc() || end != text.data() + width) return false;
        text.remove_prefix(width);
        return true;
    };
    auto separator = [&text](char c) {
        if (text.empty() || text[0] != c) return false;
        text.remove_prefix(1);
        return true;
    };
    if (!number(hours, 2) || !separator(':') || !number(minutes, 2)) return std::nullopt;
    if (separator(':')) {
        if (!number(seconds, 2)) return std::nullopt;
        if (separator('.')) {
            const std::size_t width = text.size();
            if (width < 1 || width > 3 || !number(fraction, width)) return std::nullopt;
            scale = width == 1 ? 10 : width == 2 ? 100 : 1000;
        }
    }
    if (!text.empty() || hours > 23 || minutes > 59 || seconds > 59) return std::nullopt;
    return ((hours * 60 + minutes) * 60 + seconds) * 1000 + fraction * (1000 / scale);
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
            value = NumberText(dbf::ReadNumber(record, field));
            break;
        case 'Y':
            value = MoneyText(dbf::ReadMoney(record, field));
            break;
        case 'T': {
            const dbf::Stamp stamp = dbf::ReadStamp(record, field);
            value = expr::FormatDate(stamp.julian, settings_.dates);
            if (stamp.julian != 0 || stamp.milliseconds != 0)
                value += " " + TimeText(stamp.milliseconds);
            break;
        }
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
        case 'T':
            return SetStampText(field, platform::Trim(text));
        case 'Y': {
            const std::string trimmed = platform::Trim(text);
            if (trimmed.empty()) return SetMoney(field, 0);
            if (const auto units = ParseMoney(trimmed)) return SetMoney(field, *units);
            break;  // other spellings of a number, below
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
        default:
            break;
    }
    const std::string trimmed = platform::Trim(text);
    char* end = nullptr;
    const double value = std::strtod(trimmed.c_str(), &end);
    if (!trimmed.empty() && end != trimmed.c_str() + trimmed.size()) return AE_INVALID_VALUE;
    return SetNumber(field, value);
}

// The date in the display form, then the time of day after a blank; empty text, or the date's
// empty form alone, empties the field.
Status RecordFunctions::SetStampText(const dbf::Field& field, std::string_view text) {
    const std::size_t blank = text.find_last_of(' ');
    const bool hasTime =
        blank != std::string_view::npos && text.find(':', blank) != std::string_view::npos;
    const std::string dateText = platform::TrimRight(hasTime ? text.substr(0, blank) : text);
    const auto julian = expr::ParseDate(dateText, settings_.dates);
    if (!julian) return AE_INVALID_DATE;
    const auto milliseconds =
        hasTime ? ParseTime(text.substr(blank + 1)) : std::optional<std::int32_t>(0);
    if (!milliseconds) return AE_INVALID_DATE;
    if (!IsValidJulian(*julian)) return AE_INVALID_DATE;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    dbf::WriteStamp(EditedRecord(), field, {*julian, *milliseconds});
    return AE_SUCCESS;
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
    if (field.type == 'T') {
        julian = dbf::ReadStamp(RecordBytes().data(), field).julian;
        return AE_SUCCESS;
    }
    if (field.type != 'D') return AE_INVALID_FIELD_TYPE;
    julian = StoredJulian(RecordBytes().data(), field);
    return AE_SUCCESS;
}

Status RecordFunctions::SetJulian(const dbf::Field& field, std::int32_t julian) {
    if (field.type != 'D' && field.type != 'T') return AE_INVALID_FIELD_TYPE;
    if (!IsValidJulian(julian)) return AE_INVALID_DATE;
    if (field.type == 'T') {
        // The time stays with its day; without a day the field is empty.
        const std::int32_t time =
            julian == 0 ? 0 : dbf::ReadStamp(RecordBytes().data(), field).milliseconds;
        if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
        dbf::WriteStamp(EditedRecord(), field, {julian, time});
        return AE_SUCCESS;
    }
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    expr::WriteDtos(julian, EditedRecord() + field.offset);
    return AE_SUCCESS;
}

Status RecordFunctions::GetMilliseconds(const dbf::Field& field, std::int32_t& milliseconds) {
    if (field.type != 'T') return AE_INVALID_FIELD_TYPE;
    milliseconds = dbf::ReadStamp(RecordBytes().data(), field).milliseconds;
    return AE_SUCCESS;
}

Status RecordFunctions::SetMilliseconds(const dbf::Field& field, std::int32_t milliseconds) {
    if (field.type != 'T') return AE_INVALID_FIELD_TYPE;
    if (milliseconds < 0 || milliseconds >= dbf::kMillisecondsPerDay) return AE_INVALID_VALUE;
    const std::int32_t julian = dbf::ReadStamp(RecordBytes().data(), field).julian;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    dbf::WriteStamp(EditedRecord(), field, {julian, milliseconds});
    return AE_SUCCESS;
}

Status RecordFunctions::GetMoney(const dbf::Field& field, std::int64_t& units) {
    if (!IsNumeric(field.type)) return AE_INVALID_FIELD_TYPE;
    if (field.type == 'Y') {
        units = dbf::ReadMoney(RecordBytes().data(), field);
        return AE_SUCCESS;
    }
    double value = 0;
    if (Status status = GetNumber(field, value); status != AE_SUCCESS) return status;
    const double scaled = std::round(value * dbf::kMoneyScale);
    if (!(std::fabs(scaled) < 9.2e18)) return AE_VALUE_OVERFLOW;
    units = static_cast<std::int64_t>(scaled);
    return AE_SUCCESS;
}

Status RecordFunctions::SetMoney(const dbf::Field& field, std::int64_t units) {
    if (!IsNumeric(field.type)) return AE_INVALID_FIELD_TYPE;
    if (field.type != 'Y') return SetNumber(field, static_cast<double>(units) / dbf::kMoneyScale);
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    dbf::WriteMoney(EditedRecord(), field, units);
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

#include "facade/variant.hpp"

#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

#include "facade/facade_error.hpp"
#include "facade/variant_object.hpp"
#include "platform/text.hpp"

namespace fnrk::facade {
namespace {

constexpr std::chrono::sys_days kDateEpoch =
    std::chrono::year{1899} / std::chrono::December / std::chrono::day{30};

[[noreturn]] void ThrowNull() {
    throw FacadeError(kErrInvalidUseOfNull, "Invalid use of Null");
}

[[noreturn]] void ThrowOverflow(double value) {
    throw FacadeError(kErrOverflow, "Overflow: " + std::to_string(value));
}

std::string DoubleText(double value) {
    char buffer[40];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
    std::string text(buffer, result.ptr);
    for (char& c : text) {
        if (c == 'e') c = 'E';
    }
    return text;
}

// Late-bound callers round to the nearest even integer when a fraction meets an integer slot.
template <typename Int>
Int RoundedInteger(double value) {
    if (!std::isfinite(value)) ThrowOverflow(value);
    const double rounded = std::nearbyint(value);  // the default mode rounds half to even
    if (rounded < static_cast<double>(std::numeric_limits<Int>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<Int>::max())) {
        ThrowOverflow(value);
    }
    return static_cast<Int>(rounded);
}

bool BooleanWord(std::string_view text, bool& value) {
    if (platform::EqualsNoCase(text, "True")) {
        value = true;
        return true;
    }
    if (platform::EqualsNoCase(text, "False")) {
        value = false;
        return true;
    }
    return false;
}

}  // namespace

void ThrowTypeMismatch(const std::string& what) {
    throw FacadeError(kErrTypeMismatch, "Type mismatch: " + what);
}

Variant::Variant(VariantArray value)
    : value_(std::make_shared<const VariantArray>(std::move(value))) {}

std::string_view Variant::TypeName() const {
    static constexpr std::string_view kNames[] = {"Empty",  "Null",   "Boolean",  "Integer",
                                                  "Long",   "Double", "Currency", "Date",
                                                  "String", "Object", "Byte()",   "Variant()"};
    return kNames[value_.index()];
}

bool ParseNumberText(std::string_view text, double& value) {
    std::string trimmed = platform::Trim(text);
    if (trimmed.empty()) return false;
    if (trimmed.front() == '+') trimmed.erase(0, 1);
    for (char& c : trimmed) {
        if (c == ',') c = '.';
    }
    const char* end = trimmed.data() + trimmed.size();
    const auto result = std::from_chars(trimmed.data(), end, value);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(value);
}

VariantDate DateFromText(std::string_view text) {
    const std::string trimmed = platform::Trim(text);
    unsigned day = 0, month = 0;
    int year = 0;
    char sep1 = 0, sep2 = 0;
    int consumed = 0;
    const std::string source(trimmed);
    bool parsed = false;
    if (std::sscanf(source.c_str(), "%u%c%u%c%d%n", &day, &sep1, &month, &sep2, &year, &consumed) ==
            5 &&
        sep1 == '/' && sep2 == '/' && consumed == static_cast<int>(source.size())) {
        parsed = true;
    } else if (std::sscanf(source.c_str(), "%d%c%u%c%u%n", &year, &sep1, &month, &sep2, &day,
                           &consumed) == 5 &&
               sep1 == '-' && sep2 == '-' && consumed == static_cast<int>(source.size())) {
        parsed = true;
    }
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month},
                                           std::chrono::day{day}};
    if (!parsed || !date.ok() || year < 100) ThrowTypeMismatch("\"" + source + "\" is not a date");
    return VariantDate{static_cast<double>((std::chrono::sys_days(date) - kDateEpoch).count())};
}

std::string DateText(VariantDate date) {
    const auto days = std::chrono::days(static_cast<long>(std::floor(date.serial)));
    const std::chrono::year_month_day ymd{kDateEpoch + days};
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%02u/%02u/%04d", static_cast<unsigned>(ymd.day()),
                  static_cast<unsigned>(ymd.month()), static_cast<int>(ymd.year()));
    return buffer;
}

bool Variant::ToBoolean() const {
    switch (Type()) {
        case VariantType::Empty:
            return false;
        case VariantType::Null:
            ThrowNull();
        case VariantType::Boolean:
            return std::get<bool>(value_);
        case VariantType::String: {
            const std::string& text = std::get<std::string>(value_);
            bool word = false;
            if (BooleanWord(platform::Trim(text), word)) return word;
            double number = 0.0;
            if (ParseNumberText(text, number)) return number != 0.0;
            ThrowTypeMismatch("\"" + text + "\" is not a boolean");
        }
        case VariantType::Integer:
        case VariantType::Long:
        case VariantType::Double:
        case VariantType::Currency:
        case VariantType::Date:
            return ToDouble() != 0.0;
        default:
            ThrowTypeMismatch(std::string(TypeName()) + " is not a boolean");
    }
}

double Variant::ToDouble() const {
    switch (Type()) {
        case VariantType::Empty:
            return 0.0;
        case VariantType::Null:
            ThrowNull();
        case VariantType::Boolean:
            return std::get<bool>(value_) ? -1.0 : 0.0;
        case VariantType::Integer:
            return std::get<std::int16_t>(value_);
        case VariantType::Long:
            return std::get<std::int32_t>(value_);
        case VariantType::Double:
            return std::get<double>(value_);
        case VariantType::Currency:
            return static_cast<double>(std::get<VariantCurrency>(value_).tenThousandths) / 10000.0;
        case VariantType::Date:
            return std::get<VariantDate>(value_).serial;
        case VariantType::String: {
            const std::string& text = std::get<std::string>(value_);
            double number = 0.0;
            if (!ParseNumberText(text, number)) {
                ThrowTypeMismatch("\"" + text + "\" is not a number");
            }
            return number;
        }
        default:
            ThrowTypeMismatch(std::string(TypeName()) + " is not a number");
    }
}

std::int16_t Variant::ToInteger() const {
    if (Type() == VariantType::Integer) return std::get<std::int16_t>(value_);
    return RoundedInteger<std::int16_t>(ToDouble());
}

std::int32_t Variant::ToLong() const {
    if (Type() == VariantType::Long) return std::get<std::int32_t>(value_);
    return RoundedInteger<std::int32_t>(ToDouble());
}

VariantCurrency Variant::ToCurrency() const {
    if (Type() == VariantType::Currency) return std::get<VariantCurrency>(value_);
    const double scaled = ToDouble() * 10000.0;
    return VariantCurrency{RoundedInteger<std::int64_t>(scaled)};
}

VariantDate Variant::ToDate() const {
    switch (Type()) {
        case VariantType::Date:
            return std::get<VariantDate>(value_);
        case VariantType::String:
            return DateFromText(std::get<std::string>(value_));
        case VariantType::Null:
            ThrowNull();
        case VariantType::Boolean:
        case VariantType::Object:
        case VariantType::Bytes:
        case VariantType::Array:
            ThrowTypeMismatch(std::string(TypeName()) + " is not a date");
        default:
            return VariantDate{ToDouble()};
    }
}

std::string Variant::ToString() const {
    switch (Type()) {
        case VariantType::Empty:
            return {};
        case VariantType::Null:
            ThrowNull();
        case VariantType::Boolean:
            return std::get<bool>(value_) ? "True" : "False";
        case VariantType::Integer:
            return std::to_string(std::get<std::int16_t>(value_));
        case VariantType::Long:
            return std::to_string(std::get<std::int32_t>(value_));
        case VariantType::Double:
            return DoubleText(std::get<double>(value_));
        case VariantType::Currency:
            return DoubleText(ToDouble());
        case VariantType::Date:
            return DateText(std::get<VariantDate>(value_));
        case VariantType::String:
            return std::get<std::string>(value_);
        default:
            ThrowTypeMismatch(std::string(TypeName()) + " is not text");
    }
}

std::shared_ptr<VariantObject> Variant::ToObject() const {
    if (Type() == VariantType::Object) {
        if (auto object = std::get<std::shared_ptr<VariantObject>>(value_)) return object;
    }
    throw FacadeError(kErrObjectRequired,
                      std::string("Object required, not ") + std::string(TypeName()));
}

VariantBytes Variant::ToBytes() const {
    switch (Type()) {
        case VariantType::Bytes:
            return std::get<VariantBytes>(value_);
        case VariantType::Empty:
            return {};
        case VariantType::String: {
            const std::string& text = std::get<std::string>(value_);
            return VariantBytes(text.begin(), text.end());
        }
        default:
            ThrowTypeMismatch(std::string(TypeName()) + " is not an array of bytes");
    }
}

const VariantArray& Variant::ToArray() const {
    if (Type() != VariantType::Array) {
        ThrowTypeMismatch(std::string(TypeName()) + " is not an array");
    }
    return *std::get<std::shared_ptr<const VariantArray>>(value_);
}

bool Variant::operator==(const Variant& other) const {
    if (Type() != other.Type()) return false;
    if (Type() == VariantType::Array) return ToArray() == other.ToArray();
    return value_ == other.value_;
}

}  // namespace fnrk::facade

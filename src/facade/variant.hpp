#pragma once

// The value that crosses the member table: what a late-bound caller (the command line, the COM
// server, the Python module) hands to a member and gets back. The conversions follow the rules
// such callers rely on: a number may arrive as text, a boolean as "True" or -1, an empty value
// reads as zero, false or empty text. A conversion that cannot be made is a FacadeError (type
// mismatch, overflow, invalid use of null), never undefined behaviour.

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace fnrk::facade {

class VariantObject;

// A date as the number of days since 30/12/1899 (the fraction is the time of day).
struct VariantDate {
    double serial = 0.0;
    bool operator==(const VariantDate&) const = default;
};

// A fixed-point amount with four decimals, held as ten-thousandths.
struct VariantCurrency {
    std::int64_t tenThousandths = 0;
    bool operator==(const VariantCurrency&) const = default;
};

struct VariantEmpty {
    bool operator==(const VariantEmpty&) const = default;
};
struct VariantNull {
    bool operator==(const VariantNull&) const = default;
};

using VariantBytes = std::vector<std::uint8_t>;

class Variant;
using VariantArray = std::vector<Variant>;

enum class VariantType {
    Empty,
    Null,
    Boolean,
    Integer,  // 16-bit
    Long,     // 32-bit
    Double,
    Currency,
    Date,
    String,
    Object,
    Bytes,
    Array,
};

class Variant {
  public:
    Variant() = default;
    Variant(VariantEmpty) {}
    Variant(VariantNull value) : value_(value) {}
    Variant(bool value) : value_(value) {}
    Variant(std::int16_t value) : value_(value) {}
    Variant(std::int32_t value) : value_(value) {}
    Variant(double value) : value_(value) {}
    Variant(VariantCurrency value) : value_(value) {}
    Variant(VariantDate value) : value_(value) {}
    Variant(std::string value) : value_(std::move(value)) {}
    Variant(std::string_view value) : value_(std::string(value)) {}
    Variant(const char* value) : value_(std::string(value)) {}
    template <typename T>
    requires std::derived_from<T, VariantObject> Variant(std::shared_ptr<T> value)
        : value_(std::shared_ptr<VariantObject>(std::move(value))) {}
    Variant(VariantBytes value) : value_(std::move(value)) {}
    Variant(VariantArray value);

    VariantType Type() const { return static_cast<VariantType>(value_.index()); }
    bool IsEmpty() const { return Type() == VariantType::Empty; }
    bool IsNull() const { return Type() == VariantType::Null; }
    bool IsObject() const { return Type() == VariantType::Object; }
    // The name late-bound callers see for the type ("Empty", "Boolean", "String", ...).
    std::string_view TypeName() const;

    // Conversions; each throws a FacadeError when the value cannot be had as that type.
    bool ToBoolean() const;
    std::int16_t ToInteger() const;
    std::int32_t ToLong() const;
    double ToDouble() const;
    VariantCurrency ToCurrency() const;
    VariantDate ToDate() const;
    std::string ToString() const;
    // The object held; Nothing (an empty object slot) is an error too.
    std::shared_ptr<VariantObject> ToObject() const;
    VariantBytes ToBytes() const;
    const VariantArray& ToArray() const;

    // Exact access for code that has already checked the type.
    template <typename T>
    const T& As() const {
        return std::get<T>(value_);
    }

    bool operator==(const Variant& other) const;

  private:
    std::variant<VariantEmpty, VariantNull, bool, std::int16_t, std::int32_t, double,
                 VariantCurrency, VariantDate, std::string, std::shared_ptr<VariantObject>,
                 VariantBytes, std::shared_ptr<const VariantArray>>
        value_;
};

// "DD/MM/YYYY" (or "YYYY-MM-DD") as a date; FacadeError (type mismatch) when it is not one.
VariantDate DateFromText(std::string_view text);
// "DD/MM/YYYY" of the date's day.
std::string DateText(VariantDate date);

// A number written in text as late-bound callers accept it: blanks around, "." or "," as the
// decimal separator, a sign, an exponent. Nothing when the text is not a number.
bool ParseNumberText(std::string_view text, double& value);

}  // namespace fnrk::facade

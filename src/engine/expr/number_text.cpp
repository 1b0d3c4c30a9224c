#include "engine/expr/number_text.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace fnrk::engine::expr {
namespace {

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                   1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
constexpr int kMaxDecimals = 18;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number as its first 16 significant decimal digits (beyond them a double holds noise):
// value = 0.d1d2d3... * 10^point, without trailing zero digits. Rounded from these digits, not
// from the binary value, 2.675 rounds as the decimal it stands for, and numbers print the way
// other xBase engines print them into keys.
constexpr int kSignificantDigits = 16;

struct Decimal {
    bool negative = false;
    char digits[kSignificantDigits] = {};
    int count = 0;
    int point = 0;
};

Decimal ToDecimal(double value) {
    Decimal decimal;
    decimal.negative = std::signbit(value);
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, std::abs(value),
                                      std::chars_format::scientific, kSignificantDigits - 1);
    const char* exponent = std::find(text, result.ptr, 'e');
    for (const char* at = text; at < exponent; ++at)
        if (IsDigit(*at)) decimal.digits[decimal.count++] = *at;
    while (decimal.count > 0 && decimal.digits[decimal.count - 1] == '0') --decimal.count;
    int power = 0;
    std::from_chars(exponent + (exponent[1] == '+' ? 2 : 1), result.ptr, power);
    decimal.point = decimal.count == 0 ? 0 : power + 1;
    if (decimal.count == 0) decimal.negative = false;
    return decimal;
}

// Keeps `places` digits after the decimal point, the last one rounded half away from zero.
void RoundDecimal(Decimal& decimal, int places) {
    const int keep = decimal.point + places;
    if (keep >= decimal.count) return;
    const bool up = keep >= 0 && decimal.digits[keep] >= '5';
    decimal.count = std::max(keep, 0);
    if (up) {
        int at = keep - 1;
        while (at >= 0 && decimal.digits[at] == '9') --at;
        if (at < 0) {
            // 9.99 -> 10.0: one more digit in front.
            decimal.digits[0] = '1';
            decimal.count = 1;
            ++decimal.point;
        } else {
            ++decimal.digits[at];
            decimal.count = at + 1;
        }
    }
    while (decimal.count > 0 && decimal.digits[decimal.count - 1] == '0') --decimal.count;
    if (decimal.count == 0) decimal = Decimal{};  // zero, never "-0"
}

// The digit at `position` before (>= 1) or after (<= 0) the decimal point.
char DigitAt(const Decimal& decimal, int position) {
    const int index = decimal.point - position;
    return index >= 0 && index < decimal.count ? decimal.digits[index] : '0';
}

// The decimal in fixed notation with `places` decimals; the length written.
std::size_t WriteFixed(const Decimal& decimal, int places, char* out) {
    std::size_t size = 0;
    if (decimal.negative) out[size++] = '-';
    for (int position = std::max(decimal.point, 1); position >= 1; --position)
        out[size++] = DigitAt(decimal, position);
    if (places > 0) out[size++] = '.';
    for (int position = 0; position > -places; --position) out[size++] = DigitAt(decimal, position);
    return size;
}

// The general path, for long digit strings and exponents.
double ReadWithLibrary(const char* begin, const char* end, bool negative) {
    double value = 0;
    const auto result = std::from_chars(begin, end, value);
    if (result.ec != std::errc() || !std::isfinite(value)) return 0;
    return negative ? -value : value;
}

}  // namespace

double ReadNumber(std::string_view text) {
    const char* at = text.data();
    const char* end = at + text.size();
    while (at < end && *at == ' ') ++at;
    bool negative = false;
    if (at < end && (*at == '-' || *at == '+')) negative = *at++ == '-';
    const char* digits = at;
    std::uint64_t mantissa = 0;
    int count = 0;
    int decimals = -1;
    for (; at < end; ++at) {
        if (IsDigit(*at)) {
            mantissa = mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
            ++count;
            if (decimals >= 0) ++decimals;
        } else if (*at == '.' && decimals < 0) {
            decimals = 0;
        } else {
            break;
        }
    }
    if (count == 0) return 0;
    const bool exponent =
        at + 1 < end && (*at == 'e' || *at == 'E') &&
        (IsDigit(at[1]) || ((at[1] == '-' || at[1] == '+') && at + 2 < end && IsDigit(at[2])));
    if (count > 18 || exponent) return ReadWithLibrary(digits, end, negative);
    // Up to 2^53 both parts are exact and the one division rounds correctly. A longer mantissa
    // rounds first: that is how other xBase engines read such a field, and the keys they write
    // for it follow from that value.
    double value = static_cast<double>(mantissa);
    if (decimals > 0) value /= kPowersOfTen[decimals];
    return negative ? -value : value;
}

double RoundHalfAway(double value, int decimals) {
    if (!std::isfinite(value) || value == 0) return value == 0 ? 0.0 : value;
    Decimal decimal = ToDecimal(value);
    RoundDecimal(decimal, std::clamp(decimals, -kMaxDecimals, kMaxDecimals));
    if (decimal.count == 0) return 0.0;
    char text[48];
    std::size_t size = 0;
    if (decimal.negative) text[size++] = '-';
    std::memcpy(text + size, decimal.digits, static_cast<std::size_t>(decimal.count));
    size += static_cast<std::size_t>(decimal.count);
    text[size++] = 'e';
    const auto end = std::to_chars(text + size, text + sizeof text, decimal.point - decimal.count);
    double result = 0;
    std::from_chars(text, end.ptr, result);
    return result;
}

double Modulo(double dividend, double divisor) {
    double rest = std::fmod(dividend, divisor);
    if (rest != 0 && (rest < 0) != (divisor < 0)) rest += divisor;
    return rest;
}

void WriteStr(double value, std::size_t length, int decimals, char* out) {
    decimals = std::clamp(decimals, 0, kMaxDecimals);
    char text[400];
    if (std::isfinite(value)) {
        const Decimal exact = ToDecimal(value);
        for (int places = decimals; places >= 0; --places) {
            Decimal rounded = exact;
            RoundDecimal(rounded, places);
            const std::size_t size = WriteFixed(rounded, places, text);
            if (size <= length) {
                std::memset(out, ' ', length - size);
                std::memcpy(out + (length - size), text, size);
                return;
            }
        }
    }
    std::memset(out, '*', length);
}

}  // namespace fnrk::engine::expr

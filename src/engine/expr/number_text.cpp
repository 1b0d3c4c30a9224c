#include "engine/expr/number_text.hpp"

#include <algorithm>
#include <cfloat>
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
    // Both parts exact, so the one division rounds correctly.
    double value = static_cast<double>(mantissa);
    if (decimals > 0) value /= kPowersOfTen[decimals];
    return negative ? -value : value;
}

double RoundHalfAway(double value, int decimals) {
    if (!std::isfinite(value)) return value;
    decimals = std::clamp(decimals, -kMaxDecimals, kMaxDecimals);
    const double scale = kPowersOfTen[decimals < 0 ? -decimals : decimals];
    const double scaled = decimals < 0 ? value / scale : value * scale;
    if (std::abs(scaled) >= 4503599627370496.0) return value;  // 2^52: no fraction left
    const double nudged = scaled + std::copysign(std::abs(scaled) * 4 * DBL_EPSILON, scaled);
    const double rounded = std::round(nudged);
    const double result = decimals < 0 ? rounded * scale : rounded / scale;
    return result == 0 ? 0.0 : result;  // no "-0"
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
        for (int places = decimals; places >= 0; --places) {
            const double rounded = RoundHalfAway(value, places);
            const auto result =
                std::to_chars(text, text + sizeof text, rounded, std::chars_format::fixed, places);
            if (result.ec != std::errc()) break;
            const std::size_t size = static_cast<std::size_t>(result.ptr - text);
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

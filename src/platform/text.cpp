#include "platform/text.hpp"

#include <cmath>
#include <string>

#include <fmt/format.h>

#include "platform/utf8.hpp"

namespace fnrk::platform {
namespace {

bool IsUtf8Continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Upper case of one code point: ASCII, Latin-1 and Latin Extended-A letters. Letters without a
// single upper-case code point ("ß") stay as they are.
char32_t UpperCodePoint(char32_t cp) {
    if (cp >= U'a' && cp <= U'z') return cp - 0x20;
    if (cp >= 0xE0 && cp <= 0xFE && cp != 0xF7) return cp - 0x20;
    if (cp == 0xFF) return 0x178;
    if ((cp >= 0x100 && cp <= 0x137) || (cp >= 0x14A && cp <= 0x177)) return cp & ~char32_t{1};
    if ((cp >= 0x139 && cp <= 0x148) || (cp >= 0x179 && cp <= 0x17E)) {
        return (cp % 2 == 0) ? cp - 1 : cp;
    }
    return cp;
}

char32_t LowerCodePoint(char32_t cp) {
    if (cp >= U'A' && cp <= U'Z') return cp + 0x20;
    if (cp >= 0xC0 && cp <= 0xDE && cp != 0xD7) return cp + 0x20;
    if (cp == 0x178) return 0xFF;
    if ((cp >= 0x100 && cp <= 0x137) || (cp >= 0x14A && cp <= 0x177)) return cp | char32_t{1};
    if ((cp >= 0x139 && cp <= 0x148) || (cp >= 0x179 && cp <= 0x17E)) {
        return (cp % 2 == 1) ? cp + 1 : cp;
    }
    return cp;
}

template <typename Map>
std::string MapCodePoints(std::string_view text, Map map) {
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t start = pos;
        char32_t cp = 0;
        if (DecodeUtf8CodePoint(text, pos, cp)) {
            AppendUtf8CodePoint(out, map(cp));
        } else {
            out.append(text.substr(start, pos - start));  // invalid bytes pass through
        }
    }
    return out;
}

// Byte offset of the `count`-th UTF-8 character (or the end of the text).
std::size_t ByteOffsetOfChar(std::string_view text, std::size_t count) {
    std::size_t pos = 0;
    for (std::size_t seen = 0; pos < text.size(); ++pos) {
        if (!IsUtf8Continuation(text[pos])) {
            if (seen == count) return pos;
            ++seen;
        }
    }
    return text.size();
}

// The parts of a number pattern: literal text around the placeholders, how many integer digits
// are mandatory, and how many decimals are shown at most and at least.
struct NumberPattern {
    std::string prefix;
    std::string suffix;
    bool hasPoint = false;
    std::size_t minIntegerDigits = 0;
    std::size_t maxDecimals = 0;
    std::size_t minDecimals = 0;
};

bool IsPlaceholder(char c) {
    return c == '0' || c == '#' || c == '.';
}

NumberPattern ParsePattern(std::string_view pattern) {
    NumberPattern parsed;
    std::size_t first = 0;
    while (first < pattern.size() && !IsPlaceholder(pattern[first])) ++first;
    std::size_t last = first;
    while (last < pattern.size() && IsPlaceholder(pattern[last])) ++last;
    parsed.prefix = std::string(pattern.substr(0, first));
    parsed.suffix = std::string(pattern.substr(last));
    std::size_t fractionPosition = 0;
    for (std::size_t i = first; i < last; ++i) {
        const char c = pattern[i];
        if (c == '.') {
            if (parsed.hasPoint) break;  // a second point ends the number part
            parsed.hasPoint = true;
        } else if (!parsed.hasPoint) {
            if (c == '0') ++parsed.minIntegerDigits;
        } else {
            ++fractionPosition;
            parsed.maxDecimals = fractionPosition;
            if (c == '0') parsed.minDecimals = fractionPosition;
        }
    }
    return parsed;
}

// Decimal digits of |value| with 15 significant digits, as the classic Format sees a double,
// split at the decimal point.
void DecimalDigits(double value, std::string& integerDigits, std::string& fractionDigits) {
    const std::string scientific = fmt::format("{:.14e}", std::fabs(value));  // d.dddde±xx
    const std::size_t ePos = scientific.find('e');
    std::string digits = scientific.substr(0, 1) + scientific.substr(2, ePos - 2);
    const int exponent = std::stoi(scientific.substr(ePos + 1));
    int pointPos = exponent + 1;
    if (pointPos <= 0) {
        digits.insert(0, static_cast<std::size_t>(1 - pointPos), '0');
        pointPos = 1;
    } else if (static_cast<std::size_t>(pointPos) > digits.size()) {
        digits.append(static_cast<std::size_t>(pointPos) - digits.size(), '0');
    }
    integerDigits = digits.substr(0, static_cast<std::size_t>(pointPos));
    fractionDigits = digits.substr(static_cast<std::size_t>(pointPos));
}

// Adds one unit at the last digit of the text, carrying leftwards; returns true on overflow.
bool IncrementDigits(std::string& digits) {
    for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
        if (*it != '9') {
            ++*it;
            return false;
        }
        *it = '0';
    }
    return true;
}

}  // namespace

std::string Trim(std::string_view text) {
    return TrimRight(TrimLeft(text));
}

std::string TrimLeft(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string() : std::string(text.substr(first));
}

std::string TrimRight(std::string_view text) {
    const std::size_t last = text.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
}

std::string UpperCase(std::string_view text) {
    return MapCodePoints(text, UpperCodePoint);
}

std::string LowerCase(std::string_view text) {
    return MapCodePoints(text, LowerCodePoint);
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    return UpperCase(a) == UpperCase(b);
}

std::string PadRight(std::string_view text, std::size_t width) {
    std::string out = LeftChars(text, width);
    const std::size_t count = CharCount(out);
    if (count < width) out.append(width - count, ' ');
    return out;
}

std::size_t CharCount(std::string_view text) {
    std::size_t count = 0;
    for (const char byte : text) {
        if (!IsUtf8Continuation(byte)) ++count;
    }
    return count;
}

std::string LeftChars(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, ByteOffsetOfChar(text, count)));
}

std::string RightChars(std::string_view text, std::size_t count) {
    const std::size_t total = CharCount(text);
    if (count >= total) return std::string(text);
    return std::string(text.substr(ByteOffsetOfChar(text, total - count)));
}

double RoundHalfEven(double value, int decimals) {
    if (!std::isfinite(value)) return value;
    const double scale = std::pow(10.0, decimals);
    const double scaled = value * scale;
    const double lower = std::floor(scaled);
    const double fraction = scaled - lower;
    double rounded = lower;
    if (fraction > 0.5) {
        rounded = lower + 1.0;
    } else if (fraction == 0.5) {
        rounded = std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1.0;
    }
    return rounded / scale;
}

std::string FormatNumber(double value, std::string_view pattern) {
    const NumberPattern parsed = ParsePattern(pattern);
    if (!std::isfinite(value)) return parsed.prefix + fmt::format("{}", value) + parsed.suffix;

    std::string integerDigits;
    std::string fractionDigits;
    DecimalDigits(value, integerDigits, fractionDigits);

    // Half away from zero: the digits are those of |value|, so a first dropped digit of 5 or
    // more rounds the kept part up.
    const bool roundUp =
        fractionDigits.size() > parsed.maxDecimals && fractionDigits[parsed.maxDecimals] >= '5';
    fractionDigits.resize(parsed.maxDecimals, '0');
    if (roundUp && IncrementDigits(fractionDigits) && IncrementDigits(integerDigits)) {
        integerDigits.insert(0, 1, '1');
    }
    while (fractionDigits.size() > parsed.minDecimals && fractionDigits.back() == '0') {
        fractionDigits.pop_back();
    }

    const std::size_t firstNonZero = integerDigits.find_first_not_of('0');
    std::string integerText =
        firstNonZero == std::string::npos ? std::string() : integerDigits.substr(firstNonZero);
    if (integerText.size() < parsed.minIntegerDigits) {
        integerText.insert(0, parsed.minIntegerDigits - integerText.size(), '0');
    }

    const bool isZero = integerText.find_first_not_of('0') == std::string::npos &&
                        fractionDigits.find_first_not_of('0') == std::string::npos;
    std::string out = parsed.prefix;
    if (value < 0 && !isZero) out += '-';
    out += integerText;
    if (parsed.hasPoint) out += '.' + fractionDigits;
    out += parsed.suffix;
    return out;
}

}  // namespace fnrk::platform

#include "engine/expr/dates.hpp"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "engine/expr/ascii.hpp"
#include "platform/local_time.hpp"

namespace fnrk::engine::expr {
namespace {

constexpr std::int32_t kFirstJulian = 1721426;  // 0001-01-01
constexpr std::int32_t kLastJulian = 5373484;   // 9999-12-31

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// One piece of a display format: a day, month or year field, or a literal character.
enum class FormatPart { Day, Month, Year2, Year4, Literal };

struct FormatToken {
    FormatPart part;
    std::size_t width;
};

bool StartsWithNoCase(std::string_view text, std::size_t at, std::string_view word) {
    if (text.size() - at < word.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (AsciiUpper(text[at + i]) != word[i]) return false;
    }
    return true;
}

FormatToken NextToken(std::string_view format, std::size_t at) {
    if (StartsWithNoCase(format, at, "CCYY") || StartsWithNoCase(format, at, "YYYY")) {
        return {FormatPart::Year4, 4};
    }
    if (StartsWithNoCase(format, at, "YY")) return {FormatPart::Year2, 2};
    if (StartsWithNoCase(format, at, "DD")) return {FormatPart::Day, 2};
    if (StartsWithNoCase(format, at, "MM")) return {FormatPart::Month, 2};
    return {FormatPart::Literal, 1};
}

void WriteDigits(int value, std::size_t width, char* out) {
    for (std::size_t i = width; i > 0; --i) {
        out[i - 1] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

int YearInEpoch(int twoDigits, int epoch) {
    int year = epoch / 100 * 100 + twoDigits;
    if (year < epoch) year += 100;
    return year;
}

std::optional<std::int32_t> JulianIfValid(int year, int month, int day) {
    if (!IsValidDate(year, month, day)) return std::nullopt;
    return JulianFromCivil(year, month, day);
}

// Positional reading, for formats without separators ("YYYYMMDD").
std::optional<std::int32_t> ParseByPosition(std::string_view text, const DateSettings& settings) {
    int day = 0, month = 0, year = 0;
    bool twoDigitYear = false;
    std::size_t at = 0;
    const std::string_view format = settings.format;
    for (std::size_t f = 0; f < format.size();) {
        const FormatToken token = NextToken(format, f);
        f += token.width;
        if (token.part == FormatPart::Literal) {
            ++at;
            continue;
        }
        int value = 0;
        for (std::size_t i = 0; i < token.width; ++i, ++at) {
            if (at >= text.size() || !IsDigit(text[at])) return std::nullopt;
            value = value * 10 + (text[at] - '0');
        }
        if (token.part == FormatPart::Day) day = value;
        if (token.part == FormatPart::Month) month = value;
        if (token.part == FormatPart::Year4) year = value;
        if (token.part == FormatPart::Year2) year = value, twoDigitYear = true;
    }
    if (at != text.size()) return std::nullopt;
    if (twoDigitYear) year = YearInEpoch(year, settings.epoch);
    return JulianIfValid(year, month, day);
}

}  // namespace

bool IsValidDate(int year, int month, int day) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1) return false;
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const int days = kDays[month - 1] + (month == 2 && leap ? 1 : 0);
    return day <= days;
}

std::int32_t JulianFromCivil(int year, int month, int day) {
    const std::int64_t a = (14 - month) / 12;
    const std::int64_t y = year + 4800 - a;
    const std::int64_t m = month + 12 * a - 3;
    return static_cast<std::int32_t>(day + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 -
                                     32045);
}

CivilDate CivilFromJulian(std::int32_t julian) {
    if (julian < kFirstJulian || julian > kLastJulian) return {};
    const std::int64_t a = static_cast<std::int64_t>(julian) + 32044;
    const std::int64_t b = (4 * a + 3) / 146097;
    const std::int64_t c = a - 146097 * b / 4;
    const std::int64_t d = (4 * c + 3) / 1461;
    const std::int64_t e = c - 1461 * d / 4;
    const std::int64_t m = (5 * e + 2) / 153;
    CivilDate date;
    date.day = static_cast<int>(e - (153 * m + 2) / 5 + 1);
    date.month = static_cast<int>(m + 3 - 12 * (m / 10));
    date.year = static_cast<int>(100 * b + d - 4800 + m / 10);
    return date;
}

void WriteDtos(std::int32_t julian, char* out8) {
    const CivilDate date = CivilFromJulian(julian);
    if (date.year == 0) {
        std::fill(out8, out8 + 8, ' ');
        return;
    }
    WriteDigits(date.year, 4, out8);
    WriteDigits(date.month, 2, out8 + 4);
    WriteDigits(date.day, 2, out8 + 6);
}

std::string Dtos(std::int32_t julian) {
    std::string text(8, ' ');
    WriteDtos(julian, text.data());
    return text;
}

std::optional<std::int32_t> Stod(std::string_view text) {
    if (text.find_first_not_of(' ') == std::string_view::npos) return 0;
    if (text.size() != 8) return std::nullopt;
    int parts[3] = {0, 0, 0};
    static constexpr int kWidths[] = {4, 2, 2};
    std::size_t at = 0;
    for (int p = 0; p < 3; ++p) {
        for (int i = 0; i < kWidths[p]; ++i, ++at) {
            if (!IsDigit(text[at])) return std::nullopt;
            parts[p] = parts[p] * 10 + (text[at] - '0');
        }
    }
    return JulianIfValid(parts[0], parts[1], parts[2]);
}

std::size_t FormattedDateLength(const DateSettings& settings) {
    std::size_t length = 0;
    for (std::size_t f = 0; f < settings.format.size();) {
        const FormatToken token = NextToken(settings.format, f);
        f += token.width;
        length += token.width;
    }
    return length;
}

std::size_t WriteFormattedDate(std::int32_t julian, const DateSettings& settings, char* out,
                               std::size_t capacity) {
    const CivilDate date = CivilFromJulian(julian);
    const bool empty = date.year == 0;
    const std::string_view format = settings.format;
    char piece[4];
    std::size_t written = 0;
    for (std::size_t f = 0; f < format.size();) {
        const FormatToken token = NextToken(format, f);
        switch (token.part) {
            case FormatPart::Day:
                WriteDigits(date.day, 2, piece);
                break;
            case FormatPart::Month:
                WriteDigits(date.month, 2, piece);
                break;
            case FormatPart::Year2:
                WriteDigits(date.year % 100, 2, piece);
                break;
            case FormatPart::Year4:
                WriteDigits(date.year, 4, piece);
                break;
            case FormatPart::Literal:
                piece[0] = format[f];
                break;
        }
        for (std::size_t i = 0; i < token.width && written < capacity; ++i) {
            const bool digit = token.part != FormatPart::Literal;
            out[written++] = empty && digit ? ' ' : piece[i];
        }
        f += token.width;
    }
    return written;
}

std::string FormatDate(std::int32_t julian, const DateSettings& settings) {
    std::string text(FormattedDateLength(settings), ' ');
    text.resize(WriteFormattedDate(julian, settings, text.data(), text.size()));
    return text;
}

std::optional<std::int32_t> ParseDate(std::string_view text, const DateSettings& settings) {
    bool anyDigit = false;
    for (char c : text) anyDigit = anyDigit || IsDigit(c);
    if (!anyDigit) {
        // Blank, or only separators: the empty date; letters are not a date.
        for (char c : text) {
            if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) return std::nullopt;
        }
        return 0;
    }
    bool hasLiteral = false;
    for (std::size_t f = 0; f < settings.format.size();) {
        const FormatToken token = NextToken(settings.format, f);
        hasLiteral = hasLiteral || token.part == FormatPart::Literal;
        f += token.width;
    }
    if (!hasLiteral) return ParseByPosition(text, settings);

    // With separators, the groups of digits fill the day, month and year in format order, so
    // that "1/2/2024" reads like "01/02/2024".
    int values[3] = {0, 0, 0};
    std::size_t widths[3] = {0, 0, 0};
    int groups = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        if (!IsDigit(text[at])) {
            if (text[at] != ' ' && text[at] != '/' && text[at] != '.' && text[at] != '-') {
                return std::nullopt;
            }
            ++at;
            continue;
        }
        if (groups == 3) return std::nullopt;
        while (at < text.size() && IsDigit(text[at])) {
            if (widths[groups] == 4) return std::nullopt;
            values[groups] = values[groups] * 10 + (text[at] - '0');
            ++widths[groups];
            ++at;
        }
        ++groups;
    }
    if (groups != 3) return std::nullopt;
    int day = 0, month = 0, year = 0;
    int field = 0;
    for (std::size_t f = 0; f < settings.format.size() && field < 3;) {
        const FormatToken token = NextToken(settings.format, f);
        f += token.width;
        if (token.part == FormatPart::Literal) continue;
        if (token.part == FormatPart::Day) day = values[field];
        if (token.part == FormatPart::Month) month = values[field];
        if (token.part == FormatPart::Year2 || token.part == FormatPart::Year4) {
            year = widths[field] <= 2 ? YearInEpoch(values[field], settings.epoch) : values[field];
        }
        ++field;
    }
    return JulianIfValid(year, month, day);
}

std::int32_t Today() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    const std::tm local = platform::LocalTime(now);
    return JulianFromCivil(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

}  // namespace fnrk::engine::expr

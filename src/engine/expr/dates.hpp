#pragma once

// Calendar helpers of the engine: julian day numbers (2451545 is 2000-01-01, 0 is the empty
// date), the "YYYYMMDD" form stored in tables, and the display form set by SetDateFormat /
// SetEpoch.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fnrk::engine::expr {

struct CivilDate {
    int year = 0;
    int month = 0;
    int day = 0;
};

// The display form of dates. `format` is made of DD, MM, YY, YYYY or CCYY and literal
// characters ("DD/MM/YYYY", "MM/DD/YY"). `epoch` is the first year of the 100-year window in
// which a two-digit year falls: with 1980, "79" is 2079 and "80" is 1980.
struct DateSettings {
    std::string format = "MM/DD/CCYY";
    int epoch = 1900;
};

// Gregorian calendar (proleptic), years 1 to 9999.
bool IsValidDate(int year, int month, int day);
std::int32_t JulianFromCivil(int year, int month, int day);
// The empty date (0) gives {0, 0, 0}.
CivilDate CivilFromJulian(std::int32_t julian);

// "YYYYMMDD", or 8 blanks for the empty date.
std::string Dtos(std::int32_t julian);
void WriteDtos(std::int32_t julian, char* out8);
// 0 for 8 blanks or empty text; no value for anything that is not a valid date.
std::optional<std::int32_t> Stod(std::string_view text);

// A date in the display form; the empty date keeps the separators and blanks the digits
// ("  /  /    ").
std::string FormatDate(std::int32_t julian, const DateSettings& settings);
// Writes at most `capacity` bytes, returns the number written.
std::size_t WriteFormattedDate(std::int32_t julian, const DateSettings& settings, char* out,
                               std::size_t capacity);
// Length of the display form of any date.
std::size_t FormattedDateLength(const DateSettings& settings);
// Text in the display form; two-digit years go through the epoch. 0 for blank text (digits all
// blank); no value for text that is not a valid date.
std::optional<std::int32_t> ParseDate(std::string_view text, const DateSettings& settings);

// Today's date from the system clock (local time).
std::int32_t Today();

}  // namespace fnrk::engine::expr

#include "intake/period_mapping.hpp"

#include <charconv>
#include <cmath>

#include "platform/text.hpp"

namespace fnrk::intake {

namespace {

constexpr std::size_t kDateLength = 8;
// The first month of each month's quarter, two characters per month.
constexpr std::string_view kQuarterStarts = "010101040404070707101010";
constexpr int kMonths = 12;

// A positive whole number, the whole trimmed text; 0 otherwise.
int PositiveNumber(std::string_view text) {
    const std::string trimmed = platform::Trim(text);
    int value = 0;
    const auto [end, error] =
        std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), value);
    return error == std::errc() && end == trimmed.data() + trimmed.size() && value > 0 ? value : 0;
}

std::string TwoDigits(int value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

std::string PeriodStartKey(int month, int year, bool monthly) {
    const std::string mm =
        monthly || month > kMonths
            ? TwoDigits(month)
            : std::string(kQuarterStarts.substr(static_cast<std::size_t>(2 * month - 2), 2));
    return "01" + mm + std::to_string(year);
}

bool DateToPeriode(CompanyFacts& company, std::string_view month, std::string_view Year,
                   std::string& Period, std::string& booyear) {
    const int monthNumber = PositiveNumber(month);
    const int yearNumber = PositiveNumber(Year);
    if (monthNumber == 0 || yearNumber == 0) return false;
    const std::string key = PeriodStartKey(monthNumber, yearNumber, company.IsSocMensuel());
    for (std::int16_t bookYear = company.BookYearCount(); bookYear >= 1; --bookYear) {
        const std::string dates = company.PerDate(bookYear);
        const auto count = static_cast<std::size_t>(
            platform::RoundHalfEven(static_cast<double>(dates.size()) / kDateLength, 0));
        for (std::size_t i = 2; i <= count; ++i) {
            const std::size_t at = (i - 1) * kDateLength;
            if (at < dates.size() && dates.substr(at, kDateLength) == key) {
                booyear = std::to_string(bookYear);
                Period = TwoDigits(static_cast<int>(i - 1));
                return true;
            }
        }
    }
    return false;
}

}  // namespace fnrk::intake

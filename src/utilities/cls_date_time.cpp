#include "utilities/cls_date_time.hpp"

#include <fmt/format.h>

#include "utilities/calendar.hpp"

namespace fnrk::utilities {

int clsDateTime::DaysInYearCount(int year) const {
    if (year < 1 || year > 9999) return 0;
    return IsLeapYear(year) ? 366 : 365;
}

std::string clsDateTime::PerToDate(int year, int period, int periodsPerYear, bool firstDay) const {
    if (year < 1 || year > 9999) return {};
    if (periodsPerYear != 1 && periodsPerYear != 2 && periodsPerYear != 4 && periodsPerYear != 12)
        return {};
    if (period < 1 || period > periodsPerYear) return {};
    const int monthsPerPeriod = 12 / periodsPerYear;
    const int month = firstDay ? (period - 1) * monthsPerPeriod + 1 : period * monthsPerPeriod;
    const int day = firstDay ? 1 : DaysInMonth(year, month);
    return fmt::format("{:02}/{:02}/{:04}", day, month, year);
}

}  // namespace fnrk::utilities

#pragma once

// clsDateTime: calendar answers for book years and periods. Years are Gregorian; dates are
// "DD/MM/YYYY" text as everywhere else in the library.

#include <string>

namespace fnrk::utilities {

class clsDateTime {
  public:
    // 366 for a leap year (divisible by 4, centuries only when divisible by 400), 365 otherwise;
    // 0 for a year outside 1 to 9999.
    int DaysInYearCount(int year) const;

    // The date of a period of a calendar year divided into `periodsPerYear` equal periods
    // (12 months, 4 quarters, 2 halves or 1 year): its first day when `firstDay`, else its last.
    // Empty text for a period outside 1 to periodsPerYear, a division other than those four, or a
    // year outside 1 to 9999.
    std::string PerToDate(int year, int period, int periodsPerYear, bool firstDay) const;
};

}  // namespace fnrk::utilities

#pragma once

// Gregorian calendar facts shared by the date helpers.

namespace fnrk::utilities {

inline bool IsLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

// Month 1 to 12.
inline int DaysInMonth(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

inline bool IsValidDate(int year, int month, int day) {
    return year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
           day <= DaysInMonth(year, month);
}

}  // namespace fnrk::utilities

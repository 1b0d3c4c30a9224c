#include <gtest/gtest.h>

#include "utilities/cls_date_time.hpp"
#include "utilities/cls_format.hpp"

namespace fnrk::utilities {
namespace {

TEST(DateTimeTest, LeapYearsFollowTheGregorianCenturyRule) {
    const clsDateTime dates;
    EXPECT_EQ(dates.DaysInYearCount(2024), 366);
    EXPECT_EQ(dates.DaysInYearCount(2023), 365);
    EXPECT_EQ(dates.DaysInYearCount(1900), 365);  // a century not divisible by 400
    EXPECT_EQ(dates.DaysInYearCount(2000), 366);
    EXPECT_EQ(dates.DaysInYearCount(0), 0);
    EXPECT_EQ(dates.DaysInYearCount(10000), 0);
}

TEST(DateTimeTest, PeriodsGiveTheirFirstAndLastDays) {
    const clsDateTime dates;
    EXPECT_EQ(dates.PerToDate(2024, 2, 12, false), "29/02/2024");
    EXPECT_EQ(dates.PerToDate(2023, 2, 12, false), "28/02/2023");
    EXPECT_EQ(dates.PerToDate(2024, 2, 12, true), "01/02/2024");
    EXPECT_EQ(dates.PerToDate(2024, 1, 4, false), "31/03/2024");
    EXPECT_EQ(dates.PerToDate(2024, 4, 4, true), "01/10/2024");
    EXPECT_EQ(dates.PerToDate(2024, 2, 2, false), "31/12/2024");
    EXPECT_EQ(dates.PerToDate(2024, 1, 1, true), "01/01/2024");
    EXPECT_EQ(dates.PerToDate(2024, 13, 12, false), "");
    EXPECT_EQ(dates.PerToDate(2024, 0, 12, false), "");
    EXPECT_EQ(dates.PerToDate(2024, 1, 5, false), "");
}

TEST(FormatTest, CurrencyUsesTheCallersSeparatorsAndRoundsHalfAway) {
    const clsFormat format;
    EXPECT_EQ(format.Currency(1234567.891, ",", "."), "1.234.567,89");
    EXPECT_EQ(format.Currency(1234567.891, ".", ","), "1,234,567.89");
    EXPECT_EQ(format.Currency(1234.5, ",", ""), "1234,50");
    EXPECT_EQ(format.Currency(999.995, ",", "."), "1.000,00");
    EXPECT_EQ(format.Currency(-1234.565, ",", " "), "-1 234,57");
    EXPECT_EQ(format.Currency(-0.004, ",", "."), "0,00");
    EXPECT_EQ(format.Currency(12, "", ""), "12,00");
    EXPECT_EQ(format.Currency(100, ",", "."), "100,00");
}

TEST(FormatTest, DatesOfEveryStoredFormBecomeDayMonthYear) {
    const clsFormat format;
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("5/3/2024"), "05/03/2024");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("05-03-24"), "05/03/2024");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("05.03.80"), "05/03/2080");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("05/03/81"), "05/03/1981");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("20240229"), "29/02/2024");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("2024-12-31"), "31/12/2024");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("29/02/2023"), "");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("  /  /    "), "");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash(""), "");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("32/01/2024"), "");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("1/2/345"), "");
    EXPECT_EQ(format.DateDDMMYYYYWithSlash("a1/02/2024"), "");
}

}  // namespace
}  // namespace fnrk::utilities

#include "engine/expr/dates.hpp"

#include <gtest/gtest.h>

namespace fnrk::engine::expr {
namespace {

TEST(Dates, JulianDayNumbersMatchKnownDays) {
    EXPECT_EQ(JulianFromCivil(2000, 1, 1), 2451545);
    EXPECT_EQ(JulianFromCivil(1970, 1, 1), 2440588);
    EXPECT_EQ(JulianFromCivil(1, 1, 1), 1721426);
    EXPECT_EQ(JulianFromCivil(9999, 12, 31), 5373484);
    // Every day from 1899 to 2101 converts back, one day apart from the one before.
    std::int32_t previous = JulianFromCivil(1898, 12, 31);
    for (int year = 1899; year <= 2101; ++year) {
        for (int month = 1; month <= 12; ++month) {
            for (int day = 1; IsValidDate(year, month, day); ++day) {
                const std::int32_t julian = JulianFromCivil(year, month, day);
                ASSERT_EQ(julian, previous + 1) << year << "-" << month << "-" << day;
                const CivilDate back = CivilFromJulian(julian);
                ASSERT_EQ(back.year, year);
                ASSERT_EQ(back.month, month);
                ASSERT_EQ(back.day, day);
                previous = julian;
            }
        }
    }
}

TEST(Dates, ValidityFollowsTheGregorianLeapRules) {
    EXPECT_TRUE(IsValidDate(2000, 2, 29));
    EXPECT_FALSE(IsValidDate(1900, 2, 29));
    EXPECT_TRUE(IsValidDate(2024, 2, 29));
    EXPECT_FALSE(IsValidDate(2023, 2, 29));
    EXPECT_FALSE(IsValidDate(2024, 4, 31));
    EXPECT_FALSE(IsValidDate(2024, 13, 1));
    EXPECT_FALSE(IsValidDate(0, 1, 1));
    EXPECT_FALSE(IsValidDate(10000, 1, 1));
    const CivilDate empty = CivilFromJulian(0);
    EXPECT_EQ(empty.year, 0);
    EXPECT_EQ(CivilFromJulian(-5).year, 0);
    EXPECT_EQ(CivilFromJulian(99999999).year, 0);
}

TEST(Dates, DtosAndStodUseEightBlanksForTheEmptyDate) {
    EXPECT_EQ(Dtos(JulianFromCivil(2024, 1, 31)), "20240131");
    EXPECT_EQ(Dtos(0), "        ");
    EXPECT_EQ(Stod("20240131"), JulianFromCivil(2024, 1, 31));
    EXPECT_EQ(Stod("        "), 0);
    EXPECT_EQ(Stod(""), 0);
    EXPECT_FALSE(Stod("20240231").has_value());
    EXPECT_FALSE(Stod("2024013").has_value());
    EXPECT_FALSE(Stod("2024-1-3").has_value());
}

TEST(Dates, DisplayFormFollowsTheFormatSetting) {
    const std::int32_t day = JulianFromCivil(2024, 1, 31);
    DateSettings belgian{"DD/MM/YYYY", 2000};
    EXPECT_EQ(FormatDate(day, belgian), "31/01/2024");
    EXPECT_EQ(FormatDate(0, belgian), "  /  /    ");
    EXPECT_EQ(FormatDate(day, DateSettings{"MM/DD/YY", 1900}), "01/31/24");
    EXPECT_EQ(FormatDate(day, DateSettings{}), "01/31/2024");  // MM/DD/CCYY
    EXPECT_EQ(FormatDate(day, DateSettings{"YYYY.MM.DD", 1900}), "2024.01.31");
    EXPECT_EQ(FormattedDateLength(DateSettings{"MM/DD/YY", 1900}), 8u);
    char cut[5];
    EXPECT_EQ(WriteFormattedDate(day, belgian, cut, sizeof cut), 5u);
    EXPECT_EQ(std::string(cut, 5), "31/01");
}

TEST(Dates, ParsingReadsTheFormatAndPivotsTwoDigitYearsOnTheEpoch) {
    const DateSettings belgian{"DD/MM/YYYY", 2000};
    EXPECT_EQ(ParseDate("31/01/2024", belgian), JulianFromCivil(2024, 1, 31));
    EXPECT_EQ(ParseDate("1/2/2024", belgian), JulianFromCivil(2024, 2, 1));
    EXPECT_EQ(ParseDate("  /  /    ", belgian), 0);
    EXPECT_EQ(ParseDate("", belgian), 0);
    EXPECT_FALSE(ParseDate("31/02/2024", belgian).has_value());
    EXPECT_FALSE(ParseDate("31/01", belgian).has_value());
    EXPECT_FALSE(ParseDate("tomorrow", belgian).has_value());

    // Epoch 2000: every two-digit year is 20xx. Epoch 1900: 19xx. Epoch 1980: 80-99 are 19xx.
    EXPECT_EQ(ParseDate("01/01/95", belgian), JulianFromCivil(2095, 1, 1));
    EXPECT_EQ(ParseDate("01/01/95", DateSettings{"DD/MM/YY", 1900}), JulianFromCivil(1995, 1, 1));
    const DateSettings pivot{"DD/MM/YY", 1980};
    EXPECT_EQ(ParseDate("01/01/80", pivot), JulianFromCivil(1980, 1, 1));
    EXPECT_EQ(ParseDate("01/01/79", pivot), JulianFromCivil(2079, 1, 1));
    EXPECT_EQ(ParseDate("12/31/99", DateSettings{"MM/DD/YY", 1930}), JulianFromCivil(1999, 12, 31));
    EXPECT_EQ(ParseDate("12/31/29", DateSettings{"MM/DD/YY", 1930}), JulianFromCivil(2029, 12, 31));

    // Without separators the format is read by position.
    const DateSettings compact{"YYYYMMDD", 1900};
    EXPECT_EQ(ParseDate("20240131", compact), JulianFromCivil(2024, 1, 31));
    EXPECT_FALSE(ParseDate("2024013", compact).has_value());
}

TEST(Dates, TodayIsAValidDate) {
    const CivilDate today = CivilFromJulian(Today());
    EXPECT_GE(today.year, 2024);
    EXPECT_TRUE(IsValidDate(today.year, today.month, today.day));
}

}  // namespace
}  // namespace fnrk::engine::expr

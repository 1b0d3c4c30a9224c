#include "einvoice/ubl_values.hpp"

#include <gtest/gtest.h>

#include "comma_locale.hpp"

namespace fnrk::einvoice {
namespace {

TEST(UblValuesTest, AmountsKeepTheirPointUnderACommaLocale) {
    EXPECT_EQ(DetectDecimalSeparator(), '.');
    testing::CommaDecimalLocale comma;
    EXPECT_EQ(DetectDecimalSeparator(), ',');
    const NumberWriter numbers(DetectDecimalSeparator());
    EXPECT_EQ(numbers.Amount(1234.5), "1234.50");
    EXPECT_EQ(numbers.Amount(0.0), "0.00");
    EXPECT_EQ(numbers.Amount(-7.125), "-7.13");
    EXPECT_EQ(numbers.Pattern(3.0, "#0.0000"), "3.0000");
}

TEST(UblValuesTest, DecimalsPatternNeverGoesBelowTwo) {
    EXPECT_EQ(DecimalsPattern(0), "#0.00");
    EXPECT_EQ(DecimalsPattern(1), "#0.00");
    EXPECT_EQ(DecimalsPattern(2), "#0.00");
    EXPECT_EQ(DecimalsPattern(3), "#0.000");
    EXPECT_EQ(DecimalsPattern(4), "#0.0000");
    EXPECT_EQ(DecimalsPattern(-1), "#0.00");
}

TEST(UblValuesTest, NumbersWrittenAsText) {
    EXPECT_DOUBLE_EQ(ParseNumber("1234.5"), 1234.5);
    EXPECT_DOUBLE_EQ(ParseNumber(" 1234,50 "), 1234.5);
    EXPECT_DOUBLE_EQ(ParseNumber("-12"), -12.0);
    EXPECT_DOUBLE_EQ(ParseNumber(""), 0.0);
    EXPECT_DOUBLE_EQ(ParseNumber("12 EUR"), 0.0);
    testing::CommaDecimalLocale comma;
    EXPECT_DOUBLE_EQ(ParseNumber("0.25"), 0.25);
}

TEST(UblValuesTest, DatesBecomeIsoDates) {
    EXPECT_EQ(IsoDate("14/03/2025"), "2025-03-14");
    EXPECT_EQ(IsoDate(" 2025-03-14 "), "2025-03-14");
    EXPECT_EQ(IsoDate("  /  /    "), "");
    EXPECT_EQ(IsoDate(""), "");
    EXPECT_EQ(IsoDate("14.03.2025"), std::nullopt);
    EXPECT_EQ(IsoDate("4/3/2025"), std::nullopt);
    EXPECT_EQ(IsoDate("1x/03/2025"), std::nullopt);
}

}  // namespace
}  // namespace fnrk::einvoice

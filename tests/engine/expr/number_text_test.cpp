#include "engine/expr/number_text.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace fnrk::engine::expr {
namespace {

std::string Str(double value, std::size_t length, int decimals) {
    std::string text(length, '?');
    WriteStr(value, length, decimals, text.data());
    return text;
}

TEST(NumberText, ReadNumberTakesTheLeadingNumber) {
    EXPECT_DOUBLE_EQ(ReadNumber("   -123.45"), -123.45);
    EXPECT_DOUBLE_EQ(ReadNumber("+7"), 7);
    EXPECT_DOUBLE_EQ(ReadNumber("12abc"), 12);
    EXPECT_DOUBLE_EQ(ReadNumber("1.2.3"), 1.2);
    EXPECT_DOUBLE_EQ(ReadNumber("-.5"), -0.5);
    EXPECT_DOUBLE_EQ(ReadNumber("2.5E2x"), 250);
    EXPECT_DOUBLE_EQ(ReadNumber("2e"), 2);
    EXPECT_DOUBLE_EQ(ReadNumber("12345678901234567890"), 12345678901234567890.0);
    EXPECT_DOUBLE_EQ(ReadNumber("**********"), 0);
    EXPECT_DOUBLE_EQ(ReadNumber(""), 0);
    EXPECT_DOUBLE_EQ(ReadNumber("   "), 0);
    EXPECT_DOUBLE_EQ(ReadNumber("-"), 0);
    // The stored decimal text reads as the nearest double, as a library parse would.
    EXPECT_EQ(ReadNumber("0.1"), 0.1);
    EXPECT_EQ(ReadNumber("  99999999.99"), 99999999.99);
    // Seventeen digits: the mantissa rounds first, as other xBase engines read it.
    EXPECT_EQ(ReadNumber("  6640180020.2813180"), 6640180020.2813187);
}

TEST(NumberText, RoundingIsHalfAwayFromZero) {
    EXPECT_EQ(RoundHalfAway(2.5, 0), 3);
    EXPECT_EQ(RoundHalfAway(-2.5, 0), -3);
    EXPECT_EQ(RoundHalfAway(2.675, 2), 2.68);
    EXPECT_EQ(RoundHalfAway(1.005, 2), 1.01);
    EXPECT_EQ(RoundHalfAway(2.674, 2), 2.67);
    EXPECT_EQ(RoundHalfAway(1250, -2), 1300);
    EXPECT_EQ(RoundHalfAway(-0.004, 2), 0);
    EXPECT_FALSE(std::signbit(RoundHalfAway(-0.004, 2)));
    EXPECT_EQ(RoundHalfAway(1e300, 2), 1e300);
    // Large numbers keep their last digits: no nudge may carry them up.
    EXPECT_EQ(RoundHalfAway(553434426.833188, 6), 553434426.833188);
    EXPECT_EQ(RoundHalfAway(0.1 + 0.2, 16), 0.3);
    EXPECT_EQ(RoundHalfAway(99.995, 2), 100);
    EXPECT_EQ(RoundHalfAway(0.005, 2), 0.01);
    EXPECT_EQ(RoundHalfAway(0.0005, 2), 0);
    EXPECT_EQ(RoundHalfAway(1250, -4), 0);
}

TEST(NumberText, StrAlignsRoundsAndOverflows) {
    EXPECT_EQ(Str(123, 8, 0), "     123");
    EXPECT_EQ(Str(-123, 4, 0), "-123");
    EXPECT_EQ(Str(-123, 3, 0), "***");
    EXPECT_EQ(Str(12.345, 8, 2), "   12.35");
    EXPECT_EQ(Str(0.5, 1, 0), "1");
    EXPECT_EQ(Str(123.456, 5, 2), "123.5");
    EXPECT_EQ(Str(123.456, 3, 2), "123");
    EXPECT_EQ(Str(99.96, 4, 1), " 100");  // rounding up spills into the integer part
    EXPECT_EQ(Str(99999, 4, 0), "****");
    EXPECT_EQ(Str(1e300, 10, 0), "**********");
    EXPECT_EQ(Str(std::nan(""), 4, 0), "****");
    EXPECT_EQ(Str(HUGE_VAL, 4, 0), "****");
    EXPECT_EQ(Str(0, 0, 0), "");
    EXPECT_EQ(Str(-0.0, 4, 1), " 0.0");
    EXPECT_EQ(Str(-0.004, 5, 2), " 0.00");
    // Numbers read from fields print back as they were written.
    EXPECT_EQ(Str(553434426.833188, 17, 6), " 553434426.833188");
    EXPECT_EQ(Str(54874.34728, 17, 10), " 54874.3472800000");
    EXPECT_EQ(Str(2108239570.668345, 20, 7), "  2108239570.6683450");
    // Sixteen significant digits, the way the keys of other xBase engines hold them.
    EXPECT_EQ(Str(-74313348554.796494, 20, 7), "-74313348554.7964900");
    EXPECT_EQ(Str(ReadNumber("6640180020.2813180"), 20, 7), "  6640180020.2813190");
    EXPECT_EQ(Str(ReadNumber("7394501760.3999650"), 20, 7), "  7394501760.3999640");
    EXPECT_EQ(Str(0.1 + 0.2, 20, 16), "  0.3000000000000000");
}

TEST(NumberText, ModuloTakesTheSignOfTheDivisor) {
    EXPECT_EQ(Modulo(7, 3), 1);
    EXPECT_EQ(Modulo(-7, 3), 2);
    EXPECT_EQ(Modulo(7, -3), -2);
    EXPECT_EQ(Modulo(-7, -3), -1);
    EXPECT_EQ(Modulo(5.5, 2), 1.5);
}

}  // namespace
}  // namespace fnrk::engine::expr

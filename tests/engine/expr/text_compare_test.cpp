#include "engine/expr/text_compare.hpp"

#include <gtest/gtest.h>

namespace fnrk::engine::expr {
namespace {

TEST(TextCompare, RightLengthRule) {
    EXPECT_EQ(CompareToRightLength("ABC", "AB"), 0);
    EXPECT_EQ(CompareToRightLength("ABC", ""), 0);
    EXPECT_EQ(CompareToRightLength("", ""), 0);
    EXPECT_LT(CompareToRightLength("AB", "ABC"), 0);
    EXPECT_LT(CompareToRightLength("AB", "AB "), 0);
    EXPECT_LT(CompareToRightLength("", "A"), 0);
    EXPECT_GT(CompareToRightLength("AC", "AB"), 0);
    EXPECT_LT(CompareToRightLength("AB", "AC"), 0);
    // Bytes compare unsigned: accented letters (0xE9) come after ASCII.
    EXPECT_GT(CompareToRightLength("\xE9", "z"), 0);
    EXPECT_LT(CompareToRightLength("z", "\xE9"), 0);
}

TEST(TextCompare, PaddedComparisonIgnoresTrailingBlanks) {
    EXPECT_EQ(ComparePadded("AB", "AB   "), 0);
    EXPECT_EQ(ComparePadded("AB  ", "AB"), 0);
    EXPECT_LT(ComparePadded("AB", "ABC"), 0);
    EXPECT_GT(ComparePadded("ABC", "AB"), 0);
    EXPECT_GT(ComparePadded("AB", "AB\t"), 0);  // a tab sorts before the blank
    EXPECT_LT(ComparePadded("AB\t", "AB"), 0);
    EXPECT_GT(ComparePadded("AB\xE9", "AB"), 0);
}

}  // namespace
}  // namespace fnrk::engine::expr

#include "platform/text.hpp"
#include "platform/utf8.hpp"

#include <clocale>
#include <string>

#include <gtest/gtest.h>

namespace fnrk::platform {
namespace {

TEST(Text, TrimRemovesSpacesOnly) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(TrimLeft("  a b  "), "a b  ");
    EXPECT_EQ(TrimRight("  a b  "), "  a b");
    EXPECT_EQ(Trim("\ta\t"), "\ta\t");  // tabs are not blanks here
    EXPECT_EQ(Trim(" \r\n"), "\r\n");
    EXPECT_EQ(Trim("    "), "");
    EXPECT_EQ(Trim(""), "");
}

TEST(Text, CaseMappingCoversAccentedLetters) {
    EXPECT_EQ(UpperCase("d\u00e9j\u00e0 vu \u0153uvre \u0161 \u00ff"),
              "D\u00c9J\u00c0 VU \u0152UVRE \u0160 \u0178");
    EXPECT_EQ(UpperCase("stra\u00dfe"), "STRA\u00dfE");    // no single upper-case sharp s
    EXPECT_EQ(UpperCase("\u00f7\u00d7"), "\u00f7\u00d7");  // signs, not letters
    EXPECT_EQ(LowerCase("\u00c9T\u00c9 \u0152 \u017d \u0139"),
              "\u00e9t\u00e9 \u0153 \u017e \u013a");
    EXPECT_EQ(UpperCase("\u013a\u017e"), "\u0139\u017d");
    EXPECT_EQ(UpperCase("a\xff"
                        "b"),
              "A\xff"
              "B");  // invalid bytes pass through
    EXPECT_TRUE(EqualsNoCase("Soci\u00e9t\u00e9", "SOCI\u00c9T\u00c9"));
    EXPECT_FALSE(EqualsNoCase("Societe", "SOCI\u00c9T\u00c9"));
}

TEST(Text, CharacterCountsAreInCharactersNotBytes) {
    EXPECT_EQ(CharCount("caf\u00e9\u20ac"), 5u);
    EXPECT_EQ(LeftChars("caf\u00e9\u20ac", 4), "caf\u00e9");
    EXPECT_EQ(RightChars("caf\u00e9\u20ac", 2), "\u00e9\u20ac");
    EXPECT_EQ(RightChars("ab", 5), "ab");
    EXPECT_EQ(LeftChars("ab", 5), "ab");
    EXPECT_EQ(PadRight("\u00e9t\u00e9", 5), "\u00e9t\u00e9  ");
    EXPECT_EQ(PadRight("\u00e9t\u00e9", 2), "\u00e9t");
    EXPECT_EQ(CharCount(PadRight("", 15)), 15u);
}

TEST(Text, RoundHalfEvenRoundsTiesToTheEvenNeighbour) {
    EXPECT_EQ(RoundHalfEven(2.5, 0), 2.0);
    EXPECT_EQ(RoundHalfEven(3.5, 0), 4.0);
    EXPECT_EQ(RoundHalfEven(-2.5, 0), -2.0);
    EXPECT_EQ(RoundHalfEven(-3.5, 0), -4.0);
    EXPECT_EQ(RoundHalfEven(0.125, 2), 0.12);  // exact tie in binary
    EXPECT_EQ(RoundHalfEven(0.375, 2), 0.38);
    EXPECT_EQ(RoundHalfEven(2.4999, 0), 2.0);
    EXPECT_EQ(RoundHalfEven(2.51, 0), 3.0);
    EXPECT_DOUBLE_EQ(RoundHalfEven(1234.5678, 2), 1234.57);
}

TEST(Text, FormatNumberFollowsThePattern) {
    EXPECT_EQ(FormatNumber(1234.5, "#0.00"), "1234.50");
    EXPECT_EQ(FormatNumber(0, "#0.00"), "0.00");
    EXPECT_EQ(FormatNumber(7, "0#"), "7");
    EXPECT_EQ(FormatNumber(7, "00"), "07");
    EXPECT_EQ(FormatNumber(3.14159, "#.#"), "3.1");
    EXPECT_EQ(FormatNumber(0.5, "#.00"), ".50");
    EXPECT_EQ(FormatNumber(1.5, "0.0000"), "1.5000");
    EXPECT_EQ(FormatNumber(1.25, "0.0#"), "1.25");
    EXPECT_EQ(FormatNumber(1.2, "0.0#"), "1.2");
    EXPECT_EQ(FormatNumber(42, "0"), "42");
    EXPECT_EQ(FormatNumber(12345678.9, "0.00"), "12345678.90");
    EXPECT_EQ(FormatNumber(12.5, "0.00 EUR"), "12.50 EUR");
}

TEST(Text, FormatNumberRoundsHalfAwayFromZeroOnDecimalDigits) {
    EXPECT_EQ(FormatNumber(2.5, "0"), "3");
    EXPECT_EQ(FormatNumber(-2.5, "0"), "-3");
    EXPECT_EQ(FormatNumber(1.005, "0.00"), "1.01");  // 1.00499999... in binary
    EXPECT_EQ(FormatNumber(2.675, "0.00"), "2.68");
    EXPECT_EQ(FormatNumber(9.995, "0.00"), "10.00");  // carry into the integer part
    EXPECT_EQ(FormatNumber(99.96, "#.#"), "100.");
    EXPECT_EQ(FormatNumber(-1234.567, "#0.00"), "-1234.57");
    EXPECT_EQ(FormatNumber(-0.001, "0.00"), "0.00");  // rounds to zero: no sign
    EXPECT_EQ(FormatNumber(0.000123, "0.000000"), "0.000123");
}

TEST(Text, FormatNumberIgnoresTheProcessLocale) {
    const char* chosen = nullptr;
    for (const char* name : {"de_DE.UTF-8", "fr_BE.UTF-8", "nl_BE.UTF-8", "fr_FR.UTF-8",
                             "de_DE.utf8", "fr_BE.utf8", "nl_BE.utf8", "fr_FR.utf8"}) {
        if (std::setlocale(LC_ALL, name) != nullptr) {
            chosen = name;
            break;
        }
    }
    if (chosen == nullptr) GTEST_SKIP() << "no comma-decimal locale installed";
    const std::string formatted = FormatNumber(1234.5, "#0.00");
    const std::string rounded = FormatNumber(RoundHalfEven(0.125, 2), "0.000");
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(formatted, "1234.50") << chosen;
    EXPECT_EQ(rounded, "0.120") << chosen;
}

TEST(Text, Utf16AtTheWindowsBoundaryRoundTripsAndReplacesBrokenText) {
    const std::string text = "caf\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80";  // café € 😀
    const std::wstring wide = Utf8ToUtf16(text);
    ASSERT_EQ(wide.size(), 9u);  // the emoji takes a surrogate pair
    EXPECT_EQ(static_cast<unsigned>(wide[3]), 0xE9u);
    EXPECT_EQ(static_cast<unsigned>(wide[5]), 0x20ACu);
    EXPECT_EQ(static_cast<unsigned>(wide[7]), 0xD83Du);
    EXPECT_EQ(static_cast<unsigned>(wide[8]), 0xDE00u);
    EXPECT_EQ(Utf16ToUtf8(wide), text);
    EXPECT_EQ(Utf8ToUtf16("a\xff"), std::wstring(L"a\xfffd"));
    EXPECT_EQ(Utf16ToUtf8(std::wstring{L'a', static_cast<wchar_t>(0xD800)}), "a\xef\xbf\xbd");
}

}  // namespace
}  // namespace fnrk::platform

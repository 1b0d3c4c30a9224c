#include "platform/codepage.hpp"

#include <gtest/gtest.h>

namespace fnrk::platform {
namespace {

TEST(Codepage, RoundTripsEveryAssignedByte) {
    for (int byte = 1; byte < 256; ++byte) {
        const std::string ansi(1, static_cast<char>(byte));
        EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(ansi)), ansi) << "byte " << byte;
    }
}

TEST(Codepage, MapsTheWindowsSpecificRange) {
    EXPECT_EQ(Cp1252ToUtf8("\x80"), "\u20AC");  // euro sign, not a C1 control
    EXPECT_EQ(Cp1252ToUtf8("caf\xE9"), "caf\u00E9");
    EXPECT_EQ(Utf8ToCp1252("\u0153uvre"),
              "\x9C"
              "uvre");
    EXPECT_EQ(Utf8ToCp1252("\u4E2D"), "?");     // not in the code page
    EXPECT_EQ(Utf8ToCp1252("a\xC3"), "a?");     // truncated sequence
    EXPECT_EQ(Utf8ToCp1252("\xC0\xAF"), "??");  // overlong encoding is refused
}

}  // namespace
}  // namespace fnrk::platform

#include <gtest/gtest.h>

#include <cmath>

#include "utilities/cls_color.hpp"
#include "utilities/cls_print.hpp"

namespace fnrk::utilities {
namespace {

TEST(ColorTest, ChannelsAreReadInWindowsOrderAndDarkEndsAt128) {
    const clsColor colors;
    // Pure red is 0x0000FF as Windows stores it, pure blue 0xFF0000.
    EXPECT_EQ(colors.BrightnessColorGet(0x0000FF), 76);
    EXPECT_EQ(colors.BrightnessColorGet(0xFF0000), 29);
    EXPECT_EQ(colors.BrightnessColorGet(0x00FF00), 149);
    EXPECT_EQ(colors.BrightnessColorGet(0xFFFFFF), 255);
    EXPECT_EQ(colors.BrightnessColorGet(0xFF000000), 0);  // the high byte is not a colour
    EXPECT_TRUE(colors.IsColorDark(0x000000));
    EXPECT_FALSE(colors.IsColorDark(0xFFFFFF));
    // Greys: 127 is the last dark one, 128 the first light one.
    EXPECT_TRUE(colors.IsColorDark(0x7F7F7F));
    EXPECT_FALSE(colors.IsColorDark(0x808080));
}

TEST(PrintTest, StructuredCommunicationCheckNumberIsModulo97With97ForZero) {
    const clsPrint print;
    EXPECT_EQ(print.GetNumberKeyControl("1234567890"), "02");
    EXPECT_EQ(print.GetNumberKeyControl("+++123/4567/890"), "02");
    EXPECT_EQ(print.GetNumberKeyControl("0000000097"), "97");  // remainder 0
    EXPECT_EQ(print.GetNumberKeyControl("0000000000"), "97");
    EXPECT_EQ(print.GetNumberKeyControl("0000000005"), "05");
    EXPECT_EQ(print.GetNumberKeyControl("123"), "");
    EXPECT_EQ(print.GetNumberKeyControl("12345678901"), "");
    EXPECT_EQ(print.FormatCheckedNumber("1234567890"), "+++123/4567/89002+++");
    EXPECT_EQ(print.FormatCheckedNumber("97"), "+++000/0000/09797+++");
    EXPECT_EQ(print.FormatCheckedNumber("0909337554"), "+++090/9337/55493+++");
    EXPECT_EQ(print.FormatCheckedNumber("12a"), "");
    EXPECT_EQ(print.FormatCheckedNumber("12345678901"), "");
    EXPECT_EQ(print.FormatCheckedNumber(""), "");
}

TEST(PrintTest, TotalsAndClosingColumnsKeepTheAccountingSign) {
    const clsPrint print;
    EXPECT_DOUBLE_EQ(print.SignTot(100.10, 100.30), -0.20);
    EXPECT_DOUBLE_EQ(print.SignTot(0.1 + 0.2, 0.3), 0.0);
    EXPECT_FALSE(std::signbit(print.SignTot(0.3, 0.1 + 0.2)));  // never "-0,00"
    EXPECT_DOUBLE_EQ(print.ClotureValue(250.5, true), 250.5);
    EXPECT_DOUBLE_EQ(print.ClotureValue(250.5, false), 0.0);
    EXPECT_DOUBLE_EQ(print.ClotureValue(-40, false), 40.0);
    EXPECT_DOUBLE_EQ(print.ClotureValue(-40, true), 0.0);
    EXPECT_DOUBLE_EQ(print.ClotureValueCentral(100, 300, false), 200.0);
    EXPECT_DOUBLE_EQ(print.ClotureValueCentral(100, 300, true), 0.0);
    EXPECT_TRUE(print.ZoneIsSimulation(" sim"));
    EXPECT_TRUE(print.ZoneIsSimulation("S1"));
    EXPECT_FALSE(print.ZoneIsSimulation("A1"));
    EXPECT_FALSE(print.ZoneIsSimulation("  "));
}

TEST(PrintTest, CharacterCountsIncludeSeparatorsSignAndDecimals) {
    const clsPrint print;
    EXPECT_EQ(print.CalculCarac(1234567.5, 2), 12);  // 1.234.567,50
    EXPECT_EQ(print.CalculCarac(-1234567.5, 2), 13);
    EXPECT_EQ(print.CalculCarac(999.999, 2), 8);  // rounds to 1.000,00
    EXPECT_EQ(print.CalculCarac(123, 0), 3);
    EXPECT_EQ(print.CalculCarac(0, 2), 4);
    EXPECT_EQ(print.CalculCaracForAnyZone("Élan   ", 0), 4);
    EXPECT_EQ(print.CalculCaracForAnyZone("Comptabilité", 5), 5);
}

}  // namespace
}  // namespace fnrk::utilities

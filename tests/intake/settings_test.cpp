// Group values and the settings of the three kinds, stored in a real parameter table.

#include <gtest/gtest.h>

#include "intake/group_value.hpp"
#include "intake/intake_settings.hpp"
#include "intake_fixture.hpp"
#include "platform/paths.hpp"

namespace fnrk::intake {
namespace {

using tables::ads_testing::Keeping;
using testing::IntakeTest;

TEST(GroupValue, ReadsItemsExactlyAndWritesThemInPlaceOrAtTheEnd) {
    EXPECT_EQ(GroupValueItem("FORMAT=EFFF,MOVE= 0 ,SPLIT=3", "MOVE"), "0");
    EXPECT_EQ(GroupValueItem("FORMAT=EFFF,MOVE=0", "FORMAT"), "EFFF");
    EXPECT_EQ(GroupValueItem("FORMAT=EFFF,MOVE=", "MOVE"), "") << "the = ends the item";
    EXPECT_EQ(GroupValueItem("format=EFFF", "FORMAT"), "") << "keys are case-sensitive";
    EXPECT_EQ(GroupValueItem("XMOVE=1,MOVE=0", "MOVE"), "0") << "a key is a whole item's start";
    EXPECT_EQ(GroupValueItem("", "MOVE"), "");
    // A value holding "=" keeps everything after the first one.
    EXPECT_EQ(GroupValueItem("DEFAULT=K:\\A=B,X=1", "DEFAULT"), "K:\\A=B");

    EXPECT_EQ(WithGroupValueItem("", " MOVE ", " 1 "), "MOVE=1");
    EXPECT_EQ(WithGroupValueItem(" FORMAT=SODA ", "MOVE", "0"), "FORMAT=SODA,MOVE=0");
    EXPECT_EQ(WithGroupValueItem("FORMAT=SODA,MOVE=1,SPLIT=2", "MOVE", "0"),
              "FORMAT=SODA,MOVE=0,SPLIT=2")
        << "an item present is replaced where it stands";
    EXPECT_EQ(WithGroupValueItem("A=1,MOVE=,B=2", "MOVE", "1"), "A=1,MOVE=1,B=2");
}

class IntakeSettingsTest : public IntakeTest {};

TEST_P(IntakeSettingsTest, SwitchesKeepTheirAsymmetriesAndKindsShareOrSplitTheirGroups) {
    IntakeSettings soda(company, IntakeKind::Soda);
    IntakeSettings efff(company, IntakeKind::Efff);
    IntakeSettings caro(company, IntakeKind::Caro);

    // Nothing stored: SODA is the format and files are moved.
    EXPECT_TRUE(soda.GetIs());
    EXPECT_FALSE(efff.GetIs());
    EXPECT_TRUE(soda.GetMoveFile());
    EXPECT_TRUE(caro.GetMoveFile());
    SaveParam("PAYROLMO", "FORMAT=XYZ,MOVE=yes");
    EXPECT_TRUE(soda.GetIs()) << "an unknown format counts as SODA";
    EXPECT_FALSE(efff.GetIs());
    EXPECT_TRUE(soda.GetMoveFile()) << "only \"0\" stops the moves";

    ASSERT_TRUE(soda.SetIs(false));
    EXPECT_EQ(company.GetParamValue("PAYROLMO"), "FORMAT=EFFF,MOVE=yes");
    EXPECT_FALSE(soda.GetIs());
    EXPECT_TRUE(efff.GetIs());
    ASSERT_TRUE(efff.SetIs(false));
    EXPECT_EQ(company.GetParamValue("PAYROLMO"), "FORMAT=SODA,MOVE=yes");

    // SODA and EFFF share "MOVE" of PAYROLMO; CARO has a group of its own.
    ASSERT_TRUE(efff.SetMoveFile(false));
    EXPECT_FALSE(soda.GetMoveFile());
    EXPECT_TRUE(caro.GetMoveFile());
    ASSERT_TRUE(caro.SetMoveFile(false));
    EXPECT_EQ(company.GetParamValue("CAROMO"), "MOVE=0");
    ASSERT_TRUE(soda.SetMoveFile(true));
    EXPECT_EQ(company.GetParamValue("PAYROLMO"), "FORMAT=SODA,MOVE=1");

    ASSERT_TRUE(efff.SetSplit(12));
    ASSERT_TRUE(efff.SetDownloadEFFF(" portal "));
    EXPECT_EQ(efff.GetSplit(), 12);
    EXPECT_EQ(efff.GetDownloadEFFF(), "portal");
    EXPECT_EQ(company.GetParamValue("PAYROLMO"), "FORMAT=SODA,MOVE=1,SPLIT=12,DOWNLOAD=portal");

    // Fee accounts, one sub-key of CARO_FEE per fee type.
    ASSERT_TRUE(caro.SetFeeAccount("ATM", "657000"));
    ASSERT_TRUE(caro.SetFeeAccount("CARD", "657100"));
    ASSERT_TRUE(caro.SetFeeAccount("ATM", "657200"));
    EXPECT_EQ(caro.GetFeeAccount("ATM"), "657200");
    EXPECT_EQ(caro.GetFeeAccount("CARD"), "657100");
    EXPECT_EQ(caro.GetFeeAccount("FX"), "");
    EXPECT_EQ(company.GetParamValue("CARO_FEE"), "ATM=657200,CARD=657100");
}

TEST_P(IntakeSettingsTest, PlainSettingsUseEachKindsOwnKeys) {
    IntakeSettings soda(company, IntakeKind::Soda);
    IntakeSettings efff(company, IntakeKind::Efff);
    IntakeSettings caro(company, IntakeKind::Caro);

    ASSERT_TRUE(soda.SetPath("  K:\\PAYROLL  "));
    EXPECT_EQ(company.GetParamValue("SODA_PATH"), std::string("K:\\PAYROLL") + platform::kPathSep);
    ASSERT_TRUE(efff.SetPath("K:\\EFFF\\"));
    EXPECT_EQ(efff.GetPath(), "K:\\EFFF\\") << "a path ending with \\ keeps it";
    ASSERT_TRUE(caro.SetPath("   "));
    EXPECT_EQ(company.GetParamValue("CARO_PATH"), "") << "blanks store an empty value";

    ASSERT_TRUE(soda.SetLastMovedFile("K:\\PAYROLL\\x.xml"));
    ASSERT_TRUE(caro.SetWaitingAccount("499000"));
    EXPECT_EQ(company.GetParamValue("SODA_LASTFILE"), "K:\\PAYROLL\\x.xml");
    EXPECT_EQ(company.GetParamValue("CARO_WAITIMPUT"), "499000");
    EXPECT_EQ(efff.GetLastMovedFile(), "");

    ASSERT_TRUE(efff.SetAnaType(3));
    EXPECT_EQ(company.GetParamValue("EFFF_ANATYPE"), "3");
    EXPECT_EQ(soda.GetAnaType(), "");
    EXPECT_FALSE(caro.SetAnaType(2)) << "CARO has no analytical type";

    EXPECT_FALSE(soda.GetSocialPeriod());
    ASSERT_TRUE(soda.SetSocialPeriod(true));
    EXPECT_TRUE(soda.GetSocialPeriod());
    EXPECT_FALSE(efff.SetSocialPeriod(true)) << "only SODA chooses its period element";
    ASSERT_TRUE(soda.SetSocialPeriod(false));
    EXPECT_FALSE(soda.GetSocialPeriod());

    // A long value continues in VALUEEXT and reads back whole.
    const std::string longPath = platform::kPathSep + std::string(90, 'p') +
                                 platform::kPathSep;  // a folder: as it reads back
    ASSERT_TRUE(caro.SetPath(longPath));
    EXPECT_EQ(caro.GetPath(), longPath);
}

INSTANTIATE_TEST_SUITE_P(Keeping, IntakeSettingsTest,
                         ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake

// AdsClass: the dossier's logbook, its time text, control value and the tables with log fields.

#include <gtest/gtest.h>

#include "session/session_user.hpp"
#include "tables/ads_fixture.hpp"
#include "tables/logbook.hpp"

namespace fnrk::tables::ads_testing {
namespace {

using namespace engine;  // status and option numbers

TEST(AdsLogbookRules, TablesWithLogFieldsAreFoundByASubstringTest) {
    EXPECT_TRUE(AdsClass::ThisFileHasALogField("ACT"));
    EXPECT_TRUE(AdsClass::ThisFileHasALogField("ASF"));
    EXPECT_TRUE(AdsClass::ThisFileHasALogField("AC"));
    EXPECT_FALSE(AdsClass::ThisFileHasALogField("ACTLOCKS"));
    EXPECT_FALSE(AdsClass::ThisFileHasALogField("PARAM"));
    EXPECT_FALSE(AdsClass::ThisFileHasALogField(""));
}

TEST(AdsLogbookRules, ServerTimesBecomeTwentyFourHourText) {
    EXPECT_EQ(LogbookTime("01:05:09 PM"), "13:05:09");
    EXPECT_EQ(LogbookTime("11:59:59 PM"), "23:59:59");
    EXPECT_EQ(LogbookTime("01:05:09 AM"), "01:05:09");
    EXPECT_EQ(LogbookTime("12:30:00 PM"), "12:30:00");
    EXPECT_EQ(LogbookTime("17:45:00"), "17:45:00");
}

TEST(AdsLogbookRules, TheControlValueChangesWithEveryPart) {
    const std::string check = LogbookCheck("ANNE", "DELETE", "ACT", 12, "01/02/2025", "10:00:00");
    EXPECT_EQ(check.size(), 10u);
    EXPECT_EQ(check.find_first_not_of("0123456789"), std::string::npos);
    EXPECT_EQ(LogbookCheck("ANNE ", "DELETE", "ACT", 12, "01/02/2025", "10:00:00"), check);
    for (const std::string& other :
         {LogbookCheck("ANNA", "DELETE", "ACT", 12, "01/02/2025", "10:00:00"),
          LogbookCheck("ANNE", "UPDATE", "ACT", 12, "01/02/2025", "10:00:00"),
          LogbookCheck("ANNE", "DELETE", "ACF", 12, "01/02/2025", "10:00:00"),
          LogbookCheck("ANNE", "DELETE", "ACT", 21, "01/02/2025", "10:00:00"),
          LogbookCheck("ANNE", "DELETE", "ACT", 12, "02/01/2025", "10:00:00"),
          LogbookCheck("ANNE", "DELETE", "ACT", 12, "01/02/2025", "10:00:01"),
          // Parts are kept apart: moving a letter from one to the next is seen.
          LogbookCheck("ANN", "EDELETE", "ACT", 12, "01/02/2025", "10:00:00")}) {
        EXPECT_NE(other, check);
    }
}

TEST(AdsLogbookRules, LinesAreAppendedToAFile) {
    fnrk::testing::TempDir folder;
    const std::string file = (folder / "trace.log").string();
    EXPECT_TRUE(AdsClass::WriteLogInFile(file, "first"));
    EXPECT_TRUE(AdsClass::WriteLogInFile(file, "second"));
    EXPECT_EQ(fnrk::testing::ReadFileBytes(file), "first\r\nsecond\r\n");
    EXPECT_FALSE(AdsClass::WriteLogInFile((folder / "missing" / "x.log").string(), "x"));
}

using AdsLogbookTest = AdsTest;

TEST_P(AdsLogbookTest, CreatingTheLogbookWritesItsFirstEntry) {
    ads.Dossier().companyCode = "SOC1";
    ASSERT_TRUE(ads.CreateLogbook());
    ASSERT_EQ(ads.ActivateAlias("LOGBOOK"), AE_SUCCESS);
    const char* fields[] = {"USERNAME", "LOGINNAME", "CODESOC",   "CONNECT",
                            "ACTION",   "PROGRAM",   "ALIAS",     "RECNO",
                            "PARAM",    "CHECK",     "DATESTAMP", "TIMESTAMP"};
    std::uint16_t count = 0;
    ASSERT_EQ(db.GetNumFields(TableHandle("LOGBOOK"), count), AE_SUCCESS);
    ASSERT_EQ(count, 12u);
    for (std::uint16_t i = 0; i < count; ++i) {
        std::string name;
        ASSERT_EQ(db.GetFieldName(TableHandle("LOGBOOK"), i + 1, name), AE_SUCCESS);
        EXPECT_EQ(name, fields[i]);
    }
    EXPECT_EQ(ads.FieldLength("LOGINNAME"), 100u);
    EXPECT_EQ(ads.FieldType("RECNO"), "N");
    EXPECT_EQ(ads.FieldType("DATESTAMP"), "D");

    EXPECT_EQ(ads.SelectionRecCount(), 1u);
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    EXPECT_EQ(ads.GetStringValue("USERNAME"), "SYSTEM");
    EXPECT_EQ(ads.GetStringValue("ACTION"), "CREATE");
    EXPECT_EQ(ads.GetStringValue("PROGRAM"), "INIT");
    EXPECT_EQ(ads.GetStringValue("ALIAS"), "LOGBOOK");
    EXPECT_EQ(ads.GetStringValue("CODESOC"), "SOC1");
    EXPECT_EQ(ads.GetDoubleValue("RECNO"), 1);
    EXPECT_EQ(ads.GetDoubleValue("CONNECT"), ADS_LOCAL_SERVER);
    const std::string time = ads.GetStringValue("TIMESTAMP");
    ASSERT_EQ(time.size(), 8u);
    EXPECT_EQ(time[2], ':');
    EXPECT_LT(std::stoi(time.substr(0, 2)), 24);
    EXPECT_EQ(ads.GetStringValue("CHECK"),
              LogbookCheck("SYSTEM", "CREATE", "LOGBOOK", 1, ads.GetDateValue("DATESTAMP"), time));
    EXPECT_EQ(ads.GetLockNumberOnServer(), 0u);
}

TEST_P(AdsLogbookTest, EntriesAreWrittenOnlyWhileTheLogbookIsOn) {
    session::CurrentUser().Name = "ANNE";
    ASSERT_TRUE(ads.CreateLogbook());
    OpenEntries();
    EXPECT_FALSE(ads.WriteInLogBook("DELETE", "ENTRY", "ACT", 3, "x"));
    ads.Dossier().logbookOn = true;
    ASSERT_TRUE(ads.WriteInLogBook("DELETE", "ENTRY", "ACT", 3, "doc 1"));
    ASSERT_TRUE(ads.WriteInLogBook("OPEN", "ENTRY", "ACT", 0, ""));
    // The caller's table stays current.
    EXPECT_EQ(ads.SelectionRecCount(), 4u);
    EXPECT_EQ(ads.FieldType("AMOUNT"), "N");

    ASSERT_EQ(ads.ActivateAlias("LOGBOOK"), AE_SUCCESS);
    EXPECT_EQ(ads.SelectionRecCount(), 3u);
    ASSERT_EQ(ads.MoveAbsolute(2), AE_SUCCESS);
    EXPECT_EQ(ads.GetStringValue("USERNAME"), "ANNE");
    EXPECT_EQ(ads.GetStringValue("ACTION"), "DELETE");
    EXPECT_EQ(ads.GetStringValue("PARAM"), "doc 1");
    EXPECT_EQ(ads.GetStringValue("CHECK").size(), 10u);
    // Opening and closing carry no control value.
    ASSERT_EQ(ads.MoveAbsolute(3), AE_SUCCESS);
    EXPECT_EQ(ads.GetStringValue("ACTION"), "OPEN");
    EXPECT_EQ(ads.GetStringValue("CHECK"), "");
    session::CurrentUser().Name.clear();
}

TEST_P(AdsLogbookTest, WithoutALogbookNothingIsWritten) {
    ads.Dossier().logbookOn = true;
    OpenEntries();
    EXPECT_FALSE(ads.WriteInLogBook("DELETE", "ENTRY", "ACT", 1, ""));
    EXPECT_EQ(Shown(), "");
    EXPECT_EQ(ads.SelectionRecCount(), 4u);
}

INSTANTIATE_TEST_SUITE_P(Keepings, AdsLogbookTest, AllKeepings(), KeepingName);

}  // namespace
}  // namespace fnrk::tables::ads_testing

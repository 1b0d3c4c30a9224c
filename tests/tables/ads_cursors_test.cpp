// AdsClass SQL statements and cursors: the statement settings, static cursors, handle tags, cursor
// counts and record numbers, and the user register's cursors.

#include <gtest/gtest.h>

#include <array>

#include "tables/ads_class.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::tables {
namespace {

using namespace engine;  // option and status numbers
using ads_testing::AdsTest;

class AdsCursorsTest : public AdsTest {
  protected:
    void SetUp() override {
        AdsTest::SetUp();
        CreateStandard("CSF", ads_testing::kAccountFields, {{"NUMBER", "NUMBER"}});
        ASSERT_EQ(ads.FileOpen("CSF"), AE_SUCCESS) << Shown();
        OpenEntries();
        ASSERT_EQ(db.GetTableHandle(ads.DossierConnection(), "ACT", act), AE_SUCCESS);
        ASSERT_EQ(db.GetTableHandle(ads.DossierConnection(), "CSF", csf), AE_SUCCESS);
    }
    std::uint32_t HandleTag(Handle handle) {
        std::uint32_t value = 0;
        EXPECT_EQ(db.GetHandleLong(handle, value), AE_SUCCESS);
        return value;
    }
    std::string CursorString(Handle cursor, std::uint32_t position, const std::string& field) {
        std::string value;
        EXPECT_EQ(db.GotoRecord(cursor, position), AE_SUCCESS);
        EXPECT_EQ(db.GetString(cursor, field, value, ADS_RTRIM), AE_SUCCESS);
        return value;
    }

    Handle act = 0;
    Handle csf = 0;
};

class AdsCursorsFilesTest : public AdsCursorsTest {};

TEST_P(AdsCursorsFilesTest, SelectsGiveTaggedStaticCursorsWithCountsAndRecordNumbers) {
    const Handle cursor =
        ads.ExecuteSQL("select ROWID, ACCOUNTGL from ACT where AMOUNT > 0 order by ACCOUNTGL");
    ASSERT_NE(cursor, 0) << Shown();
    EXPECT_EQ(ads.CursorRecCount(cursor), 2u);
    EXPECT_EQ(ads.GetNumberOfRecordsInCursor(cursor), 2u);
    EXPECT_EQ(CursorString(cursor, 1, "ACCOUNTGL"), "400000");
    EXPECT_EQ(CursorString(cursor, 2, "ACCOUNTGL"), "604000");
    EXPECT_EQ(ads.GetRecordNumberFromPositionInCursor(cursor, 1), 1u);
    EXPECT_EQ(ads.GetRecordNumberFromPositionInCursor(cursor, 2), 4u);
    EXPECT_EQ(ads.GetRecordNumberFromPositionInCursor(cursor, 9), 0u);

    // The cursor and the tables the statement names carry their tags; the others do not.
    EXPECT_EQ(HandleTag(cursor), 5u);
    EXPECT_EQ(HandleTag(act), 9u);
    EXPECT_EQ(HandleTag(csf), 0u);

    const Handle statement = ads.GetSQLStatementHandle();
    ASSERT_NE(statement, 0);
    Handle owner = 0;
    ASSERT_EQ(db.GetSQLStatementHandle(cursor, owner), AE_SUCCESS);
    EXPECT_EQ(owner, statement);
    EXPECT_EQ(ads.CloseCursor(cursor), AE_SUCCESS);
    EXPECT_EQ(ads.CloseSql(statement), AE_SUCCESS);
    EXPECT_EQ(ads.GetSQLStatementHandle(), 0);

    // A hint already there, in any case, is left alone and the statement runs.
    const Handle hinted = ads.ExecuteSQL("select {Static} ACCOUNTGL from ACT where AMOUNT < 0");
    ASSERT_NE(hinted, 0) << Shown();
    EXPECT_EQ(ads.CursorRecCount(hinted), 2u);
    EXPECT_TRUE(messages.shown().empty()) << Shown();
}

TEST_P(AdsCursorsFilesTest, CursorsAreReadOnlyAndNameTablesByTheirAliases) {
    const Handle cursor = ads.ExecuteSQL("select ACCOUNTGL, AMOUNT from ACT where AMOUNT > 0");
    ASSERT_NE(cursor, 0) << Shown();
    // The statement's cursors are read-only: nothing is written through them.
    ASSERT_EQ(db.GotoTop(cursor), AE_SUCCESS);
    EXPECT_NE(db.SetDouble(cursor, "AMOUNT", 1.0), AE_SUCCESS);
    EXPECT_NE(db.AppendRecord(cursor), AE_SUCCESS);
    double amount = 0;
    ASSERT_EQ(db.GetDouble(cursor, "AMOUNT", amount), AE_SUCCESS);
    EXPECT_GT(amount, 1.0);
    std::uint32_t options = 0;
    ASSERT_EQ(db.GetTableOpenOptions(cursor, options), AE_SUCCESS);
    EXPECT_NE(options & ADS_READONLY, 0u);
    EXPECT_EQ(ads.CloseCursor(cursor), AE_SUCCESS);
}

TEST_P(AdsCursorsFilesTest, FailedStatementsAreShownAndGiveNoCursor) {
    EXPECT_EQ(ads.ExecuteSQL("select NOSUCHFIELD from ACT"), 0);
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_EQ(messages.shown()[0].title, "Fennrick error");
    EXPECT_NE(messages.shown()[0].text.find("NOSUCHFIELD"), std::string::npos) << Shown();
    EXPECT_EQ(ads.GetSQLStatementHandle(), 0);
}

TEST_P(AdsCursorsFilesTest, EngineRowIdsPastRecord25FoldLowerCaseLetters) {
    for (int entry = 5; entry <= 30; ++entry) AddEntry("MIS", std::to_string(entry), "499000", 1);
    const Handle cursor = ads.ExecuteSQL("select ROWID from ACT");
    ASSERT_NE(cursor, 0) << Shown();
    ASSERT_EQ(ads.CursorRecCount(cursor), 30u);
    EXPECT_EQ(ads.GetRecordNumberFromPositionInCursor(cursor, 25), 25u);
    // Records 26 to 51 end in lower-case letters, read as their upper-case forms.
    EXPECT_EQ(CursorString(cursor, 26, "ROWID").substr(12), "AAAAAa");
    EXPECT_EQ(ads.GetRecordNumberFromPositionInCursor(cursor, 26), 0u);
    EXPECT_EQ(ads.GetRecordNumberFromPositionInCursor(cursor, 30), 4u);
}

TEST_P(AdsCursorsFilesTest, UserCursorsListAUsersCompaniesAndNeverWidenTheSelection) {
    const std::filesystem::path usersFolder = folder / "users";
    std::filesystem::create_directories(usersFolder);
    const std::string usersPath = (usersFolder / "USERS.DBF").string();
    Handle users = 0;
    ASSERT_EQ(db.CreateTable(0, usersPath, "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                             ADS_IGNORERIGHTS, 0,
                             "NAME,C,15,0;PASSWORD,C,10,0;CODESOC,C,15,0;PATH,C,60,0", users),
              AE_SUCCESS);
    const std::array<std::array<const char*, 3>, 5> rows{{{"SYSTEM", "SOC2", "11/data/soc2"},
                                                          {"SYSTEM", "SOC1", "11/data/soc1"},
                                                          {"BOB", "", ""},
                                                          {"BOB", "SOC1", "02/data/soc1"},
                                                          {"O'HARA", "SOC3", "02/data/soc3"}}};
    for (const auto& [name, company, path] : rows) {
        ASSERT_EQ(db.AppendRecord(users), AE_SUCCESS);
        ASSERT_EQ(db.SetString(users, "NAME", name), AE_SUCCESS);
        ASSERT_EQ(db.SetString(users, "CODESOC", company), AE_SUCCESS);
        ASSERT_EQ(db.SetString(users, "PATH", path), AE_SUCCESS);
    }
    ASSERT_EQ(db.CloseTable(users), AE_SUCCESS);
    ASSERT_EQ(ads.OpenFile("USERS", usersPath, "", "SHARED"), AE_SUCCESS) << Shown();

    const Handle bob = ads.LoadUserCursor("bob");
    ASSERT_NE(bob, 0) << Shown();
    ASSERT_EQ(ads.CursorRecCount(bob), 1u);
    EXPECT_EQ(CursorString(bob, 1, "CODESOC"), "SOC1");
    EXPECT_EQ(ads.GetRecordNumberFromPositionInCursor(bob, 1), 4u);

    const Handle system = ads.LoadUserCursor("SYSTEM");
    ASSERT_EQ(ads.CursorRecCount(system), 2u);
    EXPECT_EQ(CursorString(system, 1, "CODESOC"), "SOC1");
    EXPECT_EQ(CursorString(system, 2, "CODESOC"), "SOC2");

    const Handle quoted = ads.LoadUserCursor("O'Hara");
    ASSERT_NE(quoted, 0) << Shown();
    ASSERT_EQ(ads.CursorRecCount(quoted), 1u);
    EXPECT_EQ(CursorString(quoted, 1, "PATH"), "02/data/soc3");
    // A name that tries to close the literal finds nobody instead of everybody.
    const Handle injected = ads.LoadUserCursor("x' OR '1'='1");
    ASSERT_NE(injected, 0) << Shown();
    EXPECT_EQ(ads.CursorRecCount(injected), 0u);

    // The path cursor ends with the sentinel rows, one per user record.
    const Handle paths = ads.LoadPathCursor("bob");
    ASSERT_NE(paths, 0) << Shown();
    ASSERT_EQ(ads.CursorRecCount(paths), 6u);
    EXPECT_EQ(CursorString(paths, 1, "CODESOC"), "SOC1");
    EXPECT_EQ(CursorString(paths, 6, "CODESOC"), "ZZZZZZZZZZZZZZZ");
    EXPECT_TRUE(messages.shown().empty()) << Shown();
}

TEST_P(AdsCursorsTest, TheStatementRunsWhereverTheDossierLives) {
    const Handle cursor = ads.ExecuteSQL("select ROWID, ACCOUNTGL from ACT");
    ASSERT_NE(cursor, 0) << Shown();
    EXPECT_TRUE(messages.shown().empty()) << Shown();
    // Each keeping's ROWID gives the record number back.
    const std::uint32_t rows = ads.CursorRecCount(cursor);
    ASSERT_GT(rows, 0u);
    for (std::uint32_t position = 1; position <= rows; ++position) {
        EXPECT_EQ(ads.GetRecordNumberFromPositionInCursor(cursor, position), position);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, AdsCursorsFilesTest, ::testing::Values(ads_testing::Keeping::Files),
                         ads_testing::KeepingName);
INSTANTIATE_TEST_SUITE_P(Keepings, AdsCursorsTest, ads_testing::AllKeepings(),
                         ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::tables

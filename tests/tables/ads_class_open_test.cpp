// AdsClass: connections, opening the standard tables, aliases and closing.

#include <gtest/gtest.h>

#include "platform/paths.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::tables::ads_testing {
namespace {

using namespace engine;  // status and option numbers

TEST_P(AdsTest, StandardTablesAreNamedByPrefixAndRow) {
    const std::string prefix = (dossier / "SOC1").string();
    EXPECT_EQ(ads.StandardTablePath("act"), prefix + "_act.dbf");
    EXPECT_EQ(ads.StandardIndexPath("ACT"), prefix + "_act.cdx");
    EXPECT_EQ(ads.StandardTablePath("ACF"), prefix + "_ACF.dbf");
    EXPECT_EQ(ads.StandardTablePath("DBK_03"), prefix + "_dbk_03.dbf");
    EXPECT_EQ(ads.StandardIndexPath("DBK07"), prefix + "_dbk_07.cdx");
    EXPECT_EQ(ads.StandardTablePath("DICOTREE"), prefix + "_dictree.dbf");
    EXPECT_EQ(ads.StandardTablePath("FORFAIT"), prefix + "_TABSETPR.DBF");
    EXPECT_EQ(ads.StandardTablePath("BNKCODA"), prefix + "_BNKCODA.DBF");
    // Tables without an index.
    EXPECT_EQ(ads.StandardIndexPath("LOGBOOK"), "");
    EXPECT_EQ(ads.StandardIndexPath("CCDDETAIL"), "");
    EXPECT_EQ(ads.StandardTablePath("CCDDETAIL"), prefix + "_CCDDETAIL.DBF");
    // Not standard tables.
    EXPECT_EQ(ads.StandardTablePath("DBK"), "");
    EXPECT_EQ(ads.StandardTablePath("DBK_X1"), "");
    EXPECT_EQ(ads.StandardTablePath("NOPE"), "");
}

TEST_P(AdsTest, FileOpenOpensUnderTheAliasAndMakesItCurrent) {
    CreateStandard("ACF", kAccountFields, {{"NUMBER", "NUMBER"}});
    CreateStandard("CSF", kAccountFields);
    ASSERT_EQ(ads.FileOpen("acf"), AE_SUCCESS);
    ASSERT_EQ(ads.FileOpen("CSF"), AE_SUCCESS);
    EXPECT_TRUE(ads.FileIsOpen("ACF"));
    EXPECT_TRUE(ads.IsAlias("csf"));
    EXPECT_FALSE(ads.FileIsOpen("ACT"));
    // The count is the engine's: a SQL-kept dossier's tables are not in it.
    EXPECT_EQ(ads.GetOpenTableCount(), GetParam() == Keeping::Files ? 2 : 0);
    auto aliases = ads.EnumerateAlias();
    std::sort(aliases.begin(), aliases.end());
    EXPECT_EQ(aliases, (std::vector<std::string>{"ACF", "CSF"}));

    // The last one opened is current: a record added lands in CSF.
    ASSERT_EQ(ads.RecordAdd(), AE_SUCCESS);
    EXPECT_TRUE(ads.PutFieldValue("NUMBER", std::string("C1")));
    ads.FlushAndUnlock("CSF");
    ASSERT_EQ(ads.ActivateAlias("ACF"), AE_SUCCESS);
    EXPECT_EQ(ads.SelectionRecCount(), 0u);
    ASSERT_EQ(ads.ActivateAlias("CSF"), AE_SUCCESS);
    EXPECT_EQ(ads.SelectionRecCount(), 1u);

    // Opening an alias again replaces the open table instead of failing.
    ASSERT_EQ(ads.FileOpen("ACF"), AE_SUCCESS);
    EXPECT_EQ(ads.EnumerateAlias().size(), 2u);
    EXPECT_EQ(Shown(), "");
}

TEST_P(AdsTest, OpenModesOtherThanTheThreeAreRefused) {
    CreateStandard("ACF", kAccountFields);
    EXPECT_NE(ads.FileOpen("ACF", "SHARE"), AE_SUCCESS);
    EXPECT_NE(ads.FileOpenParam("READONLY"), AE_SUCCESS);
    EXPECT_EQ(Shown(), "Parameter error | Parameter error");
    EXPECT_FALSE(ads.FileIsOpen("ACF"));
    EXPECT_EQ(messages.shown().front().title, "Fennrick error");

    ASSERT_EQ(ads.FileOpen("ACF", "readonly"), AE_SUCCESS);
    EXPECT_TRUE(ads.IsOpenFileReadOnly("ACF"));
    EXPECT_FALSE(ads.IsOpenExclusive("ACF"));
    ASSERT_EQ(ads.FileOpen("ACF", "Exclusive"), AE_SUCCESS);
    EXPECT_TRUE(ads.IsOpenExclusive("ACF"));
    EXPECT_FALSE(ads.IsOpenFileReadOnly("ACF"));
}

TEST_P(AdsTest, ParameterTableOpens) {
    EXPECT_FALSE(ads.FileExistParam());
    CreateStandard("PARAM", kParamFields, {{"KEY", "KEY"}});
    EXPECT_TRUE(ads.FileExistParam());
    EXPECT_EQ(ads.FileExistParamIndex(), GetParam() == Keeping::Files);

    ASSERT_EQ(ads.FileOpenParam("SHARED", true), AE_SUCCESS);
    EXPECT_TRUE(ads.FileIsOpen("ALTPARAM"));
    EXPECT_FALSE(ads.FileIsOpen("PARAM"));
    ASSERT_EQ(ads.FileOpenParamWithoutIndex(), AE_SUCCESS);
    EXPECT_TRUE(ads.IsOpenFileReadOnly("PARAMRO"));
    ASSERT_EQ(ads.FileOpenParamWithoutIndexWithoutRO(), AE_SUCCESS);
    EXPECT_FALSE(ads.IsOpenFileReadOnly("PARAM"));
    EXPECT_EQ(ads.FileOpenParam("SHARED"), AE_SUCCESS);

    OpenEntries();
    ASSERT_EQ(ads.FileOpenACTWithoutIndex(), AE_SUCCESS);
    EXPECT_TRUE(ads.FileIsOpen("ACTRO"));
    EXPECT_EQ(ads.SelectionRecCount(), 4u);
}

TEST_P(AdsTest, FileCloseAllKeepsUsersAndOnRequestParam) {
    CreateStandard("PARAM", kParamFields);
    CreateStandard("ACF", kAccountFields);
    const std::filesystem::path users = folder / "USERS";
    std::filesystem::create_directories(users);
    Handle created = 0;
    ASSERT_EQ(db.CreateTable(0, (users / "USERS.DBF").string(), "USERS", ADS_CDX, ADS_ANSI,
                             ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, "NAME,C,15,0", created),
              AE_SUCCESS);
    ASSERT_EQ(db.CloseTable(created), AE_SUCCESS);
    auto openAll = [&] {
        ASSERT_EQ(ads.FileOpenExternal("USERS", (users / "USERS.DBF").string()), AE_SUCCESS);
        ASSERT_EQ(ads.FileOpenParam(), AE_SUCCESS);
        ASSERT_EQ(ads.FileOpen("ACF"), AE_SUCCESS);
    };
    auto open = [&] {
        auto aliases = ads.EnumerateAlias();
        std::sort(aliases.begin(), aliases.end());
        return aliases;
    };
    openAll();
    ASSERT_EQ(ads.FileCloseAll(true), AE_SUCCESS);
    EXPECT_EQ(open(), (std::vector<std::string>{"PARAM", "USERS"}));
    openAll();
    ASSERT_EQ(ads.FileCloseAll(false), AE_SUCCESS);
    EXPECT_EQ(open(), (std::vector<std::string>{"USERS"}));
    // The users' table has its own connection, apart from the dossier's.
    EXPECT_NE(ads.UsersConnection(), 0);
}

TEST_P(AdsTest, ActivateAliasReportsAMissingAliasAndKeepsTheCurrentTable) {
    CreateStandard("ACF", kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF"), AE_SUCCESS);
    ASSERT_EQ(ads.RecordAdd(), AE_SUCCESS);
    ASSERT_TRUE(ads.PutFieldValue("NUMBER", std::string("100")));
    EXPECT_EQ(ads.ActivateAlias("  "), AE_SUCCESS);
    EXPECT_NE(ads.ActivateAlias("GHOST"), AE_SUCCESS);
    EXPECT_EQ(Shown(), "Alias GHOST not found (ActivateAlias)");
    EXPECT_EQ(ads.GetStringValue("NUMBER"), "100");
}

TEST_P(AdsTest, ANumericAliasIsTheTableHandle) {
    CreateStandard("ACF", kAccountFields);
    CreateStandard("CSF", kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF"), AE_SUCCESS);
    ASSERT_EQ(ads.RecordAdd(), AE_SUCCESS);
    ASSERT_TRUE(ads.PutFieldValue("NUMBER", std::string("A1")));
    ads.FlushAndUnlock("ACF");
    ASSERT_EQ(ads.FileOpen("CSF"), AE_SUCCESS);
    const Handle acf = TableHandle("ACF");
    ASSERT_NE(acf, 0);
    ASSERT_EQ(ads.ActivateAlias(std::to_string(acf)), AE_SUCCESS);
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    EXPECT_EQ(ads.GetStringValue("NUMBER"), "A1");
    // "123" is taken as handle 123 without a lookup: no message, and it names no table.
    EXPECT_EQ(ads.ActivateAlias("123"), AE_SUCCESS);
    EXPECT_EQ(Shown(), "");
    EXPECT_FALSE(ads.IsAlias("123"));
    EXPECT_EQ(ads.GetStringValue("NUMBER"), "");
}

TEST_P(AdsTest, InitializeConnectsOnce) {
    const Handle first = ads.LocalConnection();
    ASSERT_NE(first, 0);
    CreateStandard("ACF", kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF"), AE_SUCCESS);
    // A second call would close every table; it does nothing.
    EXPECT_EQ(ads.Initialize(), AE_SUCCESS);
    EXPECT_EQ(ads.LocalConnection(), first);
    EXPECT_TRUE(ads.FileIsOpen("ACF"));
    EXPECT_FALSE(ads.IsClientServer());
    EXPECT_FALSE(ads.IsInternetServer());
    ASSERT_EQ(ads.disconnect(), AE_SUCCESS);
    EXPECT_EQ(ads.LocalConnection(), 0);
    // Its tables go with its connections.
    EXPECT_FALSE(ads.FileIsOpen("ACF"));
    EXPECT_FALSE(ads.IsClientServer());
}

TEST_P(AdsTest, PackAndCloseAndZap) {
    CreateStandard("ACF", kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF", "EXCLUSIVE"), AE_SUCCESS);
    for (const char* number : {"1", "2", "3"}) {
        ASSERT_EQ(ads.RecordAdd(), AE_SUCCESS);
        ASSERT_TRUE(ads.PutFieldValue("NUMBER", std::string(number)));
    }
    ASSERT_EQ(ads.MoveAbsolute(2), AE_SUCCESS);
    ASSERT_EQ(ads.RecordDelete(), AE_SUCCESS);
    ASSERT_EQ(ads.PackAndClose("ACF"), AE_SUCCESS);
    EXPECT_FALSE(ads.FileIsOpen("ACF"));
    ASSERT_EQ(ads.FileOpen("ACF", "EXCLUSIVE"), AE_SUCCESS);
    EXPECT_EQ(ads.SelectionRecCount(), 2u);
    ASSERT_EQ(ads.MoveBottom(), AE_SUCCESS);
    EXPECT_EQ(ads.recno(), 2u);
    EXPECT_EQ(ads.GetStringValue("NUMBER"), "3");
    ASSERT_EQ(ads.Zap("ACF"), AE_SUCCESS);
    EXPECT_EQ(ads.SelectionRecCount(), 0u);
    EXPECT_NE(ads.Zap("GHOST"), AE_SUCCESS);
}

TEST_P(AdsTest, AFailedOpenIsReported) {
    const std::string missing = ads.StandardTablePath("CSF");
    EXPECT_EQ(ads.FileOpen("CSF"), AE_FILE_NOT_FOUND);
    ASSERT_EQ(messages.shown().size(), 1u);
    const std::string& text = messages.shown()[0].text;
    EXPECT_EQ(text.rfind("File open error:\r\nCode error ADS: 5004\r\nFile: " + missing +
                             "\r\nDescription error: ",
                         0),
              0u)
        << text;
    EXPECT_FALSE(ads.FileIsOpen("CSF"));
    EXPECT_EQ(ads.OpenFile("CSF", missing, "", "SHARED", AdsClass::kOpenQuiet), AE_FILE_NOT_FOUND);
    EXPECT_EQ(messages.shown().size(), 1u);
    EXPECT_NE(ads.GetAdsLastErrorNumber(), AE_SUCCESS);
}

TEST_P(AdsTest, FileOpenAllOpensTheStandardSetAndReportsWhatIsMissing) {
    for (const char* alias : {"ZIPCODE", "CURRENCY", "OPERCODA"}) {
        CreateStandard(alias, "CODE,C,10,0");
    }
    EXPECT_EQ(ads.FileOpenAll(), AE_FILE_NOT_FOUND);
    auto aliases = ads.EnumerateAlias();
    std::sort(aliases.begin(), aliases.end());
    EXPECT_EQ(aliases, (std::vector<std::string>{"CURRENCY", "OPERCODA", "ZIPCODE"}));
    // One report for each of the twelve tables the dossier lacks.
    EXPECT_EQ(messages.shown().size(), 12u);
}

TEST_P(AdsTest, FindConnectionFindsTheDriveConnection) {
    const Handle connected = ads.LocalConnection();
    AdsClass second(db);
    EXPECT_EQ(second.LocalConnection(), 0);
    EXPECT_EQ(second.FindConnection(), AE_SUCCESS);
    EXPECT_EQ(second.LocalConnection(), connected);
}

INSTANTIATE_TEST_SUITE_P(Keepings, AdsTest, AllKeepings(), KeepingName);

}  // namespace
}  // namespace fnrk::tables::ads_testing

// AdsClass named queries, orders, key ranges and filters on a real entries table, in a dossier
// kept as files and one kept in SQL.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tables/ads_class.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::tables {
namespace {

using namespace engine;  // option and status numbers
using ads_testing::AdsTest;

class AdsQueriesTest : public AdsTest {
  protected:
    void SetUp() override {
        AdsTest::SetUp();
        // Entries: accounts and amounts; record 3 is a temporary entry.
        CreateStandard("ACT", ads_testing::kEntryFields,
                       {{"ACCOUNT", "ACCOUNTGL"}, {"AMOUNT", "STR(AMOUNT+1000,12,2)"}});
        CreateStandard("CSF", ads_testing::kAccountFields, {{"NUMBER", "NUMBER"}});
        ASSERT_EQ(ads.FileOpen("CSF"), AE_SUCCESS) << Shown();
        ASSERT_EQ(ads.FileOpen("ACT"), AE_SUCCESS) << Shown();
        const std::tuple<const char*, double, bool> rows[] = {{"700000", 100, false},
                                                              {"400000", -40, false},
                                                              {"600000", 25, true},
                                                              {"550000", 0, false},
                                                              {"700100", 60, false}};
        for (const auto& [account, amount, temporary] : rows) {
            ASSERT_EQ(ads.RecordAdd(), AE_SUCCESS);
            ASSERT_TRUE(ads.PutFieldValue("ACCOUNTGL", std::string(account)));
            ASSERT_TRUE(ads.PutFieldValue("AMOUNT", amount));
            ASSERT_TRUE(ads.PutFieldValue("ISTEMP", temporary));
            ASSERT_EQ(ads.FlushAndUnlock("ACT"), AE_SUCCESS);
        }
        ASSERT_EQ(db.GetTableHandle(ads.DossierConnection(), "ACT", act_), AE_SUCCESS);
    }
    // The accounts of the current table in its active order, filters and scopes respected.
    std::string Accounts() {
        std::string accounts;
        EXPECT_EQ(ads.MoveTop(), AE_SUCCESS);
        while (!ads.SelectionEof()) {
            accounts += (accounts.empty() ? "" : ",") + ads.GetStringValue("ACCOUNTGL");
            EXPECT_EQ(ads.moveNext(), AE_SUCCESS);
        }
        return accounts;
    }

    Handle act_ = 0;
};

TEST_P(AdsQueriesTest, QueriesAreKeptByNameAndFormAndAnswerNotFoundOtherwise) {
    ASSERT_EQ(ads.AddQuery("entries", 3, "act", "acc", "AMOUNT > 0", 2, "sales"), AE_SUCCESS);
    EXPECT_TRUE(ads.IsQuery(" ENTRIES ", 3));
    EXPECT_FALSE(ads.IsQuery("entries", 4));
    EXPECT_EQ(ads.QueryAlias("entries", 3), "ACT");
    EXPECT_EQ(ads.QueryIndex("entries", 3), "ACCOUNT");
    EXPECT_EQ(ads.QueryFilter("entries", 3), "AMOUNT > 0");
    EXPECT_EQ(ads.QueryRecNum("entries", 3), "2");
    EXPECT_EQ(ads.QueryComment("entries", 3), "sales");
    EXPECT_TRUE(ads.SetQueryRecNum("entries", 3, 5));
    EXPECT_EQ(ads.QueryRecNum("entries", 3), "5");

    for (auto getter : {&AdsClass::QueryAlias, &AdsClass::QueryRecNum, &AdsClass::QueryComment,
                        &AdsClass::QueryIndex, &AdsClass::QueryFilter}) {
        EXPECT_EQ((ads.*getter)("entries", 4), "NOT$FOUND");
    }
    EXPECT_FALSE(ads.SetQueryRecNum("nothing", 1, 1));

    // An index name that matches no tag is kept as "tag_err".
    ASSERT_EQ(ads.AddQuery("wrong order", 1, "ACT", "NOSUCHTAG", "", 0, ""), AE_SUCCESS);
    EXPECT_EQ(ads.QueryIndex("wrong order", 1), "tag_err");

    // Past 25 characters of name and form the names are the same query: the second replaces it.
    ASSERT_EQ(ads.AddQuery("ABCDEFGHIJKLMNOPQRSTUVWXYZ_first", 1, "ACT", "", "", 1, "first"),
              AE_SUCCESS);
    ASSERT_EQ(ads.AddQuery("ABCDEFGHIJKLMNOPQRSTUVWXYZ_second", 2, "CSF", "", "", 1, "second"),
              AE_SUCCESS);
    EXPECT_EQ(ads.QueryCount(), 3);
    EXPECT_EQ(ads.QueryComment("ABCDEFGHIJKLMNOPQRSTUVWXYZ_other", 9), "second");

    EXPECT_TRUE(ads.RemoveQuery("ENTRIES", 3));
    EXPECT_FALSE(ads.RemoveQuery("ENTRIES", 3));
    EXPECT_EQ(ads.QueryCount(), 2);
    EXPECT_TRUE(messages.shown().empty()) << Shown();
}

TEST_P(AdsQueriesTest, TemporaryEntriesAreHiddenFromEntryQueriesWhileASwitchIsOn) {
    ASSERT_EQ(ads.AddQuery("off", 1, "ACT", "", "AMOUNT > 0", 0, ""), AE_SUCCESS);
    EXPECT_EQ(ads.QueryFilter("off", 1), "AMOUNT > 0");
    for (const auto& [first, second] : {std::pair{true, false}, std::pair{false, true}}) {
        ads.SetTemporaryEntrySwitches(first, second);
        ASSERT_EQ(ads.AddQuery("on", 1, "ACT", "", "AMOUNT > 0", 0, ""), AE_SUCCESS);
        EXPECT_EQ(ads.QueryFilter("on", 1), "AMOUNT > 0 AND ISTEMP=.F.");
    }
    ASSERT_EQ(ads.AddQuery("bare", 1, "ACT", "", "", 0, ""), AE_SUCCESS);
    EXPECT_EQ(ads.QueryFilter("bare", 1), "ISTEMP=.F.");
    ASSERT_EQ(ads.AddQuery("customers", 1, "CSF", "", "NUMBER > ''", 0, ""), AE_SUCCESS);
    EXPECT_EQ(ads.QueryFilter("customers", 1), "NUMBER > ''");

    ASSERT_EQ(ads.ActivateQuery("on", 1), AE_SUCCESS);
    EXPECT_EQ(Accounts(), "700000,700100");
}

TEST_P(AdsQueriesTest, ActivatingAQueryRestoresAliasOrderFilterRangeAndRecord) {
    ASSERT_EQ(ads.AddQuery("entries", 7, "ACT", "ACCOUNT", "AMOUNT >= 0", 4, ""), AE_SUCCESS);
    ASSERT_TRUE(ads.SetQueryScope("entries", 7, "5", "6"));
    ASSERT_EQ(ads.ActivateAlias("CSF"), AE_SUCCESS);

    ASSERT_EQ(ads.ActivateQuery("Entries", 7), AE_SUCCESS);
    EXPECT_EQ(ads.recno(), 4u);
    EXPECT_EQ(ads.GetIndexTagName(), "ACCOUNT");
    EXPECT_EQ(ads.CurrentIndexKeyExpr(), "ACCOUNTGL");
    EXPECT_EQ(ads.CurrentFilterExpression(), "AMOUNT >= 0");
    EXPECT_EQ(ads.GetStringValue("ACCOUNTGL"), "550000");
    EXPECT_EQ(Accounts(), "550000,600000");

    // Another view of the same table, then back.
    ASSERT_EQ(ads.SetFilterOnCurrentAlias(""), AE_SUCCESS);
    ASSERT_EQ(ads.SetScope("", ""), AE_SUCCESS);
    ASSERT_TRUE(ads.SetIndex("AMO"));
    EXPECT_EQ(Accounts(), "400000,550000,600000,700100,700000");
    ASSERT_EQ(ads.ActivateQuery("ENTRIES", 7), AE_SUCCESS);
    EXPECT_EQ(Accounts(), "550000,600000");

    // A missing query is shown and leaves the view as it is.
    EXPECT_NE(ads.ActivateQuery("Nowhere", 7), AE_SUCCESS);
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_EQ(messages.shown()[0].text, "QueryName Nowhere not found ...");
    EXPECT_EQ(messages.shown()[0].title, "Fennrick error");
    EXPECT_EQ(ads.GetIndexTagName(), "ACCOUNT");
}

TEST_P(AdsQueriesTest, FiltersAreOptimizedFiltersAndScopesBoundTheOrder) {
    ASSERT_EQ(ads.ActivateAlias("ACT"), AE_SUCCESS);
    ASSERT_EQ(ads.SetFilterOnCurrentAlias("AMOUNT > 50"), AE_SUCCESS);
    std::string aof;
    ASSERT_EQ(db.GetAOF(act_, aof), AE_SUCCESS);
    EXPECT_EQ(aof, "AMOUNT > 50");
    EXPECT_EQ(Accounts(), "700000,700100");
    ASSERT_EQ(ads.SetOptimizedFilter("AMOUNT < 0"), AE_SUCCESS);
    EXPECT_EQ(Accounts(), "400000");
    ASSERT_EQ(ads.ClearOptimizedFilter(), AE_SUCCESS);
    EXPECT_EQ(ads.CurrentFilterExpression(), "");
    EXPECT_EQ(db.GetAOF(act_, aof), AE_NO_FILTER);
    ASSERT_EQ(ads.SetFilterOnCurrentAlias("  "), AE_SUCCESS);
    EXPECT_NE(ads.SetFilterOnCurrentAlias("AMOUNT >"), AE_SUCCESS);

    // A key range needs an order.
    EXPECT_NE(ads.SetScope("5", "6"), AE_SUCCESS);
    EXPECT_FALSE(ads.SetIndex("NOSUCH"));
    ASSERT_TRUE(ads.SetIndex("account"));
    ASSERT_EQ(ads.SetScope("5", "6"), AE_SUCCESS);
    EXPECT_EQ(Accounts(), "550000,600000");
    ASSERT_EQ(ads.SetScope("6", ""), AE_SUCCESS);
    EXPECT_EQ(Accounts(), "600000,700000,700100");
    ASSERT_EQ(ads.SetScope("", ""), AE_SUCCESS);
    EXPECT_EQ(Accounts(), "400000,550000,600000,700000,700100");
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    EXPECT_EQ(ads.GetCurrentIndexKeyData().substr(0, 6), "400000");
    EXPECT_EQ(ads.CurrentIndexCondition(), "");
    ASSERT_TRUE(ads.SetIndex(""));
    EXPECT_EQ(ads.GetIndexTagName(), "");
    EXPECT_EQ(Accounts(), "700000,400000,600000,550000,700100");
}

TEST_P(AdsQueriesTest, RecordTestsFollowTheScopeAndTheFilter) {
    // Records in natural order: 700000, 400000, 600000, 550000, 700100.
    ASSERT_EQ(ads.ActivateAlias("ACT"), AE_SUCCESS);
    ASSERT_TRUE(ads.SetIndex("account"));
    ASSERT_EQ(ads.SetScope("5", "6"), AE_SUCCESS);
    ASSERT_EQ(db.GotoRecord(act_, 3), AE_SUCCESS);  // 600000
    EXPECT_TRUE(ads.IsRecordInCurrentScope());
    EXPECT_TRUE(ads.IsRecordInCursor());
    ASSERT_EQ(db.GotoRecord(act_, 1), AE_SUCCESS);  // 700000, past the scope
    EXPECT_FALSE(ads.IsRecordInCurrentScope());
    EXPECT_TRUE(ads.IsRecordInCursor());  // the table itself has no scope
    ASSERT_EQ(ads.SetScope("", ""), AE_SUCCESS);
    EXPECT_TRUE(ads.IsRecordInCurrentScope());

    ASSERT_EQ(ads.SetFilterOnCurrentAlias("AMOUNT > 50"), AE_SUCCESS);
    EXPECT_TRUE(ads.IsRecordInCursor());
    EXPECT_TRUE(ads.IsRecordInCurrentScope());
    ASSERT_EQ(db.GotoRecord(act_, 2), AE_SUCCESS);  // 400000, a negative amount
    EXPECT_FALSE(ads.IsRecordInCursor());
    EXPECT_FALSE(ads.IsRecordInCurrentScope());
}

TEST_P(AdsQueriesTest, TemporaryOrdersFollowTheirKeyAndAreRemadeOnEachCall) {
    ASSERT_EQ(ads.BuildTempIndex("ACT", "STR(AMOUNT+1000,12,2)"), AE_SUCCESS);
    EXPECT_EQ(ads.GetIndexTagName(), "TEMPINDEX");
    EXPECT_EQ(Accounts(), "400000,550000,600000,700100,700000");
    ASSERT_EQ(ads.BuildTempIndex("ACT", "ACCOUNTGL"), AE_SUCCESS);
    EXPECT_EQ(Accounts(), "400000,550000,600000,700000,700100");
    EXPECT_NE(ads.BuildTempIndex("ACT", "NOSUCHFIELD"), AE_SUCCESS);
    EXPECT_NE(ads.BuildTempIndex("GHOST", "ACCOUNTGL"), AE_SUCCESS);
    EXPECT_EQ(Shown(), "Alias GHOST not found (ActivateAlias)");
}

// The temporary index files of this process go with the tables they were made for (and with
// the AdsClass objects of earlier tests).
TEST_P(AdsQueriesTest, ClosingATableRemovesItsTemporaryIndexFile) {
    const std::string prefix = "fnrk-temp-" + std::to_string(::getpid()) + "-";
    auto temporaryFiles = [&] {
        int count = 0;
        for (const auto& entry :
             std::filesystem::directory_iterator(std::filesystem::temp_directory_path()))
            if (entry.path().filename().string().starts_with(prefix)) ++count;
        return count;
    };
    ASSERT_EQ(ads.BuildTempIndex("ACT", "ACCOUNTGL"), AE_SUCCESS);
    ASSERT_EQ(ads.BuildTempIndex("ACT", "STR(AMOUNT+1000,12,2)"), AE_SUCCESS);
    ASSERT_EQ(ads.CloseAlias("ACT"), AE_SUCCESS);
    EXPECT_EQ(temporaryFiles(), 0);
}

INSTANTIATE_TEST_SUITE_P(Keepings, AdsQueriesTest, ads_testing::AllKeepings(),
                         ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::tables

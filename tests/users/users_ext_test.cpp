// UsersExt: the external-logins table, made here and as the shared fixture holds it.

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "tables/fixture_tables.hpp"
#include "users/users_ext.hpp"
#include "users_fixture.hpp"

namespace fnrk::users::testing {
namespace {

class UsersExtTest : public UsersTest {
  protected:
    std::string TablePath() const { return (folder / "USERSEXT.dbf").string(); }
    // The records of the open "USERSEXT" in the order of `tag`.
    std::vector<std::uint32_t> Walk(const std::string& tag) {
        std::vector<std::uint32_t> records;
        EXPECT_EQ(ads.ActivateAlias("USERSEXT"), engine::AE_SUCCESS);
        EXPECT_TRUE(ads.SetIndex(tag)) << tag;
        for (ads.MoveTop(); !ads.SelectionEof(); ads.moveNext()) records.push_back(ads.recno());
        return records;
    }
    // Each of the six tags is there with its expression exactly.
    void ExpectSixTags() {
        ASSERT_EQ(ads.FileOpenExternal("USERSEXT", TablePath()), engine::AE_SUCCESS);
        for (const auto& [tag, expression] : kUsersExtTags) {
            ASSERT_TRUE(ads.SetIndex(tag)) << tag;
            EXPECT_EQ(ads.GetIndexTagName(), tag);
            EXPECT_EQ(ads.CurrentIndexKeyExpr(), expression);
        }
        ASSERT_EQ(ads.CloseAlias("USERSEXT"), engine::AE_SUCCESS);
    }
    UsersExt logins{ads};
};

TEST_P(UsersExtTest, CreatedTableHoldsOneRowPerNameTypeAndKey) {
    EXPECT_EQ(logins.GetValueUserExtented("martin", "FENNRICKID", "LOGIN"), "")
        << "no table yet: no values";
    ASSERT_TRUE(logins.CreateUserExtended());
    ExpectSixTags();
    ASSERT_TRUE(logins.UpdateUserExtended("martin", "FENNRICKID", "LOGIN", "m@example.be"));
    ASSERT_TRUE(logins.UpdateUserExtended("martin", "FENNRICKID", "LOGIN", "martin@example.be"));
    ASSERT_TRUE(logins.UpdateUserExtended("Martin", "FENNRICKID", "LOGIN", "other case"));
    EXPECT_EQ(logins.GetValueUserExtented("martin", "FENNRICKID", "LOGIN"), "martin@example.be");
    EXPECT_EQ(logins.GetValueUserExtented(" Martin ", "FENNRICKID", "LOGIN"), "other case");
    EXPECT_EQ(logins.GetValueUserExtented("martin", "FENNRICKID", "PWD"), "");
    EXPECT_EQ(Walk("NAME").size(), 2u) << "the second update changed the first row";

    const std::string sixty(60, 'n');
    ASSERT_TRUE(logins.UpdateUserExtended(sixty, "CODABOX", "TOKEN", "t"));
    EXPECT_EQ(logins.GetValueUserExtented(sixty.substr(0, 50), "CODABOX", "TOKEN"), "t")
        << "a 60-character name is its first 50";
    EXPECT_EQ(logins.GetValueUserExtented(sixty + "xyz", "CODABOX", "TOKEN"), "t");

    EXPECT_FALSE(logins.UpdateUserExtended("martin", "CODABOX", "TOKEN", std::string(256, 'v')));
    EXPECT_EQ(logins.GetValueUserExtented("martin", "CODABOX", "TOKEN"), "") << "nothing written";
    EXPECT_TRUE(logins.UpdateUserExtended("martin", "CODABOX", "TOKEN", std::string(255, 'v')));
    EXPECT_EQ(logins.GetValueUserExtented("martin", "CODABOX", "TOKEN"), std::string(255, 'v'));
    EXPECT_FALSE(logins.UpdateUserExtended(" ", "CODABOX", "TOKEN", "x"));
    EXPECT_FALSE(logins.UpdateUserExtended("martin", "", "TOKEN", "x"));
    EXPECT_EQ(Shown(), "");
}

TEST_P(UsersExtTest, DeletingAUserOrAKeyAndTellingSharedKeys) {
    CreateStandard("ACF", tables::ads_testing::kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS);
    ASSERT_TRUE(logins.UpdateUserExtended("désiré", "CODABOX", "LOGIN", "d1"));
    ASSERT_TRUE(logins.UpdateUserExtended("DÉSIRÉ", "CODABOX", "TOKEN", "d2"));
    ASSERT_TRUE(logins.UpdateUserExtended("désirée", "CODABOX", "LOGIN", "d3"));
    ASSERT_TRUE(logins.UpdateUserExtended("bob", "CODABOX", "LOGIN", "b1"));
    ASSERT_TRUE(logins.UpdateUserExtended("bob", "DASHBOARD", "LOGIN", "b2"));
    EXPECT_EQ(ads.GetCurrentAlias(), "ACF") << "the caller's alias is kept";

    EXPECT_TRUE(logins.IsMultiUserExtented("CODABOX", "LOGIN"));
    EXPECT_FALSE(logins.IsMultiUserExtented("DASHBOARD", "LOGIN"));
    EXPECT_FALSE(logins.IsMultiUserExtented("CODABOX", "TOKEN"));
    EXPECT_FALSE(logins.IsMultiUserExtented("codabox", "LOGIN")) << "types match exactly";

    EXPECT_EQ(logins.DeleteSpecificUser("Désiré"), 2) << "any case, not désirée";
    EXPECT_EQ(logins.GetValueUserExtented("désirée", "CODABOX", "LOGIN"), "d3");
    EXPECT_EQ(logins.GetValueUserExtented("désiré", "CODABOX", "LOGIN"), "");
    EXPECT_EQ(logins.DeleteSpecificUser("désiré"), 0);

    EXPECT_EQ(logins.DeleteAllUsersExtended("CODABOX", "LOGIN"), 2);
    EXPECT_EQ(logins.GetValueUserExtented("bob", "CODABOX", "LOGIN"), "");
    EXPECT_EQ(logins.GetValueUserExtented("bob", "DASHBOARD", "LOGIN"), "b2") << "another type";
    EXPECT_FALSE(logins.IsMultiUserExtented("CODABOX", "LOGIN"));
    for (const auto& [tag, expression] : kUsersExtTags) {
        EXPECT_EQ(Walk(std::string(tag)).size(), 1u) << "deleted rows in no order: " << tag;
    }
    EXPECT_EQ(Shown(), "");
}

TEST_P(UsersExtTest, MissingTagsAreRebuilt) {
    ASSERT_EQ(ads.CreateTableFile("USERSEXT", TablePath(),
                                  "NAME,C,50,0;TYPE,C,10,0;KEY,C,15,0;VALUE,C,255,0"),
              engine::AE_SUCCESS);
    ASSERT_EQ(ads.OpenFile("USERSEXT", TablePath(), "", "EXCLUSIVE"), engine::AE_SUCCESS);
    ASSERT_EQ(ads.CreateIndexTag("USERSEXT", "NAME", kUsersExtTags[0].second), engine::AE_SUCCESS);
    ASSERT_EQ(ads.CloseAlias("USERSEXT"), engine::AE_SUCCESS);
    ASSERT_TRUE(logins.UpdateUserExtended("bob", "CODABOX", "LOGIN", "b1"));
    EXPECT_FALSE(logins.IsMultiUserExtented("CODABOX", "LOGIN")) << "no UPPERKEY order yet";

    {
        // Another workstation has it open: it cannot be had exclusively.
        engine::Engine otherEngine;
        tables::SqlDatabase otherDb{otherEngine,
                                    [] { return std::make_unique<backend::FRCDatabase>(); }};
        tables::AdsClass other{otherDb};
        other.SetInteractive(false);
        ASSERT_EQ(other.Initialize(), engine::AE_SUCCESS);
        ASSERT_EQ(other.FileOpenExternal("USERSEXT", TablePath()), engine::AE_SUCCESS);
        EXPECT_FALSE(logins.RebuildUserExtendedIndex());
    }
    EXPECT_TRUE(logins.RebuildUserExtendedIndex());
    ExpectSixTags();
    ASSERT_TRUE(logins.UpdateUserExtended("alice", "CODABOX", "LOGIN", "a1"));
    EXPECT_TRUE(logins.IsMultiUserExtented("CODABOX", "LOGIN"));
    EXPECT_EQ(logins.GetValueUserExtented("bob", "CODABOX", "LOGIN"), "b1") << "rows kept";
}

class UsersExtFixtureTest : public UsersExtTest {
  protected:
    void SetUp() override {
        UsersExtTest::SetUp();
        tables::ads_testing::Tags tags;
        for (const auto& [tag, expression] : kUsersExtTags)
            tags.emplace_back(std::string(tag), std::string(expression));
        tables::ads_testing::InstallFixtureTable(ads, GetParam(), "USERSEXT", folder / "USERSEXT",
                                                 "NAME,C,50,0;TYPE,C,10,0;KEY,C,15,0;VALUE,C,255,0",
                                                 tags);
    }
};

TEST_P(UsersExtFixtureTest, DeletedRowsAppearInNoOrderOfTheFixture) {
    std::set<std::uint32_t> deleted;
    std::ifstream records(tables::ads_testing::FixtureTablePath("USERSEXT.natural.jsonl"));
    for (std::string line; std::getline(records, line);) {
        const auto record = nlohmann::json::parse(line);
        if (record["deleted"].get<bool>()) deleted.insert(record["recno"].get<std::uint32_t>());
    }
    ASSERT_EQ(deleted.size(), 14u);
    ASSERT_EQ(ads.FileOpenExternal("USERSEXT", TablePath()), engine::AE_SUCCESS);
    std::ifstream tags(tables::ads_testing::FixtureTablePath("USERSEXT.tags.jsonl"));
    int tagCount = 0;
    for (std::string line; std::getline(tags, line); ++tagCount) {
        const auto tag = nlohmann::json::parse(line);
        std::vector<std::uint32_t> expected;
        for (std::uint32_t record : tag["order"].get<std::vector<std::uint32_t>>())
            if (!deleted.contains(record)) expected.push_back(record);
        EXPECT_EQ(Walk(tag["tag"].get<std::string>()), expected) << tag["tag"];
    }
    EXPECT_EQ(tagCount, 6);
}

TEST_P(UsersExtFixtureTest, ReadsAndChangesOfTheFixture) {
    EXPECT_TRUE(
        logins.GetValueUserExtented("Bob", "FENNRICKID", "PASSWORD").starts_with("XüNüxgpl"))
        << "of two rows with the same key, the first record";
    EXPECT_EQ(logins.GetValueUserExtented("désiré", "CODABOX", "PASSWORD"), "pEj");
    EXPECT_EQ(logins.GetValueUserExtented("Bob", "CODABOX", "PASSWORD6"), "") << "deleted";
    EXPECT_EQ(logins.GetValueUserExtented("BOB", "CODABOX", "TOKEN"), "") << "names match exactly";

    EXPECT_TRUE(logins.IsMultiUserExtented("FENNRICKID", "TOKEN8"));
    EXPECT_FALSE(logins.IsMultiUserExtented("FENNRICKID", "LOGIN5"));
    EXPECT_FALSE(logins.IsMultiUserExtented("DASHBOARD", "PASSWORD4"));
    EXPECT_FALSE(logins.IsMultiUserExtented("CODABOX", "PASSWORD6")) << "only a deleted row";

    EXPECT_EQ(logins.DeleteSpecificUser("CHARLIE"), 16);
    EXPECT_EQ(logins.DeleteSpecificUser("DÉSIRÉ"), 23);
    EXPECT_EQ(logins.DeleteAllUsersExtended("FENNRICKID", "TOKEN"), 7)
        << "three rows of SYSTEM, three of alice, one of Bob";
    EXPECT_EQ(Walk("UPPERNAME").size(), 106u - 16 - 23 - 7);
    ASSERT_TRUE(logins.UpdateUserExtended("alice", "FENNRICKID", "TOKEN", "new"));
    EXPECT_EQ(logins.GetValueUserExtented("alice", "FENNRICKID", "TOKEN"), "new");
}

INSTANTIATE_TEST_SUITE_P(Keepings, UsersExtTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);
INSTANTIATE_TEST_SUITE_P(Keepings, UsersExtFixtureTest,
                         ::testing::Values(Keeping::Files, Keeping::Sql), KeepingName);

}  // namespace
}  // namespace fnrk::users::testing

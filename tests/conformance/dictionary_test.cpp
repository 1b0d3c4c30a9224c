#include <gtest/gtest.h>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers

class DictionaryConformance : public Conformance {
  protected:
    std::uint32_t Count(Operations& on, Handle through, const std::string& sql) {
        Handle statement = 0;
        Handle cursor = 0;
        std::uint32_t count = 0;
        EXPECT_EQ(on.CreateSQLStatement(through, statement), AE_SUCCESS);
        EXPECT_EQ(on.ExecuteSQLDirect(statement, sql, cursor), AE_SUCCESS) << sql;
        EXPECT_EQ(on.GetRecordCount(cursor, ADS_IGNOREFILTERS, count), AE_SUCCESS);
        EXPECT_EQ(on.CloseSQLStatement(statement), AE_SUCCESS);
        return count;
    }
};

// A dictionary names the dossier's views and users; its users log in through it and its
// views serve their statements.
TEST_P(DictionaryConformance, UsersLogInAndViewsServeStatements) {
    Handle items = CreateItems();
    for (int i = 1; i <= 4; ++i) AddItem(items, std::to_string(i), "item", i);
    ASSERT_EQ(ops->CloseTable(items), AE_SUCCESS);

    const std::string path = (folder.path() / "dossier.add").string();
    Handle administrator = 0;
    ASSERT_EQ(ops->DDCreate(path, 1, "Data Dictionnary", administrator), AE_SUCCESS);
    EXPECT_EQ(ops->DDCreate(path, 1, "again", administrator), AE_DICTIONARY_ALREADY_EXISTS);
    ASSERT_EQ(ops->Connect60(path, ADS_LOCAL_SERVER, "ADSSYS", "", 0, administrator), AE_SUCCESS);
    ASSERT_EQ(ops->DDSetDatabaseProperty(administrator, 107, "s3cret"), AE_SUCCESS);
    ASSERT_EQ(ops->DDCreateUser(administrator, "", "SYSTEM", "s3cret", "SYSTEM ADMINISTRATOR"),
              AE_SUCCESS);
    ASSERT_EQ(ops->DDAddView(administrator, "BIGITEMS", "",
                             "SELECT CODE, AMOUNT FROM items WHERE AMOUNT > 2"),
              AE_SUCCESS);
    EXPECT_NE(ops->DDAddView(administrator, "BROKEN", "", "SELECT NOPE FROM items"), AE_SUCCESS);
    ASSERT_EQ(ops->DDAddTable(administrator, "STOCK", "items.dbf", ADS_CDX, ADS_ANSI, "", ""),
              AE_SUCCESS);
    EXPECT_NE(ops->DDAddTable(administrator, "GONE", "gone.dbf", ADS_CDX, ADS_ANSI, "", ""),
              AE_SUCCESS);

    Handle user = 0;
    EXPECT_NE(ops->Connect60(path, ADS_LOCAL_SERVER, "SYSTEM", "wrong", 0, user), AE_SUCCESS);
    ASSERT_EQ(ops->Connect60(path, ADS_LOCAL_SERVER, "SYSTEM", "s3cret", 0, user), AE_SUCCESS);
    EXPECT_EQ(Count(*ops, user, "SELECT * FROM BIGITEMS"), 2u);
    EXPECT_EQ(Count(*ops, user, "SELECT * FROM items"), 4u);
    EXPECT_EQ(Count(*ops, user, "SELECT * FROM STOCK WHERE AMOUNT < 2"), 1u);
    EXPECT_EQ(ops->DDAddView(user, "MINE", "", "SELECT CODE FROM items"), AE_PERMISSION_DENIED);

    // Another workstation sees the same dictionary and data.
    Handle otherConnection = 0;
    auto other = SecondConnection(otherConnection);
    Handle otherUser = 0;
    ASSERT_EQ(other->Connect60(path, ADS_LOCAL_SERVER, "SYSTEM", "s3cret", 0, otherUser),
              AE_SUCCESS);
    EXPECT_EQ(Count(*other, otherUser, "SELECT * FROM BIGITEMS"), 2u);
    EXPECT_EQ(Count(*other, otherConnection, "SELECT * FROM items"), 4u);
}

INSTANTIATE_TEST_SUITE_P(Implementations, DictionaryConformance,
                         ::testing::ValuesIn(Implementations()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace fnrk::conformance

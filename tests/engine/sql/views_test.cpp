// Views of a data dictionary reach statements through the registry's view lookup: a view is
// queried like a table and written in the same dialect.

#include <set>

#include "engine/sql/statement_registry.hpp"
#include "sql_fixture.hpp"

namespace fnrk::engine {
namespace {

class ViewsTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        Create("ACT", "ACCOUNTGL,C,10;AMOUNT,N,12,2");
        Create("ACF", "NUMBER,C,10;SECRET,L;TITLE,C,30");
        Handle none = 0;
        ASSERT_EQ(Run("INSERT INTO ACF (NUMBER, SECRET, TITLE) VALUES ('400000', false, "
                      "'Clients'), ('550000', true, 'Banque'), ('600000', false, 'Achats')",
                      none),
                  AE_SUCCESS)
            << LastErrorText();
        ASSERT_EQ(Run("INSERT INTO ACT (ACCOUNTGL, AMOUNT) VALUES ('400000', 10), "
                      "('550000', 20), ('600000', 30), ('400000', 40), ('700000', 50)",
                      none),
                  AE_SUCCESS)
            << LastErrorText();
    }
};

TEST_F(ViewsTest, ViewIsQueriedLikeATable) {
    // The pairs navigation finds: every ACT row whose account is in ACF and not secret.
    std::set<std::string> open;
    const Handle acf = Open("ACF");
    for (const auto& row : Rows(acf, {"NUMBER", "SECRET"}))
        if (row[1] == "F") open.insert(row[0]);
    std::multiset<std::string> expected;
    const Handle act = Open("ACT");
    for (const auto& row : Rows(act, {"ACCOUNTGL", "AMOUNT"}))
        if (open.count(row[0]) != 0) expected.insert(row[0] + row[1]);
    ASSERT_EQ(expected.size(), 3U);

    int asked = 0;
    sql::StatementRegistry registry(
        engine, [&](Handle viewConnection, std::string_view name) -> std::optional<std::string> {
            ++asked;
            EXPECT_EQ(viewConnection, connection);
            if (name != "OPENACCOUNTS") return std::nullopt;
            return "SELECT {static} * FROM ACT,ACF WHERE ACT.accountgl = ACF.number and "
                   "ACF.secret=false";
        });
    const Handle statement = 1;
    registry.Add(statement, connection);
    std::string message;
    ASSERT_EQ(registry.Prepare(statement, "select * from [OPENACCOUNTS] order by AMOUNT", message),
              AE_SUCCESS)
        << message;
    Handle cursor = 0;
    ASSERT_EQ(registry.Execute(statement, cursor, message), AE_SUCCESS) << message;
    std::multiset<std::string> found;
    for (const auto& row : Rows(cursor, {"ACCOUNTGL", "AMOUNT", "TITLE"})) {
        found.insert(row[0] + row[1]);
        EXPECT_NE(row[2], "Banque                        ");
    }
    EXPECT_EQ(found, expected);
    EXPECT_GT(asked, 0);
    // A name that is neither view nor table is still refused.
    EXPECT_EQ(registry.Prepare(statement, "select * from NOVIEW", message), AE_TABLE_NOT_FOUND);
    EXPECT_NE(message.find("NOVIEW"), std::string::npos) << message;
    EXPECT_EQ(registry.Close(statement), AE_SUCCESS);
}

}  // namespace
}  // namespace fnrk::engine

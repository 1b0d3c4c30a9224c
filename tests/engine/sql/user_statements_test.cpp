// The statements the users class sends, on a copy of a fixture table standing in for the users
// file, answered again by walking the table.

#include <algorithm>

#include "sql_fixture.hpp"

namespace fnrk::engine {
namespace {

class UserStatementsTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        CopyFixture("people", "USERS");
        users = Open("USERS", ADS_SHARED, "PEOPLE");
        ASSERT_EQ(engine.GotoTop(users), AE_SUCCESS);
        while (!Eof(users)) {
            bool active = false;
            ASSERT_EQ(engine.GetLogical(users, "ACTIVE", active), AE_SUCCESS);
            visible.push_back({Recno(users), String(users, "NAME"), String(users, "CODESOC"),
                               String(users, "PATH"), active});
            ASSERT_EQ(engine.Skip(users, 1), AE_SUCCESS);
        }
        ASSERT_FALSE(visible.empty());
    }

    struct Row {
        std::uint32_t record;
        std::string name, codesoc, path;
        bool active;
    };

    template <class Keep>
    std::vector<Row> Where(Keep keep) {
        std::vector<Row> rows;
        std::copy_if(visible.begin(), visible.end(), std::back_inserter(rows), keep);
        return rows;
    }

    static std::vector<std::uint32_t> Records(const std::vector<Row>& rows) {
        std::vector<std::uint32_t> records;
        for (const Row& row : rows) records.push_back(row.record);
        return records;
    }

    static std::vector<std::uint32_t> Sorted(std::vector<std::uint32_t> records) {
        std::sort(records.begin(), records.end());
        return records;
    }

    Handle users = 0;
    std::vector<Row> visible;  // natural order
};

TEST_F(UserStatementsTest, SelectByPaddedNameGivesTheRecordsNavigationFinds) {
    for (const std::string name : {"SYSTEM         ", "BOB            ", "Chloé          "}) {
        const std::vector<Row> expected = Where([&](const Row& row) { return row.name == name; });
        ASSERT_FALSE(expected.empty()) << name;
        const Handle cursor =
            Query("select ROWID,CODESOC,PATH from [USERS] where NAME ='" + name + "'");
        EXPECT_EQ(Sorted(RowIdRecords(cursor)), Records(expected)) << name;
        std::uint32_t count = 0;
        ASSERT_EQ(engine.GetRecordCount(cursor, ADS_IGNOREFILTERS, count), AE_SUCCESS);
        EXPECT_EQ(count, expected.size());
        // Trailing blanks do not count in comparisons, as in the engine's own keys.
        const Handle trimmed = Query("select ROWID from USERS where NAME = '" +
                                     name.substr(0, name.find_last_not_of(' ') + 1) + "'");
        EXPECT_EQ(Sorted(RowIdRecords(trimmed)), Records(expected)) << name;
    }
}

TEST_F(UserStatementsTest, SystemRowsComeOrderedByCompanyCode) {
    std::vector<Row> expected = Where([](const Row& row) { return row.name == "SYSTEM         "; });
    std::stable_sort(expected.begin(), expected.end(),
                     [](const Row& a, const Row& b) { return a.codesoc < b.codesoc; });
    const Handle cursor = Query(
        "select ROWID,CODESOC,PATH from [USERS] where NAME ='SYSTEM         ' ORDER BY CODESOC");
    const auto rows = Rows(cursor, {"CODESOC", "PATH"});
    ASSERT_EQ(rows.size(), expected.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i][0], expected[i].codesoc);
        EXPECT_EQ(rows[i][1], expected[i].path);
    }
}

TEST_F(UserStatementsTest, UnionAddsASentinelRowThatSortsLast) {
    const std::vector<Row> bob =
        Where([](const Row& row) { return row.name == "BOB            "; });
    const Handle cursor = Query(
        "select ROWID,CODESOC,PATH from [USERS] where NAME ='BOB            ' "
        "UNION SELECT ROWID,'ZZZZZZZZZZZZZZZ','ZZZZZZZZZZZZZZZ' from [USERS] "
        "where NAME ='BOB            ' AND CODESOC = '" +
        bob.front().codesoc + "' ORDER BY CODESOC");
    const auto rows = Rows(cursor, {"CODESOC", "PATH"});
    ASSERT_EQ(rows.size(), bob.size() + 1);
    EXPECT_EQ(rows.back()[0], "ZZZZZZZZZZZZZZZ");
    // The sentinel's PATH column keeps the width of the users' PATH field.
    EXPECT_EQ(rows.back()[1], "ZZZZZZZZZZZZZZZ" + std::string(45, ' '));
    for (std::size_t i = 0; i + 1 < rows.size(); ++i) EXPECT_NE(rows[i][0], "ZZZZZZZZZZZZZZZ");
}

TEST_F(UserStatementsTest, LeftOfPathSelectsTheAlternateDossierRows) {
    const std::string name = "martin         ";
    std::vector<Row> expected = Where([&](const Row& row) {
        return row.name == name && (row.path.substr(0, 2) == "11" || row.path.substr(0, 2) == "02");
    });
    ASSERT_FALSE(expected.empty());
    const Handle cursor = Query("select codesoc,path from [USERS] where (NAME ='" + name +
                                "' AND (LEFT(PATH,2)='11' OR LEFT(PATH,2)='02')) ORDER BY CODESOC");
    std::stable_sort(expected.begin(), expected.end(),
                     [](const Row& a, const Row& b) { return a.codesoc < b.codesoc; });
    const auto rows = Rows(cursor, {"CODESOC", "PATH"});
    ASSERT_EQ(rows.size(), expected.size());
    for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i][1], expected[i].path);

    const Handle none = Query("select codesoc from [USERS] where LEFT(PATH,2)='99'");
    EXPECT_TRUE(Rows(none, {"CODESOC"}).empty());
}

TEST_F(UserStatementsTest, StaticHintInAnyLetterCaseAndLogicalLiterals) {
    const std::vector<Row> active = Where([](const Row& row) { return row.active; });
    const std::vector<Row> inactive = Where([](const Row& row) { return !row.active; });
    ASSERT_FALSE(inactive.empty());
    EXPECT_EQ(Sorted(RowIdRecords(Query("SELECT {static} ROWID FROM USERS WHERE ACTIVE = true"))),
              Records(active));
    EXPECT_EQ(Sorted(RowIdRecords(Query("select {STATIC} ROWID from users where active=FALSE"))),
              Records(inactive));
    EXPECT_EQ(RowIdRecords(Query("Select {Static} ROWID From [USERS]")).size(), visible.size());
}

TEST_F(UserStatementsTest, DeletedRecordsShowOnlyWhenTheEngineShowsThem) {
    std::uint32_t all = 0;
    ASSERT_EQ(engine.GetRecordCount(users, ADS_IGNOREFILTERS, all), AE_SUCCESS);
    ASSERT_LT(visible.size(), all);
    EXPECT_EQ(RowIdRecords(Query("select ROWID from USERS")).size(), visible.size());
    // Through a tag as well: every SYSTEM row of the CODE tag's leading field.
    const std::string codesoc = visible.front().codesoc;
    const auto live = Where([&](const Row& row) { return row.codesoc == codesoc; });
    EXPECT_EQ(
        Sorted(RowIdRecords(Query("select ROWID from USERS where CODESOC = '" + codesoc + "'"))),
        Records(live));
    ASSERT_EQ(engine.ShowDeleted(true), AE_SUCCESS);
    EXPECT_EQ(RowIdRecords(Query("select ROWID from USERS")).size(), all);
}

}  // namespace
}  // namespace fnrk::engine

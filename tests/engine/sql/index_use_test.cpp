// Conditions on indexed fields are answered through the tags, and give the same rows as the
// same condition read record by record (a unary + keeps SQLite from handing it to the table).

#include <algorithm>

#include "sql_fixture.hpp"

namespace fnrk::engine {
namespace {

class IndexUseTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        CopyFixture("people", "USERS");
        // A plain tag on NAME, for character ranges (the fixture's NAME tag is upper-cased).
        const Handle users = Open("USERS", ADS_EXCLUSIVE);
        Handle index = 0;
        ASSERT_EQ(engine.CreateIndex(users, "", "PLAINNAME", "NAME", "", "", ADS_COMPOUND, index),
                  AE_SUCCESS);
        ASSERT_EQ(engine.CloseTable(users), AE_SUCCESS);
    }

    std::string Plan(const std::string& where) {
        const Handle cursor = Query("EXPLAIN QUERY PLAN select ROWID from USERS where " + where);
        std::string plan;
        for (const auto& row : Rows(cursor, {"DETAIL"})) plan += row[0];
        return plan;
    }

    std::vector<std::uint32_t> Sorted(const std::string& where) {
        std::vector<std::uint32_t> records =
            RowIdRecords(Query("select ROWID from USERS where " + where));
        std::sort(records.begin(), records.end());
        return records;
    }
};

TEST_F(IndexUseTest, IndexedConditionsUseTheTagAndMatchARecordByRecordScan) {
    struct Case {
        std::string indexed, scanned;
        bool expectRows;
    };
    const std::vector<Case> cases = {
        {"AMOUNT = -0.01", "+AMOUNT = -0.01", true},
        {"AMOUNT >= 1000 AND AMOUNT < 50000", "+AMOUNT >= 1000 AND +AMOUNT < 50000", true},
        {"AMOUNT > 0", "+AMOUNT > 0", true},
        {"AMOUNT <= -100", "+AMOUNT <= -100", true},
        {"BORN >= '2020-01-01' AND BORN <= '2020-12-31'",
         "+BORN >= '2020-01-01' AND +BORN <= '2020-12-31'", true},
        {"BORN = '2020-06-22'", "+BORN = '2020-06-22'", true},
        {"CODESOC = 'SOC007'", "+CODESOC = 'SOC007'", true},
        {"CODESOC = 'SOC007         '", "+CODESOC = 'SOC007         '", true},
        {"NAME >= 'M' AND NAME < 'T'", "+NAME >= 'M' AND +NAME < 'T'", true},
        {"NAME = 'Chloé'", "+NAME = 'Chloé'", true},
        // Accented first letters sort above every ASCII letter in both orders.
        {"NAME > 'zz'", "+NAME > 'zz'", true},
        {"NAME = 'A name far too long for the field'",
         "+NAME = 'A name far too long for the field'", false},
    };
    for (const Case& test : cases) {
        EXPECT_NE(Plan(test.indexed).find("VIRTUAL TABLE INDEX 2:"), std::string::npos)
            << test.indexed;
        EXPECT_EQ(Plan(test.scanned).find("VIRTUAL TABLE INDEX 2:"), std::string::npos)
            << test.scanned;
        const std::vector<std::uint32_t> expected = Sorted(test.scanned);
        EXPECT_EQ(Sorted(test.indexed), expected) << test.indexed;
        EXPECT_EQ(!expected.empty(), test.expectRows) << test.scanned;
    }
}

TEST_F(IndexUseTest, RowIdEqualityJumpsToTheRecordOfThatTable) {
    const Handle cursor = Query("select ROWID, NAME from USERS where AMOUNT > 0");
    const auto rows = Rows(cursor, {"ROWID", "NAME"});
    ASSERT_GT(rows.size(), 2U);
    EXPECT_NE(Plan("ROWID = '" + rows[1][0] + "'").find("VIRTUAL TABLE INDEX 1:"),
              std::string::npos);
    const auto again =
        Rows(Query("select ROWID, NAME from USERS where ROWID = '" + rows[1][0] + "'"),
             {"ROWID", "NAME"});
    ASSERT_EQ(again.size(), 1U);
    EXPECT_EQ(again[0], rows[1]);
    // Another table's ROWID with the same record number names no row here.
    CopyFixture("SOC1_MSODA", "MSODA");
    const std::string other = Rows(Query("select ROWID from MSODA"), {"ROWID"}).front()[0];
    EXPECT_NE(other.substr(0, 12), rows[1][0].substr(0, 12));
    EXPECT_TRUE(
        Rows(Query("select ROWID from USERS where ROWID = '" + other + "'"), {"ROWID"}).empty());
}

}  // namespace
}  // namespace fnrk::engine

// INSERT, UPDATE and DELETE on engine tables: the indexes follow, and a statement that fails
// leaves the files exactly as they were.

#include <cstring>

#include "sql_fixture.hpp"

namespace fnrk::engine {
namespace {

class WritesTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        CopyFixture("people", "USERS");
        users = Open("USERS");
    }

    Status Execute(const std::string& sql) {
        Handle cursor = 0;
        const Status status = Run(sql, cursor);
        EXPECT_EQ(cursor, 0);
        return status;
    }

    bool SeekTag(const std::string& tag, const std::string& key, std::uint16_t type) {
        Handle index = 0;
        EXPECT_EQ(engine.GetIndexHandle(users, tag, index), AE_SUCCESS) << tag;
        bool found = false;
        EXPECT_EQ(engine.Seek(index, key, type, ADS_HARDSEEK, found), AE_SUCCESS);
        return found;
    }

    static std::string DoubleKey(double value) {
        std::string bytes(sizeof value, '\0');
        std::memcpy(bytes.data(), &value, sizeof value);
        return bytes;
    }

    std::string Files() {
        return testing::ReadFileBytes(dir / "USERS.dbf") +
               testing::ReadFileBytes(dir / "USERS.cdx") +
               testing::ReadFileBytes(dir / "USERS.fpt");
    }

    std::uint32_t Count() {
        std::uint32_t count = 0;
        EXPECT_EQ(engine.GetRecordCount(users, ADS_IGNOREFILTERS, count), AE_SUCCESS);
        return count;
    }

    // A handle opened after the statement, so that nothing read before it is reused.
    void Reopen() {
        ASSERT_EQ(engine.CloseTable(users), AE_SUCCESS);
        users = Open("USERS");
    }

    Handle users = 0;
};

TEST_F(WritesTest, InsertedRecordIsFoundThroughEveryKindOfTag) {
    const std::uint32_t before = Count();
    ASSERT_EQ(Execute("INSERT INTO [USERS] (NAME, CODESOC, PATH, AMOUNT, QTY, BORN, ACTIVE) "
                      "VALUES ('NEWCOMER', 'SOC099', '11C:\\DATA\\SOC099\\', 1234.5, 42, "
                      "'2024-02-29', true)"),
              AE_SUCCESS)
        << LastErrorText();
    Reopen();
    ASSERT_EQ(Count(), before + 1);
    ASSERT_EQ(engine.GotoRecord(users, before + 1), AE_SUCCESS);
    EXPECT_EQ(String(users, "NAME"), "NEWCOMER       ");
    EXPECT_EQ(String(users, "AMOUNT"), "     1234.50");
    std::string born;
    ASSERT_EQ(engine.SetDateFormat("DD/MM/YYYY"), AE_SUCCESS);
    ASSERT_EQ(engine.GetDate(users, "BORN", born), AE_SUCCESS);
    EXPECT_EQ(born, "29/02/2024");
    EXPECT_TRUE(SeekTag("NAME", "NEWCOMER", ADS_STRINGKEY));
    EXPECT_TRUE(SeekTag("CODE", "SOC099         NEWCOMER", ADS_STRINGKEY));
    EXPECT_TRUE(SeekTag("AMOUNT", DoubleKey(1234.5), ADS_DOUBLEKEY));
    EXPECT_TRUE(SeekTag("LIVE", "XNEWCOMER", ADS_STRINGKEY));
    EXPECT_EQ(Recno(users), before + 1);
    // And SQL sees it through the tag too.
    EXPECT_EQ(RowIdRecords(Query("select ROWID from USERS where AMOUNT = 1234.5")),
              std::vector<std::uint32_t>{before + 1});
}

TEST_F(WritesTest, UpdateMovesKeysAndDeleteHidesRecords) {
    ASSERT_FALSE(SeekTag("AMOUNT", DoubleKey(777.77), ADS_DOUBLEKEY));
    const std::vector<std::uint32_t> bob =
        RowIdRecords(Query("select ROWID from USERS where NAME = 'BOB'"));
    ASSERT_EQ(bob.size(), 3U);
    ASSERT_EQ(Execute("UPDATE USERS SET AMOUNT = 777.77, NAME = 'ROBERT' WHERE NAME = 'BOB'"),
              AE_SUCCESS)
        << LastErrorText();
    Reopen();
    EXPECT_TRUE(SeekTag("AMOUNT", DoubleKey(777.77), ADS_DOUBLEKEY));
    EXPECT_TRUE(SeekTag("NAME", "ROBERT", ADS_STRINGKEY));
    EXPECT_FALSE(SeekTag("NAME", "BOB ", ADS_STRINGKEY));
    for (const std::uint32_t record : bob) {
        ASSERT_EQ(engine.GotoRecord(users, record), AE_SUCCESS);
        EXPECT_EQ(String(users, "NAME"), "ROBERT         ");
        EXPECT_EQ(String(users, "AMOUNT"), "      777.77");
    }
    // Fields the statement does not set keep their contents, memos included.
    const auto untouched =
        Rows(Query("select CODESOC, NOTE from USERS where NAME = 'ROBERT'"), {"CODESOC", "NOTE"});
    ASSERT_EQ(untouched.size(), 3U);

    const std::uint32_t visibleBefore =
        static_cast<std::uint32_t>(RowIdRecords(Query("select ROWID from USERS")).size());
    ASSERT_EQ(Execute("DELETE FROM [USERS] WHERE NAME = 'ROBERT'"), AE_SUCCESS) << LastErrorText();
    Reopen();
    for (const std::uint32_t record : bob) {
        ASSERT_EQ(engine.GotoRecord(users, record), AE_SUCCESS);
        bool deleted = false;
        ASSERT_EQ(engine.IsRecordDeleted(users, deleted), AE_SUCCESS);
        EXPECT_TRUE(deleted) << record;
    }
    EXPECT_FALSE(SeekTag("LIVE", "XROBERT", ADS_STRINGKEY));
    EXPECT_EQ(RowIdRecords(Query("select ROWID from USERS")).size(), visibleBefore - 3);
}

TEST_F(WritesTest, FailingStatementsLeaveTheFilesUntouched) {
    ASSERT_EQ(engine.CloseTable(users), AE_SUCCESS);
    const std::string before = Files();
    // The third of the BOB rows gets a name too long for the field: nothing may be written.
    EXPECT_EQ(Execute("UPDATE USERS SET AMOUNT = 1, NAME = CASE WHEN ROWID = (SELECT MAX(ROWID) "
                      "FROM USERS WHERE NAME = 'BOB') THEN 'A NAME TOO LONG FOR IT' ELSE 'BOBBY' "
                      "END WHERE NAME = 'BOB'"),
              AE_SQL_ERROR);
    EXPECT_NE(LastErrorText().find("too long for field NAME"), std::string::npos)
        << LastErrorText();
    EXPECT_EQ(Files(), before);
    EXPECT_EQ(Execute("INSERT INTO USERS (NAME, AMOUNT) VALUES ('X', 'not a number')"),
              AE_SQL_ERROR);
    EXPECT_EQ(Execute("INSERT INTO USERS (NAME, AMOUNT) VALUES ('Y', 1), ('Z', 12345678901234)"),
              AE_SQL_ERROR);
    EXPECT_NE(LastErrorText().find("AMOUNT"), std::string::npos) << LastErrorText();
    EXPECT_EQ(Execute("UPDATE USERS SET BORN = '2023-02-30'"), AE_SQL_ERROR);
    EXPECT_EQ(Execute("UPDATE USERS SET ROWID = 'AAAAAAAAAAAAAAAAAB'"), AE_SQL_ERROR);
    EXPECT_EQ(Files(), before);
}

TEST_F(WritesTest, RecordLockedElsewhereStopsTheWholeStatement) {
    const std::vector<std::uint32_t> bob =
        RowIdRecords(Query("select ROWID from USERS where NAME = 'BOB'"));
    ASSERT_EQ(bob.size(), 3U);
    Engine other;
    Handle otherConnection = 0, otherUsers = 0;
    ASSERT_EQ(other.Connect26(dir.path().string(), ADS_LOCAL_SERVER, otherConnection), AE_SUCCESS);
    ASSERT_EQ(other.OpenTable(otherConnection, "USERS", "", ADS_CDX, ADS_ANSI,
                              ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, otherUsers),
              AE_SUCCESS);
    ASSERT_EQ(other.LockRecord(otherUsers, bob.back()), AE_SUCCESS);
    ASSERT_EQ(engine.CloseTable(users), AE_SUCCESS);
    const std::string before = Files();
    EXPECT_EQ(Execute("UPDATE USERS SET AMOUNT = 5 WHERE NAME = 'BOB'"), AE_SQL_ERROR);
    EXPECT_NE(LastErrorText().find("locked"), std::string::npos) << LastErrorText();
    EXPECT_EQ(Files(), before);
    bool locked = false;
    ASSERT_EQ(other.IsRecordLocked(otherUsers, bob.back(), locked), AE_SUCCESS);
    EXPECT_TRUE(locked);
    ASSERT_EQ(other.UnlockRecord(otherUsers, bob.back()), AE_SUCCESS);
    EXPECT_EQ(Execute("UPDATE USERS SET AMOUNT = 5 WHERE NAME = 'BOB'"), AE_SUCCESS)
        << LastErrorText();
    EXPECT_EQ(RowIdRecords(Query("select ROWID from USERS where NAME = 'BOB' AND AMOUNT = 5")),
              bob);
}

}  // namespace
}  // namespace fnrk::engine

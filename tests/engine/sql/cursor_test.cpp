// Static cursors and statement handles: a query's cursor works with the table functions, keeps
// the source fields' types, maps back to its statement and goes with it; failures say where
// and why.

#include <filesystem>

#include "sql_fixture.hpp"

namespace fnrk::engine {
namespace {

class CursorTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        CopyFixture("people", "USERS");
    }

    std::uint16_t Type(Handle table, const std::string& field) {
        std::uint16_t type = 0;
        EXPECT_EQ(engine.GetFieldType(table, field, type), AE_SUCCESS) << field;
        return type;
    }
    std::uint32_t Length(Handle table, const std::string& field) {
        std::uint32_t length = 0;
        EXPECT_EQ(engine.GetFieldLength(table, field, length), AE_SUCCESS) << field;
        return length;
    }
};

TEST_F(CursorTest, CursorIsATableWithTheSourceFieldTypes) {
    const Handle statement = NewStatement();
    Handle cursor = 0;
    ASSERT_EQ(engine.ExecuteSQLDirect(statement,
                                      "select ROWID, NAME, AMOUNT, BORN, ACTIVE, NOTE, "
                                      "QTY * 2 AS DOUBLED, LEFT(PATH, 2) from USERS "
                                      "where AMOUNT > 100 order by AMOUNT desc",
                                      cursor),
              AE_SUCCESS)
        << LastErrorText();
    EXPECT_EQ(Type(cursor, "ROWID"), ADS_STRING);
    EXPECT_EQ(Length(cursor, "ROWID"), 18U);
    EXPECT_EQ(Length(cursor, "NAME"), 15U);
    EXPECT_EQ(Type(cursor, "AMOUNT"), ADS_NUMERIC);
    std::uint16_t decimals = 0;
    ASSERT_EQ(engine.GetFieldDecimals(cursor, "AMOUNT", decimals), AE_SUCCESS);
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(Type(cursor, "BORN"), ADS_DATE);
    EXPECT_EQ(Type(cursor, "ACTIVE"), ADS_LOGICAL);
    EXPECT_EQ(Type(cursor, "NOTE"), ADS_MEMO);
    EXPECT_EQ(Type(cursor, "DOUBLED"), ADS_NUMERIC);
    std::uint16_t fields = 0;
    ASSERT_EQ(engine.GetNumFields(cursor, fields), AE_SUCCESS);
    ASSERT_EQ(fields, 8);
    std::string computed;
    ASSERT_EQ(engine.GetFieldName(cursor, 8, computed), AE_SUCCESS);
    EXPECT_EQ(computed, "LEFT_PATH_");

    // Navigation: descending amounts, each row's values those of the record its ROWID names.
    const Handle users = Open("USERS");
    double previous = 1e300;
    std::uint32_t rows = 0;
    for (const auto& row : Rows(cursor, {"ROWID", "NAME", "AMOUNT", "BORN", "NOTE", "DOUBLED"})) {
        ++rows;
        const double amount = std::stod(row[2]);
        EXPECT_LE(amount, previous);
        previous = amount;
        ASSERT_EQ(engine.GotoRecord(users, sql::RowIdRecord(row[0]).value()), AE_SUCCESS);
        EXPECT_EQ(row[1], String(users, "NAME"));
        EXPECT_EQ(row[2], String(users, "AMOUNT"));
        EXPECT_EQ(row[3], String(users, "BORN"));
        EXPECT_EQ(row[4], String(users, "NOTE"));
        EXPECT_EQ(std::stod(row[5]), 2 * std::stod(String(users, "QTY")));
    }
    std::uint32_t count = 0;
    ASSERT_EQ(engine.GetRecordCount(cursor, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, rows);
    EXPECT_GT(rows, 10U);
    ASSERT_EQ(engine.GotoBottom(cursor), AE_SUCCESS);
    EXPECT_EQ(Recno(cursor), rows);

    // The cursor maps back to its statement, which takes it (and its file) along when closed.
    Handle owner = 0;
    ASSERT_EQ(engine.GetSQLStatementHandle(cursor, owner), AE_SUCCESS);
    EXPECT_EQ(owner, statement);
    std::string file;
    ASSERT_EQ(engine.GetTableFilename(cursor, ADS_FULLPATHNAME, file), AE_SUCCESS);
    EXPECT_TRUE(std::filesystem::exists(file));
    ASSERT_EQ(engine.CloseSQLStatement(statement), AE_SUCCESS);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(engine.GotoTop(cursor), AE_INVALID_TABLE_HANDLE);
    EXPECT_EQ(engine.GetSQLStatementHandle(cursor, owner), AE_INVALID_SQLCURSOR_HANDLE);
}

TEST_F(CursorTest, ReadOnlyByDefaultWritableWhenAsked) {
    Handle statement = NewStatement();
    Handle cursor = 0;
    ASSERT_EQ(engine.ExecuteSQLDirect(statement, "select NAME from USERS", cursor), AE_SUCCESS);
    EXPECT_EQ(engine.SetString(cursor, "NAME", "CHANGED"), AE_TABLE_READONLY);
    statement = NewStatement();
    ASSERT_EQ(engine.StmtSetTableReadOnly(statement, ADS_CURSOR_READWRITE), AE_SUCCESS);
    ASSERT_EQ(engine.ExecuteSQLDirect(statement, "select NAME from USERS", cursor), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(cursor, "NAME", "CHANGED"), AE_SUCCESS);
    EXPECT_EQ(String(cursor, "NAME"), "CHANGED        ");
    // The cursor is a copy: the table keeps its name.
    EXPECT_TRUE(Rows(Query("select NAME from USERS where NAME = 'CHANGED'"), {"NAME"}).empty());
}

TEST_F(CursorTest, StatementSettingsAndHandlesAreChecked) {
    const Handle statement = NewStatement();
    EXPECT_EQ(engine.StmtSetTableType(statement, ADS_CDX), AE_SUCCESS);
    EXPECT_EQ(engine.StmtSetTableType(statement, ADS_ADT), AE_INVALID_TABLETYPE);
    EXPECT_EQ(engine.StmtSetTableRights(statement, ADS_IGNORERIGHTS), AE_SUCCESS);
    EXPECT_EQ(engine.StmtSetTableRights(statement, 7), AE_INVALID_RIGHTSOPTION);
    EXPECT_EQ(engine.StmtSetTableCharType(statement, ADS_ANSI), AE_SUCCESS);
    EXPECT_EQ(engine.StmtSetTableCharType(statement, ADS_OEM), AE_INVALID_CHARSETTYPE);
    EXPECT_EQ(engine.StmtSetTableLockType(statement, ADS_COMPATIBLE_LOCKING), AE_SUCCESS);
    EXPECT_EQ(engine.StmtSetTableLockType(statement, 9), AE_INVALID_LOCKTYPE);
    EXPECT_EQ(engine.StmtSetTableReadOnly(statement, 0), AE_INVALID_OPTION);
    EXPECT_EQ(engine.StmtEnableEncryption(statement, "secret"), AE_SUCCESS);
    EXPECT_EQ(engine.StmtSetTablePassword(statement, "USERS.dbf", "secret"), AE_SUCCESS);
    EXPECT_EQ(engine.StmtSetTablePassword(statement, "  ", "secret"), AE_INVALID_OBJECT_NAME);
    EXPECT_EQ(engine.ClearSQLParams(statement), AE_SUCCESS);
    Handle cursor = 7;
    EXPECT_EQ(engine.ExecuteSQL(statement, cursor), AE_NOT_PREPARED);
    EXPECT_EQ(cursor, 0);
    ASSERT_EQ(engine.PrepareSQL(statement, "select count(*) AS N from USERS"), AE_SUCCESS);
    ASSERT_EQ(engine.ExecuteSQL(statement, cursor), AE_SUCCESS);
    double count = 0;
    ASSERT_EQ(engine.GetDouble(cursor, "N", count), AE_SUCCESS);
    EXPECT_EQ(count, 514);  // 600 records, 86 of them deleted

    const Handle unknown = statement + 1000;
    EXPECT_EQ(engine.PrepareSQL(unknown, "select 1"), AE_INVALID_SQLSTATEMENT_HANDLE);
    EXPECT_EQ(engine.StmtSetTableType(unknown, ADS_CDX), AE_INVALID_SQLSTATEMENT_HANDLE);
    EXPECT_EQ(engine.CloseSQLStatement(unknown), AE_INVALID_SQLSTATEMENT_HANDLE);
    Handle none = 0;
    EXPECT_EQ(engine.CreateSQLStatement(connection + 1000, none), AE_INVALID_CONNECTION_HANDLE);
    EXPECT_EQ(engine.CloseSQLStatement(statement), AE_SUCCESS);
    EXPECT_EQ(engine.CloseSQLStatement(statement), AE_INVALID_SQLSTATEMENT_HANDLE);
}

TEST_F(CursorTest, FailuresCarryThePositionAndTheReason) {
    const std::string text = "SELECT {static} NAME FORM USERS";
    Handle cursor = 0;
    EXPECT_EQ(Run(text, cursor), AE_SQL_ERROR);
    EXPECT_EQ(cursor, 0);
    const std::string position = "at position " + std::to_string(text.find("USERS") + 1) + ":";
    EXPECT_NE(LastErrorText().find(position), std::string::npos) << LastErrorText();
    EXPECT_NE(LastErrorText().find("syntax error"), std::string::npos) << LastErrorText();

    EXPECT_EQ(Run("select NAME from NOSUCHTABLE", cursor), AE_TABLE_NOT_FOUND);
    EXPECT_NE(LastErrorText().find("NOSUCHTABLE"), std::string::npos) << LastErrorText();
    EXPECT_EQ(Run("select NOSUCHFIELD from USERS", cursor), AE_SQL_ERROR);
    EXPECT_NE(LastErrorText().find("NOSUCHFIELD"), std::string::npos) << LastErrorText();
    EXPECT_EQ(Run("select 1; select 2", cursor), AE_SQL_ERROR);
    EXPECT_NE(LastErrorText().find("at position 11"), std::string::npos) << LastErrorText();
    EXPECT_EQ(Run("   ", cursor), AE_INVALID_STATEMENT);
}

TEST_F(CursorTest, TablesResolveByOpenAliasOrFileNameInAnyCase) {
    CopyFixture("SOC1_MSODA", "SOC1_MSODA");
    const Handle msoda = Open("SOC1_MSODA", ADS_SHARED, "MSODA");
    std::uint32_t visible = 0;
    ASSERT_EQ(engine.GetRecordCount(msoda, ADS_RESPECTFILTERS, visible), AE_SUCCESS);
    const auto byAlias = RowIdRecords(Query("select ROWID from [MSODA]"));
    const auto byFile = RowIdRecords(Query("select ROWID from soc1_msoda"));
    EXPECT_EQ(byAlias, byFile);
    EXPECT_FALSE(byAlias.empty());
    // Joins between tables of the folder.
    const auto joined = Rows(Query("select count(*) AS N from USERS u, MSODA m where "
                                   "u.NAME = m.SOURCE"),
                             {"N"});
    ASSERT_EQ(joined.size(), 1U);
}

}  // namespace
}  // namespace fnrk::engine

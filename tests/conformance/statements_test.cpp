#include <gtest/gtest.h>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers

class StatementConformance : public Conformance {
  protected:
    // Items D, B, A, C with amounts 1 to 4, open shared (statements open it too).
    Handle Items() {
        Handle table = CreateItems();
        const char* codes[] = {"D", "B", "A", "C"};
        for (int i = 0; i < 4; ++i)
            AddItem(table, codes[i], std::string("item ") + codes[i], i + 1);
        EXPECT_EQ(ops->CloseTable(table), AE_SUCCESS);
        EXPECT_EQ(ops->OpenTable(connection, "items.dbf", "", ADS_CDX, ADS_ANSI,
                                 ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, table),
                  AE_SUCCESS);
        return table;
    }
    std::string LastError() {
        Status code = 0;
        std::string text;
        EXPECT_EQ(ops->GetLastError(code, text), AE_SUCCESS);
        return text;
    }
    Handle Statement() {
        Handle statement = 0;
        EXPECT_EQ(ops->CreateSQLStatement(connection, statement), AE_SUCCESS);
        EXPECT_EQ(ops->ClearSQLParams(statement), AE_SUCCESS);
        EXPECT_EQ(ops->StmtSetTableType(statement, ADS_CDX), AE_SUCCESS);
        EXPECT_EQ(ops->StmtSetTableRights(statement, ADS_IGNORERIGHTS), AE_SUCCESS);
        EXPECT_EQ(ops->StmtSetTableCharType(statement, ADS_ANSI), AE_SUCCESS);
        EXPECT_EQ(ops->StmtSetTableReadOnly(statement, ADS_CURSOR_READONLY), AE_SUCCESS);
        EXPECT_EQ(ops->StmtSetTableLockType(statement, ADS_COMPATIBLE_LOCKING), AE_SUCCESS);
        return statement;
    }
};

TEST_P(StatementConformance, SelectsGiveStaticCursorsWithRowIds) {
    Handle table = Items();
    Handle statement = Statement();
    Handle cursor = 0;
    ASSERT_EQ(ops->ExecuteSQLDirect(statement,
                                    "SELECT {static} ROWID, CODE, AMOUNT FROM [items] "
                                    "WHERE AMOUNT >= 2 ORDER BY CODE",
                                    cursor),
              AE_SUCCESS)
        << LastError();
    ASSERT_NE(cursor, 0u);
    Handle owner = 0;
    ASSERT_EQ(ops->GetSQLStatementHandle(cursor, owner), AE_SUCCESS);
    EXPECT_EQ(owner, statement);
    std::uint32_t count = 0;
    ASSERT_EQ(ops->GetRecordCount(cursor, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 3u);

    // Each row names the record it came from through its ROWID.
    std::vector<std::string> codes;
    std::vector<std::uint32_t> records;
    ASSERT_EQ(ops->GotoTop(cursor), AE_SUCCESS);
    bool eof = false;
    while (ops->AtEOF(cursor, eof) == AE_SUCCESS && !eof && codes.size() < 10) {
        codes.push_back(Text(cursor, "CODE"));
        std::string rowId = Text(cursor, "ROWID");
        records.push_back(engine::sql::RowIdRecord(rowId, GetParam().rowIds).value_or(0));
        ASSERT_EQ(ops->Skip(cursor, 1), AE_SUCCESS);
    }
    EXPECT_EQ(codes, (std::vector<std::string>{"A", "B", "C"}));
    EXPECT_EQ(records, (std::vector<std::uint32_t>{3, 2, 4}));

    // The cursor is a snapshot: later changes to the table do not show in it.
    ASSERT_EQ(ops->LockRecord(table, 3), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(table, 3), AE_SUCCESS);
    ASSERT_EQ(ops->SetDouble(table, "AMOUNT", 9), AE_SUCCESS);
    ASSERT_EQ(ops->UnlockRecord(table, 3), AE_SUCCESS);
    ASSERT_EQ(ops->GetRecordCount(cursor, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 3u);

    // A second run sees them; closing the statement closes its cursors.
    Handle second = 0;
    ASSERT_EQ(ops->ExecuteSQLDirect(statement, "SELECT CODE FROM items WHERE AMOUNT > 5", second),
              AE_SUCCESS);
    ASSERT_EQ(ops->GetRecordCount(second, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 1u);
    ASSERT_EQ(ops->CloseSQLStatement(statement), AE_SUCCESS);
    EXPECT_NE(ops->GetRecordCount(second, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(ops->PrepareSQL(statement, "SELECT CODE FROM items"), AE_INVALID_SQLSTATEMENT_HANDLE);
}

TEST_P(StatementConformance, UpdatesWriteTheTableAndFaultsChangeNothing) {
    Handle table = Items();
    Handle statement = Statement();
    Handle cursor = 7;
    ASSERT_EQ(ops->ExecuteSQLDirect(statement, "UPDATE items SET NAME = 'changed' WHERE CODE = 'B'",
                                    cursor),
              AE_SUCCESS)
        << LastError();
    EXPECT_EQ(cursor, 0u);
    // As another workstation reads it.
    Handle otherConnection = 0;
    auto other = SecondConnection(otherConnection);
    Handle reader = 0;
    ASSERT_EQ(other->OpenTable(otherConnection, "items.dbf", "", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, reader),
              AE_SUCCESS);
    std::string name;
    ASSERT_EQ(other->GotoRecord(reader, 2), AE_SUCCESS);
    ASSERT_EQ(other->GetString(reader, "NAME", name, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(name, "changed");
    ASSERT_EQ(other->GotoRecord(reader, 1), AE_SUCCESS);
    ASSERT_EQ(other->GetString(reader, "NAME", name, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(name, "item D");

    EXPECT_EQ(ops->ExecuteSQLDirect(statement, "SELEC CODE FROM items", cursor), AE_SQL_ERROR);
    EXPECT_EQ(cursor, 0u);
    EXPECT_NE(ops->ExecuteSQLDirect(statement, "SELECT CODE FROM missing", cursor), AE_SUCCESS);
    EXPECT_NE(LastError().find("missing"), std::string::npos) << LastError();
    EXPECT_EQ(ops->ExecuteSQL(statement, cursor), AE_NOT_PREPARED);
    EXPECT_EQ(ops->StmtSetTableType(statement, 99), AE_INVALID_TABLETYPE);
    EXPECT_EQ(ops->StmtSetTablePassword(statement, "", "x"), AE_INVALID_OBJECT_NAME);
    std::uint32_t count = 0;
    ASSERT_EQ(ops->GetRecordCount(table, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 4u);
}

INSTANTIATE_TEST_SUITE_P(Implementations, StatementConformance,
                         ::testing::ValuesIn(Implementations()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace fnrk::conformance

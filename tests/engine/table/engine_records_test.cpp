#include <gtest/gtest.h>

#include <filesystem>

#include "engine/expr/dates.hpp"
#include "engine_fixture.hpp"

namespace fnrk::engine {
namespace {

constexpr const char* kStockFields =
    "CODE,Character,6,0;NAME,C,10;PRICE,Numeric,8,2;QTY,N,3,0;BORN,DATE;OK,L;NOTE,memo;"
    "PIC,BINARY";

class EngineRecords : public EngineTest {
  protected:
    // Records with QTY 1..n and CODE "C1".."Cn".
    Handle StockWith(int n) {
        Create("stock", kStockFields);
        const Handle table = Open("stock");
        for (int i = 1; i <= n; ++i) {
            EXPECT_EQ(engine.AppendRecord(table), AE_SUCCESS);
            EXPECT_EQ(engine.SetString(table, "CODE", "C" + std::to_string(i)), AE_SUCCESS);
            EXPECT_EQ(engine.SetLong(table, "qty", i), AE_SUCCESS);
            EXPECT_EQ(engine.UnlockRecord(table, 0), AE_SUCCESS);
        }
        return table;
    }
    // A new index on CODE, walked once so that the engine remembers its handle.
    Handle UsedCodeIndex(Handle table) {
        Handle index = 0;
        EXPECT_EQ(engine.CreateIndex(table, "", "CODE", "CODE", "", "", ADS_COMPOUND, index),
                  AE_SUCCESS);
        bool eof = false;
        EXPECT_EQ(engine.GotoTop(index), AE_SUCCESS);
        EXPECT_EQ(engine.AtEOF(index, eof), AE_SUCCESS);
        return index;
    }
};

TEST_F(EngineRecords, StructureNamesAndHandles) {
    Create("stock", kStockFields);
    const Handle table = Open("STOCK.DBF", ADS_SHARED, "s1");
    std::uint16_t count = 0;
    ASSERT_EQ(engine.GetNumFields(table, count), AE_SUCCESS);
    EXPECT_EQ(count, 8);
    std::uint32_t length = 0;
    ASSERT_EQ(engine.GetRecordLength(table, length), AE_SUCCESS);
    EXPECT_EQ(length, 1u + 6 + 10 + 8 + 3 + 8 + 1 + 10 + 10);
    std::string name;
    ASSERT_EQ(engine.GetFieldName(table, 3, name), AE_SUCCESS);
    EXPECT_EQ(name, "PRICE");
    EXPECT_EQ(engine.GetFieldName(table, 9, name), AE_INVALID_FIELDNUMBER);
    std::uint16_t type = 0;
    const std::pair<const char*, std::uint16_t> types[] = {
        {"code", ADS_STRING}, {"PRICE", ADS_NUMERIC}, {"BORN", ADS_DATE},
        {"OK", ADS_LOGICAL},  {"NOTE", ADS_MEMO},     {"PIC", ADS_BINARY}};
    for (const auto& [field, expected] : types) {
        ASSERT_EQ(engine.GetFieldType(table, field, type), AE_SUCCESS);
        EXPECT_EQ(type, expected) << field;
    }
    std::uint16_t decimals = 0;
    std::uint32_t offset = 0;
    std::uint16_t number = 0;
    ASSERT_EQ(engine.GetFieldDecimals(table, "PRICE", decimals), AE_SUCCESS);
    EXPECT_EQ(decimals, 2);
    ASSERT_EQ(engine.GetFieldOffset(table, "PRICE", offset), AE_SUCCESS);
    EXPECT_EQ(offset, 17u);
    ASSERT_EQ(engine.GetFieldNum(table, "born", number), AE_SUCCESS);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(engine.GetFieldType(table, "MISSING", type), AE_INVALID_FIELDNAME);

    std::string alias;
    ASSERT_EQ(engine.GetTableAlias(table, alias), AE_SUCCESS);
    EXPECT_EQ(alias, "S1");
    EXPECT_EQ(OpenStatus("stock", ADS_SHARED, "S1"), AE_DUPLICATE_ALIAS);
    Handle found = 0;
    ASSERT_EQ(engine.GetTableHandle(connection, "s1", found), AE_SUCCESS);
    EXPECT_EQ(found, table);
    EXPECT_GE(table, kEngineHandleStart);
    ASSERT_EQ(engine.GetTableFilename(table, ADS_BASENAME, name), AE_SUCCESS);
    EXPECT_EQ(name, "stock");
    ASSERT_EQ(engine.GetTableFilename(table, ADS_FULLPATHNAME, name), AE_SUCCESS);
    EXPECT_EQ(name, (dir / "stock.dbf").string());
    ASSERT_EQ(engine.GetHandleType(table, type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_TABLE);
    ASSERT_EQ(engine.GetHandleType(connection, type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_CONNECTION);
    ASSERT_EQ(engine.SetHandleLong(table, 77), AE_SUCCESS);
    std::uint32_t value = 0;
    ASSERT_EQ(engine.GetHandleLong(table, value), AE_SUCCESS);
    EXPECT_EQ(value, 77u);
    EXPECT_EQ(engine.GetHandleType(12345, type), AE_INVALID_HANDLE);

    Handle created = 0;
    EXPECT_EQ(engine.CreateTable(connection, "bad", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                 ADS_IGNORERIGHTS, 0, "A,Q,5", created),
              AE_INVALID_FIELDDEF);
    EXPECT_FALSE(std::filesystem::exists(dir / "bad.dbf"));
    Status error = 0;
    std::string text;
    ASSERT_EQ(engine.GetLastError(error, text), AE_SUCCESS);
    EXPECT_EQ(error, AE_INVALID_FIELDDEF);
    EXPECT_NE(text.find("unknown field type"), std::string::npos);
    EXPECT_EQ(OpenStatus("nothere", ADS_SHARED, ""), AE_FILE_NOT_FOUND);
    EXPECT_EQ(engine.GotoTop(999), AE_INVALID_TABLE_HANDLE);
}

TEST_F(EngineRecords, NavigationBofEofPhantomAndDeletedRecords) {
    const Handle table = StockWith(5);
    ASSERT_EQ(engine.GotoRecord(table, 3), AE_SUCCESS);
    ASSERT_EQ(engine.DeleteRecord(table), AE_SUCCESS);

    ASSERT_EQ(engine.GotoTop(table), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 1u);
    EXPECT_FALSE(Bof(table));
    std::vector<std::uint32_t> seen;
    while (!Eof(table)) {
        seen.push_back(Recno(table));
        ASSERT_EQ(engine.Skip(table, 1), AE_SUCCESS);
    }
    EXPECT_EQ(seen, (std::vector<std::uint32_t>{1, 2, 3, 4, 5}));
    // Past the end: the blank phantom record, no record number.
    EXPECT_EQ(Recno(table), 0u);
    EXPECT_EQ(String(table, "CODE"), "      ");
    EXPECT_EQ(engine.SetString(table, "CODE", "X"), AE_NO_CURRENT_RECORD);
    ASSERT_EQ(engine.Skip(table, -1), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 5u);

    ASSERT_EQ(engine.ShowDeleted(false), AE_SUCCESS);
    ASSERT_EQ(engine.Skip(table, -2), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 2u);  // 3 is deleted and hidden
    ASSERT_EQ(engine.Skip(table, -5), AE_SUCCESS);
    EXPECT_TRUE(Bof(table));
    EXPECT_EQ(Recno(table), 1u);
    EXPECT_EQ(Count(table, ADS_RESPECTFILTERS), 4u);
    EXPECT_EQ(Count(table, ADS_IGNOREFILTERS), 5u);
    ASSERT_EQ(engine.GotoRecord(table, 3), AE_SUCCESS);  // a hidden record is still reachable
    bool flag = false;
    ASSERT_EQ(engine.IsRecordDeleted(table, flag), AE_SUCCESS);
    EXPECT_TRUE(flag);
    ASSERT_EQ(engine.IsRecordVisible(table, flag), AE_SUCCESS);
    EXPECT_FALSE(flag);
    ASSERT_EQ(engine.RecallRecord(table), AE_SUCCESS);
    EXPECT_EQ(Count(table, ADS_RESPECTFILTERS), 5u);
    ASSERT_EQ(engine.ShowDeleted(true), AE_SUCCESS);

    ASSERT_EQ(engine.GotoBottom(table), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 5u);
    ASSERT_EQ(engine.GotoRecord(table, 99), AE_SUCCESS);
    EXPECT_TRUE(Eof(table));
    std::uint32_t count = 0;
    EXPECT_EQ(engine.GetRecordCount(table, 9, count), AE_INVALID_FILTER_OPTION);

    ASSERT_EQ(engine.ZapTable(table), AE_TABLE_NOT_EXCLUSIVE);
    Create("empty", "A,C,1");
    const Handle empty = Open("empty");
    ASSERT_EQ(engine.GotoTop(empty), AE_SUCCESS);
    EXPECT_TRUE(Eof(empty));
    EXPECT_TRUE(Bof(empty));
}

TEST_F(EngineRecords, FieldValuesConversionsAndLimits) {
    const Handle table = StockWith(1);
    ASSERT_EQ(engine.GotoTop(table), AE_SUCCESS);
    ASSERT_EQ(engine.LockRecord(table, 1), AE_SUCCESS);

    ASSERT_EQ(engine.SetString(table, "NAME", "Désiré Dupont-Lemaire"), AE_SUCCESS);
    EXPECT_EQ(String(table, "NAME"), "Désiré Dup");
    std::string raw;
    ASSERT_EQ(engine.GetRecord(table, raw), AE_SUCCESS);
    EXPECT_EQ(raw.substr(7, 10), "D\xE9sir\xE9 Dup");  // stored as Windows-1252
    std::string trimmed;
    ASSERT_EQ(engine.SetString(table, "CODE", "  AB"), AE_SUCCESS);
    ASSERT_EQ(engine.GetString(table, "CODE", trimmed, ADS_TRIM), AE_SUCCESS);
    EXPECT_EQ(trimmed, "AB");
    ASSERT_EQ(engine.GetString(table, "CODE", trimmed, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(trimmed, "  AB");

    ASSERT_EQ(engine.SetDouble(table, "PRICE", 1234.567), AE_SUCCESS);
    EXPECT_EQ(String(table, "PRICE"), " 1234.57");
    EXPECT_EQ(engine.SetDouble(table, "PRICE", 123456.0), AE_VALUE_OVERFLOW);
    EXPECT_EQ(engine.SetLong(table, "QTY", -100), AE_VALUE_OVERFLOW);
    EXPECT_EQ(String(table, "PRICE"), " 1234.57");  // the refused writes changed nothing
    std::int16_t small = 0;
    ASSERT_EQ(engine.GetShort(table, "QTY", small), AE_SUCCESS);
    EXPECT_EQ(small, 1);
    double number = 0;
    EXPECT_EQ(engine.GetDouble(table, "NAME", number), AE_INVALID_FIELD_TYPE);

    ASSERT_EQ(engine.SetLogical(table, "OK", true), AE_SUCCESS);
    bool flag = false;
    ASSERT_EQ(engine.GetLogical(table, "OK", flag), AE_SUCCESS);
    EXPECT_TRUE(flag);
    EXPECT_EQ(engine.SetLogical(table, "CODE", true), AE_INVALID_FIELD_TYPE);

    std::string date;
    ASSERT_EQ(engine.GetDate(table, "BORN", date), AE_SUCCESS);
    EXPECT_EQ(date, "  /  /    ");
    ASSERT_EQ(engine.SetDateFormat("DD/MM/YYYY"), AE_SUCCESS);
    ASSERT_EQ(engine.SetDate(table, "BORN", "31/01/2024"), AE_SUCCESS);
    std::int32_t julian = 0;
    ASSERT_EQ(engine.GetJulian(table, "BORN", julian), AE_SUCCESS);
    EXPECT_EQ(julian, expr::JulianFromCivil(2024, 1, 31));
    EXPECT_EQ(engine.SetDate(table, "BORN", "31/02/2024"), AE_INVALID_DATE);
    ASSERT_EQ(engine.SetDateFormat("DD/MM/YY"), AE_SUCCESS);
    ASSERT_EQ(engine.SetEpoch(2000), AE_SUCCESS);
    ASSERT_EQ(engine.SetDate(table, "BORN", "01/02/80"), AE_SUCCESS);
    ASSERT_EQ(engine.SetDateFormat("DD/MM/YYYY"), AE_SUCCESS);
    ASSERT_EQ(engine.GetDate(table, "BORN", date), AE_SUCCESS);
    EXPECT_EQ(date, "01/02/2080");
    EXPECT_EQ(engine.SetDateFormat("YYYY"), AE_INVALID_DATEFORMAT);

    const std::string longText = std::string(3000, 'x') + "é";
    ASSERT_EQ(engine.SetString(table, "NOTE", longText), AE_SUCCESS);
    const std::string bytes("\0\x01\xFF\x80 binary", 12);
    ASSERT_EQ(engine.SetBinary(table, "PIC", ADS_BINARY, 24, 0, bytes), AE_SUCCESS);
    ASSERT_EQ(engine.SetBinary(table, "PIC", ADS_BINARY, 24, 12, bytes), AE_SUCCESS);
    ASSERT_EQ(engine.UnlockRecord(table, 1), AE_SUCCESS);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);

    const Handle again = Open("stock");
    ASSERT_EQ(engine.GotoTop(again), AE_SUCCESS);
    EXPECT_EQ(String(again, "NOTE"), longText);
    std::uint32_t length = 0;
    ASSERT_EQ(engine.GetMemoLength(again, "NOTE", length), AE_SUCCESS);
    EXPECT_EQ(length, 3001u);  // one Windows-1252 byte for the accent
    std::string data;
    ASSERT_EQ(engine.GetBinary(again, "PIC", 0, 100, data), AE_SUCCESS);
    EXPECT_EQ(data, bytes + bytes);
    ASSERT_EQ(engine.GetBinary(again, "PIC", 10, 4, data), AE_SUCCESS);
    EXPECT_EQ(data, bytes.substr(10) + bytes.substr(0, 2));
    EXPECT_EQ(engine.GetBinary(again, "PIC", 30, 4, data), AE_INVALID_BINARY_OFFSET);
    std::uint16_t type = 0;
    ASSERT_EQ(engine.GetMemoDataType(again, "PIC", type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_BINARY);
    EXPECT_EQ(String(again, "NAME"), "Désiré Dup");
    EXPECT_EQ(engine.SetRecord(again, "short"), AE_INVALID_RECORD_LENGTH);
}

TEST_F(EngineRecords, FiltersLocateAndContinue) {
    const Handle table = StockWith(10);
    EXPECT_EQ(engine.SetFilter(table, "QTY > 3 .AND. QTY <= 7"), AE_SUCCESS);
    std::string text;
    ASSERT_EQ(engine.GetFilter(table, text), AE_SUCCESS);
    EXPECT_EQ(text, "QTY > 3 .AND. QTY <= 7");
    EXPECT_EQ(Count(table, ADS_RESPECTFILTERS), 4u);
    EXPECT_EQ(Count(table, ADS_IGNOREFILTERS), 10u);
    ASSERT_EQ(engine.GotoTop(table), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 4u);
    ASSERT_EQ(engine.GotoBottom(table), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 7u);
    ASSERT_EQ(engine.Skip(table, 1), AE_SUCCESS);
    EXPECT_TRUE(Eof(table));

    EXPECT_EQ(engine.SetFilter(table, "QTY >"), AE_INVALID_EXPRESSION);
    Status error = 0;
    ASSERT_EQ(engine.GetLastError(error, text), AE_SUCCESS);
    EXPECT_NE(text.find(" at "), std::string::npos) << text;
    EXPECT_EQ(engine.SetFilter(table, "QTY + 1"), AE_INVALID_EXPRESSION);  // not logical
    ASSERT_EQ(engine.GetFilter(table, text), AE_SUCCESS);                  // the old filter stays
    ASSERT_EQ(engine.ClearFilter(table), AE_SUCCESS);
    EXPECT_EQ(engine.GetFilter(table, text), AE_NO_FILTER);

    bool found = false;
    EXPECT_EQ(engine.Continue(table, found), AE_INVALID_CONTINUE);
    ASSERT_EQ(engine.Locate(table, "QTY % 3 = 0", true, found), AE_SUCCESS);
    ASSERT_TRUE(found);
    EXPECT_EQ(Recno(table), 3u);
    ASSERT_EQ(engine.Continue(table, found), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 6u);
    ASSERT_EQ(engine.Locate(table, "code = 'C1'", false, found), AE_SUCCESS);
    ASSERT_TRUE(found);
    EXPECT_EQ(Recno(table), 10u);  // "C10" starts with "C1": the non-exact rule
    ASSERT_EQ(engine.Continue(table, found), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 1u);
    ASSERT_EQ(engine.Continue(table, found), AE_SUCCESS);
    EXPECT_FALSE(found);
    EXPECT_TRUE(Eof(table));
    ASSERT_EQ(engine.Locate(table, "STOCK->QTY == 11", true, found), AE_SUCCESS);
    EXPECT_FALSE(found);
    EXPECT_EQ(engine.Locate(table, "OTHER->QTY = 1", true, found), AE_INVALID_EXPRESSION);
}

TEST_F(EngineRecords, PackZapAndReadOnly) {
    StockWith(6);
    ASSERT_EQ(engine.CloseAllTables(), AE_SUCCESS);
    const Handle table = Open("stock", ADS_EXCLUSIVE);
    for (std::uint32_t recno : {2u, 5u}) {
        ASSERT_EQ(engine.GotoRecord(table, recno), AE_SUCCESS);
        ASSERT_EQ(engine.DeleteRecord(table), AE_SUCCESS);
    }
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS);
    EXPECT_EQ(Count(table, ADS_IGNOREFILTERS), 4u);
    std::vector<std::string> codes;
    for (Top(table); !Eof(table); Next(table)) codes.push_back(String(table, "CODE"));
    EXPECT_EQ(codes, (std::vector<std::string>{"C1    ", "C3    ", "C4    ", "C6    "}));
    const auto packedSize = std::filesystem::file_size(dir / "stock.dbf");
    EXPECT_EQ(packedSize, 32u + 8 * 32 + 2 + 4 * 57 + 1);
    ASSERT_EQ(engine.ZapTable(table), AE_SUCCESS);
    EXPECT_EQ(Count(table, ADS_IGNOREFILTERS), 0u);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);

    const Handle readOnly = Open("stock", ADS_READONLY);
    EXPECT_EQ(engine.AppendRecord(readOnly), AE_TABLE_READONLY);
    EXPECT_EQ(engine.LockTable(readOnly), AE_TABLE_READONLY);
    ASSERT_EQ(engine.EnableEncryption(readOnly, "secret"), AE_SUCCESS);
    EXPECT_EQ(engine.EncryptTable(readOnly), AE_TABLE_READONLY);
}

TEST_F(EngineRecords, ReadsFixtureTablesWithTheirIndexFlag) {
    for (const char* name : {"people.dbf", "people.fpt", "people.cdx"}) {
        std::filesystem::copy_file(testing::SharedDir() / "fixtures" / "xbase" / name, dir / name);
    }
    const Handle table = Open("PEOPLE", ADS_READONLY);
    ASSERT_EQ(engine.GotoRecord(table, 3), AE_SUCCESS);
    EXPECT_EQ(String(table, "NAME"), "Chloé          ");
    double amount = 0;
    ASSERT_EQ(engine.GetDouble(table, "AMOUNT", amount), AE_SUCCESS);
    EXPECT_DOUBLE_EQ(amount, 999999999.99);
    std::string born;
    ASSERT_EQ(engine.SetDateFormat("DD/MM/YYYY"), AE_SUCCESS);
    ASSERT_EQ(engine.GetDate(table, "BORN", born), AE_SUCCESS);
    EXPECT_EQ(born, "13/03/2009");
    ASSERT_EQ(engine.ShowDeleted(false), AE_SUCCESS);
    // Every 7th record is deleted (1, 8, 15, ...): 86 of 600.
    EXPECT_EQ(Count(table, ADS_RESPECTFILTERS), 600u - 86u);
}

TEST_F(EngineRecords, ABareDriveConnectsToTheDrivesRoot) {
    const std::string drive = dir.path().root_name().string();  // "Z:" on Windows
    if (drive.empty()) GTEST_SKIP() << "paths have no drive on this host";
    Handle root = 0;
    ASSERT_EQ(engine.Connect26(drive, ADS_LOCAL_SERVER, root), AE_SUCCESS);
    Create("ondrive", "CODE,C,4,0");
    Handle table = 0;
    EXPECT_EQ(engine.OpenTable(root, (dir.path() / "ondrive").string(), "", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, table),
              AE_SUCCESS);
}

TEST_F(EngineRecords, FindConnectionTakesItsFolderOrATableInIt) {
    Handle found = 0;
    for (const std::filesystem::path& path :
         {dir.path(), dir.path() / "", dir.path() / "stock.dbf"}) {
        found = 0;
        EXPECT_EQ(engine.FindConnection25(path.string(), found), AE_SUCCESS) << path;
        EXPECT_EQ(found, connection) << path;
    }
    for (const std::string& path :
         {(dir.path() / "sub" / "stock.dbf").string(), std::string(), std::string("   ")}) {
        EXPECT_EQ(engine.FindConnection25(path, found), AE_NO_CONNECTION) << path;
        EXPECT_EQ(found, 0);
    }
    // A bare drive is its root, also the drive of the current folder, which Windows would
    // otherwise take it for.
    const std::filesystem::path current = std::filesystem::current_path();
    const std::string drive =
        current.has_root_name() ? current.root_name().string() : current.root_directory().string();
    Handle root = 0;
    ASSERT_EQ(engine.Connect26(drive, ADS_LOCAL_SERVER, root), AE_SUCCESS);
    ASSERT_EQ(engine.FindConnection25(drive, found), AE_SUCCESS) << drive;
    EXPECT_EQ(found, root);
}

TEST_F(EngineRecords, DisconnectDropsTheTablesAndOrdersOfItsConnectionOnly) {
    Create("kept", "CODE,C,4,0");
    Create("dropped", "CODE,C,4,0");
    Handle other = 0;
    ASSERT_EQ(engine.Connect26(dir.path().string(), ADS_LOCAL_SERVER, other), AE_SUCCESS);
    const Handle kept = Open("kept");
    Handle dropped = 0;
    ASSERT_EQ(engine.OpenTable(other, "dropped", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                               ADS_IGNORERIGHTS, ADS_SHARED, dropped),
              AE_SUCCESS);
    Handle keptOrder = 0;
    ASSERT_EQ(engine.CreateIndex(kept, "", "CODE", "CODE", "", "", ADS_COMPOUND, keptOrder),
              AE_SUCCESS);
    // Used last before the disconnect: a handle remembered from its last use must go with it.
    const Handle droppedOrder = UsedCodeIndex(dropped);
    ASSERT_FALSE(HasFailure());

    bool eof = false;
    ASSERT_EQ(engine.Disconnect(other), AE_SUCCESS);
    EXPECT_NE(engine.Skip(droppedOrder, 1), AE_SUCCESS);
    EXPECT_EQ(engine.AtEOF(dropped, eof), AE_INVALID_TABLE_HANDLE);
    std::string name;
    EXPECT_NE(engine.GetIndexName(droppedOrder, name), AE_SUCCESS);
    EXPECT_NE(engine.GetTableAlias(dropped, name), AE_SUCCESS);
    ASSERT_EQ(engine.GetIndexName(keptOrder, name), AE_SUCCESS);
    EXPECT_EQ(name, "CODE");
    EXPECT_EQ(engine.GotoTop(keptOrder), AE_SUCCESS);
    // The engine ends with the kept table still open: nothing of the dropped one may be touched.
}

TEST_F(EngineRecords, HandlesClosedRightAfterUseAreRefused) {
    const Handle table = StockWith(3);
    const Handle index = UsedCodeIndex(table);
    ASSERT_FALSE(HasFailure());
    bool eof = false;
    ASSERT_EQ(engine.CloseIndex(index), AE_SUCCESS);
    EXPECT_EQ(engine.Skip(index, 1), AE_INVALID_TABLE_HANDLE);
    EXPECT_EQ(engine.AtEOF(index, eof), AE_INVALID_TABLE_HANDLE);
    ASSERT_EQ(engine.Skip(table, 1), AE_SUCCESS);
    EXPECT_EQ(Recno(table), 2u);

    ASSERT_EQ(engine.AtEOF(table, eof), AE_SUCCESS);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    EXPECT_EQ(engine.AtEOF(table, eof), AE_INVALID_TABLE_HANDLE);
    EXPECT_EQ(engine.Skip(table, 1), AE_INVALID_TABLE_HANDLE);
    // A table opened after it gets a handle of its own, found at once.
    const Handle reopened = Open("stock");
    EXPECT_NE(reopened, table);
    ASSERT_EQ(engine.GotoTop(reopened), AE_SUCCESS);
    EXPECT_EQ(Recno(reopened), 1u);
}

}  // namespace
}  // namespace fnrk::engine

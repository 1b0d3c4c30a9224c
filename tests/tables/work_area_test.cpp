// The work-area routines on real tables of a dossier kept as files and one kept in SQL.

#include "tables/work_area.hpp"

#include <gtest/gtest.h>

#include "engine/expr/dates.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::tables {
namespace {

using namespace engine;  // option and status numbers
using ads_testing::AdsTest;

constexpr const char* kCustomerFields = "NAME,C,20,0;AMOUNT,N,12,2;PAID,L;DUE,D;NOTE,M;COUNT,N,5,0";

class WorkAreaTest : public AdsTest {
  protected:
    void SetUp() override {
        AdsTest::SetUp();
        // A SQL-kept dossier is reached through its connection only.
        areas.SetConnection(ads.DossierConnection());
        ASSERT_NE(areas.Connection(), 0);
    }
    std::string PathOf(const std::string& file) const { return (dossier / file).string(); }
    // Creates a table of the dossier by path and leaves it open; its handle.
    Handle Create(const std::string& file, const std::string& fields) {
        Handle table = 0;
        EXPECT_EQ(db.CreateTable(areas.Connection(), PathOf(file), "", ADS_CDX, ADS_ANSI,
                                 ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, fields, table),
                  AE_SUCCESS)
            << ads.GetAdsLastError();
        return table;
    }
    // A customers table with the given names and amounts, closed again.
    void MakeCustomers(const std::string& file,
                       std::initializer_list<std::pair<const char*, double>> rows) {
        const Handle table = Create(file, kCustomerFields);
        for (const auto& [name, amount] : rows) {
            ASSERT_EQ(db.AppendRecord(table), AE_SUCCESS);
            ASSERT_EQ(db.SetString(table, "NAME", name), AE_SUCCESS);
            ASSERT_EQ(db.SetDouble(table, "AMOUNT", amount), AE_SUCCESS);
        }
        ASSERT_EQ(db.CloseTable(table), AE_SUCCESS);
    }
    // The NAME of every record of the current work area in its order, joined with ",".
    std::string Names() {
        std::string names;
        EXPECT_EQ(areas.sx_GoTop(), AE_SUCCESS);
        while (!areas.sx_Eof()) {
            names += (names.empty() ? "" : ",") + areas.sx_GetString("NAME");
            EXPECT_EQ(areas.sx_Skip(), AE_SUCCESS);
        }
        return names;
    }

    // Both tables have `count` fields, with the same names, types, lengths and decimals in the
    // same order.
    void ExpectSameFields(Handle copy, Handle original, std::uint16_t count) {
        std::uint16_t fieldCount = 0;
        ASSERT_EQ(db.GetNumFields(copy, fieldCount), AE_SUCCESS);
        ASSERT_EQ(fieldCount, count);
        for (std::uint16_t number = 1; number <= fieldCount; ++number) {
            std::string copied, expected;
            ASSERT_EQ(db.GetFieldName(copy, number, copied), AE_SUCCESS);
            ASSERT_EQ(db.GetFieldName(original, number, expected), AE_SUCCESS);
            EXPECT_EQ(copied, expected);
            std::uint16_t copiedType = 0, expectedType = 0;
            std::uint32_t copiedLength = 0, expectedLength = 0;
            std::uint16_t copiedDecimals = 0, expectedDecimals = 0;
            ASSERT_EQ(db.GetFieldType(copy, copied, copiedType), AE_SUCCESS);
            ASSERT_EQ(db.GetFieldType(original, expected, expectedType), AE_SUCCESS);
            ASSERT_EQ(db.GetFieldLength(copy, copied, copiedLength), AE_SUCCESS);
            ASSERT_EQ(db.GetFieldLength(original, expected, expectedLength), AE_SUCCESS);
            ASSERT_EQ(db.GetFieldDecimals(copy, copied, copiedDecimals), AE_SUCCESS);
            ASSERT_EQ(db.GetFieldDecimals(original, expected, expectedDecimals), AE_SUCCESS);
            EXPECT_EQ(copiedType, expectedType) << copied;
            EXPECT_EQ(copiedLength, expectedLength) << copied;
            EXPECT_EQ(copiedDecimals, expectedDecimals) << copied;
        }
    }

    WorkAreas areas{db};
};

TEST_P(WorkAreaTest, OpensSelectsAndReachesFieldsThroughAliases) {
    MakeCustomers("cust.dbf", {{"Dupont", 10}});
    MakeCustomers("supp.dbf", {{"Acme", 20}});
    ASSERT_EQ(areas.sx_use(PathOf("cust.dbf"), "CUST"), AE_SUCCESS);
    const Handle customers = areas.Current();
    ASSERT_EQ(areas.sx_use(PathOf("supp.dbf"), "SUPP", "readonly"), AE_SUCCESS);
    EXPECT_NE(areas.Current(), customers);

    // Bare names work on the current area, "ALIAS->FIELD" on the named one.
    EXPECT_EQ(areas.sx_GetString("NAME"), "Acme");
    EXPECT_EQ(areas.sx_GetString("CUST->NAME"), "Dupont");
    EXPECT_EQ(areas.sx_GetString("cust -> name"), "Dupont");
    EXPECT_EQ(areas.sx_PutDouble("CUST->AMOUNT", 12.5), AE_SUCCESS);
    EXPECT_EQ(areas.sx_PutString("CUST->NAME", "Durand"), AE_SUCCESS);
    EXPECT_EQ(areas.sx_PutLogical("CUST->PAID", true), AE_SUCCESS);
    EXPECT_EQ(areas.sx_PutDate("CUST->DUE", "05/03/2024"), AE_SUCCESS);
    EXPECT_EQ(areas.sx_PutMemo("CUST->NOTE", "first line\r\nsecond line"), AE_SUCCESS);

    ASSERT_TRUE(areas.sx_select("cust"));
    EXPECT_EQ(areas.Current(), customers);
    EXPECT_EQ(areas.sx_GetString("NAME"), "Durand");
    EXPECT_DOUBLE_EQ(areas.sx_GetDouble("AMOUNT"), 12.5);
    EXPECT_TRUE(areas.sx_GetLogical("PAID"));
    EXPECT_EQ(areas.sx_GetDate("DUE"), "05/03/2024");
    EXPECT_EQ(areas.sx_GetMemo("NOTE"), "first line\r\nsecond line");

    // The empty date reads as blanks and separators, and is written back the same way.
    EXPECT_EQ(areas.sx_PutDate("DUE", ""), AE_SUCCESS);
    EXPECT_EQ(areas.sx_GetDate("DUE"), "  /  /    ");
    EXPECT_EQ(areas.sx_PutDate("DUE", "01/02/2023"), AE_SUCCESS);
    EXPECT_EQ(areas.sx_PutDate("DUE", "  /  /    "), AE_SUCCESS);
    EXPECT_EQ(areas.sx_GetDate("DUE"), "  /  /    ");
    EXPECT_TRUE(messages.shown().empty()) << Shown();

    // A handle given as a number selects its table.
    ASSERT_TRUE(areas.sx_select("SUPP"));
    ASSERT_TRUE(areas.sx_select(std::to_string(customers)));
    EXPECT_EQ(areas.Current(), customers);
}

TEST_P(WorkAreaTest, UnknownAliasesAndFailedOpensAreReportedAndChangeNothing) {
    MakeCustomers("cust.dbf", {{"Dupont", 10}});
    ASSERT_EQ(areas.sx_use(PathOf("cust.dbf"), "CUST"), AE_SUCCESS);
    const Handle customers = areas.Current();

    EXPECT_NE(areas.sx_PutString("NOPE->NAME", "Changed"), AE_SUCCESS);
    EXPECT_EQ(areas.sx_GetString("NOPE->NAME"), "");
    EXPECT_EQ(areas.sx_GetDate("NOPE->DUE"), "  /  /    ");
    EXPECT_EQ(areas.sx_GetString("NAME"), "Dupont");
    ASSERT_EQ(messages.shown().size(), 3u);
    for (const auto& shown : messages.shown()) {
        EXPECT_EQ(shown.text, "Bad alias name");
        EXPECT_EQ(shown.title, "Fennrick error");
        EXPECT_EQ(shown.style, platform::message_style::kCritical);
    }

    EXPECT_FALSE(areas.sx_select("GHOST"));
    EXPECT_FALSE(areas.sx_select("987654"));
    EXPECT_NE(areas.sx_use(PathOf("missing.dbf"), "MISSING"), AE_SUCCESS);
    EXPECT_NE(areas.sx_use(PathOf("cust.dbf"), "OTHER", "SOMETIMES"), AE_SUCCESS);
    EXPECT_EQ(Shown(),
              "Bad alias name | Bad alias name | Bad alias name | WorkArea GHOST not found "
              "(sx_select) | WorkArea 987654 not found (sx_select) | Error in sx_use | Error in "
              "sx_use");
    EXPECT_EQ(areas.Current(), customers);
}

TEST_P(WorkAreaTest, NavigatesInTheOrderAndRefusesDescendingIndexes) {
    MakeCustomers("cust.dbf", {{"Martin", 1}, {"Dupont", 2}, {"Lambert", 3}});
    ASSERT_EQ(areas.sx_use(PathOf("cust.dbf"), "CUST", "EXCLUSIVE"), AE_SUCCESS);
    EXPECT_EQ(areas.sx_RecCount(), 3u);
    EXPECT_EQ(Names(), "Martin,Dupont,Lambert");

    ASSERT_EQ(areas.sx_IndexTag("", "BYNAME", "UPPER(NAME)"), AE_SUCCESS);
    EXPECT_EQ(areas.sx_OrderName(), "BYNAME");
    EXPECT_EQ(Names(), "Dupont,Lambert,Martin");
    ASSERT_EQ(areas.sx_GoBottom(), AE_SUCCESS);
    EXPECT_EQ(areas.sx_RecNo(), 1u);
    ASSERT_EQ(areas.sx_Skip(-1), AE_SUCCESS);
    EXPECT_EQ(areas.sx_GetString("NAME"), "Lambert");
    EXPECT_TRUE(areas.sx_Seek("MART"));
    EXPECT_EQ(areas.sx_RecNo(), 1u);
    EXPECT_FALSE(areas.sx_Seek("ZORRO"));
    ASSERT_EQ(areas.sx_GoTop(), AE_SUCCESS);
    ASSERT_EQ(areas.sx_Skip(-1), AE_SUCCESS);
    EXPECT_TRUE(areas.sx_Bof());

    // Tags are found by the start of their name; an unknown one gives "tag_err".
    EXPECT_EQ(areas.sx_TagName("byn"), "BYNAME");
    EXPECT_EQ(areas.sx_TagName("NOTAG"), "tag_err");
    EXPECT_FALSE(areas.sx_SetOrder("NOTAG"));
    EXPECT_EQ(areas.sx_OrderName(), "BYNAME");

    // A descending order is refused whether it is created here or found.
    EXPECT_NE(areas.sx_IndexTag("", "DOWN", "NAME", "", ADS_COMPOUND | ADS_DESCENDING), AE_SUCCESS);
    EXPECT_EQ(areas.sx_TagName("DOWN"), "tag_err");
    Handle down = 0;
    ASSERT_EQ(db.CreateIndex(areas.Current(), "", "DOWN", "NAME", "", "",
                             ADS_COMPOUND | ADS_DESCENDING, down),
              AE_SUCCESS);
    EXPECT_FALSE(areas.sx_SetOrder("DOWN"));
    EXPECT_EQ(areas.sx_OrderName(), "BYNAME");
    EXPECT_EQ(Shown(),
              "Descending index not currently supported in this function | Descending index "
              "not currently supported in this function");

    // Back to the natural order, and straight to a record.
    ASSERT_TRUE(areas.sx_SetOrder(""));
    EXPECT_EQ(areas.sx_OrderName(), "");
    EXPECT_EQ(Names(), "Martin,Dupont,Lambert");
    ASSERT_EQ(areas.sx_Go(3), AE_SUCCESS);
    EXPECT_EQ(areas.sx_GetString("NAME"), "Lambert");
}

TEST_P(WorkAreaTest, OpeningWithAnIndexFileTakesItsFirstTagAsTheOrder) {
    MakeCustomers("cust.dbf", {{"Martin", 1}, {"Dupont", 2}});
    ASSERT_EQ(areas.sx_use(PathOf("cust.dbf"), "CUST", "EXCLUSIVE"), AE_SUCCESS);
    ASSERT_EQ(areas.sx_IndexTag("", "BYNAME", "NAME"), AE_SUCCESS);
    ASSERT_EQ(areas.sx_close(), AE_SUCCESS);
    EXPECT_EQ(areas.Current(), 0);

    ASSERT_EQ(areas.sx_use(PathOf("cust.dbf"), "CUST", "SHARED", PathOf("cust.cdx")), AE_SUCCESS);
    EXPECT_EQ(areas.sx_OrderName(), "BYNAME");
    EXPECT_EQ(Names(), "Dupont,Martin");
    ASSERT_EQ(areas.sx_close(), AE_SUCCESS);
    ASSERT_EQ(areas.sx_use(PathOf("cust.dbf"), "CUST"), AE_SUCCESS);
    EXPECT_EQ(areas.sx_OrderName(), "");
    EXPECT_EQ(Names(), "Martin,Dupont");
}

TEST_P(WorkAreaTest, StructureBuilderCopyAndCreateGiveTheSameFields) {
    areas.sx_CreateNew(" " + PathOf("built.dbf") + " ", "BUILT");
    EXPECT_TRUE(areas.sx_CreateField(" NAME ", " C ", 20, 0));
    EXPECT_TRUE(areas.sx_CreateField("AMOUNT", "N", 12, 2));
    EXPECT_TRUE(areas.sx_CreateField("BOOKED", "D", 8, 0));
    EXPECT_EQ(areas.StructureDefinition(), "NAME,C,20,0;AMOUNT,N,12,2;BOOKED,D,8,0");
    ASSERT_EQ(areas.sx_CreateExec(), AE_SUCCESS);
    ASSERT_EQ(areas.sx_use(PathOf("built.dbf"), "BUILT"), AE_SUCCESS);
    std::uint16_t fieldCount = 0;
    ASSERT_EQ(db.GetNumFields(areas.Current(), fieldCount), AE_SUCCESS);
    EXPECT_EQ(fieldCount, 3);
    ASSERT_EQ(areas.sx_close(), AE_SUCCESS);

    // The builder holds as many fields as a table may: 255.
    ASSERT_EQ(kMaxStructureFields, 255);
    areas.sx_CreateNew(PathOf("widest.dbf"), "WIDEST");
    for (int field = 1; field <= kMaxStructureFields; ++field)
        ASSERT_TRUE(areas.sx_CreateField("F" + std::to_string(field), "C", 1, 0));
    EXPECT_FALSE(areas.sx_CreateField("F256", "C", 1, 0));
    EXPECT_EQ(areas.sx_CreateExec(), AE_SUCCESS);

    // A structure copied and fed back gives the same fields in the same order.
    MakeCustomers("cust.dbf", {});
    ASSERT_EQ(areas.sx_use(PathOf("cust.dbf"), "CUST"), AE_SUCCESS);
    ASSERT_EQ(areas.SXCOPYSTRU(PathOf("stru.dbf")), AE_SUCCESS);
    ASSERT_EQ(areas.sx_use(PathOf("stru.dbf"), "STRU"), AE_SUCCESS);
    std::string rows;
    ASSERT_EQ(areas.sx_GoTop(), AE_SUCCESS);
    while (!areas.sx_Eof()) {
        rows += areas.sx_GetString("FIELD_NAME") + " " + areas.sx_GetString("FIELD_TYPE") + " " +
                std::to_string(static_cast<int>(areas.sx_GetDouble("FIELD_LEN"))) + " " +
                std::to_string(static_cast<int>(areas.sx_GetDouble("FIELD_DEC"))) + ";";
        ASSERT_EQ(areas.sx_Skip(), AE_SUCCESS);
    }
    EXPECT_EQ(rows, "NAME C 20 0;AMOUNT N 12 2;PAID L 1 0;DUE D 8 0;NOTE M 10 0;COUNT N 5 0;");
    ASSERT_EQ(areas.sx_close(), AE_SUCCESS);

    ASSERT_EQ(areas.SXCREATEFR(PathOf("copy.dbf"), PathOf("stru.dbf")), AE_SUCCESS);
    ASSERT_EQ(areas.sx_use(PathOf("copy.dbf"), "COPY"), AE_SUCCESS);
    const Handle original = Create("again.dbf", kCustomerFields);
    ExpectSameFields(areas.Current(), original, 6);
}

TEST_P(WorkAreaTest, StructureOfTwoHundredFieldsRoundTrips) {
    std::string fields;
    const char* const types[] = {"C,12,0", "N,10,2", "D,8,0", "L,1,0"};
    for (int field = 1; field <= 200; ++field) {
        fields +=
            (fields.empty() ? "" : ";") + ("F" + std::to_string(field) + ",") + types[field % 4];
    }
    ASSERT_EQ(db.CloseTable(Create("wide.dbf", fields)), AE_SUCCESS);
    ASSERT_EQ(areas.sx_use(PathOf("wide.dbf"), "WIDEAREA"), AE_SUCCESS);
    ASSERT_EQ(areas.SXCOPYSTRU(PathOf("widestru.dbf")), AE_SUCCESS);
    ASSERT_EQ(areas.SXCREATEFR(PathOf("widecopy.dbf"), PathOf("widestru.dbf")), AE_SUCCESS);
    ASSERT_EQ(areas.sx_use(PathOf("widecopy.dbf"), "WIDECOPY"), AE_SUCCESS);
    ExpectSameFields(areas.Current(), Create("wideagain.dbf", fields), 200);
}

TEST_P(WorkAreaTest, AppendsOnlyLiveRecordsThatMeetTheCondition) {
    MakeCustomers("source.dbf", {{"Alpha", 5}, {"Beta", 50}, {"Gamma", 500}, {"Delta", 5000}});
    MakeCustomers("gone.dbf", {{"Old", 1}, {"Older", 2}});
    {
        Handle source = 0;
        ASSERT_EQ(db.OpenTable(areas.Connection(), PathOf("source.dbf"), "", ADS_CDX, ADS_ANSI, 0,
                               0, ADS_SHARED, source),
                  AE_SUCCESS);
        ASSERT_EQ(db.GotoRecord(source, 2), AE_SUCCESS);
        ASSERT_EQ(db.DeleteRecord(source), AE_SUCCESS);
        ASSERT_EQ(db.CloseTable(source), AE_SUCCESS);
        Handle gone = 0;
        ASSERT_EQ(db.OpenTable(areas.Connection(), PathOf("gone.dbf"), "", ADS_CDX, ADS_ANSI, 0, 0,
                               ADS_SHARED, gone),
                  AE_SUCCESS);
        for (std::uint32_t record : {1u, 2u}) {
            ASSERT_EQ(db.GotoRecord(gone, record), AE_SUCCESS);
            ASSERT_EQ(db.DeleteRecord(gone), AE_SUCCESS);
        }
        ASSERT_EQ(db.CloseTable(gone), AE_SUCCESS);
    }
    MakeCustomers("target.dbf", {{"Kept", 0}});
    ASSERT_EQ(areas.sx_use(PathOf("target.dbf"), "TARGET"), AE_SUCCESS);

    // The deleted record never comes over, even with deleted records shown.
    ASSERT_EQ(db.ShowDeleted(true), AE_SUCCESS);
    ASSERT_EQ(areas.appendfrom(PathOf("source.dbf")), AE_SUCCESS);
    ASSERT_EQ(db.ShowDeleted(false), AE_SUCCESS);
    EXPECT_EQ(Names(), "Kept,Alpha,Gamma,Delta");
    ASSERT_EQ(areas.appendfrom(PathOf("source.dbf"), "AMOUNT > 100"), AE_SUCCESS);
    EXPECT_EQ(Names(), "Kept,Alpha,Gamma,Delta,Gamma,Delta");
    ASSERT_EQ(areas.appendfrom(PathOf("gone.dbf")), AE_SUCCESS);
    EXPECT_EQ(areas.sx_RecCount(), 6u);
    EXPECT_TRUE(messages.shown().empty()) << Shown();

    // A source that was open keeps its own filter and stays open.
    Handle open = 0;
    ASSERT_EQ(db.OpenTable(areas.Connection(), PathOf("source.dbf"), "SOURCE", ADS_CDX, ADS_ANSI, 0,
                           0, ADS_SHARED, open),
              AE_SUCCESS);
    ASSERT_EQ(db.SetAOF(open, "AMOUNT < 10", ADS_RESOLVE_DYNAMIC), AE_SUCCESS);
    ASSERT_EQ(areas.appendfrom(PathOf("source.dbf"), "AMOUNT > 1000"), AE_SUCCESS);
    EXPECT_EQ(Names(), "Kept,Alpha,Gamma,Delta,Gamma,Delta,Delta");
    std::string filter;
    ASSERT_EQ(db.GetAOF(open, filter), AE_SUCCESS);
    EXPECT_EQ(filter, "AMOUNT < 10");
    std::uint32_t visible = 0;
    ASSERT_EQ(db.GetRecordCount(open, ADS_RESPECTFILTERS, visible), AE_SUCCESS);
    EXPECT_EQ(visible, 1u);

    // A source that cannot be opened is reported and appends nothing.
    EXPECT_NE(areas.appendfrom(PathOf("nowhere.dbf")), AE_SUCCESS);
    EXPECT_EQ(Shown(), "appendfrom error opening " + PathOf("nowhere.dbf"));
    EXPECT_EQ(messages.shown().at(0).title, "Fennrick error");
    EXPECT_EQ(areas.sx_RecCount(), 7u);
    Handle temp = 0;
    EXPECT_NE(db.GetTableHandle(areas.Connection(), "TEMP", temp), AE_SUCCESS);
}

TEST_P(WorkAreaTest, AppendsFromATableKeptAsAFileOutsideTheDossier) {
    // A plain folder of table files beside the dossier, written by the engine itself.
    // Date-and-time, currency and general values too, exactly: more digits than a double holds.
    const std::string fields = std::string(kCustomerFields) + ";STAMP,T;PRICE,Y;PICTURE,G";
    constexpr std::int64_t kPrice = 123'456'789'012'345'678;
    const std::int32_t kDay = engine::expr::JulianFromCivil(2024, 4, 3);
    constexpr std::int32_t kTime = 45'296'789;  // 12:34:56.789
    const std::string kPicture("P\0\xff", 3);
    fnrk::testing::TempDir outside;
    {
        engine::Engine files;
        ASSERT_EQ(files.SetDateFormat("DD/MM/YYYY"), AE_SUCCESS);
        Handle connection = 0;
        ASSERT_EQ(files.Connect26(outside.path().string(), ADS_LOCAL_SERVER, connection),
                  AE_SUCCESS);
        Handle table = 0;
        ASSERT_EQ(files.CreateTable(connection, "outside.dbf", "", ADS_CDX, ADS_ANSI,
                                    ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, fields, table),
                  AE_SUCCESS);
        for (const auto& [name, amount] : {std::pair{"Ann", 12.5}, {"Bob", 700.0}, {"Cy", 3.0}}) {
            ASSERT_EQ(files.AppendRecord(table), AE_SUCCESS);
            ASSERT_EQ(files.SetString(table, "NAME", name), AE_SUCCESS);
            ASSERT_EQ(files.SetDouble(table, "AMOUNT", amount), AE_SUCCESS);
            ASSERT_EQ(files.SetDate(table, "DUE", "03/04/2024"), AE_SUCCESS);
            ASSERT_EQ(files.SetString(table, "NOTE", std::string("note of ") + name), AE_SUCCESS);
        }
        ASSERT_EQ(files.GotoRecord(table, 1), AE_SUCCESS);
        ASSERT_EQ(files.SetJulian(table, "STAMP", kDay), AE_SUCCESS);
        ASSERT_EQ(files.SetMilliseconds(table, "STAMP", kTime), AE_SUCCESS);
        ASSERT_EQ(files.SetMoney(table, "PRICE", kPrice), AE_SUCCESS);
        ASSERT_EQ(files.SetBinary(table, "PICTURE", ADS_IMAGE, 3, 0, kPicture), AE_SUCCESS);
        ASSERT_EQ(files.GotoRecord(table, 3), AE_SUCCESS);
        ASSERT_EQ(files.DeleteRecord(table), AE_SUCCESS);
        ASSERT_EQ(files.CloseTable(table), AE_SUCCESS);
    }
    const Handle target = Create("target.dbf", fields);
    ASSERT_EQ(db.CloseTable(target), AE_SUCCESS);
    ASSERT_EQ(areas.sx_use(PathOf("target.dbf"), "TARGET"), AE_SUCCESS);

    const std::string source = (outside.path() / "outside.dbf").string();
    ASSERT_EQ(areas.appendfrom(source, "AMOUNT > 10"), AE_SUCCESS) << Shown();
    EXPECT_EQ(Names(), "Ann,Bob");
    ASSERT_EQ(areas.sx_GoTop(), AE_SUCCESS);
    EXPECT_EQ(areas.sx_GetString("NOTE"), "note of Ann");
    EXPECT_EQ(areas.sx_GetDate("DUE"), "03/04/2024");
    EXPECT_DOUBLE_EQ(areas.sx_GetDouble("AMOUNT"), 12.5);
    std::int32_t day = 0, time = 0;
    std::int64_t price = 0;
    std::string picture;
    ASSERT_EQ(db.GetJulian(areas.Current(), "STAMP", day), AE_SUCCESS);
    ASSERT_EQ(db.GetMilliseconds(areas.Current(), "STAMP", time), AE_SUCCESS);
    ASSERT_EQ(db.GetMoney(areas.Current(), "PRICE", price), AE_SUCCESS);
    ASSERT_EQ(db.GetBinary(areas.Current(), "PICTURE", 0, 10, picture), AE_SUCCESS);
    EXPECT_EQ(day, kDay);
    EXPECT_EQ(time, kTime);
    EXPECT_EQ(price, kPrice);
    EXPECT_EQ(picture, kPicture);
    // Bob's were empty and stay so.
    ASSERT_EQ(areas.sx_Skip(), AE_SUCCESS);
    ASSERT_EQ(db.GetJulian(areas.Current(), "STAMP", day), AE_SUCCESS);
    ASSERT_EQ(db.GetMilliseconds(areas.Current(), "STAMP", time), AE_SUCCESS);
    ASSERT_EQ(db.GetMoney(areas.Current(), "PRICE", price), AE_SUCCESS);
    ASSERT_EQ(db.GetBinary(areas.Current(), "PICTURE", 0, 10, picture), AE_SUCCESS);
    EXPECT_EQ(day, 0);
    EXPECT_EQ(time, 0);
    EXPECT_EQ(price, 0);
    EXPECT_EQ(picture, "");
    EXPECT_TRUE(messages.shown().empty()) << Shown();
}

TEST_P(WorkAreaTest, EncryptedSourcesAreAppendedOnlyWithTheirPassword) {
    MakeCustomers("secret.dbf", {{"Hidden", 1}});
    MakeCustomers("target.dbf", {});
    ASSERT_EQ(areas.sx_use(PathOf("secret.dbf"), "SECRET", "EXCLUSIVE"), AE_SUCCESS);
    EXPECT_FALSE(areas.sx_IsEncrypted());
    ASSERT_EQ(areas.sx_Encrypt("s3cret"), AE_SUCCESS);
    EXPECT_TRUE(areas.sx_IsEncrypted());
    ASSERT_EQ(areas.sx_close(), AE_SUCCESS);

    ASSERT_EQ(areas.sx_use(PathOf("target.dbf"), "TARGET"), AE_SUCCESS);
    EXPECT_NE(areas.appendfrom(PathOf("secret.dbf")), AE_SUCCESS);
    EXPECT_EQ(Shown(), "appendfrom error encryption " + PathOf("secret.dbf"));
    EXPECT_EQ(areas.sx_RecCount(), 0u);
    areas.SetPassword("s3cret");
    ASSERT_EQ(areas.appendfrom(PathOf("secret.dbf")), AE_SUCCESS);
    EXPECT_EQ(Names(), "Hidden");

    ASSERT_EQ(areas.sx_use(PathOf("secret.dbf"), "SECRET", "EXCLUSIVE"), AE_SUCCESS);
    ASSERT_EQ(areas.sx_Decrypt("s3cret"), AE_SUCCESS);
    EXPECT_FALSE(areas.sx_IsEncrypted());
    EXPECT_EQ(areas.sx_GetString("NAME"), "Hidden");
}

INSTANTIATE_TEST_SUITE_P(Keepings, WorkAreaTest, ads_testing::AllKeepings(),
                         ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::tables

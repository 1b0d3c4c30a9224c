#include <gtest/gtest.h>

#include "conformance/implementations.hpp"
#include "engine/expr/dates.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers
using Records = std::vector<std::uint32_t>;

TEST_P(Conformance, FieldsOfEveryTypeKeepTheirValues) {
    Handle t = CreateItems();
    AddItem(t, "A1", "Émile", 12.5);
    ASSERT_EQ(ops->SetLong(t, "QTY", -7), AE_SUCCESS);
    ASSERT_EQ(ops->SetDouble(t, "RATE", 1.25), AE_SUCCESS);
    ASSERT_EQ(ops->SetDate(t, "DAY", "31/01/2024"), AE_SUCCESS);
    ASSERT_EQ(ops->SetLogical(t, "PAID", true), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "NOTE", "line one\r\nline two é"), AE_SUCCESS);
    AddItem(t, "B2", "Zoë", 0);
    ASSERT_EQ(ops->GotoTop(t), AE_SUCCESS);

    EXPECT_EQ(Text(t, "CODE"), "A1");
    EXPECT_EQ(Text(t, "NAME"), "Émile");
    std::string stored;
    ASSERT_EQ(ops->GetString(t, "AMOUNT", stored, ADS_NONE), AE_SUCCESS);
    EXPECT_EQ(stored, "     12.50");
    double amount = 0;
    ASSERT_EQ(ops->GetDouble(t, "AMOUNT", amount), AE_SUCCESS);
    EXPECT_EQ(amount, 12.5);
    std::int32_t quantity = 0;
    ASSERT_EQ(ops->GetLong(t, "QTY", quantity), AE_SUCCESS);
    EXPECT_EQ(quantity, -7);
    double rate = 0;
    ASSERT_EQ(ops->GetDouble(t, "RATE", rate), AE_SUCCESS);
    EXPECT_EQ(rate, 1.25);
    std::string day;
    ASSERT_EQ(ops->GetDate(t, "DAY", day), AE_SUCCESS);
    EXPECT_EQ(day, "31/01/2024");
    std::int32_t julian = 0;
    ASSERT_EQ(ops->GetJulian(t, "DAY", julian), AE_SUCCESS);
    EXPECT_EQ(julian, expr::JulianFromCivil(2024, 1, 31));
    bool paid = false;
    ASSERT_EQ(ops->GetLogical(t, "PAID", paid), AE_SUCCESS);
    EXPECT_TRUE(paid);
    EXPECT_EQ(Text(t, "NOTE"), "line one\r\nline two é");
    std::uint32_t length = 0;
    ASSERT_EQ(ops->GetMemoLength(t, "NOTE", length), AE_SUCCESS);
    EXPECT_EQ(length, 20u);  // stored bytes: "é" is one

    std::uint32_t recordLength = 0;
    ASSERT_EQ(ops->GetRecordLength(t, recordLength), AE_SUCCESS);
    EXPECT_EQ(recordLength, 1u + 6 + 20 + 10 + 4 + 8 + 8 + 1 + 10);
    std::uint16_t type = 0;
    ASSERT_EQ(ops->GetFieldType(t, "QTY", type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_INTEGER);
    ASSERT_EQ(ops->GetFieldType(t, "note", type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_MEMO);

    // Refusals change nothing.
    EXPECT_EQ(ops->SetDouble(t, "AMOUNT", 1e12), AE_VALUE_OVERFLOW);
    ASSERT_EQ(ops->GetDouble(t, "AMOUNT", amount), AE_SUCCESS);
    EXPECT_EQ(amount, 12.5);
    EXPECT_EQ(ops->SetDate(t, "DAY", "31/02/2024"), AE_INVALID_DATE);
    EXPECT_EQ(ops->SetString(t, "MISSING", "x"), AE_INVALID_FIELDNAME);
    EXPECT_EQ(ops->GetLogical(t, "CODE", paid), AE_INVALID_FIELD_TYPE);
    // Text longer than the field is cut to it.
    ASSERT_EQ(ops->SetString(t, "CODE", "TOOLONGCODE"), AE_SUCCESS);
    EXPECT_EQ(Text(t, "CODE"), "TOOLON");

    // The second record, read after moving, holds its own values and blank ones.
    ASSERT_EQ(ops->Skip(t, 1), AE_SUCCESS);
    EXPECT_EQ(Text(t, "NAME"), "Zoë");
    ASSERT_EQ(ops->GetDate(t, "DAY", day), AE_SUCCESS);
    EXPECT_EQ(day, "  /  /    ");
    ASSERT_EQ(ops->GetLogical(t, "PAID", paid), AE_SUCCESS);
    EXPECT_FALSE(paid);
    EXPECT_EQ(Text(t, "NOTE"), "");
    // And the first kept the cut code.
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    EXPECT_EQ(Text(t, "CODE"), "TOOLON");
}

TEST_P(Conformance, DeletedRecordsAndTheEdgesOfTheTable) {
    Handle t = CreateItems();
    for (const char* code : {"A", "B", "C", "D"}) AddItem(t, code, code, 10);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    ASSERT_EQ(ops->DeleteRecord(t), AE_SUCCESS);
    bool deleted = false;
    ASSERT_EQ(ops->IsRecordDeleted(t, deleted), AE_SUCCESS);
    EXPECT_TRUE(deleted);

    ASSERT_EQ(ops->ShowDeleted(true), AE_SUCCESS);
    EXPECT_EQ(Walk(t), (Records{1, 2, 3, 4}));
    ASSERT_EQ(ops->ShowDeleted(false), AE_SUCCESS);
    EXPECT_EQ(Walk(t), (Records{1, 3, 4}));
    std::uint32_t count = 0;
    ASSERT_EQ(ops->GetRecordCount(t, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 4u);
    ASSERT_EQ(ops->GetRecordCount(t, ADS_RESPECTFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 3u);

    bool atEof = false;
    bool atBof = false;
    ASSERT_EQ(ops->GotoBottom(t), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 4u);
    ASSERT_EQ(ops->Skip(t, 1), AE_SUCCESS);
    ASSERT_EQ(ops->AtEOF(t, atEof), AE_SUCCESS);
    EXPECT_TRUE(atEof);
    EXPECT_EQ(RecordNumber(t), 0u);
    EXPECT_EQ(Text(t, "CODE"), "");  // the blank record past the end
    EXPECT_EQ(ops->SetString(t, "CODE", "X"), AE_NO_CURRENT_RECORD);
    ASSERT_EQ(ops->Skip(t, 1), AE_SUCCESS);
    ASSERT_EQ(ops->Skip(t, -1), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 4u);
    ASSERT_EQ(ops->Skip(t, -2), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 1u);  // over the hidden record 2
    ASSERT_EQ(ops->Skip(t, -1), AE_SUCCESS);
    ASSERT_EQ(ops->AtBOF(t, atBof), AE_SUCCESS);
    EXPECT_TRUE(atBof);
    EXPECT_EQ(RecordNumber(t), 1u);

    ASSERT_EQ(ops->GotoRecord(t, 99), AE_SUCCESS);
    ASSERT_EQ(ops->AtEOF(t, atEof), AE_SUCCESS);
    EXPECT_TRUE(atEof);

    // A hidden record is still reached by number, and recalled it is walked again.
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 2u);
    ASSERT_EQ(ops->RecallRecord(t), AE_SUCCESS);
    EXPECT_EQ(Walk(t), (Records{1, 2, 3, 4}));
}

TEST_P(Conformance, FiltersAndLocate) {
    Handle t = CreateItems();
    AddItem(t, "A", "first", 5);
    AddItem(t, "B", "second", 15);
    AddItem(t, "C", "third", 25);
    AddItem(t, "D", "fourth", 35);

    ASSERT_EQ(ops->SetFilter(t, "AMOUNT > 10"), AE_SUCCESS);
    EXPECT_EQ(Walk(t), (Records{2, 3, 4}));
    std::uint32_t count = 0;
    ASSERT_EQ(ops->GetRecordCount(t, ADS_RESPECTFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 3u);
    std::string filter;
    ASSERT_EQ(ops->GetFilter(t, filter), AE_SUCCESS);
    EXPECT_EQ(filter, "AMOUNT > 10");
    // A faulty filter is refused and the one in force stays.
    EXPECT_EQ(ops->SetFilter(t, "AMOUNT >"), AE_INVALID_EXPRESSION);
    EXPECT_EQ(ops->SetFilter(t, "AMOUNT + 1"), AE_INVALID_EXPRESSION);
    EXPECT_EQ(Walk(t), (Records{2, 3, 4}));
    ASSERT_EQ(ops->SetFilter(t, "AMOUNT > 10 .AND. UPPER(NAME) = 'T'"), AE_SUCCESS);
    EXPECT_EQ(Walk(t), (Records{3}));
    ASSERT_EQ(ops->ClearFilter(t), AE_SUCCESS);
    EXPECT_EQ(Walk(t), (Records{1, 2, 3, 4}));

    bool found = false;
    ASSERT_EQ(ops->Locate(t, "CODE = 'C'", true, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    EXPECT_EQ(RecordNumber(t), 3u);
    ASSERT_EQ(ops->Continue(t, found), AE_SUCCESS);
    EXPECT_FALSE(found);
    bool atEof = false;
    ASSERT_EQ(ops->AtEOF(t, atEof), AE_SUCCESS);
    EXPECT_TRUE(atEof);
    ASSERT_EQ(ops->Locate(t, "AMOUNT < 30", false, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    EXPECT_EQ(RecordNumber(t), 3u);
    ASSERT_EQ(ops->Continue(t, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    EXPECT_EQ(RecordNumber(t), 2u);
    ASSERT_EQ(ops->Locate(t, "AMOUNT > 100", true, found), AE_SUCCESS);
    EXPECT_FALSE(found);
}

TEST_P(Conformance, CopyPackAndZap) {
    Handle t = CreateItems();
    for (const char* code : {"A", "B", "C", "D"}) AddItem(t, code, code, 1);
    ASSERT_EQ(ops->SetDate(t, "DAY", "01/02/2023"), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    ASSERT_EQ(ops->DeleteRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->ShowDeleted(false), AE_SUCCESS);

    Handle copy = 0;
    ASSERT_EQ(
        ops->CreateTable(connection, "copy.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                         ADS_IGNORERIGHTS, 0, "CODE,C,6,0;DAY,D;EXTRA,N,5,0", copy),
        AE_SUCCESS);
    ASSERT_EQ(ops->CopyTableContents(t, copy, ADS_RESPECTFILTERS), AE_SUCCESS);
    std::uint32_t count = 0;
    ASSERT_EQ(ops->GetRecordCount(copy, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 3u);
    ASSERT_EQ(ops->GotoBottom(copy), AE_SUCCESS);
    EXPECT_EQ(Text(copy, "CODE"), "D");
    std::string day;
    ASSERT_EQ(ops->GetDate(copy, "DAY", day), AE_SUCCESS);
    EXPECT_EQ(day, "01/02/2023");
    EXPECT_EQ(ops->CopyTableContents(t, copy, ADS_IGNOREFILTERS), AE_SUCCESS);
    ASSERT_EQ(ops->GetRecordCount(copy, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 7u);
    EXPECT_EQ(ops->CopyTableContents(t, t, ADS_IGNOREFILTERS), AE_INVALID_TABLE_HANDLE);

    ASSERT_EQ(ops->PackTable(t), AE_SUCCESS);
    ASSERT_EQ(ops->GetRecordCount(t, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 3u);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    EXPECT_EQ(Text(t, "CODE"), "C");
    ASSERT_EQ(ops->ShowDeleted(true), AE_SUCCESS);
    EXPECT_EQ(Walk(t), (Records{1, 2, 3}));

    ASSERT_EQ(ops->ZapTable(copy), AE_SUCCESS);
    ASSERT_EQ(ops->GetRecordCount(copy, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 0u);
    bool atEof = false;
    ASSERT_EQ(ops->GotoTop(copy), AE_SUCCESS);
    ASSERT_EQ(ops->AtEOF(copy, atEof), AE_SUCCESS);
    EXPECT_TRUE(atEof);
}

INSTANTIATE_TEST_SUITE_P(Implementations, Conformance, ::testing::ValuesIn(Implementations()),
                         [](const auto& info) { return info.param.name; });

// A search reads the whole record: fields after a binary one whose bytes hold zeros count too.
TEST_P(Conformance, LocateSeesFieldsAfterBinaryZeros) {
    Handle t = CreateItems();
    for (const char* code : {"A", "B", "C"}) AddItem(t, code, code, 1);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    ASSERT_EQ(ops->SetLong(t, "QTY", 0), AE_SUCCESS);
    ASSERT_EQ(ops->SetLogical(t, "PAID", true), AE_SUCCESS);
    ASSERT_EQ(ops->GotoTop(t), AE_SUCCESS);
    bool found = false;
    ASSERT_EQ(ops->Locate(t, "PAID", true, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    EXPECT_EQ(RecordNumber(t), 2u);
    ASSERT_EQ(ops->Locate(t, "QTY = 0 .AND. DAY = CTOD('  /  /    ')", true, found), AE_SUCCESS);
    EXPECT_TRUE(found);
}

}  // namespace
}  // namespace fnrk::conformance

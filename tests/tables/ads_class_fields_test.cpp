// AdsClass: typed field reads and writes on the current record, record buffers, structure facts
// and captions; the conversions behind the buffer writes.

#include <gtest/gtest.h>

#include "session/session_user.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::tables::ads_testing {
namespace {

using namespace engine;  // status and option numbers

using AdsFieldsTest = AdsTest;

TEST_P(AdsFieldsTest, EachLetterTypeIsWrittenAndReadInItsOwnWay) {
    OpenEntries();
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    EXPECT_EQ(ads.FieldType("dbkcode"), "C");
    EXPECT_EQ(ads.FieldType("AMOUNT"), "N");
    EXPECT_EQ(ads.FieldType("DOCDATE"), "D");
    EXPECT_EQ(ads.FieldType("ISTEMP"), "L");
    EXPECT_EQ(ads.FieldType("REMARK"), "M");
    EXPECT_EQ(ads.FieldType("NOPE"), "");

    ASSERT_TRUE(ads.PutFieldValue("AMOUNT", std::string(" 12.5 ")));
    ASSERT_TRUE(ads.PutFieldValue("DOCDATE", std::string("31/12/2024")));
    ASSERT_TRUE(ads.PutFieldValue("ISTEMP", true));
    ASSERT_TRUE(ads.PutFieldValue("REMARK", std::string("line one\r\nligne deux: é")));
    ASSERT_TRUE(ads.PutFieldValue("DOCNUMBER", 42.0));
    ASSERT_EQ(ads.FlushAndUnlock("ACT"), AE_SUCCESS);

    EXPECT_EQ(ads.GetDoubleValue("AMOUNT"), 12.5);
    EXPECT_EQ(ads.GetDateValue("DOCDATE"), "31/12/2024");
    EXPECT_TRUE(ads.GetLogicalValue("ISTEMP"));
    EXPECT_EQ(ads.GetBlobString("REMARK"), "line one\r\nligne deux: é");
    EXPECT_EQ(ads.GetStringValue("DOCNUMBER"), "42");
    EXPECT_EQ(ads.GetFieldValue("AMOUNT"), FieldValue(12.5));
    EXPECT_EQ(ads.GetFieldValue("DOCDATE"), FieldValue(std::string("31/12/2024")));
    EXPECT_EQ(ads.GetFieldValue("ISTEMP"), FieldValue(true));
    EXPECT_EQ(ads.GetFieldValue("ACCOUNTGL"), FieldValue(std::string("400000")));
    EXPECT_EQ(ads.GetFieldValue("NOPE"), FieldValue());

    // An empty date reads as the blank date text.
    ASSERT_EQ(ads.MoveBottom(), AE_SUCCESS);
    EXPECT_EQ(ads.GetDateValue("DOCDATE"), "  /  /    ");
    // A number field refuses a text that is no number.
    EXPECT_FALSE(ads.PutFieldValue("AMOUNT", std::string("12,5x")));
    EXPECT_EQ(ads.GetDoubleValue("AMOUNT"), 50);
}

TEST_P(AdsFieldsTest, BinaryFieldsKeepEveryByte) {
    CreateStandard("ACT", "DBKCODE,C,4,0;SCAN,BINARY,10,0");
    ASSERT_EQ(ads.FileOpen("ACT"), AE_SUCCESS);
    ASSERT_EQ(ads.RecordAdd(), AE_SUCCESS);
    EXPECT_EQ(ads.FieldType("SCAN"), "B");
    const std::string bytes("%PDF\0\x01\xff\r\n\x80" "end", 13);
    ASSERT_TRUE(ads.PutBlobValue(" scan ", bytes));
    ASSERT_EQ(ads.FlushAndUnlock("ACT"), AE_SUCCESS);
    // Read back as bytes, the engine being past version 7.00; the version reads as "M.mm".
    EXPECT_GE(ads.GetADSVersionNumber(), 7.0);
    EXPECT_EQ(ads.Version().size(), ads.Version().find('.') + 3) << ads.Version();
    EXPECT_EQ(std::stod(ads.Version()), ads.GetADSVersionNumber());
    EXPECT_EQ(ads.GetBlobString("SCAN"), bytes);
    EXPECT_EQ(ads.GetFieldValue("SCAN"), FieldValue(bytes));
    // A field that holds no blob is refused and left as it was.
    EXPECT_FALSE(ads.PutBlobValue("DBKCODE", "x"));
    EXPECT_NE(Shown().find("Field not found (DBKCODE)"), std::string::npos) << Shown();
    EXPECT_EQ(ads.GetStringValue("DBKCODE"), "");
}

TEST_P(AdsFieldsTest, TwoDigitYearsPivotAtEighty) {
    OpenEntries();
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    ASSERT_TRUE(ads.PutFieldValue("DOCDATE", std::string("01/02/80")));
    EXPECT_EQ(ads.GetDateValue("DOCDATE"), "01/02/2080");
    ASSERT_TRUE(ads.PutFieldValue("DOCDATE", std::string("01/02/81")));
    EXPECT_EQ(ads.GetDateValue("DOCDATE"), "01/02/1981");
    ASSERT_TRUE(ads.PutFieldValue("DOCDATE", std::string("15/06/2081")));
    EXPECT_EQ(ads.GetDateValue("DOCDATE"), "15/06/2081");
}

TEST_P(AdsFieldsTest, WritingAnUnknownFieldChangesNothing) {
    OpenEntries();
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    const std::string before = ads.GetRecordValue();
    EXPECT_FALSE(ads.PutFieldValue("NOPE", std::string("x")));
    EXPECT_FALSE(ads.FieldExist("NOPE"));
    EXPECT_TRUE(ads.FieldExist("accountgl"));
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_EQ(messages.shown()[0].text, "Field not found (NOPE)");
    EXPECT_EQ(messages.shown()[0].title, "Fennrick error");
    EXPECT_EQ(ads.GetRecordValue(), before);
}

TEST_P(AdsFieldsTest, RecordBuffersAreUpdatedFieldByFieldAndWrittenWhole) {
    OpenEntries();
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    EXPECT_EQ(ads.RecordSize(), 1u + 4 + 10 + 10 + 12 + 8 + 1 + 10);
    EXPECT_EQ(ads.FieldOffset("DBKCODE"), 1u);
    EXPECT_EQ(ads.FieldOffset("AMOUNT"), 25u);
    EXPECT_EQ(ads.FieldLength("AMOUNT"), 12u);
    EXPECT_EQ(ads.FieldDecimals("AMOUNT"), 2u);
    EXPECT_EQ(ads.GetFieldWidth("DOCDATE"), 10u);
    EXPECT_EQ(ads.GetFieldWidth("ACCOUNTGL"), 10u);

    std::string buffer = ads.GetRecordValue();
    ASSERT_TRUE(ads.UpdateBufferValue(buffer, "DBKCODE", std::string("CAIS")));
    ASSERT_TRUE(ads.UpdateBufferValue(buffer, "AMOUNT", -7.25));
    ASSERT_TRUE(ads.UpdateBufferValue(buffer, "DOCDATE", std::string("05/03/2025")));
    ASSERT_TRUE(ads.UpdateBufferValue(buffer, "ISTEMP", true));
    EXPECT_EQ(buffer.substr(25, 12), "       -7.25");
    EXPECT_EQ(buffer.substr(37, 8), "20250305");

    // The four refusals leave the buffer as it was.
    const std::string kept = buffer;
    EXPECT_FALSE(ads.UpdateBufferValue(buffer, "NOPE", std::string("1")));
    EXPECT_FALSE(ads.UpdateBufferValue(buffer, "REMARK", std::string("memo")));
    EXPECT_FALSE(ads.UpdateBufferValue(buffer, "AMOUNT", std::string("abc")));
    EXPECT_FALSE(ads.UpdateBufferValue(buffer, "DOCDATE", std::string("32/01/2025")));
    EXPECT_FALSE(ads.UpdateBufferValue(buffer, "DBKCODE", std::string("TOOLONG")));
    EXPECT_FALSE(ads.UpdateBufferValue(buffer, "AMOUNT", 1e15));
    EXPECT_EQ(buffer, kept);
    EXPECT_EQ(Shown(),
              "Field not found (NOPE) | Field type not supported by this function | "
              "Bad value for field (AMOUNT) | Bad value for field (DOCDATE) | "
              "Value is too long for field (DBKCODE) | Value is too long for field (AMOUNT)");

    EXPECT_FALSE(ads.PutRecValue(buffer.substr(1)));
    EXPECT_EQ(messages.shown().back().text,
              "The buffer length and the record length are different");
    ASSERT_TRUE(ads.PutRecValue(buffer));
    ASSERT_EQ(ads.FlushAndUnlock("ACT"), AE_SUCCESS);
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    EXPECT_EQ(ads.GetStringValue("DBKCODE"), "CAIS");
    EXPECT_EQ(ads.GetDoubleValue("AMOUNT"), -7.25);
    EXPECT_EQ(ads.GetDateValue("DOCDATE"), "05/03/2025");
    EXPECT_TRUE(ads.GetLogicalValue("ISTEMP"));
}

TEST_P(AdsFieldsTest, NavigationFollowsTheActiveOrder) {
    OpenEntries();
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    EXPECT_TRUE(!ads.SelectionBof());
    EXPECT_EQ(ads.recno(), 1u);
    ASSERT_EQ(ads.moveNext(), AE_SUCCESS);
    EXPECT_EQ(ads.recno(), 2u);
    ASSERT_EQ(ads.MoveRelative(2), AE_SUCCESS);
    EXPECT_EQ(ads.recno(), 4u);
    ASSERT_EQ(ads.moveNext(), AE_SUCCESS);
    EXPECT_TRUE(ads.SelectionEof());
    ASSERT_EQ(ads.MoveBottom(), AE_SUCCESS);
    ASSERT_EQ(ads.MovePrevious(), AE_SUCCESS);
    EXPECT_EQ(ads.recno(), 3u);
    EXPECT_EQ(ads.CurRecOrder(), 3u);
    EXPECT_EQ(ads.SelectionRecCount(), 4u);

    EXPECT_TRUE(ads.LocateInCurrentAlias("ACCOUNTGL = \"604\""));
    EXPECT_EQ(ads.recno(), 4u);
    EXPECT_FALSE(ads.LocateInCurrentAlias("ACCOUNTGL = \"999\""));
    // No active index: a seek finds nothing.
    EXPECT_FALSE(ads.seekKey("VEN"));

    ASSERT_EQ(ads.MoveAbsolute(2), AE_SUCCESS);
    ASSERT_EQ(ads.RecordDelete(), AE_SUCCESS);
    EXPECT_TRUE(ads.IsDeleted());
    ASSERT_EQ(ads.FlushAndUnlock("ACT"), AE_SUCCESS);
    // Deleted records are hidden everywhere.
    EXPECT_EQ(ads.SelectionRecCount(), 3u);
}

TEST(AdsFieldCaptions, CaptionsFollowTheMessageLanguage) {
    session::SetMessageLanguage("N");
    EXPECT_EQ(AdsClass::GetFieldDescription("name1"), "Naam");
    EXPECT_EQ(AdsClass::GetFieldDescription("BOOKYEAR"), "Boekjaar");
    session::SetMessageLanguage("E");
    EXPECT_EQ(AdsClass::GetFieldDescription("NAME1"), "Name");
    session::SetMessageLanguage("F");
    EXPECT_EQ(AdsClass::GetFieldDescription("BOOKYEAR"), "Exercice");
    EXPECT_EQ(AdsClass::GetFieldDescription(" xyz "), "XYZ");
}

TEST(FieldValueConversions, ValuesBecomeTheStoredTextOfTheirField) {
    std::string stored;
    EXPECT_EQ(StoredFieldText("C", 6, 0, std::string("é"), stored), StoredText::Ok);
    EXPECT_EQ(stored, "\xE9     ");  // Windows-1252 in the buffer
    EXPECT_EQ(StoredFieldText("C", 2, 0, std::string("abc"), stored), StoredText::TooLong);
    EXPECT_EQ(StoredFieldText("N", 6, 2, 3.14159, stored), StoredText::Ok);
    EXPECT_EQ(stored, "  3.14");
    EXPECT_EQ(StoredFieldText("N", 6, 0, std::string(" -12 "), stored), StoredText::Ok);
    EXPECT_EQ(stored, "   -12");
    EXPECT_EQ(StoredFieldText("N", 3, 0, 1234.0, stored), StoredText::TooLong);
    EXPECT_EQ(StoredFieldText("N", 5, 0, std::string(""), stored), StoredText::BadValue);
    EXPECT_EQ(StoredFieldText("L", 1, 0, std::string(".t."), stored), StoredText::Ok);
    EXPECT_EQ(stored, "T");
    EXPECT_EQ(StoredFieldText("L", 1, 0, 0.0, stored), StoredText::Ok);
    EXPECT_EQ(stored, "F");
    EXPECT_EQ(StoredFieldText("D", 8, 0, std::string("  /  /    "), stored), StoredText::Ok);
    EXPECT_EQ(stored, "        ");
    EXPECT_EQ(StoredFieldText("D", 8, 0, std::string("1/2/2024"), stored), StoredText::BadValue);
    EXPECT_EQ(StoredFieldText("D", 8, 0, std::string("01/13/2024"), stored), StoredText::BadValue);
    EXPECT_EQ(StoredFieldText("D", 8, 0, 20240101.0, stored), StoredText::BadValue);
    EXPECT_EQ(StoredFieldText("M", 10, 0, std::string("x"), stored), StoredText::UnsupportedType);
    EXPECT_EQ(StoredFieldText("I", 4, 0, 1.0, stored), StoredText::UnsupportedType);
    EXPECT_EQ(ValueAsText(2.5), "2.5");
    EXPECT_EQ(ValueAsText(false), "F");
}

INSTANTIATE_TEST_SUITE_P(Keepings, AdsFieldsTest, AllKeepings(), KeepingName);

}  // namespace
}  // namespace fnrk::tables::ads_testing

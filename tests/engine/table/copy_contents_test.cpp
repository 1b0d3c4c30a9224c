// CopyTableContents copies what the source shows: its filter, optimized filter, hidden deleted
// records and, through an index handle, the scope and order of that index; with filters ignored
// every record goes. Memos and values travel by field name, encrypted source included.

#include <algorithm>

#include "engine/sql/sql_fixture.hpp"
#include "platform/codepage.hpp"

namespace fnrk::engine {
namespace {

class CopyContentsTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        CopyFixture("people", "people");
        Handle target = 0;
        ASSERT_EQ(
            engine.CreateTable(connection, "copy", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                               ADS_IGNORERIGHTS, 0, "NAME,C,15;AMOUNT,N,12,2;NOTE,M", target),
            AE_SUCCESS);
        copy = target;
        source = Open("people");
    }

    std::vector<std::vector<std::string>> Copied() {
        return Rows(copy, {"NAME", "AMOUNT", "NOTE"});
    }
    // What navigation shows of `object` from its top, in the copy's fields.
    std::vector<std::vector<std::string>> Shown(Handle object) {
        return Rows(object, {"NAME", "AMOUNT", "NOTE"});
    }

    Handle source = 0;
    Handle copy = 0;
};

TEST_F(CopyContentsTest, CopiesWhatTheSourceShows) {
    ASSERT_EQ(engine.SetFilter(source, "AMOUNT > 0"), AE_SUCCESS);
    ASSERT_EQ(engine.SetAOF(source, "ACTIVE", ADS_RESOLVE_IMMEDIATE), AE_SUCCESS);
    const auto shown = Shown(source);
    ASSERT_GT(shown.size(), 3U);
    ASSERT_EQ(engine.GotoRecord(source, 5), AE_SUCCESS);
    ASSERT_EQ(engine.CopyTableContents(source, copy, ADS_RESPECTFILTERS), AE_SUCCESS);
    EXPECT_EQ(Copied(), shown);
    EXPECT_EQ(Recno(source), 5U) << "the source keeps its place";
}

TEST_F(CopyContentsTest, IndexHandleGivesItsScopeAndOrder) {
    Handle byName = 0;
    ASSERT_EQ(engine.GetIndexHandle(source, "NAME", byName), AE_SUCCESS);
    ASSERT_EQ(engine.SetScope(byName, ADS_TOP, "B", ADS_STRINGKEY), AE_SUCCESS);
    ASSERT_EQ(engine.SetScope(byName, ADS_BOTTOM, "D", ADS_STRINGKEY), AE_SUCCESS);
    const auto shown = Shown(byName);
    ASSERT_GT(shown.size(), 1U);
    ASSERT_FALSE(std::is_sorted(shown.begin(), shown.end(), [](const auto& a, const auto& b) {
        return a[1] < b[1];
    })) << "name order should differ from amount order here";
    ASSERT_EQ(engine.CopyTableContents(byName, copy, ADS_RESPECTSCOPES), AE_SUCCESS);
    EXPECT_EQ(Copied(), shown);
}

TEST_F(CopyContentsTest, IgnoringFiltersCopiesEveryRecord) {
    ASSERT_EQ(engine.SetFilter(source, "AMOUNT > 0"), AE_SUCCESS);
    ASSERT_EQ(engine.CopyTableContents(source, copy, ADS_IGNOREFILTERS), AE_SUCCESS);
    EXPECT_EQ(Count(copy, ADS_IGNOREFILTERS), Count(source, ADS_IGNOREFILTERS));
    EXPECT_EQ(engine.CopyTableContents(source, source, ADS_IGNOREFILTERS), AE_INVALID_TABLE_HANDLE);
    EXPECT_EQ(engine.CopyTableContents(source, copy, 9), AE_INVALID_FILTER_OPTION);
}

TEST_F(CopyContentsTest, EncryptedSourceFiltersAndCopiesInPlainText) {
    ASSERT_EQ(engine.CloseTable(source), AE_SUCCESS);
    source = Open("people", ADS_EXCLUSIVE);
    const char* const condition = "AMOUNT > 0 .AND. UPPER(NAME) > 'C'";
    ASSERT_EQ(engine.SetAOF(source, condition, ADS_RESOLVE_IMMEDIATE), AE_SUCCESS);
    const auto shown = Shown(source);
    ASSERT_EQ(engine.ClearAOF(source), AE_SUCCESS);
    ASSERT_EQ(engine.EnableEncryption(source, "k"), AE_SUCCESS);
    ASSERT_EQ(engine.EncryptTable(source), AE_SUCCESS);
    // The optimized filter reads the encrypted index and records alike.
    ASSERT_EQ(engine.SetAOF(source, condition, ADS_RESOLVE_IMMEDIATE), AE_SUCCESS);
    EXPECT_EQ(Shown(source), shown);
    ASSERT_EQ(engine.CopyTableContents(source, copy, ADS_RESPECTFILTERS), AE_SUCCESS);
    EXPECT_EQ(Copied(), shown);
    const auto memo = std::find_if(shown.begin(), shown.end(),
                                   [](const auto& row) { return row[2].size() > 100; });
    ASSERT_NE(memo, shown.end());
    const std::string stored = platform::Utf8ToCp1252((*memo)[2]).substr(0, 100);
    EXPECT_NE(testing::ReadFileBytes(dir / "copy.fpt").find(stored), std::string::npos);
}

}  // namespace
}  // namespace fnrk::engine

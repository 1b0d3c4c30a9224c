#include <gtest/gtest.h>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers
using Records = std::vector<std::uint32_t>;

// A unique tag holds each key once: the record that first had it, until a reindex or a pack.
class UniqueTagConformance : public Conformance {
  protected:
    // Codes B, A, B, C, A (records 1 to 5) under a unique tag on CODE.
    Handle ItemsWithUniqueTag(Handle& byCode) {
        Handle t = CreateItems();
        for (const char* code : {"B", "A", "B", "C", "A"}) AddItem(t, code, code, 1);
        EXPECT_EQ(ops->CreateIndex(t, "items.cdx", "CODE", "CODE", "", "",
                                   ADS_COMPOUND | ADS_UNIQUE, byCode),
                  AE_SUCCESS);
        return t;
    }
    // The record a hard seek lands on, 0 when the key is not in the tag.
    std::uint32_t SeekCode(Handle t, Handle index, const std::string& code) {
        bool found = false;
        EXPECT_EQ(ops->Seek(index, code, ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
        return found ? RecordNumber(t) : 0;
    }
    std::uint32_t KeyCount(Handle index) {
        std::uint32_t count = 0;
        EXPECT_EQ(ops->GetKeyCount(index, ADS_IGNOREFILTERS, count), AE_SUCCESS);
        return count;
    }
    void WriteCode(Handle t, std::uint32_t record, const std::string& code) {
        ASSERT_EQ(ops->GotoRecord(t, record), AE_SUCCESS);
        ASSERT_EQ(ops->SetString(t, "CODE", code), AE_SUCCESS);
    }
};

TEST_P(UniqueTagConformance, KeepsTheFirstRecordOfEachKeyWhenBuilt) {
    Handle byCode = 0;
    Handle t = ItemsWithUniqueTag(byCode);
    bool unique = false;
    ASSERT_EQ(ops->IsIndexUnique(byCode, unique), AE_SUCCESS);
    EXPECT_TRUE(unique);
    EXPECT_EQ(Walk(t, byCode), (Records{2, 1, 4}));
    EXPECT_EQ(KeyCount(byCode), 3u);
    EXPECT_EQ(SeekCode(t, byCode, "A"), 2u);
    EXPECT_EQ(SeekCode(t, byCode, "B"), 1u);
    ASSERT_EQ(ops->Skip(byCode, 1), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 4u);
    ASSERT_EQ(ops->Skip(byCode, -1), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 1u);
    double position = 0;
    ASSERT_EQ(ops->GetRelKeyPos(byCode, position), AE_SUCCESS);
    EXPECT_DOUBLE_EQ(position, 0.5);
    ASSERT_EQ(ops->GotoBottom(byCode), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 4u);
    // The natural order still has every record.
    EXPECT_EQ(Walk(t), (Records{1, 2, 3, 4, 5}));

    Handle descending = 0;
    ASSERT_EQ(ops->CreateIndex(t, "items.cdx", "DOWN", "CODE", "", "",
                               ADS_COMPOUND | ADS_UNIQUE | ADS_DESCENDING, descending),
              AE_SUCCESS);
    EXPECT_EQ(Walk(t, descending), (Records{4, 1, 2}));
}

TEST_P(UniqueTagConformance, WritesAddOnlyKeysTheTagLacks) {
    Handle byCode = 0;
    Handle t = ItemsWithUniqueTag(byCode);
    AddItem(t, "B", "again", 1);  // record 6: B is taken by record 1
    AddItem(t, "D", "new", 1);    // record 7
    EXPECT_EQ(Walk(t, byCode), (Records{2, 1, 4, 7}));
    EXPECT_EQ(KeyCount(byCode), 4u);
    EXPECT_EQ(SeekCode(t, byCode, "D"), 7u);

    // Record 1 leaves B; records 3 and 6 with B do not take its place.
    WriteCode(t, 1, "E");
    EXPECT_EQ(Walk(t, byCode), (Records{2, 4, 7, 1}));
    EXPECT_EQ(SeekCode(t, byCode, "B"), 0u);
    EXPECT_EQ(KeyCount(byCode), 4u);
    // A record outside the tag enters it with a key that is free.
    WriteCode(t, 3, "F");
    EXPECT_EQ(Walk(t, byCode), (Records{2, 4, 7, 1, 3}));
    // Refused a taken key, a record is not under it (record 1 keeps E), and enters with a free
    // one.
    WriteCode(t, 6, "E");
    EXPECT_EQ(SeekCode(t, byCode, "E"), 1u);
    WriteCode(t, 6, "G");
    EXPECT_EQ(Walk(t, byCode), (Records{2, 4, 7, 1, 3, 6}));
    // A record kept out whose key stays does not enter when another frees that key.
    WriteCode(t, 2, "H");
    ASSERT_EQ(ops->GotoRecord(t, 5), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "NAME", "renamed"), AE_SUCCESS);
    EXPECT_EQ(SeekCode(t, byCode, "A"), 0u);
    EXPECT_EQ(Walk(t, byCode), (Records{4, 7, 1, 3, 6, 2}));
    EXPECT_EQ(KeyCount(byCode), 6u);

    ASSERT_EQ(ops->Reindex(t), AE_SUCCESS);
    ASSERT_EQ(ops->GetIndexHandle(t, "CODE", byCode), AE_SUCCESS);
    EXPECT_EQ(Walk(t, byCode), (Records{5, 4, 7, 1, 3, 6, 2}));
}

TEST_P(UniqueTagConformance, PackingRebuildsTheTag) {
    Handle byCode = 0;
    Handle t = ItemsWithUniqueTag(byCode);
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    ASSERT_EQ(ops->DeleteRecord(t), AE_SUCCESS);
    // A deleted record keeps its key.
    ASSERT_EQ(ops->ShowDeleted(true), AE_SUCCESS);
    EXPECT_EQ(Walk(t, byCode), (Records{2, 1, 4}));
    ASSERT_EQ(ops->PackTable(t), AE_SUCCESS);
    ASSERT_EQ(ops->GetIndexHandle(t, "CODE", byCode), AE_SUCCESS);
    // A, B, C, A: the former record 3 now holds B.
    EXPECT_EQ(Walk(t, byCode), (Records{1, 2, 3}));
    EXPECT_EQ(SeekCode(t, byCode, "B"), 2u);
    EXPECT_EQ(KeyCount(byCode), 3u);
}

INSTANTIATE_TEST_SUITE_P(Implementations, UniqueTagConformance,
                         ::testing::ValuesIn(Implementations()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace fnrk::conformance

#include <gtest/gtest.h>

#include <cstring>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers
using Records = std::vector<std::uint32_t>;

std::string DoubleKey(double value) {
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

class IndexConformance : public Conformance {
  protected:
    // Items D, B, A, C (records 1 to 4) with amounts 40, 20, 10, 30, and a tag on each.
    void SetUp() override {
        Conformance::SetUp();
        t = CreateItems();
        AddItem(t, "D", "delta", 40);
        AddItem(t, "B", "bravo", 20);
        AddItem(t, "A", "alpha", 10);
        AddItem(t, "C", "charlie", 30);
        ASSERT_EQ(ops->CreateIndex(t, "items.cdx", "CODE", "CODE", "", "", ADS_COMPOUND, byCode),
                  AE_SUCCESS);
        ASSERT_EQ(
            ops->CreateIndex(t, "items.cdx", "AMOUNT", "AMOUNT", "", "", ADS_COMPOUND, byAmount),
            AE_SUCCESS);
    }
    void ScopeStrings(Handle index, const std::string& top, const std::string& bottom) {
        ASSERT_EQ(ops->SetScope(index, ADS_TOP, top, ADS_STRINGKEY), AE_SUCCESS);
        ASSERT_EQ(ops->SetScope(index, ADS_BOTTOM, bottom, ADS_STRINGKEY), AE_SUCCESS);
    }
    bool Seek(Handle index, const std::string& key, std::uint16_t dataType,
              std::uint16_t seekType) {
        bool found = false;
        EXPECT_EQ(ops->Seek(index, key, dataType, seekType, found), AE_SUCCESS) << key;
        return found;
    }

    Handle t = 0;
    Handle byCode = 0;
    Handle byAmount = 0;
};

TEST_P(IndexConformance, SeeksAndSkipsInTagOrder) {
    EXPECT_EQ(Walk(t, byCode), (Records{3, 2, 4, 1}));
    EXPECT_EQ(Walk(t, byAmount), (Records{3, 2, 4, 1}));
    EXPECT_EQ(Walk(t), (Records{1, 2, 3, 4}));

    EXPECT_TRUE(Seek(byCode, "B", ADS_STRINGKEY, ADS_HARDSEEK));
    EXPECT_EQ(RecordNumber(t), 2u);
    ASSERT_EQ(ops->Skip(byCode, 1), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 4u);
    ASSERT_EQ(ops->Skip(byCode, -2), AE_SUCCESS);
    EXPECT_EQ(RecordNumber(t), 3u);

    EXPECT_FALSE(Seek(byCode, "BB", ADS_STRINGKEY, ADS_HARDSEEK));
    bool atEof = false;
    ASSERT_EQ(ops->AtEOF(t, atEof), AE_SUCCESS);
    EXPECT_TRUE(atEof);
    EXPECT_FALSE(Seek(byCode, "BB", ADS_STRINGKEY, ADS_SOFTSEEK));
    EXPECT_EQ(RecordNumber(t), 4u);  // the next key, C
    EXPECT_TRUE(Seek(byAmount, DoubleKey(30), ADS_DOUBLEKEY, ADS_HARDSEEK));
    EXPECT_EQ(RecordNumber(t), 4u);
    EXPECT_FALSE(Seek(byAmount, DoubleKey(25), ADS_DOUBLEKEY, ADS_HARDSEEK));

    // Keys follow the writes: A renamed E moves to the end of the code order.
    ASSERT_EQ(ops->GotoRecord(t, 3), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "CODE", "E"), AE_SUCCESS);
    EXPECT_EQ(Walk(t, byCode), (Records{2, 4, 1, 3}));
    EXPECT_FALSE(Seek(byCode, "A", ADS_STRINGKEY, ADS_HARDSEEK));

    std::string expression;
    ASSERT_EQ(ops->GetIndexExpr(byAmount, expression), AE_SUCCESS);
    EXPECT_EQ(expression, "AMOUNT");
    std::uint16_t keyLength = 0;
    ASSERT_EQ(ops->GetKeyLength(byCode, keyLength), AE_SUCCESS);
    EXPECT_EQ(keyLength, 6);
    Handle again = 0;
    ASSERT_EQ(ops->GetIndexHandle(t, "amount", again), AE_SUCCESS);
    EXPECT_EQ(Walk(t, again), (Records{3, 2, 4, 1}));
}

TEST_P(IndexConformance, ScopesConditionsAndDescendingTags) {
    ScopeStrings(byCode, "B", "C");
    EXPECT_EQ(Walk(t, byCode), (Records{2, 4}));
    std::uint32_t count = 0;
    ASSERT_EQ(ops->GetRecordCount(byCode, ADS_RESPECTSCOPES, count), AE_SUCCESS);
    EXPECT_EQ(count, 2u);
    EXPECT_FALSE(Seek(byCode, "A", ADS_STRINGKEY, ADS_HARDSEEK));
    ASSERT_EQ(ops->ClearScope(byCode, ADS_TOP), AE_SUCCESS);
    EXPECT_EQ(Walk(t, byCode), (Records{3, 2, 4}));
    ASSERT_EQ(ops->ClearScope(byCode, ADS_BOTTOM), AE_SUCCESS);

    // A filter applies to the tag order as to the natural one.
    ASSERT_EQ(ops->SetFilter(t, "AMOUNT >= 20"), AE_SUCCESS);
    EXPECT_EQ(Walk(t, byCode), (Records{2, 4, 1}));
    ASSERT_EQ(ops->ClearFilter(t), AE_SUCCESS);

    Handle big = 0;
    ASSERT_EQ(ops->CreateIndex(t, "items.cdx", "BIG", "CODE", "AMOUNT > 15", "",
                               ADS_COMPOUND | ADS_DESCENDING, big),
              AE_SUCCESS);
    EXPECT_EQ(Walk(t, big), (Records{1, 4, 2}));
    bool descending = false;
    ASSERT_EQ(ops->IsIndexDescending(big, descending), AE_SUCCESS);
    EXPECT_TRUE(descending);
    std::string condition;
    ASSERT_EQ(ops->GetIndexCondition(big, condition), AE_SUCCESS);
    EXPECT_EQ(condition, "AMOUNT > 15");
    // A record leaving the condition leaves the tag.
    ASSERT_EQ(ops->GotoRecord(t, 4), AE_SUCCESS);
    ASSERT_EQ(ops->SetDouble(t, "AMOUNT", 1), AE_SUCCESS);
    EXPECT_EQ(Walk(t, big), (Records{1, 2}));

    // Packing renumbers, and the tags follow.
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    ASSERT_EQ(ops->DeleteRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->PackTable(t), AE_SUCCESS);
    ASSERT_EQ(ops->GetIndexHandle(t, "CODE", byCode), AE_SUCCESS);
    EXPECT_EQ(Walk(t, byCode), (Records{2, 1, 3}));
}

// Key counts: every key, the keys within the scopes, or the records the scopes, the filter and
// the hidden deleted records let through.
TEST_P(IndexConformance, KeyCountsRespectWhatTheyAreAskedTo) {
    ScopeStrings(byCode, "B", "D");
    ASSERT_EQ(ops->GotoRecord(t, 4), AE_SUCCESS);  // C
    ASSERT_EQ(ops->DeleteRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->ShowDeleted(false), AE_SUCCESS);
    ASSERT_EQ(ops->SetFilter(t, "AMOUNT > 25"), AE_SUCCESS);
    const auto keys = [&](std::uint16_t option) {
        std::uint32_t count = 0;
        EXPECT_EQ(ops->GetKeyCount(byCode, option, count), AE_SUCCESS);
        return count;
    };
    EXPECT_EQ(keys(ADS_IGNOREFILTERS), 4u);
    EXPECT_EQ(keys(ADS_RESPECTSCOPES), 3u);   // B, C and D, the deleted C too
    EXPECT_EQ(keys(ADS_RESPECTFILTERS), 1u);  // D
    ASSERT_EQ(ops->ShowDeleted(true), AE_SUCCESS);
}

INSTANTIATE_TEST_SUITE_P(Implementations, IndexConformance, ::testing::ValuesIn(Implementations()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace fnrk::conformance

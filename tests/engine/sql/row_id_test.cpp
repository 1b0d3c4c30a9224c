#include "engine/sql/row_id.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace fnrk::engine::sql {
namespace {

constexpr std::uint64_t kLast = UINT32_MAX;

void ExpectRoundTrip(const std::string& table, std::uint64_t record) {
    const std::string rowId = MakeRowId(table, static_cast<std::uint32_t>(record));
    ASSERT_EQ(rowId.size(), kRowIdLength);
    ASSERT_EQ(RowIdRecord(rowId), std::optional<std::uint32_t>(record)) << rowId;
}

TEST(RowIdTest, EveryRecordNumberComesBack) {
    const std::string table = RowIdTablePart("SOC1_ACT.dbf");
    for (std::uint64_t record = 0; record <= 200'000; ++record) ExpectRoundTrip(table, record);
    for (std::uint64_t record = kLast - 200'000; record <= kLast; ++record)
        ExpectRoundTrip(table, record);
    // Around every change of digit count.
    for (std::uint64_t power = 64; power <= kLast; power *= 64) {
        for (std::uint64_t record = power - 1000; record <= power + 1000; ++record)
            ExpectRoundTrip(table, record);
    }
    // A sweep over the whole range with a prime step, so that every digit takes many values.
    for (std::uint64_t record = 7; record <= kLast; record += 999'983)
        ExpectRoundTrip(table, record);
}

TEST(RowIdTest, DigitsAreMostSignificantFirstOverTheAlphabet) {
    const std::string table(kRowIdTableLength, 'T');
    EXPECT_EQ(MakeRowId(table, 1).substr(kRowIdTableLength), "AAAAAB");
    EXPECT_EQ(MakeRowId(table, 4096).substr(kRowIdTableLength), "AAABAA");
    EXPECT_EQ(MakeRowId(table, 26).substr(kRowIdTableLength), "AAAAAa");
    EXPECT_EQ(MakeRowId(table, 63).substr(kRowIdTableLength), "AAAAA/");
    EXPECT_EQ(MakeRowId(table, 62).substr(kRowIdTableLength), "AAAAA+");
    EXPECT_EQ(MakeRowId(table, 52).substr(kRowIdTableLength), "AAAAA0");
    EXPECT_EQ(MakeRowId(table, static_cast<std::uint32_t>(kLast)).substr(kRowIdTableLength),
              "D/////");
    EXPECT_EQ(RowIdRecord("xxAAAAAa"), std::optional<std::uint32_t>(26));
    EXPECT_EQ(RowIdRecord("AAAAB"), std::nullopt);
    EXPECT_EQ(RowIdRecord("AAAA-B"), std::nullopt);
    EXPECT_EQ(RowIdRecord("E00000"), std::nullopt);  // beyond 32 bits
}

TEST(RowIdTest, TablePartDependsOnTheFileNameOnly) {
    const std::string part = RowIdTablePart("/data/SOC1/SOC1_ACT.dbf");
    EXPECT_EQ(part.size(), kRowIdTableLength);
    EXPECT_EQ(RowIdTablePart("/elsewhere/soc1_act.DBF"), part);
    EXPECT_EQ(RowIdTablePart("SOC1_ACT"), part);
    EXPECT_NE(RowIdTablePart("SOC1_ACF.dbf"), part);
    EXPECT_NE(RowIdTablePart("SOC2_ACT.dbf"), part);
    for (const char c : part)
        EXPECT_TRUE(std::isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '/');
}

}  // namespace
}  // namespace fnrk::engine::sql

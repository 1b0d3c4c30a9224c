// Keys must sort as bytes exactly as their values sort, and leaves must give back what they got.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "engine/cdx/index_key.hpp"
#include "engine/cdx/index_node.hpp"

namespace fnrk::engine::cdx {
namespace {

TEST(IndexKey, NumberKeysSortAsTheirValuesAndDecodeBack) {
    std::mt19937 random(7);
    std::vector<double> values{0.0,
                               -0.0,
                               1.0,
                               -1.0,
                               0.5,
                               -0.5,
                               1e-300,
                               -1e-300,
                               2451545.0,
                               -123456.78,
                               std::numeric_limits<double>::max(),
                               std::numeric_limits<double>::lowest()};
    std::uniform_real_distribution<double> any(-1e9, 1e9);
    for (int i = 0; i < 2000; ++i) values.push_back(std::round(any(random) * 100) / 100);
    for (double a : values) {
        const std::string keyA = EncodeNumberKey(a);
        ASSERT_EQ(keyA.size(), 8u);
        EXPECT_EQ(DecodeNumberKey(keyA), a == 0.0 ? 0.0 : a);
        for (int j = 0; j < 5; ++j) {
            const double b = values[random() % values.size()];
            const int byBytes = CompareKeys(keyA, EncodeNumberKey(b));
            EXPECT_EQ(byBytes < 0, a < b) << a << " vs " << b;
            EXPECT_EQ(byBytes == 0, a == b) << a << " vs " << b;
        }
    }
    // The known image of 0 and of a date's day number.
    EXPECT_EQ(EncodeNumberKey(-0.0), std::string("\x80\0\0\0\0\0\0\0", 8));
    EXPECT_EQ(EncodeNumberKey(1.0), std::string("\xBF\xF0\0\0\0\0\0\0", 8));
    EXPECT_EQ(EncodeNumberKey(-1.0), std::string("\x40\x0F\xFF\xFF\xFF\xFF\xFF\xFF", 8));
}

TEST(IndexKey, CharacterAndLogicalKeysAndPartialComparison) {
    EXPECT_EQ(EncodeCharacterKey("AB", 5), "AB   ");
    EXPECT_EQ(EncodeCharacterKey("ABCDEFG", 3), "ABC");
    EXPECT_LT(CompareKeys(EncodeLogicalKey(false), EncodeLogicalKey(true)), 0);
    EXPECT_EQ(ComparePrefix("XAB  ", "XA"), 0);
    EXPECT_GT(ComparePrefix("XB   ", "XA"), 0);
    EXPECT_LT(ComparePrefix("XA   ", "XB"), 0);
    // Machine collation: an accented capital (0xC9) sorts after every ASCII letter.
    EXPECT_GT(CompareKeys("\xC9", "z"), 0);
    EXPECT_EQ(PadByteOf(KeyKind::Character), ' ');
    EXPECT_EQ(PadByteOf(KeyKind::Date), '\0');
    EXPECT_EQ(KeyLengthOf(KeyKind::Logical, 20), 1u);
    EXPECT_EQ(KeyLengthOf(KeyKind::Numeric, 20), 8u);
}

TEST(IndexNode, LeavesRoundTripAndRefuseWhatDoesNotFit) {
    const KeyShape shape{12, ' '};
    IndexNode leaf;
    leaf.attributes = kNodeLeaf;
    leaf.left = 1024;
    leaf.right = 4096;
    for (std::uint32_t r = 0; r < 30; ++r)
        leaf.entries.push_back(
            {KeyBytes(EncodeCharacterKey("KEY" + std::to_string(r / 3), 12)), r * 999, 0});
    char bytes[kNodeSize];
    ASSERT_TRUE(EncodeLeaf(leaf, shape, 0, bytes));
    const IndexNode back = DecodeNode(bytes, shape);
    EXPECT_EQ(back.left, 1024u);
    EXPECT_EQ(back.right, 4096u);
    ASSERT_EQ(back.entries.size(), leaf.entries.size());
    for (std::size_t i = 0; i < leaf.entries.size(); ++i) {
        EXPECT_EQ(back.entries[i].key, leaf.entries[i].key);
        EXPECT_EQ(back.entries[i].record, leaf.entries[i].record);
    }
    // Record 28,971 needs 15 bits; 12-byte keys take 4-bit counts, which leaves 16 of 3 bytes.
    const LeafLayout layout = ChooseLeafLayout(12, 28971);
    EXPECT_EQ(layout.bytesPerEntry, 3u);
    EXPECT_EQ(layout.recordBits, 16u);
    EXPECT_EQ(ChooseLeafLayout(40, 20000).bytesPerEntry, 4u);
    EXPECT_EQ(ChooseLeafLayout(40, 20000).recordBits, 20u);

    IndexNode crowded;
    for (std::uint32_t r = 0; r < 60; ++r)
        crowded.entries.push_back(
            {KeyBytes(std::string(12, static_cast<char>('A' + r % 26))), r, 0});
    EXPECT_FALSE(EncodeLeaf(crowded, shape, 0, bytes));
}

TEST(IndexNode, DamagedLeafFieldsAreRejected) {
    const KeyShape shape{12, ' '};
    IndexNode leaf;
    leaf.entries.push_back({KeyBytes(EncodeCharacterKey("A", 12)), 1, 0});
    leaf.entries.push_back({KeyBytes(EncodeCharacterKey("AB", 12)), 2, 0});
    char good[kNodeSize];
    ASSERT_TRUE(EncodeLeaf(leaf, shape, 0, good));
    auto damaged = [&](std::size_t at, char value) {
        char bytes[kNodeSize];
        std::copy(good, good + kNodeSize, bytes);
        bytes[at] = value;
        return DecodeNode(bytes, shape);
    };
    EXPECT_THROW(damaged(0, 9), IndexCorrupt);      // unknown attributes
    EXPECT_THROW(damaged(23, 0), IndexCorrupt);     // no bytes per entry
    EXPECT_THROW(damaged(20, 40), IndexCorrupt);    // record bits past the entry
    EXPECT_THROW(damaged(26, 0x7F), IndexCorrupt);  // first entry claims duplicated bytes
    EXPECT_THROW(damaged(2, 0x7F), IndexCorrupt);   // key count past the end

    // Record and duplicate counts filling all 64 bits of an 8-byte entry: the trailing count
    // starts past them and is read as none (under the sanitizers, a shift past 64 bits stops the
    // run). Whatever the keys then say, the leaf is read or refused, never misread.
    char wide[kNodeSize];
    std::copy(good, good + kNodeSize, wide);
    wide[20] = 32;
    wide[21] = 32;
    wide[22] = 0;
    wide[23] = 8;
    try {
        for (const IndexEntry& entry : DecodeNode(wide, shape).entries)
            EXPECT_EQ(entry.key.size(), shape.length);
    } catch (const IndexCorrupt&) {
    }
}

}  // namespace
}  // namespace fnrk::engine::cdx

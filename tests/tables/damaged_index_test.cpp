// Navigation over a damaged index answers a status, through the engine and through the table
// layer alike: an index fault never reaches a caller as an exception.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "support/temp_dir.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables {
namespace {

using namespace engine;  // option and status numbers

constexpr std::size_t kNodeSize = 512;
constexpr std::uint32_t kNoSibling = 0xFFFFFFFF;
constexpr std::uint16_t kLeafNode = 2;  // a leaf that is not the root

std::uint32_t ReadLe32(const std::string& bytes, std::size_t at) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at])) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 2])) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 3])) << 24;
}

void WriteLe32(std::string& bytes, std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(value >> (8 * i));
}

// Makes the first leaf of the file's one tag its own right sibling and the last leaf its own
// left sibling: walking the tag in either direction comes back where it was.
void LoopTheOutermostLeaves(const std::filesystem::path& index) {
    std::string bytes = fnrk::testing::ReadFileBytes(index);
    int damaged = 0;
    for (std::size_t node = kNodeSize; node + kNodeSize <= bytes.size(); node += kNodeSize) {
        const auto attributes =
            static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[node]) |
                                       static_cast<unsigned char>(bytes[node + 1]) << 8);
        if (attributes != kLeafNode) continue;
        const std::uint32_t left = ReadLe32(bytes, node + 4);
        const std::uint32_t right = ReadLe32(bytes, node + 8);
        if (left == kNoSibling && right != kNoSibling) {
            WriteLe32(bytes, node + 8, static_cast<std::uint32_t>(node));
            ++damaged;
        } else if (right == kNoSibling && left != kNoSibling) {
            WriteLe32(bytes, node + 4, static_cast<std::uint32_t>(node));
            ++damaged;
        }
    }
    ASSERT_EQ(damaged, 2) << "the tag should span several leaves";
    fnrk::testing::WriteFileBytes(index, bytes);
}

// A table of 3,000 codes with a tag on them, its index then damaged, opened through `ops`.
void OpenDamaged(Operations& ops, const fnrk::testing::TempDir& folder, Handle& table,
                 Handle& byCode) {
    Engine builder;
    Handle connection = 0;
    ASSERT_EQ(builder.Connect26(folder.path().string(), ADS_LOCAL_SERVER, connection), AE_SUCCESS);
    Handle created = 0;
    ASSERT_EQ(
        builder.CreateTable(connection, "codes.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                            ADS_IGNORERIGHTS, 0, "CODE,C,12,0", created),
        AE_SUCCESS);
    for (int n = 1; n <= 3000; ++n) {
        ASSERT_EQ(builder.AppendRecord(created), AE_SUCCESS);
        ASSERT_EQ(builder.SetString(created, "CODE", "C" + std::to_string(n * 7919 % 3001)),
                  AE_SUCCESS);
    }
    Handle tag = 0;
    ASSERT_EQ(builder.CreateIndex(created, "", "CODE", "CODE", "", "", ADS_COMPOUND, tag),
              AE_SUCCESS);
    ASSERT_EQ(builder.CloseTable(created), AE_SUCCESS);
    LoopTheOutermostLeaves(folder / "codes.cdx");

    ASSERT_EQ(ops.Connect26(folder.path().string(), ADS_LOCAL_SERVER, connection), AE_SUCCESS);
    ASSERT_EQ(ops.OpenTable(connection, "codes.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                            ADS_IGNORERIGHTS, ADS_SHARED, table),
              AE_SUCCESS);
    ASSERT_EQ(ops.GetIndexHandle(table, "CODE", byCode), AE_SUCCESS);
}

// GotoTop and GotoBottom that must walk past hidden records, and Skips across a leaf's end,
// each answer AE_CORRUPT_INDEX, and the table stays usable in natural order.
void ExpectStatusesOverTheDamage(Operations& ops, Handle table, Handle byCode) {
    ASSERT_EQ(ops.GotoTop(byCode), AE_SUCCESS);
    EXPECT_EQ(ops.Skip(byCode, 3000), AE_CORRUPT_INDEX);
    ASSERT_EQ(ops.GotoBottom(byCode), AE_SUCCESS);
    EXPECT_EQ(ops.Skip(byCode, -3000), AE_CORRUPT_INDEX);
    Status code = AE_SUCCESS;
    std::string text;
    ASSERT_EQ(ops.GetLastError(code, text), AE_SUCCESS);
    EXPECT_EQ(code, AE_CORRUPT_INDEX);

    // Only a record in the middle of the order is visible: both ends walk into a loop.
    ASSERT_EQ(ops.SetFilter(table, "CODE = 'C1500'"), AE_SUCCESS);
    EXPECT_EQ(ops.GotoTop(byCode), AE_CORRUPT_INDEX);
    EXPECT_EQ(ops.GotoBottom(byCode), AE_CORRUPT_INDEX);
    ASSERT_EQ(ops.ClearFilter(table), AE_SUCCESS);

    ASSERT_EQ(ops.GotoTop(table), AE_SUCCESS);
    EXPECT_EQ(ops.Skip(table, 2999), AE_SUCCESS);
    bool atEof = true;
    ASSERT_EQ(ops.AtEOF(table, atEof), AE_SUCCESS);
    EXPECT_FALSE(atEof);
}

TEST(DamagedIndex, NavigationAnswersAStatusThroughTheEngine) {
    fnrk::testing::TempDir folder;
    Engine engine;
    Handle table = 0;
    Handle byCode = 0;
    ASSERT_NO_FATAL_FAILURE(OpenDamaged(engine, folder, table, byCode));
    ExpectStatusesOverTheDamage(engine, table, byCode);
}

TEST(DamagedIndex, NavigationAnswersAStatusThroughTheTableLayer) {
    fnrk::testing::TempDir folder;
    Engine engine;
    SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    Handle table = 0;
    Handle byCode = 0;
    ASSERT_NO_FATAL_FAILURE(OpenDamaged(db, folder, table, byCode));
    ExpectStatusesOverTheDamage(db, table, byCode);
}

}  // namespace
}  // namespace fnrk::tables

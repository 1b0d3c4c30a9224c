// Damaged index files are reported as corrupt: no crash, no endless walk.

#include <gtest/gtest.h>

#include "engine/cdx/compound_index.hpp"
#include "engine/cdx/tag_check.hpp"
#include "engine/io/byte_order.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine::cdx {
namespace {

using fnrk::testing::ReadFileBytes;
using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

// A tag of three levels: 2,000 keys of 30 bytes.
struct DamagedIndex {
    TempDir dir;
    std::filesystem::path path = dir / "hostile.cdx";
    std::uint32_t headerOffset = 0;
    std::uint32_t root = 0;
    std::string bytes;

    DamagedIndex() {
        auto index = CompoundIndex::Create(path);
        TagEntries entries(30);
        for (std::uint32_t r = 1; r <= 2000; ++r)
            entries.Add(EncodeCharacterKey("K" + std::to_string(r * 7919 % 2000), 30), r);
        entries.Sort(false);
        IndexTag& tag =
            index->AddTag({"T", "K", "", KeyKind::Character, 30, false, false}, entries, 2000);
        headerOffset = tag.headerOffset();
        root = tag.header().root;
        index.reset();
        bytes = ReadFileBytes(path);
    }
    std::uint32_t ChildOf(std::uint32_t node, std::size_t i) const {
        return io::ReadBe32(bytes.data() + node + 12 + i * 38 + 34);
    }
    void SetChild(std::uint32_t node, std::size_t i, std::uint32_t child) {
        io::WriteBe32(bytes.data() + node + 12 + i * 38 + 34, child);
    }
    IndexTag& Reopen() {
        WriteFileBytes(path, bytes);
        index = CompoundIndex::Open(path, {});
        return *index->tags().front();
    }
    std::unique_ptr<CompoundIndex> index;
};

TEST(HostileIndex, ACycleBetweenNodesIsReportedEverywhere) {
    DamagedIndex file;
    const std::uint32_t middle = file.ChildOf(file.root, 0);
    file.SetChild(middle, 1, file.root);  // an interior node points back at the root
    IndexTag& tag = file.Reopen();
    EXPECT_THROW(tag.CountKeys(), IndexCorrupt);
    EXPECT_FALSE(CheckTagStructure(tag).empty());
    // Seeks that go down the bad branch stop at the depth limit.
    EXPECT_THROW(
        {
            for (int i = 0; i < 2000; ++i) tag.LowerBound("K" + std::to_string(i));
        },
        IndexCorrupt);
}

TEST(HostileIndex, SiblingLoopsAndPointersPastTheEndAreReported) {
    DamagedIndex file;
    const std::uint32_t leaf = file.ChildOf(file.ChildOf(file.root, 0), 0);
    io::WriteLe32(file.bytes.data() + leaf + 8, leaf);  // the first leaf's right sibling: itself
    IndexTag& looping = file.Reopen();
    EXPECT_FALSE(CheckTagStructure(looping).empty());
    EXPECT_THROW(
        {
            for (TagPosition at = looping.First(); at.valid(); at = looping.Next(at)) {
            }
        },
        IndexCorrupt);

    DamagedIndex past;
    past.SetChild(past.root, 0, 0x7FFFFE00);
    IndexTag& beyond = past.Reopen();
    EXPECT_THROW(beyond.First(), IndexCorrupt);
    EXPECT_FALSE(CheckTagStructure(beyond).empty());

    DamagedIndex rootless;
    io::WriteLe32(rootless.bytes.data() + rootless.headerOffset, 0x10000000);
    WriteFileBytes(rootless.path, rootless.bytes);
    EXPECT_THROW(CompoundIndex::Open(rootless.path, {}), IndexCorrupt);
}

TEST(HostileIndex, KeyCountsPastTheNodeEndAreRejected) {
    DamagedIndex file;
    const std::uint32_t leaf = file.ChildOf(file.ChildOf(file.root, 0), 0);
    io::WriteLe16(file.bytes.data() + leaf + 2, 400);
    IndexTag& tag = file.Reopen();
    EXPECT_THROW(tag.First(), IndexCorrupt);
    EXPECT_FALSE(CheckTagStructure(tag).empty());

    DamagedIndex interior;
    io::WriteLe16(interior.bytes.data() + interior.root + 2, 14);  // 13 keys of 38 bytes fit
    EXPECT_THROW(interior.Reopen().First(), IndexCorrupt);

    // A truncated file, and a file that is no index at all.
    DamagedIndex truncated;
    truncated.bytes.resize(truncated.headerOffset + 700);
    WriteFileBytes(truncated.path, truncated.bytes);
    EXPECT_THROW(CompoundIndex::Open(truncated.path, {}), IndexCorrupt);
    WriteFileBytes(truncated.path, std::string(3000, 'x'));
    EXPECT_THROW(CompoundIndex::Open(truncated.path, {}), IndexCorrupt);
}

}  // namespace
}  // namespace fnrk::engine::cdx

// The fixtures' indexes were written by another engine: we must read every tag exactly as it
// lists them, find them sound, and write the very same bytes when we build them again with leaves
// packed full.

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "engine/cdx/compound_index.hpp"
#include "engine/cdx/tag_check.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine::cdx {
namespace {

using fnrk::testing::ReadFileBytes;
using fnrk::testing::SharedDir;
using fnrk::testing::TempDir;

const char* const kTables[] = {"people",   "SOC1_MSODA", "SOC1_ACTCOM",
                               "USERSEXT", "SOC1_param", "big"};

std::filesystem::path Fixture(const std::string& name) {
    return SharedDir() / "fixtures" / "xbase" / name;
}

std::vector<nlohmann::json> ExpectedTags(const std::string& table) {
    std::vector<nlohmann::json> tags;
    std::ifstream in(Fixture(table + ".tags.jsonl"));
    for (std::string line; std::getline(in, line);)
        if (!line.empty()) tags.push_back(nlohmann::json::parse(line));
    return tags;
}

std::uint32_t RecordCount(const std::string& table) {
    const std::string dbf = ReadFileBytes(Fixture(table + ".dbf"));
    std::uint32_t count = 0;
    for (int i = 3; i >= 0; --i) count = (count << 8) | static_cast<unsigned char>(dbf[4 + i]);
    return count;
}

// Which fixture keys are 8-byte numbers or dates: only their trailing bytes compress as zeros.
KeyKind KindOfFixtureKey(const std::string& expression) {
    for (const char* binary : {"AMOUNT", "BORN", "QTY", "DOCDATE"})
        if (expression == binary) return KeyKind::Numeric;
    return KeyKind::Character;
}

std::vector<IndexEntry> EntriesInOrder(IndexTag& tag) {
    std::vector<IndexEntry> entries;
    for (TagPosition at = tag.First(); at.valid(); at = tag.Next(at))
        entries.push_back(tag.EntryAt(at));
    return entries;
}

TEST(FixtureIndex, EveryTagReadsAsListedAndIsSound) {
    for (const std::string table : kTables) {
        SCOPED_TRACE(table);
        auto index =
            CompoundIndex::Open(Fixture(table + ".cdx"), {.readOnly = true}, KindOfFixtureKey);
        const auto expected = ExpectedTags(table);
        ASSERT_EQ(index->tags().size(), expected.size());
        for (std::size_t t = 0; t < expected.size(); ++t) {
            IndexTag& tag = *index->tags()[t];
            const nlohmann::json& want = expected[t];
            SCOPED_TRACE(tag.name());
            EXPECT_EQ(tag.name(), want["tag"]);
            EXPECT_EQ(tag.header().keyExpression, want["key"]);
            EXPECT_EQ(tag.header().forExpression, want["for"]);
            EXPECT_EQ(tag.header().unique(), want["unique"]);
            EXPECT_EQ(tag.header().descending, want["descending"]);
            std::uint64_t keys = 0;
            EXPECT_EQ(CheckTagStructure(tag, &keys), std::vector<std::string>{});
            EXPECT_EQ(keys, want["keycount"].get<std::uint64_t>());
            EXPECT_EQ(tag.CountKeys(), keys);
            std::vector<std::uint32_t> order;
            for (const auto& entry : EntriesInOrder(tag)) order.push_back(entry.record);
            if (tag.header().descending) std::reverse(order.begin(), order.end());
            EXPECT_EQ(order, want["order"].get<std::vector<std::uint32_t>>());
        }
    }
}

TEST(FixtureIndex, RebuildingEveryTagGivesTheSameFile) {
    for (const std::string table : kTables) {
        SCOPED_TRACE(table);
        auto original =
            CompoundIndex::Open(Fixture(table + ".cdx"), {.readOnly = true}, KindOfFixtureKey);
        TempDir dir;
        auto rebuilt = CompoundIndex::Create(dir / "copy.cdx");
        const std::uint32_t records = RecordCount(table);
        for (const auto& tag : original->tags()) {
            TagDefinition definition{tag->name(),
                                     tag->header().keyExpression,
                                     tag->header().forExpression,
                                     tag->kind(),
                                     tag->header().keyLength,
                                     tag->header().unique(),
                                     tag->header().descending};
            auto inOrder = EntriesInOrder(*tag);
            // Build from scrambled input so that the sort is part of what is compared.
            std::reverse(inOrder.begin(), inOrder.end());
            TagEntries entries(definition.keyLength);
            for (const auto& entry : inOrder) entries.Add(entry.key, entry.record);
            entries.Sort(definition.unique);
            rebuilt->AddTag(definition, entries, records, LeafFill::Packed);
        }
        const std::string want = ReadFileBytes(Fixture(table + ".cdx"));
        const std::string got = ReadFileBytes(dir / "copy.cdx");
        ASSERT_EQ(got.size(), want.size());
        for (std::size_t i = 0; i < want.size(); ++i)
            ASSERT_EQ(got[i], want[i]) << "first difference at byte " << i;
    }
}

// Our own builds leave room in each leaf: the same entries, sound, and a first insert into any
// leaf does not split it.
TEST(FixtureIndex, BuildingWithRoomKeepsEntriesAndLeavesSpaceInEveryLeaf) {
    auto original = CompoundIndex::Open(Fixture("big.cdx"), {.readOnly = true}, KindOfFixtureKey);
    TempDir dir;
    auto rebuilt = CompoundIndex::Create(dir / "room.cdx");
    for (const auto& tag : original->tags()) {
        SCOPED_TRACE(tag->name());
        const TagDefinition definition{tag->name(), tag->header().keyExpression, "",
                                       tag->kind(), tag->header().keyLength,     false,
                                       false};
        const auto inOrder = EntriesInOrder(*tag);
        TagEntries entries(definition.keyLength);
        for (const auto& entry : inOrder) entries.Add(entry.key, entry.record);
        entries.Sort(false);
        IndexTag& built = rebuilt->AddTag(definition, entries, RecordCount("big"));
        EXPECT_EQ(CheckTagStructure(built), std::vector<std::string>{});
        const auto got = EntriesInOrder(built);
        ASSERT_EQ(got.size(), inOrder.size());
        for (std::size_t i = 0; i < got.size(); ++i) {
            ASSERT_EQ(got[i].key, inOrder[i].key);
            ASSERT_EQ(got[i].record, inOrder[i].record);
        }
        std::size_t leaves = 0;
        for (std::uint32_t leaf = built.First().leaf; leaf != kNoNode;
             leaf = built.Node(leaf).right) {
            if (built.Node(leaf).right == kNoNode) break;  // the last leaf holds what is left
            char bytes[kNodeSize];
            rebuilt->file().Read(leaf, bytes, kNodeSize);
            const unsigned freeBytes =
                static_cast<unsigned char>(bytes[12]) | static_cast<unsigned char>(bytes[13]) << 8;
            EXPECT_GE(freeBytes, (kNodeSize - kLeafHeaderSize) / 8) << "leaf at " << leaf;
            ++leaves;
        }
        EXPECT_GT(leaves, 1u);
    }
    // A key inserted in the middle of each tag goes into a leaf that has room.
    for (const auto& tag : rebuilt->tags()) {
        IndexFile::UpdateGuard guard(rebuilt->file());
        const std::uint64_t size = rebuilt->file().size();
        const IndexEntry middle = tag->EntryAt(tag->LowerBound(EntriesInOrder(*tag)[1000].key));
        EXPECT_TRUE(tag->Insert(middle.key, RecordCount("big") + 1));
        EXPECT_EQ(rebuilt->file().size(), size) << tag->name() << " split a leaf";
    }
}

}  // namespace
}  // namespace fnrk::engine::cdx

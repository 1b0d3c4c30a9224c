// A tag after thousands of random inserts and removals must hold exactly what a sorted in-memory
// model holds, walk the same both ways, seek like the model, and stay sound.

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "engine/cdx/compound_index.hpp"
#include "engine/cdx/tag_check.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine::cdx {
namespace {

using Model = std::set<std::pair<std::string, std::uint32_t>>;

std::vector<std::pair<std::string, std::uint32_t>> Walk(IndexTag& tag, bool backwards) {
    std::vector<std::pair<std::string, std::uint32_t>> seen;
    TagPosition at = backwards ? tag.Last() : tag.First();
    for (; at.valid(); at = backwards ? tag.Previous(at) : tag.Next(at))
        seen.emplace_back(tag.EntryAt(at).key, tag.EntryAt(at).record);
    if (backwards) std::reverse(seen.begin(), seen.end());
    return seen;
}

// Short keys from a small alphabet give long runs of duplicates and shared prefixes.
std::string RandomKey(std::mt19937& random, std::size_t length) {
    std::string key(length, ' ');
    const std::size_t used = std::uniform_int_distribution<std::size_t>(0, length)(random);
    for (std::size_t i = 0; i < used; ++i)
        key[i] = "ABC\xe9z "[std::uniform_int_distribution<int>(0, 5)(random)];
    return key;
}

void ExpectSeeksLikeModel(IndexTag& tag, const Model& model, const std::string& probe) {
    auto lower = std::find_if(model.begin(), model.end(), [&](const auto& e) {
        return e.first.compare(0, probe.size(), probe) >= 0;
    });
    const TagPosition found = tag.LowerBound(probe);
    ASSERT_EQ(found.valid(), lower != model.end()) << "probe '" << probe << "'";
    if (found.valid()) {
        EXPECT_EQ(tag.EntryAt(found).record, lower->second);
    }
    auto upper = std::find_if(model.rbegin(), model.rend(), [&](const auto& e) {
        return e.first.compare(0, probe.size(), probe) <= 0;
    });
    const TagPosition last = tag.LastNotAbove(probe);
    ASSERT_EQ(last.valid(), upper != model.rend()) << "probe '" << probe << "'";
    if (last.valid()) {
        EXPECT_EQ(tag.EntryAt(last).record, upper->second);
    }
}

// Leaves edited one insert at a time are written with only the moved part encoded again: the
// bytes must be exactly those of encoding each leaf whole.
void ExpectLeavesEncodedAsAWhole(CompoundIndex& index, IndexTag& tag) {
    std::set<std::uint32_t> leaves;
    for (TagPosition at = tag.First(); at.valid(); at = tag.Next(at)) leaves.insert(at.leaf);
    ASSERT_GT(leaves.size(), 3u);
    for (const std::uint32_t leaf : leaves) {
        char stored[kNodeSize];
        index.file().Read(leaf, stored, kNodeSize);
        char whole[kNodeSize];
        ASSERT_TRUE(EncodeLeaf(DecodeNode(stored, tag.shape()), tag.shape(), 0, whole));
        EXPECT_EQ(std::string(stored, kNodeSize), std::string(whole, kNodeSize))
            << "leaf at " << leaf;
    }
}

// A walk prefetches the record some entries ahead, into the next leaf too: the hint must name the
// entry that many steps along the walk, or 0 when that lies beyond the neighbouring leaf.
void ExpectNeighbourRecordsAlongTheWalk(IndexTag& tag) {
    std::vector<TagPosition> walk;
    for (TagPosition at = tag.First(); at.valid(); at = tag.Next(at)) walk.push_back(at);
    std::vector<std::size_t> leafNumber(walk.size());
    for (std::size_t i = 1; i < walk.size(); ++i)
        leafNumber[i] = leafNumber[i - 1] + (walk[i].leaf != walk[i - 1].leaf);
    for (const std::size_t distance : {1u, 4u, 8u, 40u}) {
        for (std::size_t i = 0; i < walk.size(); ++i) {
            const std::size_t ahead = i + distance;
            const bool forwardThere = ahead < walk.size() && leafNumber[ahead] <= leafNumber[i] + 1;
            EXPECT_EQ(tag.NeighbourRecord(walk[i], true, distance),
                      forwardThere ? tag.EntryAt(walk[ahead]).record : 0u)
                << "entry " << i << ", " << distance << " ahead";
            const bool backwardThere =
                i >= distance && leafNumber[i - distance] + 1 >= leafNumber[i];
            EXPECT_EQ(tag.NeighbourRecord(walk[i], false, distance),
                      backwardThere ? tag.EntryAt(walk[i - distance]).record : 0u)
                << "entry " << i << ", " << distance << " back";
        }
    }
}

class TagModelTest : public ::testing::TestWithParam<std::size_t> {};

TEST_P(TagModelTest, RandomInsertsAndRemovalsMatchASortedModel) {
    const std::size_t keyLength = GetParam();
    fnrk::testing::TempDir dir;
    auto index = CompoundIndex::Create(dir / "model.cdx");
    IndexTag& tag =
        index->AddTag({"T", "K", "", KeyKind::Character, keyLength, false, false}, {}, 0);
    std::mt19937 random(static_cast<unsigned>(keyLength));
    Model model;
    std::vector<std::pair<std::string, std::uint32_t>> live;
    for (int step = 0; step < 6000; ++step) {
        const bool grow = live.size() < 300 || random() % 100 < (step < 4000 ? 60 : 35);
        if (grow) {
            const auto record = static_cast<std::uint32_t>(step + 1);
            std::string key = RandomKey(random, keyLength);
            ASSERT_TRUE(tag.Insert(key, record));
            model.emplace(key, record);
            live.emplace_back(std::move(key), record);
        } else {
            const std::size_t pick = random() % live.size();
            ASSERT_TRUE(tag.Remove(live[pick].first, live[pick].second));
            model.erase(live[pick]);
            live[pick] = live.back();
            live.pop_back();
        }
        if (step % 997 == 0) {
            ASSERT_EQ(CheckTagStructure(tag), std::vector<std::string>{});
        }
        // A walk leaves the leaves it passed decoded aside; the edits after it must not be
        // undone by those copies (a leaf emptied and used again, a sibling pointer moved).
        if (step % 150 == 0) {
            const std::vector<std::pair<std::string, std::uint32_t>> now(model.begin(),
                                                                         model.end());
            ASSERT_EQ(Walk(tag, step % 300 == 0), now) << "after step " << step;
        }
    }
    const std::vector<std::pair<std::string, std::uint32_t>> want(model.begin(), model.end());
    EXPECT_EQ(Walk(tag, false), want);
    EXPECT_EQ(Walk(tag, true), want);
    EXPECT_EQ(tag.CountKeys(), model.size());
    for (int i = 0; i < 200; ++i)
        ExpectSeeksLikeModel(tag, model, RandomKey(random, keyLength).substr(0, 1 + i % 3));
    EXPECT_FALSE(tag.Remove("never there", 1));
    ExpectLeavesEncodedAsAWhole(*index, tag);
    ExpectNeighbourRecordsAlongTheWalk(tag);

    // A tag read back from the file by a fresh reader is the same tag.
    index.reset();
    auto reopened = CompoundIndex::Open(dir / "model.cdx", {});
    ASSERT_NE(reopened->FindTag("t"), nullptr);
    EXPECT_EQ(Walk(*reopened->FindTag("T"), false), want);

    // Removing everything leaves an empty root leaf, and the freed nodes are used again.
    IndexTag& again = *reopened->FindTag("T");
    for (const auto& [key, record] : want) ASSERT_TRUE(again.Remove(key, record));
    EXPECT_EQ(again.CountKeys(), 0u);
    EXPECT_FALSE(again.First().valid());
    EXPECT_EQ(CheckTagStructure(again), std::vector<std::string>{});
    const auto sizeWhenEmpty = reopened->file().size();
    for (const auto& [key, record] : want) ASSERT_TRUE(again.Insert(key, record));
    EXPECT_EQ(reopened->file().size(), sizeWhenEmpty);
    EXPECT_EQ(Walk(again, false), want);
}

INSTANTIATE_TEST_SUITE_P(KeyLengths, TagModelTest, ::testing::Values(1, 6, 30, 120));

TEST(TagModel, UniqueTagKeepsOneRecordPerKeyAndSortedBuildKeepsTheFirst) {
    fnrk::testing::TempDir dir;
    auto index = CompoundIndex::Create(dir / "unique.cdx");
    TagEntries entries(2);
    for (const auto& [key, record] :
         {std::pair<std::string, std::uint32_t>{"B ", 4}, {"A ", 9}, {"B ", 2}, {"A ", 3}})
        entries.Add(key, record);
    entries.Sort(true);
    IndexTag& tag = index->AddTag({"U", "K", "", KeyKind::Character, 2, true, false}, entries, 9);
    EXPECT_EQ(Walk(tag, false),
              (std::vector<std::pair<std::string, std::uint32_t>>{{"A ", 3}, {"B ", 2}}));
    EXPECT_FALSE(tag.Insert("A ", 1));
    EXPECT_TRUE(tag.Insert("C ", 1));
    EXPECT_EQ(CheckTagStructure(tag), std::vector<std::string>{});
}

TEST(TagModel, TagNamesAreCheckedAndFoundWithoutRegardToCase) {
    fnrk::testing::TempDir dir;
    auto index = CompoundIndex::Create(dir / "names.cdx");
    const TagDefinition good{"name", "NAME", "", KeyKind::Character, 10, false, false};
    index->AddTag(good, {}, 0);
    EXPECT_THROW(index->AddTag(good, {}, 0), std::invalid_argument);
    TagDefinition tooLong = good;
    tooLong.name = "ELEVENCHARS";
    EXPECT_THROW(index->AddTag(tooLong, {}, 0), std::invalid_argument);
    TagDefinition badLength = good;
    badLength.name = "OTHER";
    badLength.keyLength = 241;
    EXPECT_THROW(index->AddTag(badLength, {}, 0), std::invalid_argument);
    ASSERT_NE(index->FindTag("NaMe"), nullptr);
    EXPECT_EQ(index->FindTag("NaMe")->name(), "NAME");
    EXPECT_EQ(index->tags().size(), 1u);
}

TEST(TagModel, BuildSortOrdersLikeTheModelAndKeepsTheFirstRecordOfUniqueKeys) {
    std::mt19937 random(11);
    for (const std::size_t keyLength : {1, 8, 12, 30}) {
        SCOPED_TRACE(keyLength);
        // Keys that differ first in their first byte and then only past their eighth leave ties
        // that the rest of the key must settle.
        std::vector<std::pair<std::string, std::uint32_t>> added;
        TagEntries entries(keyLength);
        for (std::uint32_t i = 0; i < 3000; ++i) {
            std::string key = RandomKey(random, 1);
            if (keyLength > 1) {
                const std::size_t fill = keyLength > 5 ? keyLength - 5 : 0;
                key += std::string(fill, 'P') + RandomKey(random, keyLength - 1 - fill);
            }
            const std::uint32_t record = 5000 - i * 7 % 4999;
            entries.Add(key, record);
            added.emplace_back(std::move(key), record);
        }
        for (const bool unique : {false, true}) {
            TagEntries sorted = entries;
            sorted.Sort(unique);
            auto model = added;
            std::sort(model.begin(), model.end());
            if (unique)
                model.erase(
                    std::unique(model.begin(), model.end(),
                                [](const auto& a, const auto& b) { return a.first == b.first; }),
                    model.end());
            std::vector<std::pair<std::string, std::uint32_t>> got;
            for (std::size_t i = 0; i < sorted.size(); ++i)
                got.emplace_back(std::string(sorted.KeyAt(i)), sorted.RecordAt(i));
            EXPECT_EQ(got, model) << (unique ? "unique" : "all");
        }
    }
    TagEntries wrongLength(4);
    EXPECT_THROW(wrongLength.Add("toolong", 1), std::invalid_argument);
}

}  // namespace
}  // namespace fnrk::engine::cdx

// The fixture tables through the engine: their structural indexes open with them, every key is
// what the key expression gives for its record, index handles walk in the listed order, and
// seeks on "X"-prefixed keys never find deleted records.

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>

#include "engine/table/engine_fixture.hpp"

namespace fnrk::engine {
namespace {

using fnrk::testing::SharedDir;

std::filesystem::path Fixture(const std::string& name) {
    return SharedDir() / "fixtures" / "xbase" / name;
}

class FixtureOrderTest : public EngineTest {
  protected:
    // A private copy of a fixture table with its index (and memo).
    Handle OpenCopy(const std::string& table, std::uint32_t options = ADS_EXCLUSIVE) {
        for (const char* extension : {".dbf", ".cdx", ".fpt"}) {
            const auto from = Fixture(table + extension);
            if (std::filesystem::exists(from)) {
                std::filesystem::copy_file(from, dir / (table + extension));
                std::filesystem::permissions(dir / (table + extension),
                                             std::filesystem::perms::owner_write,
                                             std::filesystem::perm_options::add);
            }
        }
        return Open(table, options);
    }

    std::vector<std::uint32_t> WalkInOrder(Handle index) {
        std::vector<std::uint32_t> records;
        EXPECT_EQ(engine.GotoTop(index), AE_SUCCESS);
        while (!Eof(index)) {
            records.push_back(Recno(index));
            EXPECT_EQ(engine.Skip(index, 1), AE_SUCCESS);
        }
        return records;
    }
};

TEST_F(FixtureOrderTest, IndexHandlesWalkEveryFixtureTagInItsListedOrder) {
    for (const std::string table :
         {"people", "SOC1_MSODA", "SOC1_ACTCOM", "USERSEXT", "SOC1_param"}) {
        SCOPED_TRACE(table);
        const Handle handle = OpenCopy(table);
        std::ifstream in(Fixture(table + ".tags.jsonl"));
        std::vector<Handle> indexes;
        ASSERT_EQ(engine.GetAllIndexes(handle, indexes), AE_SUCCESS);
        std::size_t order = 0;
        for (std::string line; std::getline(in, line); ++order) {
            const auto want = nlohmann::json::parse(line);
            ASSERT_LT(order, indexes.size());
            std::string name;
            ASSERT_EQ(engine.GetIndexName(indexes[order], name), AE_SUCCESS);
            EXPECT_EQ(name, want["tag"]);
            Handle byName = 0;
            ASSERT_EQ(engine.GetIndexHandle(handle, name, byName), AE_SUCCESS);
            EXPECT_EQ(byName, indexes[order]);
            std::uint32_t count = 0;
            ASSERT_EQ(engine.GetKeyCount(byName, ADS_IGNOREFILTERS, count), AE_SUCCESS);
            EXPECT_EQ(count, want["keycount"].get<std::uint32_t>());
            EXPECT_EQ(WalkInOrder(byName), want["order"].get<std::vector<std::uint32_t>>()) << name;
        }
        EXPECT_EQ(order, indexes.size());
        ASSERT_EQ(engine.CloseTable(handle), AE_SUCCESS);
    }
}

TEST_F(FixtureOrderTest, SeeksOnKeysThatHideDeletedRecords) {
    const Handle table = OpenCopy("people");
    Handle live = 0;
    Handle name = 0;
    ASSERT_EQ(engine.GetIndexHandle(table, "LIVE", live), AE_SUCCESS);
    ASSERT_EQ(engine.GetIndexHandle(table, "name", name), AE_SUCCESS);
    // Every 7th record from the first is deleted: its name is still in NAME but not behind "X"
    // in LIVE.
    ASSERT_EQ(engine.GotoRecord(table, 8), AE_SUCCESS);
    bool deleted = false;
    ASSERT_EQ(engine.IsRecordDeleted(table, deleted), AE_SUCCESS);
    ASSERT_TRUE(deleted);
    const std::string deletedName = String(table, "NAME");
    ASSERT_EQ(engine.GotoRecord(table, 9), AE_SUCCESS);
    const std::string liveName = String(table, "NAME");
    bool found = false;
    ASSERT_EQ(engine.Seek(live, "X" + liveName, ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    std::string key;
    ASSERT_EQ(engine.ExtractKey(live, key), AE_SUCCESS);
    EXPECT_EQ(key.substr(0, 1 + liveName.size()), "X" + liveName);
    ASSERT_EQ(engine.Seek(live, "X" + deletedName, ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    if (found) {
        EXPECT_NE(Recno(live), 8u);  // another live record may share the name
    }
    ASSERT_EQ(engine.Seek(live, "X" + std::string(15, ' '), ADS_STRINGKEY, ADS_HARDSEEK, found),
              AE_SUCCESS);
    ASSERT_TRUE(found);
    EXPECT_TRUE(deleted);
    ASSERT_EQ(engine.IsRecordDeleted(live, deleted), AE_SUCCESS);
    EXPECT_TRUE(deleted) << "the blank key belongs to deleted records";

    // Partial keys, hard and soft seeks, seek last and the found flag on Upper(NAME).
    ASSERT_EQ(engine.Seek(name, "A", ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    const std::uint32_t firstA = found ? Recno(name) : 0;
    ASSERT_EQ(engine.SeekLast(name, "A", ADS_STRINGKEY, found), AE_SUCCESS);
    if (firstA != 0) {
        ASSERT_TRUE(found);
        std::string key;
        ASSERT_EQ(engine.ExtractKey(name, key), AE_SUCCESS);
        EXPECT_EQ(key.substr(0, 1), "A");
        ASSERT_EQ(engine.Skip(name, 1), AE_SUCCESS);
        ASSERT_EQ(engine.ExtractKey(name, key), AE_SUCCESS);
        EXPECT_TRUE(Eof(name) || key.substr(0, 1) != "A");
    }
    ASSERT_EQ(engine.Seek(name, "\xC3\xBF\xC3\xBF", ADS_STRINGKEY, ADS_HARDSEEK, found),
              AE_SUCCESS);
    EXPECT_FALSE(found);
    EXPECT_TRUE(Eof(name));
    ASSERT_EQ(engine.Seek(name, "B", ADS_STRINGKEY, ADS_SOFTSEEK, found), AE_SUCCESS);
    EXPECT_FALSE(Eof(name));
    std::string softKey;
    ASSERT_EQ(engine.ExtractKey(name, softKey), AE_SUCCESS);
    EXPECT_GE(softKey.substr(0, 1), "B");
}

TEST_F(FixtureOrderTest, DescendingTagsAndNumericSeeks) {
    const Handle table = OpenCopy("people");
    Handle descending = 0;
    Handle amount = 0;
    ASSERT_EQ(engine.GetIndexHandle(table, "QTYDESC", descending), AE_SUCCESS);
    ASSERT_EQ(engine.GetIndexHandle(table, "AMOUNT", amount), AE_SUCCESS);
    bool isDescending = false;
    ASSERT_EQ(engine.IsIndexDescending(descending, isDescending), AE_SUCCESS);
    EXPECT_TRUE(isDescending);
    double previous = 1e300;
    ASSERT_EQ(engine.GotoTop(descending), AE_SUCCESS);
    for (int i = 0; i < 100 && !Eof(descending); ++i) {
        double qty = 0;
        ASSERT_EQ(engine.GetDouble(descending, "QTY", qty), AE_SUCCESS);
        EXPECT_LE(qty, previous);
        previous = qty;
        ASSERT_EQ(engine.Skip(descending, 1), AE_SUCCESS);
    }
    // A double key finds the record holding that amount.
    ASSERT_EQ(engine.GotoRecord(table, 123), AE_SUCCESS);
    double value = 0;
    ASSERT_EQ(engine.GetDouble(table, "AMOUNT", value), AE_SUCCESS);
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    bool found = false;
    ASSERT_EQ(engine.Seek(amount, bytes, ADS_DOUBLEKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    ASSERT_TRUE(found);
    double seen = 0;
    ASSERT_EQ(engine.GetDouble(amount, "AMOUNT", seen), AE_SUCCESS);
    EXPECT_EQ(seen, value);
}

}  // namespace
}  // namespace fnrk::engine

// Two engines on one table in SHARED mode stand for two workstations: each must see the other's
// committed index changes, a tag the other added, and records the other changed under a dynamic
// optimized filter.

#include <gtest/gtest.h>

#include "engine/cursor/table_cursor.hpp"
#include "engine/order/table_indexes.hpp"
#include "engine/table/engine_fixture.hpp"

namespace fnrk::engine {
namespace {

class SharedHandlesTest : public EngineTest {
  protected:
    void SetUp() override {
        EngineTest::SetUp();
        Create("stock", "NAME,C,10;QTY,N,6,0");
        Handle setup = Open("stock", ADS_EXCLUSIVE);
        for (int i = 0; i < 60; ++i) {
            ASSERT_EQ(engine.AppendRecord(setup), AE_SUCCESS);
            ASSERT_EQ(engine.SetString(setup, "NAME", "N" + std::to_string(i)), AE_SUCCESS);
            ASSERT_EQ(engine.SetDouble(setup, "QTY", i % 30), AE_SUCCESS);
        }
        Handle index = 0;
        ASSERT_EQ(engine.CreateIndex(setup, "", "QTY", "QTY", "", "", ADS_COMPOUND, index),
                  AE_SUCCESS);
        ASSERT_EQ(engine.CloseTable(setup), AE_SUCCESS);
        ASSERT_EQ(other.Connect26(dir.path().string(), ADS_LOCAL_SERVER, otherConnection), 0);
        mine = Open("stock", ADS_SHARED);
        ASSERT_EQ(other.OpenTable(otherConnection, "stock", "", ADS_CDX, ADS_ANSI,
                                  ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, theirs),
                  AE_SUCCESS);
    }

    void Write(Engine& by, Handle table, std::uint32_t record, double qty) {
        ASSERT_EQ(by.GotoRecord(table, record), AE_SUCCESS);
        ASSERT_EQ(by.SetDouble(table, "QTY", qty), AE_SUCCESS);
        ASSERT_EQ(by.FlushFileBuffers(table), AE_SUCCESS);
    }

    bool Found(Engine& by, Handle table, const std::string& tag, const std::string& key,
               std::uint16_t type) {
        Handle index = 0;
        EXPECT_EQ(by.GetIndexHandle(table, tag, index), AE_SUCCESS);
        bool found = false;
        EXPECT_EQ(by.Seek(index, key, type, ADS_HARDSEEK, found), AE_SUCCESS);
        return found;
    }

    Engine other;
    Handle otherConnection = 0;
    Handle mine = 0;
    Handle theirs = 0;
};

TEST_F(SharedHandlesTest, ATagAddedByOneIsSeenAndKeptUpToDateByTheOther) {
    Handle byName = 0;
    ASSERT_EQ(engine.CreateIndex(mine, "", "NAME", "upper(NAME)", "", "", ADS_COMPOUND, byName),
              AE_SUCCESS);
    // The other side opened the file before the tag existed.
    Handle seen = 0;
    ASSERT_EQ(other.GetIndexHandle(theirs, "NAME", seen), AE_SUCCESS);
    std::vector<Handle> all;
    ASSERT_EQ(other.GetAllIndexes(theirs, all), AE_SUCCESS);
    EXPECT_EQ(all.size(), 2u);
    EXPECT_TRUE(Found(other, theirs, "NAME", "N42", ADS_STRINGKEY));
    // Its appends and writes reach the new tag, and this side finds them.
    ASSERT_EQ(other.AppendRecord(theirs), AE_SUCCESS);
    ASSERT_EQ(other.SetString(theirs, "NAME", "zulu"), AE_SUCCESS);
    ASSERT_EQ(other.FlushFileBuffers(theirs), AE_SUCCESS);
    ASSERT_EQ(other.GotoRecord(theirs, 7), AE_SUCCESS);
    ASSERT_EQ(other.SetString(theirs, "NAME", "yankee"), AE_SUCCESS);
    ASSERT_EQ(other.FlushFileBuffers(theirs), AE_SUCCESS);
    EXPECT_TRUE(Found(engine, mine, "NAME", "ZULU", ADS_STRINGKEY));
    EXPECT_TRUE(Found(engine, mine, "NAME", "YANKEE", ADS_STRINGKEY));
    EXPECT_FALSE(Found(engine, mine, "NAME", "N6 ", ADS_STRINGKEY));
    std::uint32_t keys = 0;
    ASSERT_EQ(engine.GetKeyCount(byName, ADS_IGNOREFILTERS, keys), AE_SUCCESS);
    EXPECT_EQ(keys, 61u);
}

// A walk in tag order goes on from the entry it stands on only while the tag is as it left it:
// after the other side moved a key, or this side its own record's, it goes on from where the
// tag now puts the record.
TEST_F(SharedHandlesTest, AWalkInTagOrderFollowsKeysThatMovedUnderIt) {
    Handle byQty = 0;
    ASSERT_EQ(engine.GetIndexHandle(mine, "QTY", byQty), AE_SUCCESS);
    std::vector<std::uint32_t> walked;
    auto step = [&](std::int32_t count) {
        ASSERT_EQ(engine.Skip(byQty, count), AE_SUCCESS);
        walked.push_back(Recno(mine));
    };
    ASSERT_EQ(engine.GotoTop(byQty), AE_SUCCESS);
    walked.push_back(Recno(mine));
    step(1);
    step(1);
    // Record 32 (QTY 1, next in line) moves before the walk; record 3 (QTY 2) comes next.
    Write(other, theirs, 32, 0);
    step(1);
    // This side moves record 3 to QTY 25: ahead of records 26 and 56, which share the key.
    ASSERT_EQ(engine.SetDouble(mine, "QTY", 25), AE_SUCCESS);
    step(1);
    step(1);
    step(-1);
    step(-1);
    EXPECT_EQ(walked, (std::vector<std::uint32_t>{1, 31, 2, 3, 26, 56, 26, 3}));
}

TEST_F(SharedHandlesTest, DynamicFilterJudgesRecordsTheOtherChanged) {
    const char* condition = "QTY >= 10 .AND. QTY <= 20";
    ASSERT_EQ(engine.SetAOF(mine, condition, ADS_RESOLVE_DYNAMIC), AE_SUCCESS);
    std::uint16_t level = 0;
    std::string rest;
    ASSERT_EQ(engine.GetAOFOptLevel(mine, level, rest), AE_SUCCESS);
    EXPECT_EQ(level, ADS_OPTIMIZED_FULL);
    EXPECT_EQ(Count(mine, ADS_RESPECTFILTERS), 22u);
    // Record 3 moves into the range, record 12 out of it, and a new record lands in it.
    Write(other, theirs, 3, 15);
    Write(other, theirs, 12, 50);
    ASSERT_EQ(other.AppendRecord(theirs), AE_SUCCESS);
    ASSERT_EQ(other.SetDouble(theirs, "QTY", 12), AE_SUCCESS);
    ASSERT_EQ(other.FlushFileBuffers(theirs), AE_SUCCESS);
    std::vector<std::uint32_t> records;
    ASSERT_EQ(engine.GotoTop(mine), AE_SUCCESS);
    while (!Eof(mine) && records.size() <= 61) {
        records.push_back(Recno(mine));
        ASSERT_EQ(engine.Skip(mine, 1), AE_SUCCESS);
    }
    std::vector<std::uint32_t> expected;
    for (std::uint32_t r = 1; r <= 60; ++r) {
        const int qty = r == 3 ? 15 : r == 12 ? 50 : static_cast<int>((r - 1) % 30);
        if (qty >= 10 && qty <= 20) expected.push_back(r);
    }
    expected.push_back(61);
    EXPECT_EQ(records, expected);
}

// A shared append writes the record blank at once and its keys when the record is written. A tag
// that the other side builds in between holds the blank record's keys: they must not stay behind.
TEST_F(SharedHandlesTest, AnAppendedRecordGetsItsKeysWhenWrittenEvenIfATagWasBuiltMeanwhile) {
    ASSERT_EQ(other.AppendRecord(theirs), AE_SUCCESS);
    Handle byName = 0;
    ASSERT_EQ(engine.CreateIndex(mine, "", "NAME", "upper(NAME)", "", "", ADS_COMPOUND, byName),
              AE_SUCCESS);
    ASSERT_EQ(other.SetString(theirs, "NAME", "zulu"), AE_SUCCESS);
    ASSERT_EQ(other.SetDouble(theirs, "QTY", 7), AE_SUCCESS);
    ASSERT_EQ(other.FlushFileBuffers(theirs), AE_SUCCESS);
    // An append left blank gets the keys of a blank record.
    ASSERT_EQ(other.AppendRecord(theirs), AE_SUCCESS);
    ASSERT_EQ(other.CloseTable(theirs), AE_SUCCESS);
    EXPECT_TRUE(Found(engine, mine, "NAME", "ZULU", ADS_STRINGKEY));
    Handle byQty = 0;
    ASSERT_EQ(engine.GetIndexHandle(mine, "QTY", byQty), AE_SUCCESS);
    for (Handle index : {byName, byQty}) {
        std::uint32_t keys = 0;
        ASSERT_EQ(engine.GetKeyCount(index, ADS_IGNOREFILTERS, keys), AE_SUCCESS);
        EXPECT_EQ(keys, 62u);
    }
    const cursor::EngineSettings settings;
    cursor::TableCursor table(settings);
    std::string message;
    ASSERT_EQ(table.Open((dir.path() / "stock.dbf").string(), "CHECK", {.readOnly = true}, message),
              AE_SUCCESS);
    order::TableIndexes indexes(table, settings.dates);
    ASSERT_EQ(indexes.OpenStructural(message), AE_SUCCESS);
    EXPECT_EQ(indexes.Check(), std::vector<std::string>{});
}

}  // namespace
}  // namespace fnrk::engine

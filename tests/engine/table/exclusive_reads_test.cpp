// Alone on a plain table, records are read through a mapping of the file. These cases change the
// file under a handle that has already read through it (so that the mapping exists) and read
// again: every read must show the file as it now is, and a file cut shorter must never be read
// through a mapping of its old length.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine_fixture.hpp"

namespace fnrk::engine {
namespace {

class ExclusiveReads : public EngineTest {
  protected:
    // An exclusive table of `count` records, NAME "N1".."Ncount", read once from the start.
    Handle NamesRead(int count) {
        Create("names", "NAME,C,12;QTY,N,6,0");
        const Handle table = Open("names", ADS_EXCLUSIVE);
        Append(table, 1, count);
        Walk(table);
        return table;
    }

    void Append(Handle table, int first, int last) {
        for (int i = first; i <= last; ++i) {
            ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
            ASSERT_EQ(engine.SetString(table, "NAME", "N" + std::to_string(i)), AE_SUCCESS);
            ASSERT_EQ(engine.SetLong(table, "QTY", i), AE_SUCCESS);
        }
    }

    std::vector<std::string> Walk(Handle table) {
        std::vector<std::string> names;
        for (Top(table); !Eof(table); Next(table)) names.push_back(Name(table));
        return names;
    }

    std::string Name(Handle table) {
        std::string name;
        EXPECT_EQ(engine.GetString(table, "NAME", name, ADS_RTRIM), AE_SUCCESS);
        return name;
    }

    std::string NameOf(Handle table, std::uint32_t record) {
        EXPECT_EQ(engine.GotoRecord(table, record), AE_SUCCESS);
        return Name(table);
    }
};

TEST_F(ExclusiveReads, WritesAppendsZapAndPackShowInTheNextRead) {
    const Handle table = NamesRead(40);

    // A rewrite of a record already read.
    ASSERT_EQ(engine.GotoRecord(table, 7), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(table, "NAME", "changed"), AE_SUCCESS);
    EXPECT_EQ(NameOf(table, 8), "N8");
    EXPECT_EQ(NameOf(table, 7), "changed");

    // Appends far past what was there when the file was first read: some land in the old
    // length's last page, most beyond it.
    Append(table, 41, 400);
    EXPECT_EQ(NameOf(table, 41), "N41");
    EXPECT_EQ(NameOf(table, 400), "N400");
    EXPECT_EQ(NameOf(table, 1), "N1");
    EXPECT_EQ(Walk(table).size(), 400u);

    // Zap cuts the file to its header; new records then take the old ones' places.
    ASSERT_EQ(engine.ZapTable(table), AE_SUCCESS);
    EXPECT_TRUE(Walk(table).empty());
    Append(table, 1001, 1003);
    EXPECT_EQ(Walk(table), (std::vector<std::string>{"N1001", "N1002", "N1003"}));

    // Pack puts new files in place of the ones that were read.
    Append(table, 1004, 1300);
    for (std::uint32_t record = 1; record <= 300; record += 2) {
        ASSERT_EQ(engine.GotoRecord(table, record), AE_SUCCESS);
        ASSERT_EQ(engine.DeleteRecord(table), AE_SUCCESS);
    }
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS);
    const std::vector<std::string> kept = Walk(table);
    ASSERT_EQ(kept.size(), 150u);
    EXPECT_EQ(kept.front(), "N1002");
    EXPECT_EQ(kept.back(), "N1300");
    EXPECT_EQ(NameOf(table, 150), "N1300");

    // Encrypted in place: the records read are the clear ones, through the new cipher.
    ASSERT_EQ(engine.EnableEncryption(table, "mapping"), AE_SUCCESS);
    ASSERT_EQ(engine.EncryptTable(table), AE_SUCCESS);
    EXPECT_EQ(NameOf(table, 2), "N1004");
    EXPECT_EQ(Walk(table), kept);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
}

TEST_F(ExclusiveReads, AWalkInTagOrderFollowsAKeyChangedOnTheWay) {
    const Handle table = NamesRead(5);
    Handle index = 0;
    ASSERT_EQ(engine.CreateIndex(table, "", "NAME", "NAME", "", "", ADS_COMPOUND, index),
              AE_SUCCESS);
    std::vector<std::string> seen;
    for (Top(index); !Eof(index); Next(index)) {
        seen.push_back(Name(index));
        // The record moves to the end of the order: the walk goes on from its new place.
        if (seen.back() == "N2") {
            ASSERT_EQ(engine.SetString(index, "NAME", "Z2"), AE_SUCCESS);
        }
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"N1", "N2"}));
    seen.clear();
    for (Top(index); !Eof(index); Next(index)) seen.push_back(Name(index));
    EXPECT_EQ(seen, (std::vector<std::string>{"N1", "N3", "N4", "N5", "Z2"}));
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
}

}  // namespace
}  // namespace fnrk::engine

// What another workstation sees of a change before it is committed, what a writer that dies
// leaves behind, what closing writes, and how navigation ends on a tag that holds a record twice.

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "engine/cdx/compound_index.hpp"
#include "engine_fixture.hpp"
#include "support/file_size_limit.hpp"
#include "support/run_command.hpp"

namespace fnrk::engine {
namespace {

using fnrk::testing::CommandResult;
using fnrk::testing::RunFennrick;

constexpr std::string_view kCommitted = "the committed note";

class CommitSafety : public EngineTest {
  protected:
    // A table of ten records (ID 1..10, VAL = 10 * ID, NOTE "the committed note" on record 1)
    // with the tags ID and VAL in its structural index.
    void CreateNotes() {
        Create("notes", "ID,N,6,0;VAL,N,6,0;NOTE,M");
        const Handle table = Open("notes", ADS_EXCLUSIVE);
        for (std::int32_t id = 1; id <= 10; ++id) {
            ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
            ASSERT_EQ(engine.SetLong(table, "ID", id), AE_SUCCESS);
            ASSERT_EQ(engine.SetLong(table, "VAL", 10 * id), AE_SUCCESS);
            if (id == 1) {
                ASSERT_EQ(engine.SetString(table, "NOTE", kCommitted), AE_SUCCESS);
            }
        }
        for (const char* tag : {"ID", "VAL"}) {
            Handle index = 0;
            ASSERT_EQ(engine.CreateIndex(table, "", tag, tag, "", "", ADS_COMPOUND, index),
                      AE_SUCCESS);
        }
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }

    std::string Path(const std::string& file) const { return (dir / file).string(); }

    CommandResult Check() { return RunFennrick({"table", "check", Path("notes.dbf")}); }

    // In a child process with an engine of its own: runs `work` on the table opened shared and
    // dies by SIGKILL without closing anything.
    // The writer is killed after its work; a step of the work that fails ends it normally
    // instead, which fails the test.
    void KilledWriter(const std::function<bool(Engine&, Handle)>& work) {
        const pid_t pid = fork();
        if (pid == 0) {
            Engine own;
            const Handle table = OpenElsewhere(own, "notes");
            if (table == 0 || !work(own, table)) _exit(1);
            raise(SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        ASSERT_TRUE(WIFSIGNALED(status));
    }
};

TEST_F(CommitSafety, AMemoChangeIsSeenOnlyWhenItsRecordIsWritten) {
    CreateNotes();
    const Handle writer = Open("notes", ADS_SHARED, "WRITER");
    Engine other;
    const Handle reader = OpenElsewhere(other, "notes");
    ASSERT_NE(reader, 0u);
    auto readNote = [&] {
        std::string note;
        EXPECT_EQ(other.GotoRecord(reader, 1), AE_SUCCESS);
        EXPECT_EQ(other.Skip(reader, 0), AE_SUCCESS);  // reads the record anew
        EXPECT_EQ(other.GetString(reader, "NOTE", note, ADS_NONE), AE_SUCCESS);
        return note;
    };
    ASSERT_EQ(engine.GotoRecord(writer, 1), AE_SUCCESS);
    ASSERT_EQ(engine.LockRecord(writer, 1), AE_SUCCESS);
    // As long as the old text (fits its blocks: once rewritten in place), then longer, then
    // shorter again: none of it may show before the commit.
    for (const std::string& text :
         {std::string("the uncommitted one"), std::string(300, 'x'), std::string("short")}) {
        ASSERT_EQ(engine.SetString(writer, "NOTE", text), AE_SUCCESS);
        EXPECT_EQ(readNote(), kCommitted) << text;
        EXPECT_EQ(String(writer, "NOTE"), text);
    }
    ASSERT_EQ(engine.UnlockRecord(writer, 1), AE_SUCCESS);
    EXPECT_EQ(readNote(), "short");
}

// A record copied whole from another table points at blocks of that table's memo file; here
// they belong to other records, and a memo written to the copy must leave them alone.
TEST_F(CommitSafety, AMemoWriteNeverOverwritesAnotherRecordsMemo) {
    CreateNotes();
    Create("source", "ID,N,6,0;VAL,N,6,0;NOTE,M");
    const Handle source = Open("source", ADS_EXCLUSIVE);
    ASSERT_EQ(engine.AppendRecord(source), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(source, "NOTE", "a note of the source table"), AE_SUCCESS);
    std::string copied;
    ASSERT_EQ(engine.GetRecord(source, copied), AE_SUCCESS);

    const Handle notes = Open("notes", ADS_EXCLUSIVE);
    ASSERT_EQ(engine.GotoRecord(notes, 2), AE_SUCCESS);
    ASSERT_EQ(engine.SetRecord(notes, copied), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(notes, "NOTE", "short"), AE_SUCCESS);
    ASSERT_EQ(engine.GotoRecord(notes, 3), AE_SUCCESS);
    // Copied within the table: record 1's own memo block.
    ASSERT_EQ(engine.GotoRecord(notes, 1), AE_SUCCESS);
    std::string first;
    ASSERT_EQ(engine.GetRecord(notes, first), AE_SUCCESS);
    ASSERT_EQ(engine.GotoRecord(notes, 4), AE_SUCCESS);
    ASSERT_EQ(engine.SetRecord(notes, first), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(notes, "NOTE", "four"), AE_SUCCESS);
    // Written twice in one edit, the copy's own new memo is reused.
    ASSERT_EQ(engine.SetString(notes, "NOTE", "four again"), AE_SUCCESS);
    ASSERT_EQ(engine.CloseTable(notes), AE_SUCCESS);

    const Handle reopened = Open("notes");
    const std::vector<std::string> expected = {std::string(kCommitted), "short", "", "four again"};
    for (std::uint32_t record = 1; record <= 4; ++record) {
        ASSERT_EQ(engine.GotoRecord(reopened, record), AE_SUCCESS);
        EXPECT_EQ(String(reopened, "NOTE"), expected[record - 1]) << record;
    }
    ASSERT_EQ(engine.GotoRecord(source, 1), AE_SUCCESS);
    EXPECT_EQ(String(source, "NOTE"), "a note of the source table");
    const CommandResult check = Check();
    EXPECT_EQ(check.exitCode, 0) << check.out << check.err;
}

TEST_F(CommitSafety, AWriterKilledBeforeItsCommitLosesNothing) {
    CreateNotes();
    KilledWriter([](Engine& own, Handle table) {
        return own.GotoRecord(table, 1) == AE_SUCCESS &&
               // a text as long as the old one
               own.SetString(table, "NOTE", "never committed") == AE_SUCCESS &&
               own.SetLong(table, "VAL", 999) == AE_SUCCESS;
    });
    KilledWriter([](Engine& own, Handle table) {
        return own.GotoRecord(table, 1) == AE_SUCCESS &&
               // longer: new blocks at the end
               own.SetString(table, "NOTE", std::string(500, 'n')) == AE_SUCCESS;
    });
    const Handle table = Open("notes");
    ASSERT_EQ(engine.GotoRecord(table, 1), AE_SUCCESS);
    EXPECT_EQ(String(table, "NOTE"), kCommitted);
    std::int32_t value = 0;
    ASSERT_EQ(engine.GetLong(table, "VAL", value), AE_SUCCESS);
    EXPECT_EQ(value, 10);
    const CommandResult check = Check();
    EXPECT_EQ(check.exitCode, 0) << check.err;
}

TEST_F(CommitSafety, EveryWayOfClosingWritesThePendingRecordWithItsKeys) {
    CreateNotes();
    const std::vector<std::pair<std::string, std::function<void(Engine&, Handle)>>> ways = {
        {"CloseAllTables",
         [](Engine& own, Handle) { EXPECT_EQ(own.CloseAllTables(), AE_SUCCESS); }},
        {"Disconnect",
         [](Engine& own, Handle folder) { EXPECT_EQ(own.Disconnect(folder), AE_SUCCESS); }},
        {"Disconnect(0)", [](Engine& own, Handle) { EXPECT_EQ(own.Disconnect(0), AE_SUCCESS); }},
        {"destructor", [](Engine&, Handle) {}},
    };
    std::int32_t id = 100;
    for (const auto& [name, close] : ways) {
        {
            Engine own;
            Handle folder = 0;
            Handle table = 0;
            ASSERT_EQ(own.Connect26(dir.path().string(), ADS_LOCAL_SERVER, folder), AE_SUCCESS);
            ASSERT_EQ(own.OpenTable(folder, "notes", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                    ADS_IGNORERIGHTS, ADS_SHARED, table),
                      AE_SUCCESS);
            ASSERT_EQ(own.AppendRecord(table), AE_SUCCESS);
            ASSERT_EQ(own.SetLong(table, "ID", ++id), AE_SUCCESS);
            // And a change of an existing record, pending as well.
            ASSERT_EQ(own.GotoRecord(table, 2), AE_SUCCESS);
            ASSERT_EQ(own.SetLong(table, "VAL", id), AE_SUCCESS);
            close(own, folder);
        }
        const CommandResult check = Check();
        EXPECT_EQ(check.exitCode, 0) << name << ": " << check.err;
        const Handle table = Open("notes");
        ASSERT_EQ(engine.GotoRecord(table, 2), AE_SUCCESS);
        std::int32_t value = 0;
        ASSERT_EQ(engine.GetLong(table, "VAL", value), AE_SUCCESS);
        EXPECT_EQ(value, id) << name;
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }
}

// Alone on a table, the engine keeps index pages in memory across appends; a flush must put
// every key on disk while the table stays open, as it does the records.
TEST_F(CommitSafety, AFlushWritesEveryKeyOfAnExclusiveTable) {
    CreateNotes();
    const Handle table = Open("notes", ADS_EXCLUSIVE);
    for (std::int32_t id = 11; id <= 60; ++id) {
        ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(engine.SetLong(table, "ID", id), AE_SUCCESS);
        ASSERT_EQ(engine.SetLong(table, "VAL", 10 * id), AE_SUCCESS);
    }
    ASSERT_EQ(engine.FlushFileBuffers(table), AE_SUCCESS);
    {
        auto index =
            cdx::CompoundIndex::Open(Path("notes.cdx"), {.readOnly = true},
                                     [](const std::string&) { return cdx::KeyKind::Numeric; });
        for (const char* tag : {"ID", "VAL"})
            EXPECT_EQ(index->FindTag(tag)->CountKeys(), 60u) << tag;
    }
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    const CommandResult check = Check();
    EXPECT_EQ(check.exitCode, 0) << check.err;
}

// Alone on a table, records appended past a full disk: the failure is reported (by an append or
// at the latest by the close), and the table opens again with only whole records counted.
TEST_F(CommitSafety, ExclusiveAppendsThatDoNotFitAreReportedAndTheTableStaysWhole) {
    Create("plain", "ID,N,8,0");
    const std::uint64_t limit = std::filesystem::file_size(dir / "plain.dbf") + 100 * 9 + 4;
    const int exit = testing::RunWithFileSizeLimit(limit, [&] {
        Engine own;
        const Handle table = OpenElsewhere(own, "plain", ADS_EXCLUSIVE);
        if (table == 0) return 2;
        for (std::int32_t id = 1; id <= 1000; ++id) {
            if (own.AppendRecord(table) != AE_SUCCESS || own.SetLong(table, "ID", id) != AE_SUCCESS)
                return own.CloseTable(table) == AE_SUCCESS ? 3 : 1;
        }
        return own.CloseTable(table) == AE_SUCCESS ? 0 : 1;
    });
    EXPECT_EQ(exit, 1);

    for (const std::uint32_t mode : {ADS_SHARED, ADS_EXCLUSIVE}) {
        const Handle table = Open("plain", mode);
        ASSERT_NE(table, 0u) << mode;
        std::uint32_t count = 0;
        ASSERT_EQ(engine.GetRecordCount(table, ADS_IGNOREFILTERS, count), AE_SUCCESS);
        EXPECT_LE(count, 100u);
        for (std::uint32_t record = 1; record <= count; ++record) {
            ASSERT_EQ(engine.GotoRecord(table, record), AE_SUCCESS);
            std::int32_t id = 0;
            ASSERT_EQ(engine.GetLong(table, "ID", id), AE_SUCCESS);
            ASSERT_EQ(id, static_cast<std::int32_t>(record));
        }
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }
}

// Adds a second key for `record` to tag VAL, behind the table's back: what a writer killed
// between the two halves of a key move can leave.
void AddStaleKey(const std::string& indexPath, double value, std::uint32_t record) {
    auto index = cdx::CompoundIndex::Open(indexPath, {},
                                          [](const std::string&) { return cdx::KeyKind::Numeric; });
    cdx::IndexFile::UpdateGuard guard(index->file());
    ASSERT_TRUE(index->FindTag("VAL")->Insert(cdx::EncodeNumberKey(value), record));
}

TEST_F(CommitSafety, ATagHoldingARecordTwiceEndsEveryWalkAndReindexRepairsIt) {
    CreateNotes();
    // Record 3 (VAL 30) also under 75, between records 7 and 8: a walk that found record 3 again
    // by its own key would go round 3 4 5 6 7 3 4 ... for ever; so would one backwards from the
    // end (10 9 8 3 2 1 BOF is what it must not be either: the tag is damaged).
    AddStaleKey(Path("notes.cdx"), 75, 3);

    const Handle table = Open("notes");
    Handle index = 0;
    ASSERT_EQ(engine.GetIndexHandle(table, "VAL", index), AE_SUCCESS);
    for (const std::int32_t step : {1, -1}) {
        ASSERT_EQ(step > 0 ? engine.GotoTop(index) : engine.GotoBottom(index), AE_SUCCESS);
        Status status = AE_SUCCESS;
        int steps = 0;
        for (; steps < 40 && status == AE_SUCCESS && !Eof(table) && !Bof(table); ++steps)
            status = engine.Skip(index, step);
        EXPECT_EQ(status, AE_CORRUPT_INDEX) << "step " << step << " after " << steps;
        EXPECT_LT(steps, 14) << step;
    }
    // A SQL range over the tag ends too, with an error.
    const CommandResult count =
        RunFennrick({"sql", dir.path().string(), "select count(*) from notes where VAL >= 0"});
    EXPECT_NE(count.exitCode, 0) << count.out;

    const CommandResult check = Check();
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_NE(check.err.find("tag VAL: record 3 is present twice"), std::string::npos) << check.err;
    EXPECT_EQ(check.err.find("tag ID"), std::string::npos) << check.err;

    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    const CommandResult reindex = RunFennrick({"table", "reindex", Path("notes.dbf")});
    ASSERT_EQ(reindex.exitCode, 0) << reindex.err;
    EXPECT_EQ(Check().exitCode, 0);
    const Handle repaired = Open("notes");
    ASSERT_EQ(engine.GetIndexHandle(repaired, "VAL", index), AE_SUCCESS);
    ASSERT_EQ(engine.GotoTop(index), AE_SUCCESS);
    std::vector<std::uint32_t> order;
    while (!Eof(repaired) && order.size() < 20) {
        order.push_back(Recno(repaired));
        ASSERT_EQ(engine.Skip(index, 1), AE_SUCCESS);
    }
    EXPECT_EQ(order, (std::vector<std::uint32_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

}  // namespace
}  // namespace fnrk::engine

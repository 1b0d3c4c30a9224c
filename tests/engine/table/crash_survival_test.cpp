// A writer killed at random moments, many times over: a child process appends, updates (memos
// included) and deletes records of a shared table with tags, telling the parent through a pipe
// what it starts and what it has committed, and is killed with SIGKILL after a random while.
// After each kill, everything committed before it must read back exactly, the one change in
// flight must be all there or not at all, and the table must check clean, or be reported in
// terms that `table reindex` repairs.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <optional>
#include <random>
#include <thread>

#include "engine_fixture.hpp"
#include "support/run_command.hpp"

namespace fnrk::engine {
namespace {

using fnrk::testing::CommandResult;
using fnrk::testing::RunFennrick;

constexpr int kRounds = 40;
constexpr int kMaxLifeMicroseconds = 25'000;

enum class Kind : char { Append = 'A', Update = 'U', Delete = 'D' };

// One line of the child's journal, written whole to the pipe (well under PIPE_BUF).
struct Step {
    char committed = 0;  // 0 when the step starts, 1 when it is committed
    Kind kind = Kind::Append;
    std::uint32_t record = 0;  // 0 for an append that has not got its number yet
    std::int32_t id = 0;
    std::int32_t value = 0;
    std::uint32_t noteSeed = 0;
    std::uint32_t noteLength = 0;
};

struct Row {
    std::int32_t id = 0;
    std::int32_t value = 0;
    std::string note;
    bool deleted = false;
    std::string bytes;  // as stored, to show what a wrong row holds; not compared
    bool operator==(const Row& other) const {
        return id == other.id && value == other.value && note == other.note &&
               deleted == other.deleted;
    }
};

// Memo texts of many sizes, so that a new text sometimes fits the old one's blocks and
// sometimes does not.
std::string Note(std::uint32_t seed, std::uint32_t length) {
    std::string text(length, ' ');
    for (std::uint32_t i = 0; i < length; ++i)
        text[i] = static_cast<char>('a' + (seed + i * 7) % 26);
    return text;
}

Row Applied(Row row, const Step& step) {
    if (step.kind == Kind::Delete) {
        row.deleted = true;
        return row;
    }
    if (step.kind == Kind::Append) row.id = step.id;
    row.value = step.value;
    row.note = Note(step.noteSeed, step.noteLength);
    return row;
}

std::string Describe(const Row& row) {
    std::string stored;
    for (const char c : row.bytes) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "\\x%02x", static_cast<unsigned>(c & 0xff));
        stored += c >= 32 && c < 127 ? std::string(1, c) : std::string(hex);
    }
    return "{id " + std::to_string(row.id) + ", value " + std::to_string(row.value) + ", note " +
           std::to_string(row.note.size()) + " bytes, " + (row.deleted ? "deleted" : "live") +
           (stored.empty() ? "" : ", stored \"" + stored + "\"") + "}";
}

class CrashSurvival : public EngineTest {
  protected:
    void SetUp() override {
        EngineTest::SetUp();
        Create("ledger", "ID,N,8,0;VAL,N,8,0;NOTE,M");
        const Handle table = Open("ledger", ADS_EXCLUSIVE);
        for (const auto& [tag, condition] : std::vector<std::pair<std::string, std::string>>{
                 {"ID", ""}, {"VAL", ".NOT. DELETED()"}}) {
            Handle index = 0;
            ASSERT_EQ(engine.CreateIndex(table, "", tag, tag, condition, "", ADS_COMPOUND, index),
                      AE_SUCCESS);
        }
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }

    std::string TablePath() const { return (dir / "ledger.dbf").string(); }

    // The child: random steps until it is killed, each announced and then confirmed.
    [[noreturn]] void Write(int pipe, std::uint32_t seed, std::int32_t firstId) {
        Engine own;
        const Handle table = OpenElsewhere(own, "ledger");
        if (table == 0) _exit(2);
        std::mt19937 random(seed);
        std::int32_t nextId = firstId;
        auto tell = [&](const Step& step) {
            if (::write(pipe, &step, sizeof step) != sizeof step) _exit(3);
        };
        for (;;) {
            std::uint32_t count = 0;
            if (own.GetRecordCount(table, ADS_REFRESHCOUNT, count) != AE_SUCCESS) _exit(4);
            Step step;
            const std::uint32_t pick = random() % 10;
            step.kind =
                count == 0 || pick < 4 ? Kind::Append : (pick < 9 ? Kind::Update : Kind::Delete);
            step.record = step.kind == Kind::Append ? 0 : 1 + random() % count;
            step.id = step.kind == Kind::Append ? nextId++ : 0;
            step.value = static_cast<std::int32_t>(random() % 100'000);
            step.noteSeed = random();
            step.noteLength = random() % 4 == 0 ? 0 : random() % 400;
            tell(step);
            bool done = false;
            if (step.kind == Kind::Append) {
                done = own.AppendRecord(table) == AE_SUCCESS &&
                       own.SetLong(table, "ID", step.id) == AE_SUCCESS;
                if (done) step.record = Recno(own, table);
            } else {
                done = own.LockRecord(table, step.record) == AE_SUCCESS &&
                       own.GotoRecord(table, step.record) == AE_SUCCESS;
            }
            if (step.kind == Kind::Delete) {
                done = done && own.DeleteRecord(table) == AE_SUCCESS;
            } else {
                done = done && own.SetLong(table, "VAL", step.value) == AE_SUCCESS &&
                       own.SetString(table, "NOTE", Note(step.noteSeed, step.noteLength)) ==
                           AE_SUCCESS;
            }
            // Unlocking writes the record.
            if (!done || own.UnlockRecord(table, step.record) != AE_SUCCESS) _exit(5);
            step.committed = 1;
            tell(step);
        }
    }

    static std::uint32_t Recno(Engine& own, Handle table) {
        std::uint32_t record = 0;
        return own.GetRecordNum(table, ADS_IGNOREFILTERS, record) == AE_SUCCESS ? record : 0;
    }

    std::vector<Row> ReadAll() {
        std::vector<Row> rows;
        Engine reader;
        const Handle table = OpenElsewhere(reader, "ledger");
        if (table == 0) {
            Status code = 0;
            std::string text;
            IgnoreStatus(reader.GetLastError(code, text));  // the text is empty if it has none
            ADD_FAILURE() << "the table does not open: " << text;
            return rows;
        }
        std::uint32_t count = 0;
        EXPECT_EQ(reader.GetRecordCount(table, ADS_REFRESHCOUNT, count), AE_SUCCESS);
        for (std::uint32_t record = 1; record <= count; ++record) {
            Row row;
            EXPECT_EQ(reader.GotoRecord(table, record), AE_SUCCESS);
            EXPECT_EQ(reader.GetLong(table, "ID", row.id), AE_SUCCESS);
            EXPECT_EQ(reader.GetLong(table, "VAL", row.value), AE_SUCCESS);
            EXPECT_EQ(reader.GetString(table, "NOTE", row.note, ADS_NONE), AE_SUCCESS) << record;
            EXPECT_EQ(reader.IsRecordDeleted(table, row.deleted), AE_SUCCESS);
            EXPECT_EQ(reader.GetRecord(table, row.bytes), AE_SUCCESS);
            rows.push_back(std::move(row));
        }
        return rows;
    }

    // `table check`; when it finds something, what it found must be what a killed append or
    // key move leaves, and `table reindex` must clear it.
    void CheckOrRepair(int round) {
        const CommandResult check = RunFennrick({"table", "check", TablePath()});
        if (check.exitCode == 0) return;
        ++repairs;
        EXPECT_EQ(check.exitCode, 1) << "round " << round << ": " << check.err;
        // Keys a killed writer did not get to write, or an append it did not get to count.
        const bool known = check.err.find("tag ") != std::string::npos ||
                           check.err.find("after the last counted record") != std::string::npos;
        EXPECT_TRUE(known) << "round " << round << ": " << check.err;
        const CommandResult reindex = RunFennrick({"table", "reindex", TablePath()});
        ASSERT_EQ(reindex.exitCode, 0) << "round " << round << ": " << reindex.err;
        const CommandResult again = RunFennrick({"table", "check", TablePath()});
        ASSERT_EQ(again.exitCode, 0) << "round " << round << ": " << check.err << again.err;
    }

    int repairs = 0;
};

TEST_F(CrashSurvival, EverythingCommittedBeforeAKillIsIntact) {
    std::mt19937 random(20261124);
    std::vector<Row> model;  // the table as committed
    std::int32_t nextId = 1;
    int committedSteps = 0;
    for (int round = 0; round < kRounds; ++round) {
        int fds[2];
        ASSERT_EQ(::pipe(fds), 0);
        const std::uint32_t childSeed = random();
        const pid_t pid = fork();
        if (pid == 0) {
            ::close(fds[0]);
            Write(fds[1], childSeed, nextId);
        }
        ::close(fds[1]);
        std::this_thread::sleep_for(
            std::chrono::microseconds(1'000 + random() % kMaxLifeMicroseconds));
        ::kill(pid, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(pid, &status, 0), pid);
        ASSERT_TRUE(WIFSIGNALED(status))
            << "round " << round << ": the writer failed with " << WEXITSTATUS(status);

        // The journal: committed steps go into the model; one started step may be left.
        std::optional<Step> inFlight;
        Step step;
        while (::read(fds[0], &step, sizeof step) == sizeof step) {
            if (step.committed == 0) {
                inFlight = step;
                continue;
            }
            inFlight.reset();
            ++committedSteps;
            if (step.kind == Kind::Append) {
                nextId = step.id + 1;
                if (model.size() < step.record) model.resize(step.record);
            }
            model[step.record - 1] = Applied(model[step.record - 1], step);
        }
        ::close(fds[0]);
        if (inFlight && inFlight->kind == Kind::Append) nextId = inFlight->id + 1;

        const std::vector<Row> table = ReadAll();
        ASSERT_GE(table.size(), model.size()) << "round " << round;
        for (std::size_t i = 0; i < table.size(); ++i) {
            const std::uint32_t record = static_cast<std::uint32_t>(i + 1);
            const bool touched =
                inFlight && (inFlight->record == record ||
                             (inFlight->kind == Kind::Append && i >= model.size()));
            const Row before = i < model.size() ? model[i] : Row{};
            if (!touched) {
                EXPECT_EQ(table[i], before)
                    << "round " << round << " record " << record << ": " << Describe(table[i])
                    << " instead of " << Describe(before);
                continue;
            }
            // The step in flight: all of it or none of it (an append may be left blank).
            const Row after = Applied(before, *inFlight);
            const bool blankAppend = inFlight->kind == Kind::Append && table[i] == Row{};
            EXPECT_TRUE(table[i] == before || table[i] == after || blankAppend)
                << "round " << round << " record " << record << ": " << Describe(table[i])
                << " is neither " << Describe(before) << " nor " << Describe(after);
        }
        model = table;
        CheckOrRepair(round);
    }
    // The rounds did real work, and were killed in the middle of it now and then.
    EXPECT_GT(committedSteps, kRounds);
    EXPECT_GT(model.size(), 10u);
    RecordProperty("repairs", repairs);
}

}  // namespace
}  // namespace fnrk::engine

#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <set>
#include <thread>

#include "engine_fixture.hpp"

namespace fnrk::engine {
namespace {

class EngineLocks : public EngineTest {
  protected:
    void SetUp() override {
        EngineTest::SetUp();
        Create("shared", "ID,N,10,0;COUNTER,N,10,0;NAME,C,10");
        const Handle table = Open("shared", ADS_EXCLUSIVE);
        for (int i = 0; i < 3; ++i) ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }

    // Runs `work` in `count` child processes, each with its own Engine on the same folder,
    // and returns how many ended with status 0.
    int RunChildren(int count, const std::function<bool(Engine&, Handle table, int child)>& work) {
        std::vector<pid_t> children;
        for (int child = 0; child < count; ++child) {
            const pid_t pid = fork();
            if (pid == 0) {
                Engine own;
                Handle folder = 0;
                Handle table = 0;
                bool ok =
                    own.Connect26(dir.path().string(), ADS_LOCAL_SERVER, folder) == 0 &&
                    own.OpenTable(folder, "shared", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                  ADS_IGNORERIGHTS, ADS_SHARED, table) == 0 &&
                    work(own, table, child);
                const bool closed = own.CloseAllTables() == AE_SUCCESS;
                _exit(ok && closed ? 0 : 1);
            }
            children.push_back(pid);
        }
        int succeeded = 0;
        for (pid_t pid : children) {
            int status = 0;
            waitpid(pid, &status, 0);
            if (WIFEXITED(status) && WEXITSTATUS(status) == 0) ++succeeded;
        }
        return succeeded;
    }
};

TEST_F(EngineLocks, RecordAndTableLocksBetweenHandlesOfOneProcess) {
    const Handle a = Open("shared", ADS_SHARED, "A");
    const Handle b = Open("shared", ADS_SHARED, "B");
    ASSERT_EQ(engine.LockRecord(a, 1), AE_SUCCESS);
    EXPECT_EQ(engine.LockRecord(b, 1), AE_LOCK_FAILED);
    ASSERT_EQ(engine.LockRecord(b, 2), AE_SUCCESS);
    EXPECT_EQ(engine.LockTable(a), AE_LOCK_FAILED);
    bool locked = false;
    ASSERT_EQ(engine.IsRecordLocked(a, 1, locked), AE_SUCCESS);
    EXPECT_TRUE(locked);
    ASSERT_EQ(engine.IsRecordLocked(a, 2, locked), AE_SUCCESS);
    EXPECT_FALSE(locked);
    std::uint16_t count = 0;
    ASSERT_EQ(engine.GetNumLocks(a, count), AE_SUCCESS);
    EXPECT_EQ(count, 1);

    // A write to a record another handle holds fails and changes nothing.
    ASSERT_EQ(engine.GotoRecord(b, 1), AE_SUCCESS);
    EXPECT_EQ(engine.SetString(b, "NAME", "intruder"), AE_LOCK_FAILED);
    ASSERT_EQ(engine.GotoRecord(a, 1), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(a, "NAME", "owner"), AE_SUCCESS);
    ASSERT_EQ(engine.UnlockRecord(a, 1), AE_SUCCESS);
    EXPECT_EQ(engine.UnlockRecord(a, 1), AE_RECORD_NOT_LOCKED);

    // b read record 1 before; after taking the lock it sees a's write.
    ASSERT_EQ(engine.LockRecord(b, 1), AE_SUCCESS);
    EXPECT_EQ(String(b, "NAME"), "owner     ");
    ASSERT_EQ(engine.UnlockTable(b), AE_SUCCESS);  // frees records 1 and 2
    EXPECT_EQ(engine.UnlockTable(b), AE_TABLE_NOT_LOCKED);

    ASSERT_EQ(engine.LockTable(a), AE_SUCCESS);
    ASSERT_EQ(engine.IsTableLocked(a, locked), AE_SUCCESS);
    EXPECT_TRUE(locked);
    EXPECT_EQ(engine.LockRecord(b, 3), AE_LOCK_FAILED);
    EXPECT_EQ(engine.LockTable(b), AE_LOCK_FAILED);
    ASSERT_EQ(engine.LockRecord(a, 3), AE_SUCCESS);  // already covered by the table lock
    ASSERT_EQ(engine.UnlockRecord(a, 3), AE_SUCCESS);
    EXPECT_EQ(engine.LockRecord(b, 3), AE_LOCK_FAILED);  // still under the table lock
    ASSERT_EQ(engine.CloseTable(a), AE_SUCCESS);         // closing releases it
    EXPECT_EQ(engine.LockRecord(b, 3), AE_SUCCESS);
}

// A handle positioned on a record keeps no stale copy of it: going to it again reads what
// another process wrote meanwhile, unless the handle holds the record (nobody else could).
TEST_F(EngineLocks, GotoRecordReadsWhatAnotherProcessWrote) {
    const Handle reader = Open("shared");
    ASSERT_EQ(engine.LockRecord(reader, 3), AE_SUCCESS);
    ASSERT_EQ(engine.GotoRecord(reader, 2), AE_SUCCESS);
    EXPECT_EQ(String(reader, "NAME"), "          ");
    ASSERT_EQ(RunChildren(1,
                          [](Engine& own, Handle table, int) {
                              return own.GotoRecord(table, 2) == AE_SUCCESS &&
                                     own.SetString(table, "NAME", "child") == AE_SUCCESS &&
                                     own.GotoRecord(table, 3) == AE_SUCCESS &&
                                     own.SetString(table, "NAME", "refused") == AE_LOCK_FAILED;
                          }),
              1);
    ASSERT_EQ(engine.GotoRecord(reader, 2), AE_SUCCESS);
    EXPECT_EQ(String(reader, "NAME"), "child     ");
    ASSERT_EQ(engine.GotoRecord(reader, 3), AE_SUCCESS);
    EXPECT_EQ(String(reader, "NAME"), "          ");
}

TEST_F(EngineLocks, ExclusiveAndSharedOpensExcludeEachOther) {
    const Handle shared = Open("shared", ADS_SHARED, "S");
    EXPECT_EQ(OpenStatus("shared", ADS_EXCLUSIVE, "X"), AE_LOCK_FAILED);
    ASSERT_EQ(engine.CloseTable(shared), AE_SUCCESS);
    const Handle exclusive = Open("shared", ADS_EXCLUSIVE, "X");
    bool flag = false;
    ASSERT_EQ(engine.IsTableExclusive(exclusive, flag), AE_SUCCESS);
    EXPECT_TRUE(flag);
    EXPECT_EQ(OpenStatus("shared", ADS_SHARED, "S"), AE_LOCK_FAILED);
    EXPECT_EQ(OpenStatus("shared", ADS_READONLY, "R"), AE_LOCK_FAILED);
    // Another process sees the same.
    EXPECT_EQ(RunChildren(1, [](Engine&, Handle, int) { return true; }), 0);
    ASSERT_EQ(engine.CloseTable(exclusive), AE_SUCCESS);
    EXPECT_EQ(RunChildren(1, [](Engine&, Handle, int) { return true; }), 1);
}

TEST_F(EngineLocks, LocksOfADeadProcessAreReleased) {
    const int held = RunChildren(1, [](Engine& own, Handle table, int) {
        if (own.LockRecord(table, 2) != AE_SUCCESS) _exit(1);
        _exit(0);  // dies without unlocking
        return true;
    });
    EXPECT_EQ(held, 1);
    const Handle table = Open("shared");
    EXPECT_EQ(engine.LockRecord(table, 2), AE_SUCCESS);
}

// Eight processes lock, increment and unlock one counter; no increment may be lost.
TEST_F(EngineLocks, ConcurrentIncrementsUnderRecordLocksAddUp) {
    constexpr int kProcesses = 8;
    constexpr int kIncrements = 2000;
    const int succeeded = RunChildren(kProcesses, [](Engine& own, Handle table, int) {
        for (int i = 0; i < kIncrements; ++i) {
            while (own.LockRecord(table, 1) == AE_LOCK_FAILED) std::this_thread::yield();
            if (own.GotoRecord(table, 1) != AE_SUCCESS) return false;
            double value = 0;
            if (own.GetDouble(table, "COUNTER", value) != AE_SUCCESS ||
                own.SetDouble(table, "COUNTER", value + 1) != AE_SUCCESS ||
                own.UnlockRecord(table, 1) != AE_SUCCESS)
                return false;
        }
        return true;
    });
    EXPECT_EQ(succeeded, kProcesses);
    const Handle table = Open("shared");
    ASSERT_EQ(engine.GotoRecord(table, 1), AE_SUCCESS);
    double total = 0;
    ASSERT_EQ(engine.GetDouble(table, "COUNTER", total), AE_SUCCESS);
    EXPECT_EQ(total, kProcesses * kIncrements);
}

// Four processes append at once; the header count stays exact and no record is lost.
TEST_F(EngineLocks, ConcurrentAppendsKeepEveryRecordOnce) {
    constexpr int kProcesses = 4;
    constexpr int kAppends = 500;
    const int succeeded = RunChildren(kProcesses, [](Engine& own, Handle table, int child) {
        for (int i = 0; i < kAppends; ++i) {
            if (own.AppendRecord(table) != AE_SUCCESS ||
                own.SetLong(table, "ID", (child + 1) * 10000 + i) != AE_SUCCESS ||
                own.UnlockRecord(table, 0) != AE_SUCCESS)
                return false;
        }
        return true;
    });
    EXPECT_EQ(succeeded, kProcesses);
    const Handle table = Open("shared");
    EXPECT_EQ(Count(table, ADS_IGNOREFILTERS), 3u + kProcesses * kAppends);
    std::multiset<std::int32_t> ids;
    EXPECT_EQ(engine.GotoRecord(table, 4), AE_SUCCESS);
    for (; !Eof(table); Next(table)) {
        std::int32_t id = 0;
        ASSERT_EQ(engine.GetLong(table, "ID", id), AE_SUCCESS);
        ids.insert(id);
    }
    ASSERT_EQ(ids.size(), static_cast<std::size_t>(kProcesses * kAppends));
    for (int child = 0; child < kProcesses; ++child) {
        for (int i = 0; i < kAppends; ++i)
            EXPECT_EQ(ids.count((child + 1) * 10000 + i), 1u) << child << " " << i;
    }
    const auto size = std::filesystem::file_size(dir / "shared.dbf");
    EXPECT_EQ(size, 32u + 3 * 32 + 2 + (3u + kProcesses * kAppends) * 31 + 1);
}

}  // namespace
}  // namespace fnrk::engine

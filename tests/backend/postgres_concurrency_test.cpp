#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "backend/frc_database.hpp"
#include "support/postgres_server.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::backend {
namespace {

using namespace engine;  // option and status numbers
using fnrk::testing::PostgresServer;
using fnrk::testing::TempDir;

// Workstations as processes of their own, each with its own connection to one schema.
class PostgresConcurrencyTest : public ::testing::Test {
  protected:
    void SetUp() override {
        path = PostgresServer::Shared().ConnectionPath(folder.path().filename().string());
        Handle connection = 0;
        FRCDatabase creator;
        creator.handleStart(900'000);
        ASSERT_EQ(creator.Connect26(path, ADS_LOCAL_SERVER, connection), AE_SUCCESS);
        Handle table = 0;
        ASSERT_EQ(creator.CreateTable(connection, "counter.dbf", "", ADS_CDX, ADS_ANSI,
                                      ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                                      "NAME,C,10,0;COUNTER,N,10,0", table),
                  AE_SUCCESS);
        ASSERT_EQ(creator.AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(creator.SetDouble(table, "COUNTER", 0), AE_SUCCESS);
        ASSERT_EQ(creator.CloseTable(table), AE_SUCCESS);
    }
    // A workstation: the backend connected, the table opened shared.
    struct Workstation {
        FRCDatabase backend;
        Handle table = 0;
    };
    std::unique_ptr<Workstation> Join() {
        auto station = std::make_unique<Workstation>();
        station->backend.handleStart(900'000);
        Handle connection = 0;
        if (station->backend.Connect26(path, ADS_LOCAL_SERVER, connection) != AE_SUCCESS ||
            station->backend.OpenTable(connection, "counter.dbf", "", ADS_CDX, ADS_ANSI,
                                       ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED,
                                       station->table) != AE_SUCCESS) {
            return nullptr;
        }
        return station;
    }
    double Counter() {
        auto station = Join();
        EXPECT_NE(station, nullptr);
        if (!station) return -1;
        double value = -1;
        EXPECT_EQ(station->backend.GotoRecord(station->table, 1), AE_SUCCESS);
        EXPECT_EQ(station->backend.GetDouble(station->table, "COUNTER", value), AE_SUCCESS);
        return value;
    }
    TempDir folder;
    std::string path;
};

TEST_F(PostgresConcurrencyTest, LockedIncrementsOfEightProcessesAddUp) {
    constexpr int kProcesses = 8;
    constexpr int kIncrements = 2000;
    std::vector<pid_t> children;
    for (int child = 0; child < kProcesses; ++child) {
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            auto station = Join();
            if (!station) _exit(2);
            FRCDatabase& own = station->backend;
            for (int i = 0; i < kIncrements; ++i) {
                Status status;
                while ((status = own.LockRecord(station->table, 1)) == AE_LOCK_FAILED) {
                    std::this_thread::sleep_for(std::chrono::microseconds(200));
                }
                double value = 0;
                if (status != AE_SUCCESS || own.GotoRecord(station->table, 1) != AE_SUCCESS ||
                    own.GetDouble(station->table, "COUNTER", value) != AE_SUCCESS ||
                    own.SetDouble(station->table, "COUNTER", value + 1) != AE_SUCCESS ||
                    own.UnlockRecord(station->table, 1) != AE_SUCCESS) {
                    _exit(1);
                }
            }
            _exit(0);
        }
        children.push_back(pid);
    }
    int succeeded = 0;
    for (pid_t pid : children) {
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0) ++succeeded;
    }
    EXPECT_EQ(succeeded, kProcesses);
    EXPECT_EQ(Counter(), kProcesses * kIncrements);
}

TEST_F(PostgresConcurrencyTest, AKilledLockHolderLeavesTheRecordFree) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t holder = fork();
    ASSERT_GE(holder, 0);
    if (holder == 0) {
        close(ready[0]);
        auto station = Join();
        const char done =
            station && station->backend.LockRecord(station->table, 1) == AE_SUCCESS ? 'y' : 'n';
        if (write(ready[1], &done, 1) != 1) _exit(1);
        pause();  // holds the lock until killed
        _exit(0);
    }
    close(ready[1]);
    char locked = 0;
    ASSERT_EQ(read(ready[0], &locked, 1), 1);
    close(ready[0]);
    ASSERT_EQ(locked, 'y');

    auto station = Join();
    ASSERT_NE(station, nullptr);
    EXPECT_EQ(station->backend.LockRecord(station->table, 1), AE_LOCK_FAILED);
    EXPECT_EQ(station->backend.LockTable(station->table), AE_LOCK_FAILED);

    ASSERT_EQ(kill(holder, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(holder, &status, 0), holder);
    // The server ends the dead client's session as soon as it reads the closed socket; only
    // that short moment is waited for.
    Status relocked = AE_LOCK_FAILED;
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while ((relocked = station->backend.LockRecord(station->table, 1)) == AE_LOCK_FAILED &&
           std::chrono::steady_clock::now() < until) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_EQ(relocked, AE_SUCCESS);
    EXPECT_EQ(station->backend.LockTable(station->table), AE_SUCCESS);
}

}  // namespace
}  // namespace fnrk::backend

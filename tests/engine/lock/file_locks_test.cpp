// Two opens of one file exclude each other as two processes do (open-file-description locks on
// Linux, LockFileEx on Windows), so these cases hold for both hosts alike.

#include "engine/lock/file_locks.hpp"

#include <gtest/gtest.h>

#include "support/temp_dir.hpp"

namespace fnrk::engine::lock {
namespace {

class FileLocksTest : public ::testing::Test {
  protected:
    void SetUp() override {
        const std::string path = (dir / "table.dbf").string();
        testing::WriteFileBytes(path, std::string(64, ' '));
        first = io::NativeFile::Open(path, false);
        second = io::NativeFile::Open(path, false);
        ASSERT_TRUE(first.valid() && second.valid());
    }
    FileLocks One() const { return FileLocks(first.handle()); }
    FileLocks Other() const { return FileLocks(second.handle()); }

    testing::TempDir dir;
    io::NativeFile first;
    io::NativeFile second;
};

TEST_F(FileLocksTest, OpenLocksLetSharersInAndKeepAnExclusiveUserAlone) {
    ASSERT_TRUE(One().LockOpenShared());
    EXPECT_TRUE(Other().LockOpenShared());
    EXPECT_FALSE(Other().LockOpenExclusive());
    first.Close();  // closing drops every lock of the open
    second = io::NativeFile::Open((dir / "table.dbf").string(), false);
    EXPECT_TRUE(Other().LockOpenExclusive());
}

TEST_F(FileLocksTest, RecordAndTableLocksExcludeTheOtherOpenAndUnlockCompletely) {
    ASSERT_TRUE(One().LockRecord(5));
    EXPECT_TRUE(One().LockRecord(5));  // held already
    EXPECT_FALSE(Other().LockRecord(5));
    EXPECT_TRUE(Other().LockRecord(6));
    EXPECT_FALSE(One().LockTable());    // the other holds record 6
    EXPECT_FALSE(Other().LockTable());  // we hold record 5
    Other().UnlockRecord(6);

    // A table lock over our own record lock covers every record, ours included.
    ASSERT_TRUE(One().LockRecord(7));
    ASSERT_TRUE(One().LockTable());
    for (const std::uint32_t record : {1u, 5u, 6u, 7u, 8u, 4'000'000'000u})
        EXPECT_FALSE(Other().LockRecord(record)) << record;
    EXPECT_TRUE(One().LockRecord(6));  // inside our table lock
    EXPECT_FALSE(Other().LockTable());

    One().UnlockAllRecords();
    for (const std::uint32_t record : {1u, 5u, 6u, 7u, 8u}) {
        EXPECT_TRUE(Other().LockRecord(record)) << record;
        Other().UnlockRecord(record);
    }
    EXPECT_TRUE(Other().LockTable());
    Other().UnlockAllRecords();
}

TEST_F(FileLocksTest, TheHeaderLockIsOneAtATimeAndTheIndexLockIsSharedForReading) {
    ASSERT_TRUE(One().LockHeader());
    EXPECT_FALSE(Other().LockHeader());
    One().UnlockHeader();
    EXPECT_TRUE(Other().LockHeader());
    Other().UnlockHeader();

    ASSERT_TRUE(One().WaitForIndex(false));
    EXPECT_TRUE(Other().WaitForIndex(false));
    One().UnlockIndex();
    Other().UnlockIndex();
    ASSERT_TRUE(One().WaitForIndex(true));
    One().UnlockIndex();
    EXPECT_TRUE(Other().WaitForIndex(true));
    Other().UnlockIndex();
}

}  // namespace
}  // namespace fnrk::engine::lock

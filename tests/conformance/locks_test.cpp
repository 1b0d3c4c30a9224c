#include <gtest/gtest.h>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers

// Two workstations on one shared table: what one holds, the other cannot take.
TEST_P(Conformance, LocksHoldBetweenTwoConnections) {
    Handle created = CreateItems();
    for (const char* code : {"A", "B", "C"}) AddItem(created, code, code, 1);
    ASSERT_EQ(ops->CloseTable(created), AE_SUCCESS);

    Handle a = 0;
    ASSERT_EQ(ops->OpenTable(connection, "items.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                             ADS_IGNORERIGHTS, ADS_SHARED, a),
              AE_SUCCESS);
    Handle otherConnection = 0;
    auto other = SecondConnection(otherConnection);
    Handle b = 0;
    ASSERT_EQ(other->OpenTable(otherConnection, "items.dbf", "", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, b),
              AE_SUCCESS);

    ASSERT_EQ(ops->LockRecord(a, 1), AE_SUCCESS);
    EXPECT_EQ(other->LockRecord(b, 1), AE_LOCK_FAILED);
    ASSERT_EQ(other->LockRecord(b, 2), AE_SUCCESS);
    EXPECT_EQ(ops->LockTable(a), AE_LOCK_FAILED);
    std::uint16_t locks = 0;
    ASSERT_EQ(other->GetNumLocks(b, locks), AE_SUCCESS);
    EXPECT_EQ(locks, 1);
    ASSERT_EQ(other->UnlockRecord(b, 2), AE_SUCCESS);
    EXPECT_EQ(other->UnlockRecord(b, 2), AE_RECORD_NOT_LOCKED);

    // A change made under a lock is what the other reads once it holds the record.
    ASSERT_EQ(ops->GotoRecord(a, 1), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(a, "NAME", "changed"), AE_SUCCESS);
    ASSERT_EQ(ops->UnlockRecord(a, 1), AE_SUCCESS);
    ASSERT_EQ(other->GotoRecord(b, 1), AE_SUCCESS);
    ASSERT_EQ(other->LockRecord(b, 1), AE_SUCCESS);
    std::string name;
    ASSERT_EQ(other->GetString(b, "NAME", name, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(name, "changed");
    ASSERT_EQ(other->UnlockRecord(b, 1), AE_SUCCESS);

    // A table lock keeps every record, written ones included.
    ASSERT_EQ(ops->LockTable(a), AE_SUCCESS);
    bool locked = false;
    ASSERT_EQ(ops->IsTableLocked(a, locked), AE_SUCCESS);
    EXPECT_TRUE(locked);
    EXPECT_EQ(other->LockRecord(b, 3), AE_LOCK_FAILED);
    ASSERT_EQ(other->GotoRecord(b, 3), AE_SUCCESS);
    EXPECT_EQ(other->SetString(b, "NAME", "refused"), AE_LOCK_FAILED);
    ASSERT_EQ(ops->UnlockTable(a), AE_SUCCESS);
    EXPECT_EQ(ops->UnlockTable(a), AE_TABLE_NOT_LOCKED);
    EXPECT_EQ(other->SetString(b, "NAME", "accepted"), AE_SUCCESS);
    ASSERT_EQ(other->FlushFileBuffers(b), AE_SUCCESS);

    // Nobody opens exclusively what others have open, nor shares what one holds exclusively.
    Handle exclusive = 0;
    EXPECT_EQ(other->OpenTable(otherConnection, "items.dbf", "SOLE", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_EXCLUSIVE, exclusive),
              AE_LOCK_FAILED);
    ASSERT_EQ(ops->CloseTable(a), AE_SUCCESS);
    ASSERT_EQ(other->CloseTable(b), AE_SUCCESS);
    ASSERT_EQ(other->OpenTable(otherConnection, "items.dbf", "SOLE", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_EXCLUSIVE, exclusive),
              AE_SUCCESS);
    EXPECT_EQ(ops->OpenTable(connection, "items.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                             ADS_IGNORERIGHTS, ADS_SHARED, a),
              AE_LOCK_FAILED);
    ASSERT_EQ(other->GotoRecord(exclusive, 3), AE_SUCCESS);
    ASSERT_EQ(other->GetString(exclusive, "NAME", name, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(name, "accepted");
}

// A handle that does not hold a record reads it again when it goes to it: what another
// connection or another handle wrote meanwhile is what it shows.
TEST_P(Conformance, GotoRecordShowsWhatOthersWroteSince) {
    Handle created = CreateItems();
    for (const char* code : {"A", "B", "C"}) AddItem(created, code, code, 1);
    ASSERT_EQ(ops->CloseTable(created), AE_SUCCESS);
    auto open = [&](Operations& on, Handle where, const char* alias) {
        Handle table = 0;
        EXPECT_EQ(on.OpenTable(where, "items.dbf", alias, ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                               ADS_IGNORERIGHTS, ADS_SHARED, table),
                  AE_SUCCESS);
        return table;
    };
    const Handle reader = open(*ops, connection, "READER");
    const Handle sameProcess = open(*ops, connection, "WRITER");
    Handle otherConnection = 0;
    auto other = SecondConnection(otherConnection);
    const Handle elsewhere = open(*other, otherConnection, "");

    auto write = [](Operations& on, Handle table, std::uint32_t record, const char* name) {
        ASSERT_EQ(on.GotoRecord(table, record), AE_SUCCESS);
        ASSERT_EQ(on.SetString(table, "NAME", name), AE_SUCCESS);
        ASSERT_EQ(on.FlushFileBuffers(table), AE_SUCCESS);
    };
    auto nameAt = [&](std::uint32_t record) {
        EXPECT_EQ(ops->GotoRecord(reader, record), AE_SUCCESS);
        return Text(reader, "NAME");
    };
    EXPECT_EQ(nameAt(1), "A");
    write(*other, elsewhere, 1, "from elsewhere");
    write(*other, elsewhere, 2, "second too");
    // The record it stands on, and one it read along with it.
    EXPECT_EQ(nameAt(1), "from elsewhere");
    EXPECT_EQ(nameAt(2), "second too");
    write(*ops, sameProcess, 2, "same process");
    EXPECT_EQ(nameAt(2), "same process");

    // Holding the record, the handle's own pending change is what it shows.
    ASSERT_EQ(ops->LockRecord(reader, 3), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(reader, 3), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(reader, "NAME", "held"), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(reader, 3), AE_SUCCESS);
    EXPECT_EQ(Text(reader, "NAME"), "held");
    ASSERT_EQ(ops->UnlockRecord(reader, 3), AE_SUCCESS);
    ASSERT_EQ(other->GotoRecord(elsewhere, 3), AE_SUCCESS);
    std::string name;
    ASSERT_EQ(other->GetString(elsewhere, "NAME", name, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(name, "held");
}

}  // namespace
}  // namespace fnrk::conformance

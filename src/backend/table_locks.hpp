#pragma once

// The record, table and open locks of one open table, shared by every workstation on the same
// database. Each open table is one owner: two opens of a table conflict as two workstations do.
// Nothing waits: a conflict is an immediate refusal. Each SQL engine keeps them its own way
// (SqlDialect::NewLocks).

#include <cstdint>

namespace fnrk::backend {

class TableLocks {
  public:
    virtual ~TableLocks() = default;
    // Registers the open; false when someone holds the table exclusively, or (for an exclusive
    // open) when anyone else has it open.
    virtual bool Open(bool exclusive) = 0;
    virtual bool LockRecord(std::uint32_t recno) = 0;
    virtual void UnlockRecord(std::uint32_t recno) = 0;
    virtual bool LockTable() = 0;
    // Every lock of this owner, the table lock included.
    virtual void UnlockAll() = 0;
};

}  // namespace fnrk::backend

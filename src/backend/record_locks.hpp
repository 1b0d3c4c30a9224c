#pragma once

// Record, table and open locks of one open table, kept in the database (fnrk_lock, fnrk_open)
// so that they hold between every connection to it on this machine. Each open table is one
// owner ("pid:serial"); a lock whose owning process has ended is taken over. Nothing waits: a
// conflict is an immediate refusal.

#include <cstdint>
#include <string>

#include "backend/sql_session.hpp"

namespace fnrk::backend {

class RecordLocks {
  public:
    RecordLocks(SqlSession& session, std::string table);
    ~RecordLocks();
    RecordLocks(const RecordLocks&) = delete;
    RecordLocks& operator=(const RecordLocks&) = delete;

    // Registers the open; false when someone holds the table exclusively, or (for an exclusive
    // open) when anyone else has it open.
    bool Open(bool exclusive);
    bool LockRecord(std::uint32_t recno);
    void UnlockRecord(std::uint32_t recno);
    bool LockTable();
    // Every lock of this owner, the table lock included.
    void UnlockAll();

  private:
    // Removes what owners whose process has ended left behind; true when another live owner
    // holds a lock matching `where` (a condition on fnrk_lock or fnrk_open).
    bool OthersHold(const char* catalog, const std::string& where, std::uint32_t recno);

    SqlSession& session_;
    std::string table_;
    std::string owner_;
    bool open_ = false;
};

}  // namespace fnrk::backend

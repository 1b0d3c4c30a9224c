#pragma once

// Locks held by PostgreSQL itself: session advisory locks of the workstation's connection.
// They last across statements and transactions, end on unlock, and end with the connection
// when the workstation's process dies, so nothing is ever left behind.
//
// Keys are (table key, slot): slot -1 is the open of the table (shared, or exclusive for an
// exclusive open), slot 0 the table (a record lock holds it shared, a table lock exclusive),
// slot n record n. The server knows only the connection; the book keeps which open table of
// the connection holds what, so that two opens on one connection still conflict.

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "backend/sql_session.hpp"
#include "backend/table_locks.hpp"

namespace fnrk::backend {

class PostgresSession;

class AdvisoryLockBook {
  public:
    using Key = std::pair<std::int32_t, std::int32_t>;
    explicit AdvisoryLockBook(SqlSession& session) : session_(session) {}

    // False when another owner (of this or another connection) holds the key in a conflicting
    // mode. Taking what the owner already holds succeeds.
    bool Acquire(const void* owner, Key key, bool exclusive);
    // Nothing when the owner does not hold it.
    void Release(const void* owner, Key key, bool exclusive);

  private:
    struct Holder {
        const void* owner;
        bool exclusive;
    };
    bool ServerLock(Key key, bool exclusive, bool take);

    SqlSession& session_;
    std::map<Key, std::vector<Holder>> held_;
};

class AdvisoryTableLocks final : public TableLocks {
  public:
    AdvisoryTableLocks(PostgresSession& session, const std::string& table);
    ~AdvisoryTableLocks() override;
    AdvisoryTableLocks(const AdvisoryTableLocks&) = delete;
    AdvisoryTableLocks& operator=(const AdvisoryTableLocks&) = delete;

    bool Open(bool exclusive) override;
    bool LockRecord(std::uint32_t recno) override;
    void UnlockRecord(std::uint32_t recno) override;
    bool LockTable() override;
    void UnlockAll() override;

  private:
    AdvisoryLockBook::Key KeyOf(std::int32_t slot) const { return {table_, slot}; }

    AdvisoryLockBook& book_;
    std::int32_t table_;
    std::vector<std::uint32_t> records_;
    bool opened_ = false;
    bool openedExclusive_ = false;
};

}  // namespace fnrk::backend

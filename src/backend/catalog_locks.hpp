#pragma once

// Locks kept in catalog tables of the database (fnrk_lock, fnrk_open), for engines without
// locks of their own that outlive a statement (SQLite): they hold between every connection to
// the file on this machine. An owner is "pid:serial"; a lock whose owning process has ended is
// taken over.

#include <string>

#include "backend/sql_session.hpp"
#include "backend/table_locks.hpp"

namespace fnrk::backend {

class CatalogLocks final : public TableLocks {
  public:
    CatalogLocks(SqlSession& session, std::string table);
    ~CatalogLocks() override;
    CatalogLocks(const CatalogLocks&) = delete;
    CatalogLocks& operator=(const CatalogLocks&) = delete;

    // Creates the catalog tables when missing.
    static void EnsureCatalog(SqlSession& session);

    bool Open(bool exclusive) override;
    bool LockRecord(std::uint32_t recno) override;
    void UnlockRecord(std::uint32_t recno) override;
    bool LockTable() override;
    void UnlockAll() override;

  private:
    // Removes what owners whose process has ended left behind; true when another live owner
    // holds a lock matching `where` (a condition on fnrk_lock or fnrk_open).
    bool OthersHold(const char* catalog, const std::string& where, std::uint32_t recno);
    // Records lock `lock` (a record number, or the table's) unless another owner holds one
    // matching `conflicting`.
    bool Take(const std::string& conflicting, std::uint32_t recno, std::int64_t lock);

    SqlSession& session_;
    std::string table_;
    std::string owner_;
    bool open_ = false;
};

}  // namespace fnrk::backend

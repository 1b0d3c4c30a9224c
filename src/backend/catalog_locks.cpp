#include "backend/catalog_locks.hpp"

#include <atomic>
#include <string_view>

#include "platform/processes.hpp"

namespace fnrk::backend {

namespace {

constexpr std::int64_t kTableLock = 0;  // record numbers start at 1

std::string NewOwner() {
    static std::atomic<std::uint64_t> serial{0};
    return std::to_string(platform::CurrentProcessId()) + ":" + std::to_string(++serial);
}

bool ProcessAlive(std::string_view owner) {
    const std::int64_t pid = std::stoll(std::string(owner.substr(0, owner.find(':'))));
    return pid == platform::CurrentProcessId() || platform::ProcessIsRunning(pid);
}

}  // namespace

void CatalogLocks::EnsureCatalog(SqlSession& session) {
    session.Execute(
        "CREATE TABLE IF NOT EXISTS fnrk_lock(table_name TEXT NOT NULL, recno INTEGER NOT NULL, "
        "owner TEXT NOT NULL, PRIMARY KEY(table_name, recno))");
    session.Execute(
        "CREATE TABLE IF NOT EXISTS fnrk_open(table_name TEXT NOT NULL, owner TEXT NOT NULL, "
        "exclusive INTEGER NOT NULL)");
}

CatalogLocks::CatalogLocks(SqlSession& session, std::string table)
    : session_(session), table_(std::move(table)), owner_(NewOwner()) {}

CatalogLocks::~CatalogLocks() {
    try {
        UnlockAll();
        if (open_) {
            SqlValue parameters[] = {owner_};
            session_.Execute("DELETE FROM fnrk_open WHERE owner = ?", parameters);
        }
    } catch (const SqlFailure&) {
        // The database is gone; its locks went with it or are taken over as stale.
    }
}

bool CatalogLocks::OthersHold(const char* catalog, const std::string& where, std::uint32_t recno) {
    std::string sql = std::string("SELECT DISTINCT owner FROM ") + catalog +
                      " WHERE table_name = ? AND owner <> ? AND " + where;
    bool usesRecno = where.find('?') != std::string::npos;
    std::vector<SqlValue> parameters{table_, owner_};
    if (usesRecno) parameters.push_back(static_cast<std::int64_t>(recno));
    bool held = false;
    for (const auto& row : session_.Query(sql, parameters)) {
        const auto& other = std::get<std::string>(row[0]);
        if (ProcessAlive(other)) {
            held = true;
            continue;
        }
        SqlValue stale[] = {other};
        session_.Execute("DELETE FROM fnrk_lock WHERE owner = ?", stale);
        session_.Execute("DELETE FROM fnrk_open WHERE owner = ?", stale);
    }
    return held;
}

bool CatalogLocks::Take(const std::string& conflicting, std::uint32_t recno, std::int64_t lock) {
    SqlTransaction transaction(session_);
    if (OthersHold("fnrk_lock", conflicting, recno)) return false;
    SqlValue parameters[] = {table_, lock, owner_};
    session_.Execute(
        "INSERT INTO fnrk_lock(table_name, recno, owner) VALUES (?, ?, ?) "
        "ON CONFLICT DO NOTHING",
        parameters);
    transaction.Commit();
    return true;
}

bool CatalogLocks::Open(bool exclusive) {
    SqlTransaction transaction(session_);
    if (OthersHold("fnrk_open", exclusive ? "1 = 1" : "exclusive <> 0", 0)) return false;
    SqlValue parameters[] = {table_, owner_, static_cast<std::int64_t>(exclusive ? 1 : 0)};
    session_.Execute("INSERT INTO fnrk_open(table_name, owner, exclusive) VALUES (?, ?, ?)",
                     parameters);
    transaction.Commit();
    open_ = true;
    return true;
}

bool CatalogLocks::LockRecord(std::uint32_t recno) {
    return Take("(recno = ? OR recno = 0)", recno, recno);
}

void CatalogLocks::UnlockRecord(std::uint32_t recno) {
    SqlValue parameters[] = {table_, static_cast<std::int64_t>(recno), owner_};
    session_.Execute("DELETE FROM fnrk_lock WHERE table_name = ? AND recno = ? AND owner = ?",
                     parameters);
}

bool CatalogLocks::LockTable() {
    return Take("1 = 1", 0, kTableLock);
}

void CatalogLocks::UnlockAll() {
    SqlValue parameters[] = {owner_};
    session_.Execute("DELETE FROM fnrk_lock WHERE owner = ?", parameters);
}

}  // namespace fnrk::backend

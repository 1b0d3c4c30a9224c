#include "backend/advisory_locks.hpp"

#include <algorithm>

#include "backend/postgres_session.hpp"

namespace fnrk::backend {

namespace {

constexpr std::int32_t kOpenSlot = -1;
constexpr std::int32_t kTableSlot = 0;

std::int32_t RecordSlot(std::uint32_t recno) {
    return static_cast<std::int32_t>(recno);
}

}  // namespace

bool AdvisoryLockBook::ServerLock(Key key, bool exclusive, bool take) {
    static constexpr const char* kCalls[2][2] = {
        {"SELECT pg_advisory_unlock_shared(?, ?)", "SELECT pg_try_advisory_lock_shared(?, ?)"},
        {"SELECT pg_advisory_unlock(?, ?)", "SELECT pg_try_advisory_lock(?, ?)"}};
    SqlValue parameters[] = {std::int64_t{key.first}, std::int64_t{key.second}};
    auto rows = session_.Query(kCalls[exclusive ? 1 : 0][take ? 1 : 0], parameters);
    return !rows.empty() && rows[0][0] == SqlValue(std::int64_t{1});
}

bool AdvisoryLockBook::Acquire(const void* owner, Key key, bool exclusive) {
    auto& holders = held_[key];
    bool serverHolds = false;  // this connection already holds the key in this mode
    for (const Holder& holder : holders) {
        if (holder.owner == owner && holder.exclusive == exclusive) return true;
        if (holder.owner != owner && (exclusive || holder.exclusive)) return false;
        if (holder.exclusive == exclusive) serverHolds = true;
    }
    if (!serverHolds && !ServerLock(key, exclusive, true)) {
        if (holders.empty()) held_.erase(key);
        return false;
    }
    holders.push_back({owner, exclusive});
    return true;
}

void AdvisoryLockBook::Release(const void* owner, Key key, bool exclusive) {
    auto found = held_.find(key);
    if (found == held_.end()) return;
    auto& holders = found->second;
    auto mine = std::find_if(holders.begin(), holders.end(), [&](const Holder& holder) {
        return holder.owner == owner && holder.exclusive == exclusive;
    });
    if (mine == holders.end()) return;
    holders.erase(mine);
    bool stillHeld = std::any_of(holders.begin(), holders.end(), [&](const Holder& holder) {
        return holder.exclusive == exclusive;
    });
    if (holders.empty()) held_.erase(found);
    if (!stillHeld) ServerLock(key, exclusive, false);
}

AdvisoryTableLocks::AdvisoryTableLocks(PostgresSession& session, const std::string& table)
    : book_(session.locks()), table_(session.TableLockKey(table)) {}

AdvisoryTableLocks::~AdvisoryTableLocks() {
    try {
        UnlockAll();
        if (opened_) book_.Release(this, KeyOf(kOpenSlot), openedExclusive_);
    } catch (const SqlFailure&) {
        // The connection is gone, and its locks with it.
    }
}

bool AdvisoryTableLocks::Open(bool exclusive) {
    if (!book_.Acquire(this, KeyOf(kOpenSlot), exclusive)) return false;
    opened_ = true;
    openedExclusive_ = exclusive;
    return true;
}

bool AdvisoryTableLocks::LockRecord(std::uint32_t recno) {
    if (std::find(records_.begin(), records_.end(), recno) != records_.end()) return true;
    if (!book_.Acquire(this, KeyOf(kTableSlot), false)) return false;
    if (!book_.Acquire(this, KeyOf(RecordSlot(recno)), true)) {
        if (records_.empty()) book_.Release(this, KeyOf(kTableSlot), false);
        return false;
    }
    records_.push_back(recno);
    return true;
}

void AdvisoryTableLocks::UnlockRecord(std::uint32_t recno) {
    auto found = std::find(records_.begin(), records_.end(), recno);
    if (found == records_.end()) return;
    records_.erase(found);
    book_.Release(this, KeyOf(RecordSlot(recno)), true);
    if (records_.empty()) book_.Release(this, KeyOf(kTableSlot), false);
}

bool AdvisoryTableLocks::LockTable() {
    return book_.Acquire(this, KeyOf(kTableSlot), true);
}

void AdvisoryTableLocks::UnlockAll() {
    for (std::uint32_t recno : records_) book_.Release(this, KeyOf(RecordSlot(recno)), true);
    records_.clear();
    book_.Release(this, KeyOf(kTableSlot), false);
    book_.Release(this, KeyOf(kTableSlot), true);
}

}  // namespace fnrk::backend

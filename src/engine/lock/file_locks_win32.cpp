#include <windows.h>

#include <map>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

#include "engine/lock/file_locks.hpp"

namespace fnrk::engine::lock {

namespace {

using Range = std::pair<std::int64_t, std::int64_t>;  // start, length

// What a handle holds of its record and table locks, which Windows cannot be asked.
struct Held {
    std::set<std::uint32_t> records;
    std::vector<Range> table;  // the pieces of the table lock; empty when not held
};

std::mutex heldMutex;
std::map<HANDLE, Held> held;

OVERLAPPED At(std::int64_t start) {
    OVERLAPPED at{};
    at.Offset = static_cast<DWORD>(start);
    at.OffsetHigh = static_cast<DWORD>(static_cast<std::uint64_t>(start) >> 32);
    return at;
}

bool Lock(HANDLE file, Range range, DWORD flags) {
    OVERLAPPED at = At(range.first);
    const auto length = static_cast<std::uint64_t>(range.second);
    return LockFileEx(file, flags, 0, static_cast<DWORD>(length), static_cast<DWORD>(length >> 32),
                      &at) != FALSE;
}

bool TryExclusive(HANDLE file, Range range) {
    return Lock(file, range, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY);
}

void Unlock(HANDLE file, Range range) {
    OVERLAPPED at = At(range.first);
    const auto length = static_cast<std::uint64_t>(range.second);
    UnlockFileEx(file, 0, static_cast<DWORD>(length), static_cast<DWORD>(length >> 32), &at);
}

// A handle's first lock is its open lock: whatever an earlier handle of the same value held went
// with that handle's closing.
bool LockOpen(HANDLE file, DWORD flags) {
    {
        const std::lock_guard guard(heldMutex);
        held.erase(file);
    }
    return Lock(file, {kOpenMarker, 1}, flags | LOCKFILE_FAIL_IMMEDIATELY);
}

}  // namespace

bool FileLocks::LockOpenShared() {
    return LockOpen(file_, 0);
}

bool FileLocks::LockOpenExclusive() {
    return LockOpen(file_, LOCKFILE_EXCLUSIVE_LOCK);
}

bool FileLocks::LockHeader() {
    return TryExclusive(file_, {kHeaderLock, 1});
}

void FileLocks::UnlockHeader() {
    Unlock(file_, {kHeaderLock, 1});
}

bool FileLocks::LockRecord(std::uint32_t record) {
    const std::lock_guard guard(heldMutex);
    Held& mine = held[file_];
    if (!mine.table.empty() || mine.records.contains(record)) return true;
    if (!TryExclusive(file_, {kRecordBase + record, 1})) return false;
    mine.records.insert(record);
    return true;
}

void FileLocks::UnlockRecord(std::uint32_t record) {
    const std::lock_guard guard(heldMutex);
    Held& mine = held[file_];
    if (mine.records.erase(record) != 0) Unlock(file_, {kRecordBase + record, 1});
}

bool FileLocks::LockTable() {
    const std::lock_guard guard(heldMutex);
    Held& mine = held[file_];
    if (!mine.table.empty()) return true;
    // The whole record range but the records this handle holds already, piece by piece.
    std::vector<Range> pieces;
    std::int64_t from = kRecordBase + 1;
    const std::int64_t end = kRecordBase + 1 + kRecordRange;
    for (const std::uint32_t record : mine.records) {
        const std::int64_t at = kRecordBase + record;
        if (at > from) pieces.push_back({from, at - from});
        from = at + 1;
    }
    if (end > from) pieces.push_back({from, end - from});
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (!TryExclusive(file_, pieces[i])) {
            for (std::size_t j = 0; j < i; ++j) Unlock(file_, pieces[j]);
            return false;
        }
    }
    mine.table = std::move(pieces);
    return true;
}

void FileLocks::UnlockAllRecords() {
    const std::lock_guard guard(heldMutex);
    const auto found = held.find(file_);
    if (found == held.end()) return;
    for (const Range& piece : found->second.table) Unlock(file_, piece);
    for (const std::uint32_t record : found->second.records)
        Unlock(file_, {kRecordBase + record, 1});
    held.erase(found);
}

bool FileLocks::WaitForIndex(bool exclusive) {
    return Lock(file_, {kIndexLock, 1}, exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0);
}

void FileLocks::UnlockIndex() {
    Unlock(file_, {kIndexLock, 1});
}

}  // namespace fnrk::engine::lock

#pragma once

// Byte-range locks on an open table file, shared between processes and between the handles of one
// process. They are open-file-description locks: each OpenTable opens its own descriptor, so two
// handles of one process conflict exactly as two processes do, and the kernel drops every lock
// when the descriptor is closed or the process dies. No call ever waits: a conflict is reported at
// once.
//
// Offset scheme (all far beyond any real table size, so they never cover data):
//   kOpenMarker            one byte; every open holds a read lock on it, an EXCLUSIVE open a
//                          write lock, so EXCLUSIVE fails while anyone has the table open and
//                          SHARED fails while someone holds it EXCLUSIVE.
//   kHeaderLock            one byte; write-locked for the short time of an append (count re-read,
//                          record written, count updated).
//   kRecordBase + n        record n (1-based); a table lock is a write lock on the whole range
//                          kRecordBase + 1 .. kRecordBase + 2^32, so it conflicts with any
//                          record lock of another handle and the other way round.
//   kIndexLock             one byte of an index file; read-locked while its nodes are read,
//                          write-locked while they are changed. The one lock that waits.
//
// Windows (LockFileEx) takes the same offsets. Its locks neither overlap nor merge, and an unlock
// must name a locked range exactly, so there a handle's record and table locks are remembered
// (file_locks_win32.cpp): a record lock it holds already succeeds, a table lock covers the
// records between its own record locks, and unlocking all releases each piece it locked.

#include <cstdint>

#include "engine/io/native_file.hpp"

namespace fnrk::engine::lock {

inline constexpr std::int64_t kOpenMarker = 0x4000'0000'0000;
inline constexpr std::int64_t kHeaderLock = kOpenMarker + 1;
inline constexpr std::int64_t kRecordBase = kOpenMarker + 0x10;
inline constexpr std::int64_t kRecordRange = 0x1'0000'0000;
inline constexpr std::int64_t kIndexLock = 0x7FFF'FFFF'0000;

// Lock requests on one open file; each returns false on a conflict or an error. None waits but
// the index lock.
class FileLocks {
  public:
    explicit FileLocks(io::NativeHandle file) : file_(file) {}

    bool LockOpenShared();
    bool LockOpenExclusive();

    bool LockHeader();
    void UnlockHeader();

    bool LockRecord(std::uint32_t record);
    void UnlockRecord(std::uint32_t record);

    bool LockTable();
    // Releases the table lock and every record lock of this descriptor.
    void UnlockAllRecords();

    // Waits for the index lock; false on an error.
    bool WaitForIndex(bool exclusive);
    void UnlockIndex();

  private:
    io::NativeHandle file_;
};

}  // namespace fnrk::engine::lock

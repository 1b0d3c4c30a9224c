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

#include <cstdint>

namespace fnrk::engine::lock {

inline constexpr std::int64_t kOpenMarker = 0x4000'0000'0000;
inline constexpr std::int64_t kHeaderLock = kOpenMarker + 1;
inline constexpr std::int64_t kRecordBase = kOpenMarker + 0x10;
inline constexpr std::int64_t kRecordRange = 0x1'0000'0000;

// Non-blocking lock requests on one descriptor; each returns false on a conflict or an error.
class FileLocks {
  public:
    explicit FileLocks(int fd) : fd_(fd) {}

    bool LockOpenShared();
    bool LockOpenExclusive();

    bool LockHeader();
    void UnlockHeader();

    bool LockRecord(std::uint32_t record);
    void UnlockRecord(std::uint32_t record);

    bool LockTable();
    // Releases the table lock and every record lock of this descriptor.
    void UnlockAllRecords();

  private:
    bool Set(short type, std::int64_t start, std::int64_t length);
    int fd_;
};

}  // namespace fnrk::engine::lock

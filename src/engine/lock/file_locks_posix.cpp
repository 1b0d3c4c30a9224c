#include <fcntl.h>

#include <cerrno>

#include "engine/lock/file_locks.hpp"

namespace fnrk::engine::lock {

namespace {

// An open-file-description lock request; `command` F_OFD_SETLK or, to wait, F_OFD_SETLKW.
bool Set(int fd, short type, std::int64_t start, std::int64_t length, int command = F_OFD_SETLK) {
    struct flock request {};
    request.l_type = type;
    request.l_whence = SEEK_SET;
    request.l_start = start;
    request.l_len = length;
    request.l_pid = 0;  // required by open-file-description locks
    while (fcntl(fd, command, &request) != 0) {
        if (errno != EINTR || command != F_OFD_SETLKW) return false;
    }
    return true;
}

}  // namespace

bool FileLocks::LockOpenShared() {
    return Set(file_, F_RDLCK, kOpenMarker, 1);
}

bool FileLocks::LockOpenExclusive() {
    return Set(file_, F_WRLCK, kOpenMarker, 1);
}

bool FileLocks::LockHeader() {
    return Set(file_, F_WRLCK, kHeaderLock, 1);
}

void FileLocks::UnlockHeader() {
    Set(file_, F_UNLCK, kHeaderLock, 1);
}

bool FileLocks::LockRecord(std::uint32_t record) {
    return Set(file_, F_WRLCK, kRecordBase + record, 1);
}

void FileLocks::UnlockRecord(std::uint32_t record) {
    Set(file_, F_UNLCK, kRecordBase + record, 1);
}

bool FileLocks::LockTable() {
    return Set(file_, F_WRLCK, kRecordBase + 1, kRecordRange);
}

void FileLocks::UnlockAllRecords() {
    Set(file_, F_UNLCK, kRecordBase, kRecordRange + 1);
}

bool FileLocks::WaitForIndex(bool exclusive) {
    return Set(file_, exclusive ? F_WRLCK : F_RDLCK, kIndexLock, 1, F_OFD_SETLKW);
}

void FileLocks::UnlockIndex() {
    Set(file_, F_UNLCK, kIndexLock, 1);
}

}  // namespace fnrk::engine::lock

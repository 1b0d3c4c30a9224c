#include "engine/lock/file_locks.hpp"

#include <fcntl.h>

namespace fnrk::engine::lock {

bool FileLocks::Set(short type, std::int64_t start, std::int64_t length) {
    struct flock request {};
    request.l_type = type;
    request.l_whence = SEEK_SET;
    request.l_start = start;
    request.l_len = length;
    request.l_pid = 0;  // required by open-file-description locks
    return fcntl(fd_, F_OFD_SETLK, &request) == 0;
}

bool FileLocks::LockOpenShared() {
    return Set(F_RDLCK, kOpenMarker, 1);
}

bool FileLocks::LockOpenExclusive() {
    return Set(F_WRLCK, kOpenMarker, 1);
}

bool FileLocks::LockHeader() {
    return Set(F_WRLCK, kHeaderLock, 1);
}

void FileLocks::UnlockHeader() {
    Set(F_UNLCK, kHeaderLock, 1);
}

bool FileLocks::LockRecord(std::uint32_t record) {
    return Set(F_WRLCK, kRecordBase + record, 1);
}

void FileLocks::UnlockRecord(std::uint32_t record) {
    Set(F_UNLCK, kRecordBase + record, 1);
}

bool FileLocks::LockTable() {
    return Set(F_WRLCK, kRecordBase + 1, kRecordRange);
}

void FileLocks::UnlockAllRecords() {
    Set(F_UNLCK, kRecordBase, kRecordRange + 1);
}

}  // namespace fnrk::engine::lock

#include "engine/cursor/table_cursor.hpp"

namespace fnrk::engine::cursor {

bool TableCursor::IsRecordLocked(std::uint32_t record) const {
    if (record == 0) record = record_;
    return file_.exclusive() || tableLocked_ || lockedRecords_.contains(record);
}

Status TableCursor::LockRecord(std::uint32_t record) {
    if (record == 0) {
        if (atEof_) return AE_NO_CURRENT_RECORD;
        record = record_;
    }
    if (file_.readOnly() && !file_.exclusive()) return AE_TABLE_READONLY;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (lockedRecords_.contains(record)) return AE_SUCCESS;
    if (!file_.exclusive() && !tableLocked_) {
        if (!file_.locks().LockRecord(record)) return AE_LOCK_FAILED;
        // What others wrote before we held the lock must be read again.
        file_.DropCache();
    }
    lockedRecords_.insert(record);
    return AE_SUCCESS;
}

Status TableCursor::UnlockRecord(std::uint32_t record) {
    if (record == 0) record = record_;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (!lockedRecords_.contains(record)) {
        // Exclusive use and a table lock cover every record.
        return file_.exclusive() || tableLocked_ ? AE_SUCCESS : AE_RECORD_NOT_LOCKED;
    }
    lockedRecords_.erase(record);
    if (!file_.exclusive() && !tableLocked_) file_.locks().UnlockRecord(record);
    return AE_SUCCESS;
}

Status TableCursor::LockTable() {
    if (file_.readOnly() && !file_.exclusive()) return AE_TABLE_READONLY;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (tableLocked_) return AE_SUCCESS;
    if (!file_.exclusive()) {
        if (!file_.locks().LockTable()) return AE_LOCK_FAILED;
        file_.DropCache();
        file_.RefreshRecordCount();
    }
    tableLocked_ = true;
    return AE_SUCCESS;
}

Status TableCursor::UnlockTable() {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (!tableLocked_ && lockedRecords_.empty()) return AE_TABLE_NOT_LOCKED;
    if (!file_.exclusive()) file_.locks().UnlockAllRecords();
    lockedRecords_.clear();
    tableLocked_ = false;
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::cursor

#include "engine/cursor/table_cursor.hpp"

#include <strings.h>

namespace fnrk::engine::cursor {

TableCursor::~TableCursor() {
    // A destructor cannot answer; a record change that cannot be written is lost with the
    // cursor, whose owner closed it without flushing.
    IgnoreStatus(Commit());
}

Status TableCursor::Open(const std::string& path, std::string alias, dbf::OpenRequest request,
                         std::string& message) {
    if (Status status = file_.Open(path, request, message); status != AE_SUCCESS) return status;
    alias_ = std::move(alias);
    return GotoTop();
}

const char* TableCursor::CurrentRecord() {
    if (dirty_ || atEof_) return edit_.data();
    const char* record = file_.ReadRecord(record_);
    if (record != nullptr) return record;
    // The record vanished under us (a zap elsewhere): show the phantom.
    MoveToEof();
    return edit_.data();
}

bool TableCursor::Passes(const char* record, std::uint32_t recno) {
    if (!settings_.showDeleted && record[0] == '*') return false;
    if (gate_ && !gate_(recno, {record, header().recordLength})) return false;
    if (!filter_) return true;
    const std::string_view records[] = {{record, header().recordLength}};
    const expr::EvaluationContext context{records, recno, &settings_.dates};
    return filter_->EvaluateLogical(context);
}

std::uint32_t TableCursor::Seek(std::uint32_t from, int step) {
    const std::uint32_t count = file_.recordCount();
    for (std::uint32_t recno = from; recno >= 1 && recno <= count; recno += step) {
        const char* record = file_.ReadRecord(recno);
        if (record == nullptr) return 0;
        if (Passes(record, recno)) return recno;
    }
    return 0;
}

void TableCursor::MoveTo(std::uint32_t record) {
    record_ = record;
    atEof_ = false;
    atBof_ = false;
}

void TableCursor::MoveToEof() {
    record_ = file_.recordCount() + 1;
    atEof_ = true;
    edit_ = file_.BlankRecord();
}

Status TableCursor::GotoTop() {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    file_.RefreshRecordCount();
    const std::uint32_t first = Seek(1, 1);
    if (first == 0) {
        MoveToEof();
        atBof_ = true;
        return AE_SUCCESS;
    }
    MoveTo(first);
    return AE_SUCCESS;
}

Status TableCursor::GotoBottom() {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    file_.RefreshRecordCount();
    const std::uint32_t last = Seek(file_.recordCount(), -1);
    if (last == 0) {
        MoveToEof();
        atBof_ = true;
        return AE_SUCCESS;
    }
    MoveTo(last);
    return AE_SUCCESS;
}

Status TableCursor::GotoRecord(std::uint32_t record) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (record > file_.recordCount()) file_.RefreshRecordCount();
    if (record == 0 || record > file_.recordCount()) {
        MoveToEof();
        atBof_ = false;
        return AE_SUCCESS;
    }
    // Another handle may have written the record since it was read; nobody could while this
    // handle holds it.
    if (!IsRecordLocked(record)) file_.RefreshRecord(record);
    MoveTo(record);
    return AE_SUCCESS;
}

Status TableCursor::Skip(std::int32_t records) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (records == 0) {
        file_.DropCache();
        return AE_SUCCESS;
    }
    if (records > 0) {
        if (atEof_) return AE_SUCCESS;
        std::uint32_t at = record_;
        for (std::int32_t i = 0; i < records; ++i) {
            at = Seek(at + 1, 1);
            if (at == 0) {
                MoveToEof();
                return AE_SUCCESS;
            }
        }
        MoveTo(at);
        return AE_SUCCESS;
    }
    // Backwards; from EOF the first step lands on the last visible record.
    if (atEof_) file_.RefreshRecordCount();
    std::uint32_t at = atEof_ ? file_.recordCount() + 1 : record_;
    std::uint32_t last = atEof_ ? 0 : record_;
    for (std::int32_t i = 0; i > records; --i) {
        at = at > 1 ? Seek(at - 1, -1) : 0;
        if (at == 0) {
            // Before the first record: BOF, positioned on the first visible record.
            const std::uint32_t first = last != 0 ? Seek(1, 1) : 0;
            if (first == 0) {
                MoveToEof();
            } else {
                MoveTo(first);
            }
            atBof_ = true;
            return AE_SUCCESS;
        }
        last = at;
    }
    MoveTo(at);
    return AE_SUCCESS;
}

Status TableCursor::Append() {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    std::uint32_t record = 0;
    // Alone on the table, the record is written once, when its fields are; shared, it is written
    // blank at once (other handles count it) and gets its keys when its fields are written.
    const Status status =
        file_.exclusive() ? file_.ReserveRecord(record) : file_.AppendBlank(record);
    if (status != AE_SUCCESS) return status;
    // In shared mode the new record stays locked by this handle until it is unlocked.
    if (!file_.exclusive() && !tableLocked_ && file_.locks().LockRecord(record))
        lockedRecords_.insert(record);
    MoveTo(record);
    // The new record is known to be blank: field writes start from it without reading it back.
    edit_ = file_.BlankRecord();
    dirty_ = true;
    appended_ = true;
    editMemos_.clear();
    return AE_SUCCESS;
}

Status TableCursor::BeginEdit() {
    if (atEof_) return AE_NO_CURRENT_RECORD;
    if (file_.readOnly()) return AE_TABLE_READONLY;
    if (dirty_) return AE_SUCCESS;
    if (!IsRecordLocked(record_)) {
        if (!file_.locks().LockRecord(record_)) return AE_LOCK_FAILED;
        implicitLock_ = true;
        file_.DropCache();
    }
    const char* record = file_.ReadRecord(record_);
    if (record == nullptr) return AE_NO_CURRENT_RECORD;
    edit_.assign(record, header().recordLength);
    dirty_ = true;
    editMemos_.clear();
    return AE_SUCCESS;
}

Status TableCursor::WriteEdit() {
    std::string before = file_.BlankRecord();
    if (!appended_) {
        const char* old = file_.ReadRecord(record_);
        before = old != nullptr ? std::string(old, header().recordLength) : "";
    }
    dirty_ = false;
    appended_ = false;
    const Status status = file_.WriteRecord(record_, before, edit_);
    if (implicitLock_) {
        file_.locks().UnlockRecord(record_);
        implicitLock_ = false;
    }
    return status;
}

Status TableCursor::SetDeleted(bool deleted) {
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    edit_[0] = deleted ? '*' : ' ';
    return Commit();
}

Status TableCursor::SetRecord(std::string_view bytes) {
    if (bytes.size() != header().recordLength) return AE_INVALID_RECORD_LENGTH;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    edit_.assign(bytes);
    return AE_SUCCESS;
}

Status TableCursor::Count(bool respectFilters, std::uint32_t& count) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    file_.RefreshRecordCount();
    const std::uint32_t total = file_.recordCount();
    if (!respectFilters || (!filter_ && !gate_ && settings_.showDeleted)) {
        count = total;
        return AE_SUCCESS;
    }
    std::uint32_t visible = 0;
    for (std::uint32_t recno = 1; recno <= total; ++recno) {
        const char* record = file_.ReadRecord(recno);
        if (record == nullptr) break;
        if (Passes(record, recno)) ++visible;
    }
    count = visible;
    return AE_SUCCESS;
}

const dbf::Field* TableCursor::FindField(std::string_view name) const {
    for (const dbf::Field& field : header().fields) {
        if (field.name.size() == name.size() &&
            strncasecmp(field.name.data(), name.data(), name.size()) == 0)
            return &field;
    }
    return nullptr;
}

Status TableCursor::Pack(std::string& message) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (Status status = file_.Pack(message); status != AE_SUCCESS) return status;
    return GotoTop();
}

Status TableCursor::Zap(std::string& message) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (Status status = file_.Zap(message); status != AE_SUCCESS) return status;
    return GotoTop();
}

Status TableCursor::Flush() {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    return file_.Flush();
}

}  // namespace fnrk::engine::cursor

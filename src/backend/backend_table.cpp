#include "backend/backend_table.hpp"

#include "backend/column_codec.hpp"
#include "engine/constants.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

BackendTable::BackendTable(SqlSession& session, const SqlDialect& dialect, TableLayout layout,
                           const cursor::EngineSettings& settings)
    : RecordFunctions(settings),
      session_(session),
      layout_(std::move(layout)),
      store_(session, dialect, layout_),
      locks_(dialect.NewLocks(session, layout_.name)),
      scopes_(layout_.tags.size()) {
    MoveToEof();
}

BackendTable::~BackendTable() {
    try {
        // A destructor cannot answer: a pending change that cannot be written is lost with
        // the table object, as the handle's owner closed it without flushing.
        IgnoreStatus(Commit());
    } catch (const SqlFailure&) {
        // Closing must not throw; the change is lost with the connection.
    }
}

Status BackendTable::Open(std::uint32_t options) {
    options_ = options;
    return locks_->Open(exclusive()) ? AE_SUCCESS : AE_LOCK_FAILED;
}

bool BackendTable::exclusive() const {
    return (options_ & ADS_EXCLUSIVE) != 0;
}
bool BackendTable::readOnly() const {
    return (options_ & ADS_READONLY) != 0;
}

void BackendTable::MoveTo(StoredRow row) {
    current_ = std::move(row);
    atBof_ = false;
    atEof_ = false;
}

void BackendTable::MoveToEof() {
    current_ = StoredRow{};
    current_.recno = 0;
    current_.record = layout_.BlankRecord();
    current_.memos.assign(layout_.fields.size(), {});
    atEof_ = true;
}

Status BackendTable::Refresh() {
    if (atEof_) return AE_SUCCESS;
    if (auto row = store_.Read(current_.recno)) {
        MoveTo(std::move(*row));
    } else {
        MoveToEof();
    }
    return AE_SUCCESS;
}

Status BackendTable::BeginEdit() {
    // A record of a table not opened with its password cannot be read, nor changed.
    if (atEof_ || store_.locked()) return AE_NO_CURRENT_RECORD;
    if (readOnly()) return AE_TABLE_READONLY;
    if (dirty_) return AE_SUCCESS;
    if (!exclusive() && !tableLocked_ && !lockedRecords_.contains(current_.recno)) {
        // A write in shared mode holds the record for the time of the change.
        if (!locks_->LockRecord(current_.recno)) return AE_LOCK_FAILED;
        implicitLock_ = true;
    }
    dirty_ = true;
    return AE_SUCCESS;
}

Status BackendTable::Commit() {
    if (!dirty_) return AE_SUCCESS;
    store_.Write(current_);
    dirty_ = false;
    if (implicitLock_) {
        locks_->UnlockRecord(current_.recno);
        implicitLock_ = false;
    }
    return AE_SUCCESS;
}

Status BackendTable::Append() {
    if (readOnly()) return AE_TABLE_READONLY;
    if (store_.locked()) return AE_ENCRYPTION_NOT_ENABLED;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    StoredRow row;
    row.record = layout_.BlankRecord();
    row.memos.assign(layout_.fields.size(), {});
    row.recno = store_.Append(row);
    MoveTo(std::move(row));
    return AE_SUCCESS;
}

Status BackendTable::SetDeleted(bool deleted) {
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    current_.deleted = deleted;
    current_.record[0] = deleted ? '*' : ' ';
    return AE_SUCCESS;
}

Status BackendTable::SetRecord(std::string_view bytes) {
    if (bytes.size() != layout_.recordLength) return AE_INVALID_RECORD_LENGTH;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    current_.record.assign(bytes);
    current_.deleted = current_.record[0] == '*';
    // A memo field that names no memo empties the memo, as it would in a table file; one that
    // names any keeps the record's own, the only one the bytes can stand for here.
    for (std::size_t i = 0; i < layout_.fields.size(); ++i) {
        const auto& field = layout_.fields[i];
        if (!dbf::IsMemoType(field.type)) continue;
        if (!NamesMemo(current_.record, field)) current_.memos[i].clear();
        MarkMemo(field, !current_.memos[i].empty(), current_.record);
    }
    return AE_SUCCESS;
}

Status BackendTable::Count(Order order, bool respectFilters, bool respectScopes,
                           std::uint32_t& count) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (!respectFilters && !respectScopes) {
        count = store_.LastRecordNumber();
        return AE_SUCCESS;
    }
    WalkLimits limits = Limits(respectScopes ? order : Order{}, respectScopes);
    if (!filter_ && !aof_) {
        count = store_.CountRows(limits);
        return AE_SUCCESS;
    }
    count = 0;
    std::optional<StoredRow> at;
    while ((at = Next(limits, true, at))) ++count;
    return AE_SUCCESS;
}

Status BackendTable::CountKeys(std::size_t tag, bool withinScopes, std::uint32_t& count) {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    WalkLimits limits = Limits(tag, withinScopes);
    limits.includeDeleted = true;
    count = store_.CountRows(limits);
    return AE_SUCCESS;
}

std::uint32_t BackendTable::CountBefore(Order order) {
    if (atEof_) return store_.CountRows(Limits(order));
    return store_.CountRows(Limits(order), From(order));
}

Status BackendTable::Pack() {
    if (!exclusive()) return AE_TABLE_NOT_EXCLUSIVE;
    if (readOnly()) return AE_TABLE_READONLY;
    if (store_.locked()) return AE_ENCRYPTION_NOT_ENABLED;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    store_.Pack();
    MoveToEof();
    return AE_SUCCESS;
}

Status BackendTable::Zap() {
    if (!exclusive()) return AE_TABLE_NOT_EXCLUSIVE;
    if (readOnly()) return AE_TABLE_READONLY;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    store_.Zap();
    MoveToEof();
    return AE_SUCCESS;
}

Status BackendTable::CopyFrom(BackendTable& from, bool respectFilters) {
    if (readOnly()) return AE_TABLE_READONLY;
    if (store_.locked()) return AE_ENCRYPTION_NOT_ENABLED;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (Status status = from.Commit(); status != AE_SUCCESS) return status;
    // Fields of the same name and type carry over; others stay blank. Copies are new, undeleted
    // records.
    std::vector<std::pair<std::size_t, std::size_t>> matches;  // (from, to) field indexes
    for (std::size_t target = 0; target < layout_.fields.size(); ++target) {
        const auto& field = layout_.fields[target];
        for (std::size_t source = 0; source < from.layout_.fields.size(); ++source) {
            if (from.layout_.fields[source].name == field.name &&
                from.layout_.fields[source].type == field.type) {
                matches.emplace_back(source, target);
            }
        }
    }
    WalkLimits limits = from.Limits(Order{}, false);
    limits.includeDeleted = !respectFilters || settings_.showDeleted;
    SqlTransaction transaction(session_);
    std::optional<StoredRow> at;
    while ((at = from.Next(limits, true, at, respectFilters))) {
        StoredRow row;
        row.record = layout_.BlankRecord();
        row.memos.assign(layout_.fields.size(), {});
        for (auto [source, target] : matches) {
            const auto& sourceField = from.layout_.fields[source];
            if (dbf::IsMemoType(sourceField.type)) {
                row.memos[target] = at->memos[source];
            } else {
                StoreColumn(ColumnValue(at->record, sourceField), layout_.fields[target],
                            row.record);
            }
        }
        store_.Append(row);
    }
    transaction.Commit();
    return AE_SUCCESS;
}

// --- encryption

Status BackendTable::Unlock(std::shared_ptr<const engine::crypt::FileCipher> cipher) {
    store_.Unlock(std::move(cipher));
    return GotoTop({});
}

Status BackendTable::Recode(std::shared_ptr<const engine::crypt::FileCipher> cipher,
                            const engine::crypt::EncryptionMark* mark) {
    if (readOnly()) return AE_TABLE_READONLY;
    if (!exclusive()) return AE_TABLE_NOT_EXCLUSIVE;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    store_.Recode(std::move(cipher), mark);
    return Refresh();
}

// --- locks

bool BackendTable::IsRecordLocked(std::uint32_t record) const {
    if (record == 0) record = current_.recno;
    return exclusive() || tableLocked_ || lockedRecords_.contains(record);
}

Status BackendTable::LockRecord(std::uint32_t record) {
    if (record == 0) {
        if (atEof_) return AE_NO_CURRENT_RECORD;
        record = current_.recno;
    }
    if (readOnly() && !exclusive()) return AE_TABLE_READONLY;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (lockedRecords_.contains(record)) return AE_SUCCESS;
    if (!exclusive() && !tableLocked_) {
        if (!locks_->LockRecord(record)) return AE_LOCK_FAILED;
        // What others wrote before we held the lock must be read again.
        if (!atEof_ && record == current_.recno) {
            if (Status status = Refresh(); status != AE_SUCCESS) return status;
        }
    }
    lockedRecords_.insert(record);
    return AE_SUCCESS;
}

Status BackendTable::UnlockRecord(std::uint32_t record) {
    if (record == 0) record = current_.recno;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (!lockedRecords_.contains(record)) return AE_RECORD_NOT_LOCKED;
    lockedRecords_.erase(record);
    if (!exclusive() && !tableLocked_) locks_->UnlockRecord(record);
    return AE_SUCCESS;
}

Status BackendTable::LockTable() {
    if (readOnly() && !exclusive()) return AE_TABLE_READONLY;
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (tableLocked_) return AE_SUCCESS;
    if (!exclusive()) {
        if (!locks_->LockTable()) return AE_LOCK_FAILED;
        if (Status status = Refresh(); status != AE_SUCCESS) return status;
    }
    tableLocked_ = true;
    return AE_SUCCESS;
}

Status BackendTable::UnlockTable() {
    if (Status status = Commit(); status != AE_SUCCESS) return status;
    if (!tableLocked_ && lockedRecords_.empty()) return AE_TABLE_NOT_LOCKED;
    if (!exclusive()) locks_->UnlockAll();
    lockedRecords_.clear();
    tableLocked_ = false;
    return AE_SUCCESS;
}

}  // namespace fnrk::backend

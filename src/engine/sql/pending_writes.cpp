#include "engine/sql/pending_writes.hpp"

#include <algorithm>

namespace fnrk::engine::sql {

std::string PendingWrites::OpenWriter() {
    if (writer_ != 0) return {};
    std::string message;
    if (source_.OpenTable(path_, false, writer_, message) != AE_SUCCESS) return message;
    return {};
}

std::string PendingWrites::LockFor(std::uint32_t record) {
    if (std::string problem = OpenWriter(); !problem.empty()) return problem;
    if (std::find(locked_.begin(), locked_.end(), record) != locked_.end()) return {};
    if (source_.engine.LockRecord(writer_, record) != AE_SUCCESS)
        return "record " + std::to_string(record) + " is locked by another user";
    locked_.push_back(record);
    return {};
}

std::string PendingWrites::Delete(std::uint32_t record) {
    if (std::string problem = LockFor(record); !problem.empty()) return problem;
    changes_.push_back({Kind::Delete, record, {}});
    return {};
}

std::string PendingWrites::Update(std::uint32_t record, Values values) {
    if (std::string problem = LockFor(record); !problem.empty()) return problem;
    changes_.push_back({Kind::Update, record, std::move(values)});
    return {};
}

std::string PendingWrites::Insert(Values values) {
    if (std::string problem = OpenWriter(); !problem.empty()) return problem;
    changes_.push_back({Kind::Insert, 0, std::move(values)});
    return {};
}

Status PendingWrites::WriteValues(const Values& values) {
    for (std::size_t i = 0; i < values.size() && i < fields_.size(); ++i) {
        if (!values[i]) continue;
        if (Status status = WriteFieldValue(source_.engine, writer_, fields_[i], *values[i]);
            status != AE_SUCCESS)
            return status;
    }
    return AE_SUCCESS;
}

Status PendingWrites::ApplyChange(Change& change) {
    Operations& engine = source_.engine;
    if (change.kind == Kind::Insert) {
        if (Status status = engine.AppendRecord(writer_); status != AE_SUCCESS) return status;
        std::uint32_t record = 0;
        if (Status status = engine.GetRecordNum(writer_, ADS_IGNOREFILTERS, record);
            status != AE_SUCCESS)
            return status;
        locked_.push_back(record);
        undo_.push_back({record, {}});
        return WriteValues(change.values);
    }
    if (Status status = engine.GotoRecord(writer_, change.record); status != AE_SUCCESS)
        return status;
    Undo undo{change.record, {}};
    if (Status status = engine.GetRecord(writer_, undo.before); status != AE_SUCCESS) return status;
    undo_.push_back(std::move(undo));
    if (change.kind == Kind::Delete) return engine.DeleteRecord(writer_);
    return WriteValues(change.values);
}

std::string PendingWrites::Apply() {
    if (changes_.empty()) return {};
    for (Change& change : changes_) {
        if (Status status = ApplyChange(change); status != AE_SUCCESS) {
            Status code = status;
            std::string message;
            IgnoreStatus(source_.engine.GetLastError(code, message));  // empty when none
            Discard();
            return "write to " + path_ + " failed: " + message;
        }
    }
    // Moving off the last record writes it out.
    if (Status status = source_.engine.FlushFileBuffers(writer_); status != AE_SUCCESS) {
        Discard();
        return "write to " + path_ + " failed";
    }
    changes_.clear();
    return {};
}

// Undoing is done as far as it goes: the failure being answered is the write's.
void PendingWrites::Discard() {
    Operations& engine = source_.engine;
    for (auto undo = undo_.rbegin(); undo != undo_.rend(); ++undo) {
        if (engine.GotoRecord(writer_, undo->record) != AE_SUCCESS) continue;
        if (undo->before.empty()) {
            IgnoreStatus(engine.DeleteRecord(writer_));
        } else {
            IgnoreStatus(engine.SetRecord(writer_, undo->before));
        }
    }
    if (!undo_.empty()) IgnoreStatus(engine.FlushFileBuffers(writer_));
    undo_.clear();
    changes_.clear();
    Close();
}

void PendingWrites::Finish() {
    undo_.clear();
    changes_.clear();
    Close();
}

void PendingWrites::Close() {
    if (writer_ == 0) return;
    // Our own locks and table on a handle we opened: nothing to answer if they go badly.
    for (const std::uint32_t record : locked_)
        IgnoreStatus(source_.engine.UnlockRecord(writer_, record));
    locked_.clear();
    IgnoreStatus(source_.engine.CloseTable(writer_));
    writer_ = 0;
}

}  // namespace fnrk::engine::sql

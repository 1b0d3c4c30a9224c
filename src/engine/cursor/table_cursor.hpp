#pragma once

// One open table as a handle sees it: a position (with the BOF / EOF flags and the blank
// phantom record past the end), the current record with its pending changes, a filter, and the
// locks this handle holds.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "engine/cursor/engine_settings.hpp"
#include "engine/cursor/record_functions.hpp"
#include "engine/dbf/table_file.hpp"
#include "engine/errors.hpp"
#include "engine/expr/expression.hpp"

namespace fnrk::engine::cursor {

class TableCursor final : public RecordFunctions {
  public:
    explicit TableCursor(const EngineSettings& settings) : RecordFunctions(settings) {}
    ~TableCursor();
    TableCursor(const TableCursor&) = delete;
    TableCursor& operator=(const TableCursor&) = delete;

    [[nodiscard]] Status Open(const std::string& path, std::string alias, dbf::OpenRequest request,
                              std::string& message);
    const std::string& alias() const { return alias_; }
    dbf::TableFile& file() { return file_; }
    const dbf::TableHeader& header() const { return file_.header(); }

    // --- navigation (filters and the ShowDeleted setting apply, except to GotoRecord)
    [[nodiscard]] Status GotoTop();
    [[nodiscard]] Status GotoBottom();
    [[nodiscard]] Status GotoRecord(std::uint32_t record);
    [[nodiscard]] Status Skip(std::int32_t records);
    bool atBof() const { return atBof_; }
    // Sets BOF on the current record: index orders find their first record themselves.
    void MarkBof() { atBof_ = true; }
    bool atEof() const { return atEof_; }
    // 0 at EOF.
    std::uint32_t recordNumber() const { return atEof_ ? 0 : record_; }

    // --- records
    [[nodiscard]] Status Append();
    [[nodiscard]] Status SetDeleted(bool deleted);
    bool IsDeleted() { return CurrentRecord()[0] == '*'; }
    bool IsVisible() {
        if (atEof_) return false;
        // Nothing to test: the record is not read (a seek often never reads it at all).
        if (settings_.showDeleted && !gate_ && !filter_) return true;
        return Passes(CurrentRecord(), record_);
    }
    std::string_view CurrentRecordBytes() { return {CurrentRecord(), header().recordLength}; }
    [[nodiscard]] Status SetRecord(std::string_view bytes);
    // Writes pending changes of the current record (every move asks first).
    [[nodiscard]] Status Commit() { return dirty_ ? WriteEdit() : AE_SUCCESS; }
    [[nodiscard]] Status Count(bool respectFilters, std::uint32_t& count);

    // --- fields (names in any letter case)
    const dbf::Field* FindField(std::string_view name) const;
    [[nodiscard]] Status GetMemo(const dbf::Field& field, memo::MemoBlock& memo);
    [[nodiscard]] Status SetMemo(const dbf::Field& field, std::uint32_t type,
                                 std::string_view data);

    // --- filters and searches
    [[nodiscard]] Status SetFilter(std::string_view expression, std::string& message);
    const std::string& filterText() const { return filterText_; }
    void ClearFilter() { filter_.reset(), filterText_.clear(); }
    // A further test every visible record must pass (the optimized filter); empty for none.
    using RecordGate = std::function<bool(std::uint32_t record, std::string_view bytes)>;
    void SetRecordGate(RecordGate gate) { gate_ = std::move(gate); }

    // --- locks (record 0 means the current record)
    [[nodiscard]] Status LockRecord(std::uint32_t record);
    [[nodiscard]] Status UnlockRecord(std::uint32_t record);
    [[nodiscard]] Status LockTable();
    [[nodiscard]] Status UnlockTable();
    bool tableLocked() const { return tableLocked_; }
    bool IsRecordLocked(std::uint32_t record) const;
    std::uint16_t lockCount() const { return static_cast<std::uint16_t>(lockedRecords_.size()); }

    [[nodiscard]] Status Pack(std::string& message);
    [[nodiscard]] Status Zap(std::string& message);
    [[nodiscard]] Status Flush();

  private:
    [[nodiscard]] Status WriteEdit();
    const char* CurrentRecord();
    bool Passes(const char* record, std::uint32_t recno);
    // First visible record from `from` stepping by `step` (+1 / -1), or 0.
    std::uint32_t Seek(std::uint32_t from, int step);
    void MoveTo(std::uint32_t record);
    void MoveToEof();
    // Makes the current record writable: current, not read-only, locked (an implicit lock in
    // shared mode when the handle holds none), copied into the edit buffer.
    [[nodiscard]] Status BeginEdit() override;
    char* EditedRecord() override { return edit_.data(); }
    std::string_view RecordBytes() override { return CurrentRecordBytes(); }
    std::uint32_t CurrentRecordNumber() const override { return record_; }
    [[nodiscard]] Status ReadMemo(const dbf::Field& field, std::string& data) override;
    [[nodiscard]] Status WriteMemo(const dbf::Field& field, std::uint32_t memoType,
                                   std::string_view data) override;
    [[nodiscard]] Status StepToEnd(bool top) override { return top ? GotoTop() : GotoBottom(); }
    [[nodiscard]] Status StepBy(std::int32_t records) override { return Skip(records); }
    bool PastEnd(bool forward) const override { return atEof_ || (atBof_ && !forward); }
    void MoveBeyondLast() override { MoveToEof(); }
    std::unique_ptr<expr::FieldResolver> FieldNames() const override;

    dbf::TableFile file_;
    std::string alias_;
    std::uint32_t record_ = 0;
    bool atBof_ = false;
    bool atEof_ = true;
    std::string edit_;  // the current record while it has pending changes; the phantom at EOF
    bool dirty_ = false;
    bool implicitLock_ = false;
    bool appended_ = false;  // the edit buffer holds a record appended and not yet rewritten
    std::unordered_set<std::uint32_t> editMemos_;  // memo blocks the pending edit wrote

    std::optional<expr::Expression> filter_;
    RecordGate gate_;
    std::string filterText_;

    std::unordered_set<std::uint32_t> lockedRecords_;
    bool tableLocked_ = false;
};

}  // namespace fnrk::engine::cursor

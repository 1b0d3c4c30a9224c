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
#include "engine/dbf/table_file.hpp"
#include "engine/errors.hpp"
#include "engine/expr/expression.hpp"

namespace fnrk::engine::cursor {

class TableCursor {
  public:
    TableCursor(const EngineSettings& settings) : settings_(settings) {}
    ~TableCursor();
    TableCursor(const TableCursor&) = delete;
    TableCursor& operator=(const TableCursor&) = delete;

    Status Open(const std::string& path, std::string alias, dbf::OpenRequest request,
                std::string& message);
    const std::string& alias() const { return alias_; }
    dbf::TableFile& file() { return file_; }
    const dbf::TableHeader& header() const { return file_.header(); }

    // --- navigation (filters and the ShowDeleted setting apply, except to GotoRecord)
    Status GotoTop();
    Status GotoBottom();
    Status GotoRecord(std::uint32_t record);
    Status Skip(std::int32_t records);
    bool atBof() const { return atBof_; }
    // Sets BOF on the current record: index orders find their first record themselves.
    void MarkBof() { atBof_ = true; }
    bool atEof() const { return atEof_; }
    // 0 at EOF.
    std::uint32_t recordNumber() const { return atEof_ ? 0 : record_; }

    // --- records
    Status Append();
    Status SetDeleted(bool deleted);
    bool IsDeleted() { return CurrentRecord()[0] == '*'; }
    bool IsVisible();
    std::string_view CurrentRecordBytes() { return {CurrentRecord(), header().recordLength}; }
    Status SetRecord(std::string_view bytes);
    // Writes pending changes of the current record.
    Status Commit();
    Status Count(bool respectFilters, std::uint32_t& count);

    // --- fields (names in any letter case)
    const dbf::Field* FindField(std::string_view name) const;
    Status GetText(const dbf::Field& field, std::string& text, std::uint16_t trimOption);
    Status SetText(const dbf::Field& field, std::string_view text);
    Status GetNumber(const dbf::Field& field, double& value);
    Status SetNumber(const dbf::Field& field, double value);
    Status GetLogical(const dbf::Field& field, bool& value);
    Status SetLogical(const dbf::Field& field, bool value);
    Status GetJulian(const dbf::Field& field, std::int32_t& julian);
    Status SetJulian(const dbf::Field& field, std::int32_t julian);
    Status GetMemo(const dbf::Field& field, memo::MemoBlock& memo);
    Status SetMemo(const dbf::Field& field, std::uint32_t type, std::string_view data);

    // --- filters and searches
    Status SetFilter(std::string_view expression, std::string& message);
    const std::string& filterText() const { return filterText_; }
    void ClearFilter() { filter_.reset(), filterText_.clear(); }
    // A further test every visible record must pass (the optimized filter); empty for none.
    using RecordGate = std::function<bool(std::uint32_t record, std::string_view bytes)>;
    void SetRecordGate(RecordGate gate) { gate_ = std::move(gate); }
    Status Locate(std::string_view expression, bool forward, bool& found, std::string& message);
    Status Continue(bool& found);
    // Compiles a condition over this table's fields.
    std::optional<expr::Expression> CompileCondition(std::string_view text, std::string& message);

    // --- locks (record 0 means the current record)
    Status LockRecord(std::uint32_t record);
    Status UnlockRecord(std::uint32_t record);
    Status LockTable();
    Status UnlockTable();
    bool tableLocked() const { return tableLocked_; }
    bool IsRecordLocked(std::uint32_t record) const;
    std::uint16_t lockCount() const { return static_cast<std::uint16_t>(lockedRecords_.size()); }

    Status Pack(std::string& message);
    Status Zap(std::string& message);
    Status Flush();

  private:
    const char* CurrentRecord();
    bool Passes(const char* record, std::uint32_t recno);
    // First visible record from `from` stepping by `step` (+1 / -1), or 0.
    std::uint32_t Seek(std::uint32_t from, int step);
    void MoveTo(std::uint32_t record);
    void MoveToEof();
    // Makes the current record writable: current, not read-only, locked (an implicit lock in
    // shared mode when the handle holds none), copied into the edit buffer.
    Status BeginEdit();

    const EngineSettings& settings_;
    dbf::TableFile file_;
    std::string alias_;
    std::uint32_t record_ = 0;
    bool atBof_ = false;
    bool atEof_ = true;
    std::string edit_;  // the current record while it has pending changes; the phantom at EOF
    bool dirty_ = false;
    bool implicitLock_ = false;
    bool appended_ = false;  // the edit buffer holds a record appended and not yet rewritten

    std::optional<expr::Expression> filter_;
    RecordGate gate_;
    std::string filterText_;
    std::optional<expr::Expression> locate_;
    bool locateForward_ = true;

    std::unordered_set<std::uint32_t> lockedRecords_;
    bool tableLocked_ = false;
};

}  // namespace fnrk::engine::cursor

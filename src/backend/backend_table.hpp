#pragma once

// One open table of the SQL backend as a handle sees it: a position (BOF / EOF flags and the
// blank phantom record past the end), the current record with its pending changes, filters,
// per-tag scopes and the locks this handle holds. Navigation takes the tag to walk in (none:
// record number order). It behaves as the embedded engine's open tables do, status for status.

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "backend/table_locks.hpp"
#include "backend/table_store.hpp"
#include "engine/cursor/engine_settings.hpp"
#include "engine/cursor/record_functions.hpp"
#include "engine/errors.hpp"
#include "engine/expr/expression.hpp"

namespace fnrk::backend {

using engine::Status;
using Order = std::optional<std::size_t>;  // a tag of the layout, or record number order

struct TagScope {
    std::optional<std::string> top;
    std::optional<std::string> bottom;
};

class BackendTable final : public engine::cursor::RecordFunctions {
  public:
    BackendTable(SqlSession& session, const SqlDialect& dialect, TableLayout layout,
                 const engine::cursor::EngineSettings& settings);
    ~BackendTable();
    BackendTable(const BackendTable&) = delete;
    BackendTable& operator=(const BackendTable&) = delete;

    // Registers the open with the others; AE_LOCK_FAILED on an exclusive conflict.
    [[nodiscard]] Status Open(std::uint32_t options);
    std::uint32_t options() const { return options_; }
    bool exclusive() const;
    bool readOnly() const;
    const TableLayout& layout() const { return layout_; }
    TableStore& store() { return store_; }

    // --- navigation
    [[nodiscard]] Status GotoTop(Order order);
    [[nodiscard]] Status GotoBottom(Order order);
    [[nodiscard]] Status GotoRecord(std::uint32_t record);
    [[nodiscard]] Status Skip(Order order, std::int32_t records);
    bool atBof() const { return atBof_; }
    bool atEof() const { return atEof_; }
    std::uint32_t recordNumber() const { return atEof_ ? 0 : current_.recno; }
    // Reads the current record again (what others wrote since).
    [[nodiscard]] Status Refresh();

    // --- records
    [[nodiscard]] Status Append();
    [[nodiscard]] Status SetDeleted(bool deleted);
    bool IsDeleted() const { return current_.record[0] == '*'; }
    bool IsVisible(Order order);
    const std::string& record() const { return current_.record; }
    const std::string& memo(std::size_t fieldIndex) const { return current_.memos[fieldIndex]; }
    [[nodiscard]] Status SetRecord(std::string_view bytes);
    [[nodiscard]] Status Commit();
    [[nodiscard]] Status Count(Order order, bool respectFilters, bool respectScopes,
                               std::uint32_t& count);
    // The keys the tag holds, deleted records' included: all, or those within its scopes.
    [[nodiscard]] Status CountKeys(std::size_t tag, bool withinScopes, std::uint32_t& count);
    // Visible rows ahead of the current one in the order (filters aside): a relative position.
    std::uint32_t CountBefore(Order order);
    [[nodiscard]] Status Pack();
    [[nodiscard]] Status Zap();
    // Appends a copy of each row visible in `from` into this table, matching fields by name.
    [[nodiscard]] Status CopyFrom(BackendTable& from, bool respectFilters);

    // --- fields
    const engine::dbf::Field* FindField(std::string_view name) const;
    [[nodiscard]] Status GetMemo(const engine::dbf::Field& field, std::string& data);
    [[nodiscard]] Status SetMemo(const engine::dbf::Field& field, std::string_view data);

    // --- filters and searches (SetFilter and SetAOF both apply)
    [[nodiscard]] Status SetFilter(std::string_view expression, std::string& message);
    const std::string& filterText() const { return filterText_; }
    void ClearFilter();
    [[nodiscard]] Status SetAof(std::string_view expression, std::string& message);
    const std::string& aofText() const { return aofText_; }
    void ClearAof();

    // --- indexes
    [[nodiscard]] Status AddTag(IndexTag tag);
    // Keys are index keys as stored (see ProbeKey).
    [[nodiscard]] Status Seek(std::size_t tag, std::string_view key, bool soft, bool greater,
                              bool& found);
    [[nodiscard]] Status SeekLast(std::size_t tag, std::string_view key, bool& found);
    TagScope& scope(std::size_t tag) { return scopes_.at(tag); }
    // The current record's key for the tag; no value when its FOR condition excludes it.
    std::optional<std::string> CurrentKey(std::size_t tag) const;

    // --- encryption (sealed rows, see TableStore)
    // Opens an encrypted table with the cipher of its password, and goes to its top.
    [[nodiscard]] Status Unlock(std::shared_ptr<const engine::crypt::FileCipher> cipher);
    // Writes the whole table anew, encrypted under `cipher` with `mark`, or plain without a
    // mark; only while it is open exclusively.
    [[nodiscard]] Status Recode(std::shared_ptr<const engine::crypt::FileCipher> cipher,
                                const engine::crypt::EncryptionMark* mark);

    // --- locks (record 0: the current record)
    [[nodiscard]] Status LockRecord(std::uint32_t record);
    [[nodiscard]] Status UnlockRecord(std::uint32_t record);
    [[nodiscard]] Status LockTable();
    [[nodiscard]] Status UnlockTable();
    bool tableLocked() const { return tableLocked_; }
    bool IsRecordLocked(std::uint32_t record) const;
    std::uint16_t lockCount() const { return static_cast<std::uint16_t>(lockedRecords_.size()); }

  private:
    WalkLimits Limits(Order order, bool withScopes = true) const;
    bool Passes(const StoredRow& row);
    std::optional<StoredRow> From(Order order) const;
    // The first row (passing the filters, unless told not to apply them) after `from` in the
    // walk's direction.
    std::optional<StoredRow> Next(const WalkLimits& limits, bool forward,
                                  std::optional<StoredRow> from, bool applyFilters = true);
    void MoveTo(StoredRow row);
    void MoveToEof();
    [[nodiscard]] Status BeginEdit() override;
    char* EditedRecord() override { return current_.record.data(); }
    std::string_view RecordBytes() override { return current_.record; }
    std::uint32_t CurrentRecordNumber() const override { return current_.recno; }
    [[nodiscard]] Status ReadMemo(const engine::dbf::Field& field, std::string& data) override {
        return GetMemo(field, data);
    }
    // The SQL store keeps text and binary memos alike.
    [[nodiscard]] Status WriteMemo(const engine::dbf::Field& field, std::uint32_t /*memoType*/,
                                   std::string_view data) override {
        return SetMemo(field, data);
    }
    [[nodiscard]] Status StepToEnd(bool top) override { return top ? GotoTop({}) : GotoBottom({}); }
    [[nodiscard]] Status StepBy(std::int32_t records) override { return Skip({}, records); }
    bool PastEnd(bool forward) const override { return atEof_ || (atBof_ && !forward); }
    void MoveBeyondLast() override { MoveToEof(); }
    std::unique_ptr<engine::expr::FieldResolver> FieldNames() const override;

    SqlSession& session_;
    TableLayout layout_;
    TableStore store_;
    std::unique_ptr<TableLocks> locks_;
    std::uint32_t options_ = 0;

    StoredRow current_;
    bool atBof_ = false;
    bool atEof_ = true;
    bool dirty_ = false;
    bool implicitLock_ = false;

    std::optional<engine::expr::Expression> filter_;
    std::string filterText_;
    std::optional<engine::expr::Expression> aof_;
    std::string aofText_;
    std::vector<TagScope> scopes_;

    std::set<std::uint32_t> lockedRecords_;
    bool tableLocked_ = false;
};

// A seek or scope value as the tag's stored keys: text (ADS_STRINGKEY) in the tag's terms,
// a host-order double (ADS_DOUBLEKEY), or the key bytes themselves (ADS_RAWKEY). No value when
// the value does not suit the tag.
std::optional<std::string> ProbeKey(const IndexTag& tag, std::string_view key,
                                    std::uint16_t dataType,
                                    const engine::expr::DateSettings& dates);

}  // namespace fnrk::backend

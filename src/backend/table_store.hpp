#pragma once

// The SQL side of one table. Rows hold the record number, the deleted flag, one column per
// field and one key column per index tag (NULL where the record is not in the tag: its FOR
// condition excludes it, or a unique tag holds its key for another record); each key column
// has a SQL index on (key, recno), so that walks in tag order and seeks are keyset queries.
//
// A unique tag keeps each key once, as a table file's index does: a build (or a pack) gives a
// key to the lowest record number that has it, and a write gives a record its new key only when
// no other record holds it. A record that loses a key frees it without handing it on.
//
// An encrypted table keeps its rows sealed (sealed_row.hpp): opened with its password, its rows
// are read and ordered in the workstation; without it, it shows no rows.
//
// Catalog tables of a database: fnrk_table (name, field list), fnrk_tag (tags of each table in
// order), fnrk_crypt (encryption marks). Locks are the dialect's (TableLocks).

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backend/sql_dialect.hpp"
#include "backend/sql_session.hpp"
#include "backend/table_layout.hpp"
#include "engine/crypt/encryption_mark.hpp"

namespace fnrk::backend {

struct StoredRow {
    std::uint32_t recno = 0;
    bool deleted = false;
    std::string record;              // the record buffer, deletion flag included
    std::vector<std::string> memos;  // per field; the content of memo fields
    std::string key;                 // the active tag's key when walking in tag order
};

// Where a walk or a search is allowed to go.
struct WalkLimits {
    std::optional<std::size_t> tag;  // tag order, or natural order
    bool includeDeleted = false;
    std::optional<std::string> low;   // keys from (inclusive)
    std::optional<std::string> high;  // keys up to (inclusive)
};

class TableStore {
  public:
    TableStore(SqlSession& session, const SqlDialect& dialect, const TableLayout& layout);

    static void EnsureCatalog(SqlSession& session, const SqlDialect& dialect);
    static bool Exists(SqlSession& session, const std::string& name);
    // The names of every table of the database, in name order.
    static std::vector<std::string> Names(SqlSession& session);
    // Reads the layout and tags; no value when the table does not exist.
    static std::optional<TableLayout> LoadLayout(SqlSession& session, const std::string& name);
    static void Create(SqlSession& session, const SqlDialect& dialect, const TableLayout& layout);
    static void Drop(SqlSession& session, const std::string& name);

    std::optional<StoredRow> Read(std::uint32_t recno);
    std::uint32_t Append(const StoredRow& row);  // returns the new record number
    void Write(const StoredRow& row);
    std::uint32_t LastRecordNumber();
    // Rows within the limits; with `before`, only those ahead of it in the limits' order.
    std::uint32_t CountRows(const WalkLimits& limits,
                            const std::optional<StoredRow>& before = std::nullopt);

    // Up to `limit` rows next to (after or, with !forward, before) `from` in the limits' order;
    // from the start (or the end) without `from`.
    std::vector<StoredRow> Walk(const WalkLimits& limits, bool forward,
                                const std::optional<StoredRow>& from, int limit);

    // Adds the tag's key column, fills it, indexes it and records the tag.
    void AddTag(const IndexTag& tag, std::size_t position);
    void RemoveTag(const IndexTag& tag);
    // Copies every row of `source` (same fields and tags) into this empty table, sealed ones as
    // they are.
    void CopyRowsFrom(const TableStore& source);
    // Removes deleted rows and numbers the rest 1, 2, ... in their order.
    void Pack();
    void Zap();

    // --- encryption
    bool encrypted() const { return mark_.has_value(); }
    // Encrypted and not opened with its password: no rows to read, none to write.
    bool locked() const { return mark_ && cipher_ == nullptr; }
    const std::optional<engine::crypt::EncryptionMark>& mark() const { return mark_; }
    void Unlock(std::shared_ptr<const engine::crypt::FileCipher> cipher) {
        cipher_ = std::move(cipher);
        opened_.reset();
    }
    // Writes every row anew, sealed under `cipher` with `mark`, or plain without a mark.
    void Recode(std::shared_ptr<const engine::crypt::FileCipher> cipher,
                const engine::crypt::EncryptionMark* mark);

  private:
    std::string SelectList(const WalkLimits& limits) const;
    StoredRow RowFrom(const SqlRow& columns, bool withKey) const;
    // Deleted flag, fields, then `keys` and the record number: the parameters of Append / Write.
    std::vector<SqlValue> ColumnValues(const StoredRow& row, std::vector<SqlValue> keys) const;
    // The key column values of `row` for each tag; `before` is the row as stored, with its key
    // columns, when the write replaces it.
    std::vector<SqlValue> KeyValues(const StoredRow& row, const SqlRow* before);
    // The key for a unique tag, or NULL when another record holds it.
    SqlValue UniqueKeyValue(std::size_t tag, const std::string& key, std::uint32_t recno);
    // A key column's value: the key, a mark of being in the tag for a sealed row, or NULL.
    SqlValue StoredKey(const std::optional<std::string>& key) const;
    // Where the first key column follows the columns of SelectList.
    std::size_t FirstKeyColumn() const;
    std::string UpdateStatement() const;
    void AddSealedColumn();
    // A sealed table's rows as opened in the workstation, kept while the table's count of
    // changes (fnrk_crypt) stays what it was: every write to its rows counts one.
    struct OpenedTable {
        std::int64_t changes = -1;
        std::vector<StoredRow> rows;  // record number order, deleted ones too
        std::vector<std::vector<std::optional<std::string>>> keys;  // per row, per tag in it
    };
    struct OpenedRef {
        const StoredRow* row;
        const std::string* key;  // in the limits' tag; empty for natural order
    };
    const OpenedTable& Opened();
    // The opened rows within the limits (none without the password).
    std::vector<OpenedRef> OpenedRows(const WalkLimits& limits);
    // Counts a write to a sealed table's rows, so that every handle opens them anew.
    void Changed();
    std::vector<StoredRow> WalkOpened(const WalkLimits& limits, bool forward,
                                      const std::optional<StoredRow>& from, int limit);
    // Computes the tag's key column anew for every row, in record number order.
    void FillKeys(const IndexTag& tag);

    SqlSession& session_;
    const SqlDialect& dialect_;
    const TableLayout& layout_;
    std::string table_;  // quoted data table name
    std::optional<engine::crypt::EncryptionMark> mark_;
    std::shared_ptr<const engine::crypt::FileCipher> cipher_;
    std::optional<OpenedTable> opened_;
};

std::string KeyColumn(const IndexTag& tag);

}  // namespace fnrk::backend

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
// Catalog tables of a database: fnrk_table (name, field list), fnrk_tag (tags of each table in
// order). Locks are the dialect's (TableLocks).

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "backend/sql_dialect.hpp"
#include "backend/sql_session.hpp"
#include "backend/table_layout.hpp"

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

    static void EnsureCatalog(SqlSession& session);
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
    // Removes deleted rows and numbers the rest 1, 2, ... in their order.
    // Copies every row of `source` (same fields) into this empty table.
    void CopyRowsFrom(const TableLayout& source);
    void Pack();
    void Zap();

  private:
    std::string SelectList(const WalkLimits& limits) const;
    StoredRow RowFrom(const SqlRow& columns, bool withKey) const;
    // Deleted flag, fields, then `keys` and the record number: the parameters of Append / Write.
    std::vector<SqlValue> ColumnValues(const StoredRow& row, std::vector<SqlValue> keys) const;
    // The key column values of `row` for each tag; `before` is the row as stored, with its key
    // columns, when the write replaces it.
    std::vector<SqlValue> KeyValues(const StoredRow& row, const SqlRow* before);
    // The key for a unique tag, or NULL when another record holds it.
    SqlValue UniqueKeyValue(const IndexTag& tag, const std::string& key, std::uint32_t recno);
    // Computes the tag's key column anew for every row, in record number order.
    void FillKeys(const IndexTag& tag);

    SqlSession& session_;
    const SqlDialect& dialect_;
    const TableLayout& layout_;
    std::string table_;  // quoted data table name
};

std::string KeyColumn(const IndexTag& tag);

}  // namespace fnrk::backend

#include "backend/table_store.hpp"

#include <algorithm>
#include <set>

#include "backend/column_codec.hpp"
#include "backend/sealed_row.hpp"
#include "engine/dbf/field_list.hpp"
#include "platform/text.hpp"

namespace fnrk::backend {

namespace {

std::string Quoted(std::string_view name) {
    return "\"" + std::string(name) + "\"";
}
std::string DataTable(const std::string& name) {
    return Quoted("t_" + name);
}
std::string FieldColumn(const engine::dbf::Field& field) {
    return Quoted("f_" + field.name);
}

std::int64_t AsInteger(const SqlValue& value) {
    if (const auto* integer = std::get_if<std::int64_t>(&value)) return *integer;
    if (const auto* real = std::get_if<double>(&value)) return static_cast<std::int64_t>(*real);
    return 0;
}

std::string AsBytes(const SqlValue& value) {
    if (const auto* blob = std::get_if<Blob>(&value)) return blob->bytes;
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    return {};
}

bool MentionsRecno(const IndexTag& tag) {
    return platform::UpperCase(tag.expression + tag.condition).find("RECNO") != std::string::npos;
}

bool HasUniqueTag(const TableLayout& layout) {
    for (const auto& tag : layout.tags) {
        if (tag.unique()) return true;
    }
    return false;
}

// The record buffer as its keys see it: with the row's deletion flag.
std::string RecordOf(const StoredRow& row) {
    std::string record = row.record;
    record[0] = row.deleted ? '*' : ' ';
    return record;
}

// What a sealed row's key column holds while the row is in the tag.
const Blob kInTag{"+"};

// Whether row a comes before row b in the walk of `limits` (keys of its tag, record numbers).
bool Ahead(const WalkLimits& limits, const TableLayout& layout, const std::string& aKey,
           std::uint32_t aRecno, const std::string& bKey, std::uint32_t bRecno) {
    if (!limits.tag) return aRecno < bRecno;
    const bool descending = layout.tags[*limits.tag].descending();
    if (aKey != bKey) return descending ? aKey > bKey : aKey < bKey;
    return descending ? aRecno > bRecno : aRecno < bRecno;
}

}  // namespace

std::string KeyColumn(const IndexTag& tag) {
    return Quoted("k_" + tag.name);
}

TableStore::TableStore(SqlSession& session, const SqlDialect& dialect, const TableLayout& layout)
    : session_(session),
      dialect_(dialect),
      layout_(layout),
      table_(DataTable(layout.name)),
      mark_(ReadMark(session, layout.name)) {}

void TableStore::EnsureCatalog(SqlSession& session, const SqlDialect& dialect) {
    // In a transaction: workstations that connect at once must not both create them.
    SqlTransaction transaction(session);
    session.Execute(
        "CREATE TABLE IF NOT EXISTS fnrk_table(name TEXT PRIMARY KEY, fields TEXT NOT NULL)");
    session.Execute(
        "CREATE TABLE IF NOT EXISTS fnrk_tag(table_name TEXT NOT NULL, tag TEXT NOT NULL, "
        "expression TEXT NOT NULL, condition TEXT NOT NULL, options INTEGER NOT NULL, "
        "position INTEGER NOT NULL, PRIMARY KEY(table_name, tag))");
    session.Execute("CREATE TABLE IF NOT EXISTS fnrk_crypt(table_name TEXT PRIMARY KEY, mark " +
                    std::string(dialect.TypeName(ColumnKind::Bytes)) +
                    " NOT NULL, changes INTEGER NOT NULL DEFAULT 0)");
    transaction.Commit();
}

bool TableStore::Exists(SqlSession& session, const std::string& name) {
    SqlValue parameters[] = {name};
    return !session.Query("SELECT 1 FROM fnrk_table WHERE name = ?", parameters).empty();
}

std::vector<std::string> TableStore::Names(SqlSession& session) {
    std::vector<std::string> names;
    for (const SqlRow& row : session.Query("SELECT name FROM fnrk_table ORDER BY name"))
        names.push_back(std::get<std::string>(row.at(0)));
    return names;
}

std::optional<TableLayout> TableStore::LoadLayout(SqlSession& session, const std::string& name) {
    SqlValue parameters[] = {name};
    auto rows = session.Query("SELECT fields FROM fnrk_table WHERE name = ?", parameters);
    if (rows.empty()) return std::nullopt;
    TableLayout layout;
    layout.name = name;
    if (!engine::dbf::ParseFieldList(AsBytes(rows[0][0]), layout.fields).empty()) {
        return std::nullopt;
    }
    ArrangeFields(layout);
    auto tags = session.Query(
        "SELECT tag, expression, condition, options FROM fnrk_tag WHERE table_name = ? "
        "ORDER BY position",
        parameters);
    for (const auto& tag : tags) {
        layout.tags.push_back(MakeTag(layout, AsBytes(tag[0]), AsBytes(tag[1]), AsBytes(tag[2]),
                                      static_cast<std::uint32_t>(AsInteger(tag[3]))));
    }
    return layout;
}

void TableStore::Create(SqlSession& session, const SqlDialect& dialect, const TableLayout& layout) {
    SqlTransaction transaction(session);
    std::string sql = "CREATE TABLE " + DataTable(layout.name) + "(recno " +
                      std::string(dialect.TypeName(ColumnKind::Integer)) +
                      " PRIMARY KEY, deleted " +
                      std::string(dialect.TypeName(ColumnKind::Integer)) + " NOT NULL DEFAULT 0";
    for (const auto& field : layout.fields) {
        sql += ", " + FieldColumn(field) + " " +
               std::string(dialect.TypeName(ColumnKindOf(field.type)));
    }
    session.Execute(sql + ")");
    SqlValue parameters[] = {layout.name, FieldListText(layout.fields)};
    session.Execute("INSERT INTO fnrk_table(name, fields) VALUES (?, ?)", parameters);
    transaction.Commit();
}

void TableStore::Drop(SqlSession& session, const std::string& name) {
    SqlTransaction transaction(session);
    session.Execute("DROP TABLE IF EXISTS " + DataTable(name));
    SqlValue parameters[] = {name};
    session.Execute("DELETE FROM fnrk_table WHERE name = ?", parameters);
    session.Execute("DELETE FROM fnrk_tag WHERE table_name = ?", parameters);
    WriteMark(session, name, nullptr);
    transaction.Commit();
}

std::string TableStore::SelectList(const WalkLimits& limits) const {
    std::string list = "recno, deleted";
    if (mark_) {
        list += ", sealed";
    } else {
        for (const auto& field : layout_.fields) list += ", " + FieldColumn(field);
    }
    if (limits.tag) list += ", " + KeyColumn(layout_.tags[*limits.tag]);
    return list;
}

StoredRow TableStore::RowFrom(const SqlRow& columns, bool withKey) const {
    StoredRow row;
    row.recno = static_cast<std::uint32_t>(AsInteger(columns[0]));
    row.deleted = AsInteger(columns[1]) != 0;
    row.record = layout_.BlankRecord();
    row.record[0] = row.deleted ? '*' : ' ';
    row.memos.resize(layout_.fields.size());
    if (withKey) row.key = AsBytes(columns[FirstKeyColumn()]);
    if (mark_) {
        if (cipher_) OpenRow(*cipher_, AsBytes(columns[2]), row.record, row.memos);
        return row;
    }
    for (std::size_t i = 0; i < layout_.fields.size(); ++i) {
        const auto& field = layout_.fields[i];
        if (engine::dbf::IsMemoType(field.type)) {
            row.memos[i] = AsBytes(columns[i + 2]);
            MarkMemo(field, !row.memos[i].empty(), row.record);
        } else {
            StoreColumn(columns[i + 2], field, row.record);
        }
    }
    return row;
}

std::size_t TableStore::FirstKeyColumn() const {
    return mark_ ? 3 : layout_.fields.size() + 2;
}

SqlValue TableStore::StoredKey(const std::optional<std::string>& key) const {
    if (!key) return std::monostate{};
    return mark_ ? kInTag : Blob{*key};
}

std::vector<SqlValue> TableStore::ColumnValues(const StoredRow& row,
                                               std::vector<SqlValue> keys) const {
    const std::string record = RecordOf(row);
    std::vector<SqlValue> values;
    values.reserve(layout_.fields.size() + layout_.tags.size() + 3);
    values.push_back(static_cast<std::int64_t>(row.deleted ? 1 : 0));
    for (std::size_t i = 0; i < layout_.fields.size(); ++i) {
        const auto& field = layout_.fields[i];
        if (mark_) {
            values.emplace_back(std::monostate{});
        } else if (engine::dbf::IsMemoType(field.type)) {
            values.push_back(i < row.memos.size() && !row.memos[i].empty()
                                 ? SqlValue(Blob{row.memos[i]})
                                 : SqlValue(std::monostate{}));
        } else {
            values.push_back(ColumnValue(record, field));
        }
    }
    for (auto& key : keys) values.push_back(std::move(key));
    if (mark_) {
        if (!cipher_) throw SqlFailure("an encrypted table is written without its password");
        std::vector<std::string> memos = row.memos;
        memos.resize(layout_.fields.size());
        values.emplace_back(Blob{SealRow(*cipher_, record, memos)});
    }
    values.push_back(static_cast<std::int64_t>(row.recno));
    return values;
}

std::vector<SqlValue> TableStore::KeyValues(const StoredRow& row, const SqlRow* before) {
    const std::string record = RecordOf(row);
    const std::string oldRecord = before ? RowFrom(*before, false).record : std::string();
    const std::size_t firstKeyColumn = FirstKeyColumn();
    std::vector<SqlValue> keys;
    keys.reserve(layout_.tags.size());
    for (std::size_t i = 0; i < layout_.tags.size(); ++i) {
        const IndexTag& tag = layout_.tags[i];
        auto key = KeyOf(tag, record, row.recno);
        if (!key || !tag.unique()) {
            keys.push_back(StoredKey(key));
        } else if (before && KeyOf(tag, oldRecord, row.recno) == key) {
            // An unchanged key leaves the record where it was: in the tag or kept out of it.
            keys.push_back((*before)[firstKeyColumn + i]);
        } else {
            keys.push_back(UniqueKeyValue(i, *key, row.recno));
        }
    }
    return keys;
}

SqlValue TableStore::UniqueKeyValue(std::size_t tag, const std::string& key, std::uint32_t recno) {
    bool held = false;
    if (mark_) {
        const WalkLimits holders{tag, true, key, key};
        for (const OpenedRef& row : OpenedRows(holders)) held = held || row.row->recno != recno;
    } else {
        SqlValue parameters[] = {Blob{key}, static_cast<std::int64_t>(recno)};
        held = !session_
                    .Query("SELECT 1 FROM " + table_ + " WHERE " + KeyColumn(layout_.tags[tag]) +
                               " = ? AND recno <> ? LIMIT 1",
                           parameters)
                    .empty();
    }
    return held ? SqlValue(std::monostate{}) : StoredKey(key);
}

std::optional<StoredRow> TableStore::Read(std::uint32_t recno) {
    // A row of a table not opened with its password reads as a blank record.
    SqlValue parameters[] = {static_cast<std::int64_t>(recno)};
    auto rows = session_.Query("SELECT " + SelectList({}) + " FROM " + table_ + " WHERE recno = ?",
                               parameters);
    if (rows.empty()) return std::nullopt;
    return RowFrom(rows[0], false);
}

std::uint32_t TableStore::LastRecordNumber() {
    auto rows = session_.Query("SELECT COALESCE(MAX(recno), 0) FROM " + table_);
    return static_cast<std::uint32_t>(AsInteger(rows[0][0]));
}

std::uint32_t TableStore::Append(const StoredRow& row) {
    SqlTransaction transaction(session_);
    StoredRow added = row;
    added.recno = LastRecordNumber() + 1;
    std::string columns = "deleted";
    std::string marks = "?";
    for (const auto& field : layout_.fields) {
        columns += ", " + FieldColumn(field);
        marks += ", ?";
    }
    for (const auto& tag : layout_.tags) {
        columns += ", " + KeyColumn(tag);
        marks += ", ?";
    }
    if (mark_) {
        columns += ", sealed";
        marks += ", ?";
    }
    session_.Execute("INSERT INTO " + table_ + "(" + columns + ", recno) VALUES (" + marks + ", ?)",
                     ColumnValues(added, KeyValues(added, nullptr)));
    Changed();
    transaction.Commit();
    return added.recno;
}

std::string TableStore::UpdateStatement() const {
    std::string assignments = "deleted = ?";
    for (const auto& field : layout_.fields) assignments += ", " + FieldColumn(field) + " = ?";
    for (const auto& tag : layout_.tags) assignments += ", " + KeyColumn(tag) + " = ?";
    if (mark_) assignments += ", sealed = ?";
    return "UPDATE " + table_ + " SET " + assignments + " WHERE recno = ?";
}

void TableStore::Write(const StoredRow& row) {
    SqlTransaction transaction(session_);
    std::string keyColumns;
    for (const auto& tag : layout_.tags) keyColumns += ", " + KeyColumn(tag);
    // A unique tag's upkeep needs the row as it was, with the keys it holds.
    std::vector<SqlRow> before;
    if (HasUniqueTag(layout_)) {
        SqlValue parameters[] = {static_cast<std::int64_t>(row.recno)};
        before = session_.Query(
            "SELECT " + SelectList({}) + keyColumns + " FROM " + table_ + " WHERE recno = ?",
            parameters);
    }
    session_.Execute(UpdateStatement(),
                     ColumnValues(row, KeyValues(row, before.empty() ? nullptr : &before[0])));
    Changed();
    transaction.Commit();
}

namespace {

// The WHERE clause of the limits, with its parameters.
std::string Conditions(const WalkLimits& limits, const TableLayout& layout,
                       std::vector<SqlValue>& parameters) {
    std::string where = " WHERE 1 = 1";
    if (!limits.includeDeleted) where += " AND deleted = 0";
    if (limits.tag) {
        std::string key = KeyColumn(layout.tags[*limits.tag]);
        where += " AND " + key + " IS NOT NULL";
        if (limits.low) {
            where += " AND " + key + " >= ?";
            parameters.push_back(Blob{*limits.low});
        }
        if (limits.high) {
            where += " AND " + key + " <= ?";
            parameters.push_back(Blob{*limits.high});
        }
    }
    return where;
}

}  // namespace

const TableStore::OpenedTable& TableStore::Opened() {
    SqlValue name[] = {layout_.name};
    const auto counted =
        session_.Query("SELECT changes FROM fnrk_crypt WHERE table_name = ?", name);
    const std::int64_t changes = counted.empty() ? 0 : AsInteger(counted[0][0]);
    if (opened_ && opened_->changes == changes) return *opened_;
    OpenedTable fresh;
    fresh.changes = changes;
    std::string keyColumns;
    for (const auto& tag : layout_.tags) keyColumns += ", " + KeyColumn(tag);
    for (const SqlRow& columns : session_.Query("SELECT " + SelectList({}) + keyColumns + " FROM " +
                                                table_ + " ORDER BY recno")) {
        StoredRow row = RowFrom(columns, false);
        // The keys are in the sealed rows only: the database tells which rows are in a tag.
        auto& keys = fresh.keys.emplace_back();
        for (std::size_t i = 0; i < layout_.tags.size(); ++i) {
            keys.push_back(std::holds_alternative<std::monostate>(columns[FirstKeyColumn() + i])
                               ? std::nullopt
                               : KeyOf(layout_.tags[i], RecordOf(row), row.recno));
        }
        fresh.rows.push_back(std::move(row));
    }
    opened_ = std::move(fresh);
    return *opened_;
}

void TableStore::Changed() {
    if (!mark_) return;
    SqlValue name[] = {layout_.name};
    session_.Execute("UPDATE fnrk_crypt SET changes = changes + 1 WHERE table_name = ?", name);
    opened_.reset();
}

std::vector<TableStore::OpenedRef> TableStore::OpenedRows(const WalkLimits& limits) {
    std::vector<OpenedRef> found;
    if (!cipher_) return found;
    static const std::string kNoKey;
    const OpenedTable& table = Opened();
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        const StoredRow& row = table.rows[i];
        if (row.deleted && !limits.includeDeleted) continue;
        const std::string* key = &kNoKey;
        if (limits.tag) {
            const auto& inTag = table.keys[i][*limits.tag];
            if (!inTag || (limits.low && *inTag < *limits.low) ||
                (limits.high && *inTag > *limits.high))
                continue;
            key = &*inTag;
        }
        found.push_back({&row, key});
    }
    return found;
}

std::vector<StoredRow> TableStore::WalkOpened(const WalkLimits& limits, bool forward,
                                              const std::optional<StoredRow>& from, int limit) {
    std::vector<OpenedRef> rows = OpenedRows(limits);
    auto inWalk = [&](const std::string& aKey, std::uint32_t aRecno, const std::string& bKey,
                      std::uint32_t bRecno) {
        return forward ? Ahead(limits, layout_, aKey, aRecno, bKey, bRecno)
                       : Ahead(limits, layout_, bKey, bRecno, aKey, aRecno);
    };
    if (from) {
        std::erase_if(rows, [&](const OpenedRef& row) {
            return !inWalk(from->key, from->recno, *row.key, row.row->recno);
        });
    }
    const auto count = std::min(rows.size(), static_cast<std::size_t>(std::max(limit, 0)));
    std::partial_sort(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(count), rows.end(),
                      [&](const OpenedRef& a, const OpenedRef& b) {
                          return inWalk(*a.key, a.row->recno, *b.key, b.row->recno);
                      });
    std::vector<StoredRow> walked;
    walked.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        walked.push_back(*rows[i].row);
        walked.back().key = *rows[i].key;
    }
    return walked;
}

std::uint32_t TableStore::CountRows(const WalkLimits& limits,
                                    const std::optional<StoredRow>& before) {
    // Without the password, rows are still counted in record order (by their plain columns).
    if (mark_ && (cipher_ || limits.tag)) {
        const std::vector<OpenedRef> rows = OpenedRows(limits);
        if (!before) return static_cast<std::uint32_t>(rows.size());
        return static_cast<std::uint32_t>(
            std::count_if(rows.begin(), rows.end(), [&](const OpenedRef& row) {
                return Ahead(limits, layout_, *row.key, row.row->recno, before->key, before->recno);
            }));
    }
    std::vector<SqlValue> parameters;
    parameters.reserve(4);
    std::string where = Conditions(limits, layout_, parameters);
    if (before && limits.tag) {
        const IndexTag& tag = layout_.tags[*limits.tag];
        where +=
            " AND (" + KeyColumn(tag) + ", recno) " + (tag.descending() ? ">" : "<") + " (?, ?)";
        parameters.push_back(Blob{before->key});
        parameters.push_back(static_cast<std::int64_t>(before->recno));
    } else if (before) {
        where += " AND recno < ?";
        parameters.push_back(static_cast<std::int64_t>(before->recno));
    }
    auto rows = session_.Query("SELECT COUNT(*) FROM " + table_ + where, parameters);
    return static_cast<std::uint32_t>(AsInteger(rows[0][0]));
}

std::vector<StoredRow> TableStore::Walk(const WalkLimits& limits, bool forward,
                                        const std::optional<StoredRow>& from, int limit) {
    if (mark_) return WalkOpened(limits, forward, from, limit);
    std::vector<SqlValue> parameters;
    parameters.reserve(5);
    std::string where = Conditions(limits, layout_, parameters);
    bool ascending = forward;
    std::string order;
    if (limits.tag) {
        const IndexTag& tag = layout_.tags[*limits.tag];
        if (tag.descending()) ascending = !ascending;
        std::string key = KeyColumn(tag);
        if (from) {
            where += " AND (" + key + ", recno) " + (ascending ? ">" : "<") + " (?, ?)";
            parameters.push_back(Blob{from->key});
            parameters.push_back(static_cast<std::int64_t>(from->recno));
        }
        order = key + (ascending ? " ASC, recno ASC" : " DESC, recno DESC");
    } else {
        if (from) {
            where += std::string(" AND recno ") + (ascending ? ">" : "<") + " ?";
            parameters.push_back(static_cast<std::int64_t>(from->recno));
        }
        order = ascending ? "recno ASC" : "recno DESC";
    }
    parameters.push_back(static_cast<std::int64_t>(limit));
    auto rows = session_.Query("SELECT " + SelectList(limits) + " FROM " + table_ + where +
                                   " ORDER BY " + order + " LIMIT ?",
                               parameters);
    std::vector<StoredRow> result;
    result.reserve(rows.size());
    for (const auto& columns : rows) result.push_back(RowFrom(columns, limits.tag.has_value()));
    return result;
}

void TableStore::AddTag(const IndexTag& tag, std::size_t position) {
    SqlTransaction transaction(session_);
    opened_.reset();  // made for the tags as they were
    std::string key = KeyColumn(tag);
    session_.Execute("ALTER TABLE " + table_ + " ADD COLUMN " + key + " " +
                     std::string(dialect_.TypeName(ColumnKind::Bytes)));
    FillKeys(tag);
    session_.Execute("CREATE INDEX " + Quoted("x_" + layout_.name + "_" + tag.name) + " ON " +
                     table_ + "(" + key + ", recno)");
    SqlValue parameters[] = {layout_.name,
                             tag.name,
                             tag.expression,
                             tag.condition,
                             static_cast<std::int64_t>(tag.options),
                             static_cast<std::int64_t>(position)};
    session_.Execute(
        "INSERT INTO fnrk_tag(table_name, tag, expression, condition, options, position) "
        "VALUES (?, ?, ?, ?, ?, ?)",
        parameters);
    Changed();
    transaction.Commit();
}

void TableStore::FillKeys(const IndexTag& tag) {
    const std::string update =
        "UPDATE " + table_ + " SET " + KeyColumn(tag) + " = ? WHERE recno = ?";
    std::set<std::string> given;  // keys of a unique tag that a lower record holds
    std::optional<StoredRow> last;
    WalkLimits all{std::nullopt, true, std::nullopt, std::nullopt};
    for (;;) {
        auto rows = Walk(all, true, last, 512);
        if (rows.empty()) break;
        for (auto& row : rows) {
            auto key = KeyOf(tag, row.record, row.recno);
            if (key && tag.unique() && !given.insert(*key).second) key.reset();
            SqlValue parameters[] = {StoredKey(key), static_cast<std::int64_t>(row.recno)};
            session_.Execute(update, parameters);
        }
        last = rows.back();
    }
}

void TableStore::RemoveTag(const IndexTag& tag) {
    SqlTransaction transaction(session_);
    session_.Execute("DROP INDEX IF EXISTS " + Quoted("x_" + layout_.name + "_" + tag.name));
    session_.Execute("ALTER TABLE " + table_ + " DROP COLUMN " + KeyColumn(tag));
    SqlValue parameters[] = {layout_.name, tag.name};
    session_.Execute("DELETE FROM fnrk_tag WHERE table_name = ? AND tag = ?", parameters);
    opened_.reset();
    transaction.Commit();
}

void TableStore::Pack() {
    SqlTransaction transaction(session_);
    session_.Execute("DELETE FROM " + table_ + " WHERE deleted <> 0");
    auto rows = session_.Query("SELECT recno FROM " + table_ + " ORDER BY recno");
    std::int64_t next = 1;
    bool renumbered = false;
    for (const auto& row : rows) {
        std::int64_t old = AsInteger(row[0]);
        if (old != next) {
            // Ascending, so the new number is always free.
            SqlValue parameters[] = {next, old};
            session_.Execute("UPDATE " + table_ + " SET recno = ? WHERE recno = ?", parameters);
            renumbered = true;
        }
        ++next;
    }
    Changed();  // the rows the keys are made from
    // Keys made of record numbers follow the new ones; unique tags are built anew, as a reindex
    // after packing a table file does.
    for (const auto& tag : layout_.tags) {
        if ((renumbered && MentionsRecno(tag)) || tag.unique()) FillKeys(tag);
    }
    Changed();
    transaction.Commit();
}

void TableStore::CopyRowsFrom(const TableStore& source) {
    std::string columns = "recno, deleted";
    for (const auto& field : layout_.fields) columns += ", " + FieldColumn(field);
    for (const auto& tag : layout_.tags) columns += ", " + KeyColumn(tag);
    if (source.mark_) {
        AddSealedColumn();
        WriteMark(session_, layout_.name, &*source.mark_);
        mark_ = source.mark_;
        cipher_ = source.cipher_;
        columns += ", sealed";
    }
    session_.Execute("INSERT INTO " + table_ + "(" + columns + ") SELECT " + columns + " FROM " +
                     source.table_);
}

void TableStore::AddSealedColumn() {
    session_.Execute("ALTER TABLE " + table_ + " ADD COLUMN sealed " +
                     std::string(dialect_.TypeName(ColumnKind::Bytes)));
}

void TableStore::Recode(std::shared_ptr<const engine::crypt::FileCipher> cipher,
                        const engine::crypt::EncryptionMark* mark) {
    SqlTransaction transaction(session_);
    std::string keyColumns;
    for (const auto& tag : layout_.tags) keyColumns += ", " + KeyColumn(tag);
    const auto stored = session_.Query("SELECT " + SelectList({}) + keyColumns + " FROM " + table_ +
                                       " ORDER BY recno");
    std::vector<StoredRow> rows;
    std::vector<std::vector<bool>> inTags;
    for (const SqlRow& columns : stored) {
        rows.push_back(RowFrom(columns, false));
        std::vector<bool>& in = inTags.emplace_back();
        for (std::size_t i = 0; i < layout_.tags.size(); ++i)
            in.push_back(!std::holds_alternative<std::monostate>(columns[FirstKeyColumn() + i]));
    }
    const auto wasMark = mark_;
    const auto wasCipher = cipher_;
    try {
        if (!wasMark && mark) AddSealedColumn();
        mark_ = mark ? std::optional(*mark) : std::nullopt;
        cipher_ = std::move(cipher);
        WriteMark(session_, layout_.name, mark);
        const std::string update = UpdateStatement();
        for (std::size_t r = 0; r < rows.size(); ++r) {
            std::vector<SqlValue> keys;
            for (std::size_t i = 0; i < layout_.tags.size(); ++i) {
                keys.push_back(inTags[r][i] ? StoredKey(KeyOf(layout_.tags[i], RecordOf(rows[r]),
                                                              rows[r].recno))
                                            : SqlValue(std::monostate{}));
            }
            session_.Execute(update, ColumnValues(rows[r], std::move(keys)));
        }
        if (wasMark && !mark) session_.Execute("ALTER TABLE " + table_ + " DROP COLUMN sealed");
        Changed();
        transaction.Commit();
    } catch (...) {
        mark_ = wasMark;
        cipher_ = wasCipher;
        throw;
    }
}

void TableStore::Zap() {
    SqlTransaction transaction(session_);
    session_.Execute("DELETE FROM " + table_);
    Changed();
    transaction.Commit();
}

}  // namespace fnrk::backend

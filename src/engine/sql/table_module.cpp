#include "engine/sql/table_module.hpp"

#include <sqlite3.h>

#include <cmath>
#include <memory>
#include <sstream>

#include "engine/sql/pending_writes.hpp"
#include "engine/sql/row_id.hpp"
#include "engine/sql/tag_plans.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::sql {

namespace {

// Plans of xBestIndex (idxNum); a tag plan names its tag and bounds in idxStr.
enum Plan : int { kScan = 0, kRowId = 1, kTag = 2 };
enum Bound : int { kEqual = 1, kLower = 2, kUpper = 4 };

struct VirtualTable : sqlite3_vtab {
    TableSource* source = nullptr;
    std::string path;
    std::string rowIdTable;
    std::vector<FieldInfo> fields;
    std::vector<TagPlan> tags;
    double records = 0;
    std::unique_ptr<PendingWrites> writes;
};

struct VirtualCursor : sqlite3_vtab_cursor {
    Handle table = 0;
    Handle order = 0;  // the object navigated: the table or an index tag
    bool eof = true;
    bool single = false;
};

VirtualTable& Table(sqlite3_vtab* vtab) {
    return *static_cast<VirtualTable*>(vtab);
}
VirtualCursor& Cursor(sqlite3_vtab_cursor* cursor) {
    return *static_cast<VirtualCursor*>(cursor);
}

int Fail(sqlite3_vtab* vtab, const std::string& message) {
    sqlite3_free(vtab->zErrMsg);
    vtab->zErrMsg = sqlite3_mprintf("%s", message.c_str());
    return SQLITE_ERROR;
}

std::string EngineMessage(Operations& engine, const std::string& doing) {
    Status code = AE_SUCCESS;
    std::string text;
    IgnoreStatus(engine.GetLastError(code, text));  // empty when there is none
    return doing + ": " + text;
}

std::string QuoteName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

std::string Unquote(std::string_view text) {
    const std::string trimmed = platform::Trim(text);
    if (trimmed.size() < 2 || trimmed.front() != '\'' || trimmed.back() != '\'') return trimmed;
    std::string out;
    for (std::size_t i = 1; i + 1 < trimmed.size(); ++i) {
        out += trimmed[i];
        if (trimmed[i] == '\'' && trimmed[i + 1] == '\'') ++i;
    }
    return out;
}

bool ShowsDeleted(Operations& engine) {
    bool show = false;
    IgnoreStatus(engine.GetDeleted(show));  // an engine-wide setting: always answers
    return show;
}

int Connect(sqlite3* db, void* aux, int argc, const char* const* argv, sqlite3_vtab** out,
            char** error) {
    if (argc < 4) {
        *error = sqlite3_mprintf("table module needs the table's path");
        return SQLITE_ERROR;
    }
    auto table = std::make_unique<VirtualTable>();
    table->source = static_cast<TableSource*>(aux);
    table->path = Unquote(argv[3]);
    table->rowIdTable = RowIdTablePart(table->path);
    Operations& engine = table->source->engine;
    Handle handle = 0;
    std::string message;
    if (table->source->OpenTable(table->path, true, handle, message) != AE_SUCCESS) {
        *error = sqlite3_mprintf("%s", message.c_str());
        return SQLITE_ERROR;
    }
    std::uint32_t count = 0;
    Status status = ReadFieldInfos(engine, handle, table->fields);
    if (status == AE_SUCCESS) status = engine.GetRecordCount(handle, ADS_IGNOREFILTERS, count);
    if (status != AE_SUCCESS) message = EngineMessage(engine, "cannot read table " + table->path);
    table->tags = UsableTags(engine, handle, table->fields, ShowsDeleted(engine));
    table->records = count;
    IgnoreStatus(engine.CloseTable(handle));  // opened only to be described
    if (status != AE_SUCCESS) {
        *error = sqlite3_mprintf("%s", message.c_str());
        return SQLITE_ERROR;
    }
    std::ostringstream schema;
    schema << "CREATE TABLE x(ROWID TEXT HIDDEN";
    for (const FieldInfo& field : table->fields)
        schema << ", " << QuoteName(field.name) << ' ' << SqlColumnType(field);
    schema << ')';
    if (int rc = sqlite3_declare_vtab(db, schema.str().c_str()); rc != SQLITE_OK) return rc;
    table->source->declaredTables[platform::UpperCase(argv[2])] = table->fields;
    *out = table.release();
    return SQLITE_OK;
}

int Disconnect(sqlite3_vtab* vtab) {
    delete &Table(vtab);
    return SQLITE_OK;
}

bool IsLower(unsigned char op) {
    return op == SQLITE_INDEX_CONSTRAINT_GT || op == SQLITE_INDEX_CONSTRAINT_GE;
}
bool IsUpper(unsigned char op) {
    return op == SQLITE_INDEX_CONSTRAINT_LT || op == SQLITE_INDEX_CONSTRAINT_LE;
}

// Costs in records read, so that SQLite weighs them against its own loops.
int BestIndex(sqlite3_vtab* vtab, sqlite3_index_info* info) {
    VirtualTable& table = Table(vtab);
    const double records = std::max(table.records, 1.0);
    info->idxNum = kScan;
    info->estimatedCost = records;
    info->estimatedRows = static_cast<sqlite3_int64>(records);
    auto constraintOn = [&](int column, auto accepts) -> int {
        for (int i = 0; i < info->nConstraint; ++i) {
            const auto& constraint = info->aConstraint[i];
            if (constraint.usable && constraint.iColumn == column && accepts(constraint.op))
                return i;
        }
        return -1;
    };
    auto isEqual = [](unsigned char op) { return op == SQLITE_INDEX_CONSTRAINT_EQ; };
    if (const int rowId = constraintOn(0, isEqual); rowId >= 0) {
        info->idxNum = kRowId;
        info->aConstraintUsage[rowId].argvIndex = 1;
        info->estimatedCost = 1;
        info->estimatedRows = 1;
        info->idxFlags = SQLITE_INDEX_SCAN_UNIQUE;
        return SQLITE_OK;
    }
    int bestTag = -1;
    int bestBounds = 0;
    int bestArgs[2] = {-1, -1};
    double bestCost = records;
    for (std::size_t t = 0; t < table.tags.size(); ++t) {
        const TagPlan& tag = table.tags[t];
        const int column = static_cast<int>(tag.field) + 1;
        int bounds = 0;
        int args[2] = {-1, -1};
        double cost = records;
        if (const int equal = constraintOn(column, isEqual); equal >= 0) {
            bounds = kEqual;
            args[0] = equal;
            cost = 10 + std::log2(records);
        } else if (!tag.leadingPart) {
            if (const int lower = constraintOn(column, IsLower); lower >= 0) {
                bounds |= kLower;
                args[0] = lower;
                cost /= 4;
            }
            if (const int upper = constraintOn(column, IsUpper); upper >= 0) {
                bounds |= kUpper;
                args[1] = upper;
                cost /= 4;
            }
        }
        if (bounds != 0 && cost < bestCost) {
            bestTag = static_cast<int>(t);
            bestBounds = bounds;
            bestArgs[0] = args[0];
            bestArgs[1] = args[1];
            bestCost = cost;
        }
    }
    if (bestTag < 0) return SQLITE_OK;
    int argv = 0;
    for (const int constraint : bestArgs) {
        // SQLite still checks every row: tag keys may bound more loosely than the condition.
        if (constraint >= 0) info->aConstraintUsage[constraint].argvIndex = ++argv;
    }
    info->idxNum = kTag;
    info->idxStr = sqlite3_mprintf("%d %d", bestTag, bestBounds);
    info->needToFreeIdxStr = 1;
    info->estimatedCost = bestCost;
    info->estimatedRows = static_cast<sqlite3_int64>(std::max(1.0, bestCost));
    return SQLITE_OK;
}

int Open(sqlite3_vtab* vtab, sqlite3_vtab_cursor** out) {
    VirtualTable& table = Table(vtab);
    auto cursor = std::make_unique<VirtualCursor>();
    std::string message;
    if (table.source->OpenTable(table.path, true, cursor->table, message) != AE_SUCCESS)
        return Fail(vtab, message);
    *out = cursor.release();
    return SQLITE_OK;
}

int Close(sqlite3_vtab_cursor* base) {
    VirtualCursor& cursor = Cursor(base);
    IgnoreStatus(static_cast<VirtualTable*>(base->pVtab)->source->engine.CloseTable(cursor.table));
    delete &cursor;
    return SQLITE_OK;
}

void UpdateEof(Operations& engine, VirtualCursor& cursor) {
    bool eof = true;
    if (engine.AtEOF(cursor.table, eof) != AE_SUCCESS) eof = true;
    cursor.eof = eof;
}

void FilterRowId(VirtualTable& table, VirtualCursor& cursor, sqlite3_value* value) {
    Operations& engine = table.source->engine;
    cursor.single = true;
    cursor.eof = true;
    const char* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    const std::string rowId = text == nullptr ? std::string() : std::string(text);
    const RowIdStyle style = table.source->rowIds;
    const std::optional<std::uint32_t> record = RowIdRecord(rowId, style);
    if (rowId.size() != RowIdLength(style) || !record ||
        rowId.compare(0, kRowIdTableLength, table.rowIdTable) != 0)
        return;
    if (engine.GotoRecord(cursor.table, *record) != AE_SUCCESS) return;
    UpdateEof(engine, cursor);
    bool deleted = false;
    if (!cursor.eof && engine.IsRecordDeleted(cursor.table, deleted) == AE_SUCCESS && deleted &&
        !ShowsDeleted(engine))
        cursor.eof = true;
}

Status FilterTag(VirtualTable& table, VirtualCursor& cursor, const char* plan, int argc,
                 sqlite3_value** argv) {
    Operations& engine = table.source->engine;
    int tagNumber = 0;
    int bounds = 0;
    std::istringstream(plan == nullptr ? "" : plan) >> tagNumber >> bounds;
    const TagPlan& tag = table.tags.at(static_cast<std::size_t>(tagNumber));
    const FieldInfo& field = table.fields.at(tag.field);
    if (Status status = engine.GetIndexHandle(cursor.table, tag.tag, cursor.order);
        status != AE_SUCCESS)
        return status;
    for (const std::uint16_t end : {ADS_TOP, ADS_BOTTOM}) {
        if (Status status = engine.ClearScope(cursor.order, end); status != AE_SUCCESS)
            return status;
    }
    auto scope = [&](std::uint16_t end, int arg, bool equality) -> Status {
        if (arg >= argc) return AE_SUCCESS;
        const std::optional<ScopeKey> key = ScopeKeyFor(field, tag, argv[arg], equality);
        if (!key) return AE_SUCCESS;
        return engine.SetScope(cursor.order, end, key->bytes, key->dataType);
    };
    Status status = AE_SUCCESS;
    if (bounds & kEqual) {
        status = scope(ADS_TOP, 0, true);
        if (status == AE_SUCCESS) status = scope(ADS_BOTTOM, 0, true);
    } else {
        int arg = 0;
        if (bounds & kLower) status = scope(ADS_TOP, arg++, false);
        if (status == AE_SUCCESS && (bounds & kUpper)) status = scope(ADS_BOTTOM, arg, false);
    }
    if (status != AE_SUCCESS) return status;
    return engine.GotoTop(cursor.order);
}

int Filter(sqlite3_vtab_cursor* base, int plan, const char* planText, int argc,
           sqlite3_value** argv) {
    VirtualCursor& cursor = Cursor(base);
    VirtualTable& table = Table(base->pVtab);
    Operations& engine = table.source->engine;
    cursor.single = false;
    cursor.order = cursor.table;
    if (plan == kRowId && argc > 0) {
        FilterRowId(table, cursor, argv[0]);
        return SQLITE_OK;
    }
    const Status status = plan == kTag ? FilterTag(table, cursor, planText, argc, argv)
                                       : engine.GotoTop(cursor.table);
    if (status != AE_SUCCESS) return Fail(base->pVtab, EngineMessage(engine, table.path));
    UpdateEof(engine, cursor);
    return SQLITE_OK;
}

int Next(sqlite3_vtab_cursor* base) {
    VirtualCursor& cursor = Cursor(base);
    if (cursor.single) {
        cursor.eof = true;
        return SQLITE_OK;
    }
    Operations& engine = Table(base->pVtab).source->engine;
    if (engine.Skip(cursor.order, 1) != AE_SUCCESS)
        return Fail(base->pVtab, EngineMessage(engine, Table(base->pVtab).path));
    UpdateEof(engine, cursor);
    return SQLITE_OK;
}

int Eof(sqlite3_vtab_cursor* base) {
    return Cursor(base).eof ? 1 : 0;
}

std::uint32_t CurrentRecord(Operations& engine, const VirtualCursor& cursor) {
    std::uint32_t record = 0;
    IgnoreStatus(engine.GetRecordNum(cursor.table, ADS_IGNOREFILTERS, record));  // 0 when none
    return record;
}

int Column(sqlite3_vtab_cursor* base, sqlite3_context* context, int column) {
    // An UPDATE asks only for the columns it changes; the others are left unread.
    if (sqlite3_vtab_nochange(context)) return SQLITE_OK;
    VirtualCursor& cursor = Cursor(base);
    VirtualTable& table = Table(base->pVtab);
    Operations& engine = table.source->engine;
    if (column == 0) {
        const std::string rowId =
            MakeRowId(table.rowIdTable, CurrentRecord(engine, cursor), table.source->rowIds);
        sqlite3_result_text(context, rowId.data(), static_cast<int>(rowId.size()),
                            SQLITE_TRANSIENT);
        return SQLITE_OK;
    }
    const FieldInfo& field = table.fields.at(static_cast<std::size_t>(column - 1));
    if (ResultFieldValue(engine, cursor.table, field, context) != AE_SUCCESS)
        return Fail(base->pVtab, EngineMessage(engine, "cannot read field " + field.name));
    return SQLITE_OK;
}

int RowId(sqlite3_vtab_cursor* base, sqlite3_int64* rowId) {
    *rowId = CurrentRecord(Table(base->pVtab).source->engine, Cursor(base));
    return SQLITE_OK;
}

// The field values of an INSERT or UPDATE (argv[3] onwards; argv[2] is ROWID).
std::string CollectValues(VirtualTable& table, int argc, sqlite3_value** argv, bool insert,
                          PendingWrites::Values& values) {
    values.assign(table.fields.size(), std::nullopt);
    for (std::size_t i = 0; i < table.fields.size() && 3 + static_cast<int>(i) < argc; ++i) {
        sqlite3_value* value = argv[3 + i];
        if (insert ? sqlite3_value_type(value) == SQLITE_NULL : sqlite3_value_nochange(value))
            continue;
        FieldValue converted;
        if (std::string problem = ToFieldValue(table.fields[i], value, converted); !problem.empty())
            return problem;
        values[i] = std::move(converted);
    }
    return {};
}

int Update(sqlite3_vtab* vtab, int argc, sqlite3_value** argv, sqlite3_int64* rowId) {
    VirtualTable& table = Table(vtab);
    if (!table.writes)
        table.writes = std::make_unique<PendingWrites>(*table.source, table.path, table.fields);
    std::string problem;
    if (argc == 1) {
        problem = table.writes->Delete(static_cast<std::uint32_t>(sqlite3_value_int64(argv[0])));
    } else {
        const bool insert = sqlite3_value_type(argv[0]) == SQLITE_NULL;
        if (!insert && (sqlite3_value_int64(argv[0]) != sqlite3_value_int64(argv[1]) ||
                        !sqlite3_value_nochange(argv[2])))
            return Fail(vtab, "ROWID cannot be changed");
        PendingWrites::Values values;
        problem = CollectValues(table, argc, argv, insert, values);
        if (problem.empty()) {
            problem = insert ? table.writes->Insert(std::move(values))
                             : table.writes->Update(
                                   static_cast<std::uint32_t>(sqlite3_value_int64(argv[0])),
                                   std::move(values));
        }
        if (insert) *rowId = 0;
    }
    return problem.empty() ? SQLITE_OK : Fail(vtab, problem);
}

int Begin(sqlite3_vtab*) {
    return SQLITE_OK;
}

int Sync(sqlite3_vtab* vtab) {
    VirtualTable& table = Table(vtab);
    if (!table.writes) return SQLITE_OK;
    const std::string problem = table.writes->Apply();
    return problem.empty() ? SQLITE_OK : Fail(vtab, problem);
}

int Commit(sqlite3_vtab* vtab) {
    if (auto& writes = Table(vtab).writes) writes->Finish();
    return SQLITE_OK;
}

int Rollback(sqlite3_vtab* vtab) {
    if (auto& writes = Table(vtab).writes) writes->Discard();
    return SQLITE_OK;
}

sqlite3_module MakeModule() {
    sqlite3_module module{};
    module.iVersion = 0;
    module.xCreate = Connect;
    module.xConnect = Connect;
    module.xBestIndex = BestIndex;
    module.xDisconnect = Disconnect;
    module.xDestroy = Disconnect;
    module.xOpen = Open;
    module.xClose = Close;
    module.xFilter = Filter;
    module.xNext = Next;
    module.xEof = Eof;
    module.xColumn = Column;
    module.xRowid = RowId;
    module.xUpdate = Update;
    module.xBegin = Begin;
    module.xSync = Sync;
    module.xCommit = Commit;
    module.xRollback = Rollback;
    return module;
}

const sqlite3_module kModule = MakeModule();

}  // namespace

int RegisterTableModule(sqlite3* db, TableSource& source) {
    return sqlite3_create_module(db, std::string(kTableModule).c_str(), &kModule, &source);
}

std::string TableDeclaration(std::string_view name, std::string_view path) {
    std::string quotedPath = "'";
    for (const char c : path) quotedPath += c == '\'' ? std::string("''") : std::string(1, c);
    quotedPath += '\'';
    return "CREATE VIRTUAL TABLE temp." + QuoteName(name) + " USING " + std::string(kTableModule) +
           "(" + quotedPath + ")";
}

std::string ViewDeclaration(std::string_view name, std::string_view sql) {
    return "CREATE TEMP VIEW " + QuoteName(name) + " AS " + std::string(sql);
}

}  // namespace fnrk::engine::sql

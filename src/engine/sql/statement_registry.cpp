#include "engine/sql/statement_registry.hpp"

#include <unistd.h>

#include "engine/sql/statement_runner.hpp"
#include "engine/sql/static_cursor.hpp"

namespace fnrk::engine::sql {

namespace {

// Cursor files in a temporary folder of this registry, made on first use.
class CursorFiles final : public CursorTables {
  public:
    ~CursorFiles() override {
        if (folder_.empty()) return;
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    std::string NewName() override {
        if (folder_.empty()) {
            folder_ = std::filesystem::temp_directory_path() /
                      ("fennrick-sql-" + std::to_string(::getpid()) + "-" +
                       std::to_string(reinterpret_cast<std::uintptr_t>(this)));
            std::filesystem::create_directories(folder_);
        }
        return (folder_ / ("cursor" + std::to_string(++nextCursor_) + ".dbf")).string();
    }
    void Remove(Handle, const std::string& name) override {
        std::error_code ignored;
        for (const char* extension : {".dbf", ".fpt", ".cdx"}) {
            std::filesystem::path file = name;
            std::filesystem::remove(file.replace_extension(extension), ignored);
        }
    }

  private:
    std::filesystem::path folder_;
    std::uint32_t nextCursor_ = 0;
};

}  // namespace

StatementRegistry::StatementRegistry(Operations& engine, ViewLookup views,
                                     std::unique_ptr<CursorTables> cursors, RowIdStyle rowIds)
    : engine_(engine),
      views_(std::move(views)),
      cursorTables_(cursors ? std::move(cursors) : std::make_unique<CursorFiles>()),
      rowIds_(rowIds) {}

StatementRegistry::~StatementRegistry() = default;

void StatementRegistry::Add(Handle statement, Handle connection) {
    statements_[statement] = Entry{connection, {}, {}, false, {}};
}

StatementSettings* StatementRegistry::Settings(Handle statement) {
    const auto found = statements_.find(statement);
    return found == statements_.end() ? nullptr : &found->second.settings;
}

TableSource StatementRegistry::SourceFor(const Entry& entry) {
    TableSource source{engine_, entry.connection};
    source.lockType = entry.settings.lockType;
    source.checkRights = entry.settings.checkRights;
    source.password = entry.settings.password;
    source.passwords = entry.settings.passwords;
    source.views = views_;
    source.nextAlias = nextAlias_;
    source.rowIds = rowIds_;
    return source;
}

Status StatementRegistry::Prepare(Handle statement, std::string_view sql, std::string& message) {
    const auto found = statements_.find(statement);
    if (found == statements_.end()) return AE_INVALID_SQLSTATEMENT_HANDLE;
    Entry& entry = found->second;
    entry.prepared = false;
    TableSource source = SourceFor(entry);
    StatementResult result;
    const Status status = RunStatement(source, sql, RunMode::PrepareOnly, result, message);
    nextAlias_ = source.nextAlias;
    if (status != AE_SUCCESS) return status;
    entry.sql = std::string(sql);
    entry.prepared = true;
    return AE_SUCCESS;
}

Status StatementRegistry::Check(Handle connection, std::string_view sql, std::string& message) {
    TableSource source = SourceFor(Entry{connection, {}, {}, false, {}});
    StatementResult result;
    const Status status = RunStatement(source, sql, RunMode::PrepareOnly, result, message);
    nextAlias_ = source.nextAlias;
    return status;
}

Status StatementRegistry::Execute(Handle statement, Handle& cursor, std::string& message) {
    cursor = 0;
    const auto found = statements_.find(statement);
    if (found == statements_.end()) return AE_INVALID_SQLSTATEMENT_HANDLE;
    Entry& entry = found->second;
    if (!entry.prepared) return AE_NOT_PREPARED;
    TableSource source = SourceFor(entry);
    StatementResult result;
    Status status = RunStatement(source, entry.sql, RunMode::Execute, result, message);
    if (status == AE_SUCCESS && result.query) {
        std::string name = cursorTables_->NewName();
        status = MaterializeCursor(
            source, name, result, entry.settings.readOnly != ADS_CURSOR_READWRITE, cursor, message);
        if (status == AE_SUCCESS)
            entry.cursors.emplace_back(cursor, std::move(name));
        else
            cursorTables_->Remove(entry.connection, name);
    }
    nextAlias_ = source.nextAlias;
    return status;
}

Status StatementRegistry::StatementOf(Handle cursor, Handle& statement) const {
    statement = 0;
    for (const auto& [handle, entry] : statements_) {
        for (const auto& owned : entry.cursors) {
            if (owned.first == cursor) {
                statement = handle;
                return AE_SUCCESS;
            }
        }
    }
    return AE_INVALID_SQLCURSOR_HANDLE;
}

Status StatementRegistry::Close(Handle statement) {
    const auto found = statements_.find(statement);
    if (found == statements_.end()) return AE_INVALID_SQLSTATEMENT_HANDLE;
    for (const auto& [cursor, name] : found->second.cursors) {
        // The caller may have closed the cursor already; its table goes either way.
        IgnoreStatus(engine_.CloseTable(cursor));
        cursorTables_->Remove(found->second.connection, name);
    }
    statements_.erase(found);
    return AE_SUCCESS;
}

void StatementRegistry::CloseAll(Handle connection) {
    std::vector<Handle> closing;
    for (const auto& [handle, entry] : statements_) {
        if (connection == 0 || entry.connection == connection) closing.push_back(handle);
    }
    for (Handle handle : closing) IgnoreStatus(Close(handle));  // known handles: cannot fail
}

std::size_t StatementRegistry::cursorCount() const {
    std::size_t count = 0;
    for (const auto& [handle, entry] : statements_) count += entry.cursors.size();
    return count;
}

}  // namespace fnrk::engine::sql

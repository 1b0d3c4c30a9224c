#include "engine/sql/statement_registry.hpp"

#include <unistd.h>

#include "engine/sql/statement_runner.hpp"
#include "engine/sql/static_cursor.hpp"

namespace fnrk::engine::sql {

namespace {

void RemoveTableFiles(const std::filesystem::path& path) {
    std::error_code ignored;
    for (const char* extension : {".dbf", ".fpt", ".cdx"}) {
        std::filesystem::path file = path;
        std::filesystem::remove(file.replace_extension(extension), ignored);
    }
}

}  // namespace

StatementRegistry::StatementRegistry(Operations& engine, ViewLookup views)
    : engine_(engine), views_(std::move(views)) {}

StatementRegistry::~StatementRegistry() {
    if (folder_.empty()) return;
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

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

std::filesystem::path StatementRegistry::NewCursorPath() {
    if (folder_.empty()) {
        folder_ = std::filesystem::temp_directory_path() /
                  ("fennrick-sql-" + std::to_string(::getpid()) + "-" +
                   std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(folder_);
    }
    return folder_ / ("cursor" + std::to_string(++nextCursor_) + ".dbf");
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
        std::filesystem::path path = NewCursorPath();
        status =
            MaterializeCursor(source, path.string(), result,
                              entry.settings.readOnly != ADS_CURSOR_READWRITE, cursor, message);
        if (status == AE_SUCCESS)
            entry.cursors.emplace_back(cursor, std::move(path));
        else
            RemoveTableFiles(path);
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
    for (const auto& [cursor, path] : found->second.cursors) {
        // The caller may have closed the cursor already; its file goes either way.
        engine_.CloseTable(cursor);
        RemoveTableFiles(path);
    }
    statements_.erase(found);
    return AE_SUCCESS;
}

std::size_t StatementRegistry::cursorCount() const {
    std::size_t count = 0;
    for (const auto& [handle, entry] : statements_) count += entry.cursors.size();
    return count;
}

}  // namespace fnrk::engine::sql

#pragma once

// The SQL statements of an engine: their settings, prepared text and the static cursors they
// produced. Cursor files lie in a private temporary folder and go when their statement is
// closed (and the folder with the registry).

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/sql/table_source.hpp"

namespace fnrk::engine::sql {

struct StatementSettings {
    std::uint16_t checkRights = ADS_IGNORERIGHTS;
    std::uint16_t readOnly = ADS_CURSOR_READONLY;
    std::uint16_t lockType = ADS_COMPATIBLE_LOCKING;
    std::uint16_t charType = ADS_ANSI;
    std::uint16_t tableType = ADS_CDX;
    std::string password;
    std::map<std::string, std::string> passwords;  // by upper-case table name
};

class StatementRegistry {
  public:
    StatementRegistry(Operations& engine, ViewLookup views);
    ~StatementRegistry();
    StatementRegistry(const StatementRegistry&) = delete;
    StatementRegistry& operator=(const StatementRegistry&) = delete;

    void Add(Handle statement, Handle connection);
    // The settings of a statement, or null for an unknown handle.
    StatementSettings* Settings(Handle statement);

    [[nodiscard]] Status Prepare(Handle statement, std::string_view sql, std::string& message);
    // Runs the prepared statement; a query gives a cursor handle, other statements 0.
    [[nodiscard]] Status Execute(Handle statement, Handle& cursor, std::string& message);
    [[nodiscard]] Status StatementOf(Handle cursor, Handle& statement) const;
    // Closes the statement's cursors and forgets it.
    [[nodiscard]] Status Close(Handle statement);

    std::size_t statementCount() const { return statements_.size(); }
    std::size_t cursorCount() const;

  private:
    struct Entry {
        Handle connection = 0;
        StatementSettings settings;
        std::string sql;
        bool prepared = false;
        std::vector<std::pair<Handle, std::filesystem::path>> cursors;
    };

    TableSource SourceFor(const Entry& entry);
    std::filesystem::path NewCursorPath();

    Operations& engine_;
    ViewLookup views_;
    std::map<Handle, Entry> statements_;
    std::filesystem::path folder_;
    std::uint32_t nextCursor_ = 0;
    std::uint32_t nextAlias_ = 0;
};

}  // namespace fnrk::engine::sql

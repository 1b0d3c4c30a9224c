#pragma once

// The SQL statements of an engine: their settings, prepared text and the static cursors they
// produced. Cursors are tables made for them (CursorTables): by default files in a private
// temporary folder, gone when their statement is closed (and the folder with the registry).

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
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

// The settings a caller may change, each refusing a value it does not know with its status.
Status SetCheckRights(StatementSettings& settings, std::uint16_t checkRights);
Status SetReadOnly(StatementSettings& settings, std::uint16_t readOnly);
Status SetLockType(StatementSettings& settings, std::uint16_t lockType);
Status SetCharType(StatementSettings& settings, std::uint16_t charType);
Status SetTableType(StatementSettings& settings, std::uint16_t tableType);
// The password of one table, by name or path.
Status SetTablePassword(StatementSettings& settings, std::string_view table,
                        std::string_view password);

// Where the static cursors of statements are kept.
class CursorTables {
  public:
    virtual ~CursorTables() = default;
    // The name (or path) to create the next cursor under.
    virtual std::string NewName() = 0;
    // Removes a cursor's table once it is closed.
    virtual void Remove(Handle connection, const std::string& name) = 0;
};

class StatementRegistry {
  public:
    // Without `cursors`, cursors are files of a private temporary folder.
    StatementRegistry(Operations& engine, ViewLookup views,
                      std::unique_ptr<CursorTables> cursors = nullptr,
                      RowIdStyle rowIds = RowIdStyle::Base64);
    ~StatementRegistry();
    StatementRegistry(const StatementRegistry&) = delete;
    StatementRegistry& operator=(const StatementRegistry&) = delete;

    void Add(Handle statement, Handle connection);
    // The settings of a statement, or null for an unknown handle.
    StatementSettings* Settings(Handle statement);

    [[nodiscard]] Status Prepare(Handle statement, std::string_view sql, std::string& message);
    // Whether `sql` would run on the connection (a view before it is kept), without a handle.
    [[nodiscard]] Status Check(Handle connection, std::string_view sql, std::string& message);
    // Runs the prepared statement; a query gives a cursor handle, other statements 0.
    [[nodiscard]] Status Execute(Handle statement, Handle& cursor, std::string& message);
    [[nodiscard]] Status StatementOf(Handle cursor, Handle& statement) const;
    // Closes the statement's cursors and forgets it.
    [[nodiscard]] Status Close(Handle statement);
    // Closes every statement (of one connection, or of all when `connection` is 0).
    void CloseAll(Handle connection = 0);

    std::size_t statementCount() const { return statements_.size(); }
    std::size_t cursorCount() const;

  private:
    struct Entry {
        Handle connection = 0;
        StatementSettings settings;
        std::string sql;
        bool prepared = false;
        std::vector<std::pair<Handle, std::string>> cursors;
    };

    TableSource SourceFor(const Entry& entry);

    Operations& engine_;
    ViewLookup views_;
    std::map<Handle, Entry> statements_;
    std::unique_ptr<CursorTables> cursorTables_;
    RowIdStyle rowIds_;
    std::uint32_t nextAlias_ = 0;
};

}  // namespace fnrk::engine::sql

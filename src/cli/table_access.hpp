#pragma once

// How the table commands reach a table: through the process's shared table layer, a DBF file by
// its path or a table of a SQL database by its name (--database URL --table NAME).

#include <CLI/CLI.hpp>
#include <string>

#include "engine/operations.hpp"

namespace fnrk::cli {

// Where a command finds its table: FILE, or --database URL with --table NAME.
struct TableSource {
    std::string file;
    std::string database;  // "sqlite:PATH", "postgresql://..." or a libpq connection string
    std::string table;
    // A file whose first line is the password of an encrypted table (--password-file).
    std::string passwordFile;
    // How messages name the table (never the URL, which may hold a password).
    std::string Shown() const;
};

// Adds FILE, --database, --table and --password-file to `command`.
CLI::App* AddTableSource(CLI::App* command, TableSource& source);

// The connection path of the table layer for a database URL; throws CommandFailure for a URL
// of no known kind.
std::string ConnectionPathOf(const std::string& url);

// The date format of the shared table layer in the table commands: the engine's own default,
// which the table tools have always built DTOC() keys with.
inline constexpr const char* kCommandDateFormat = "MM/DD/CCYY";

enum class TableAccess { Read, Write, Exclusive };

// A table to create, exclusive and empty: its fields as "NAME,TYPE,LENGTH,DECIMALS;...".
struct NewTable {
    std::string fields;
};

// A table file to read without its structural index (damaged or missing), read-only.
struct WithoutIndexes {};

// A table open through the shared table layer, with the connection of its database; both are
// closed when this ends. Throws CommandFailure, with the layer's reason, when it cannot open.
// An encrypted table is opened with the source's password; one to read without it is refused,
// since it would read as blank records.
class OpenedTable {
  public:
    OpenedTable(const TableSource& source, TableAccess access);
    OpenedTable(const TableSource& source, const NewTable& created);
    OpenedTable(const TableSource& source, WithoutIndexes);
    ~OpenedTable();
    OpenedTable(const OpenedTable&) = delete;
    OpenedTable& operator=(const OpenedTable&) = delete;

    engine::Operations& ops() const { return ops_; }
    engine::Handle handle() const { return table_; }
    const std::string& shown() const { return shown_; }

  private:
    // The connection of the source's database, if any; the name to open in it.
    std::string Connect(const TableSource& source);
    // Throws, with the layer's reason after `prefix` or else `fallback`, for a failed open.
    void Opened(engine::Status status, const std::string& prefix, const std::string& fallback);
    // Opens an encrypted table with the source's password; closes it when that fails.
    void Unlock(const TableSource& source, TableAccess access);
    void UnlockOpened(const TableSource& source, TableAccess access);

    engine::Operations& ops_;
    engine::Handle connection_ = 0;
    engine::Handle table_ = 0;
    std::string shown_;
};

// The layer's last error text for `status`; empty when it has none.
std::string LastErrorText(engine::Operations& ops, engine::Status status);

// Throws CommandFailure with the layer's last error text, or `fallback` when it has none,
// unless the status is success.
void CheckWithReason(engine::Operations& ops, engine::Status status, const std::string& fallback);

}  // namespace fnrk::cli

#pragma once

// The embedded table engine: the operation set over DBF / FPT files in folders, run in-process.
// It maps handles to connections and open tables and hands each call to the units below
// (cursor/, dbf/, memo/, lock/, expr/, order/). SQL statements run through sql/, encryption
// through crypt/, data dictionaries through dictionary/.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/cdx/index_format.hpp"
#include "engine/cursor/engine_settings.hpp"
#include "engine/cursor/table_cursor.hpp"
#include "engine/operations.hpp"

namespace fnrk::engine {

namespace crypt {
class FileCipher;
struct EncryptionMark;
}  // namespace crypt
namespace dictionary {
class DataDictionary;
}
namespace order {
class OrderRegistry;
}
namespace sql {
class StatementRegistry;
struct StatementSettings;
}  // namespace sql

class Engine final : public Operations {
  public:
    Engine();
    ~Engine() override;

    // The operation set (engine/operations.def).
#define FNRK_OPERATION(name, parameters, arguments) [[nodiscard]] Status name parameters override;
#include "engine/operations.def"

    // The open table behind a handle, or null (for the index layer and tools of this engine).
    cursor::TableCursor* FindTable(Handle table);
    // Opens a table as OpenTable does, read-only and shared, leaving its structural index
    // closed: for the table tools, which read a table whose index is damaged or missing in
    // record-number order.
    [[nodiscard]] Status OpenTableWithoutIndexes(Handle connection, std::string_view name,
                                                 Handle& table);

  private:
    struct Connection {
        std::string folder;
        std::uint16_t serverTypes = ADS_LOCAL_SERVER;
        std::string dictionary{};  // the data dictionary's file, for a connection to one
        std::string user{};
        std::string password{};  // also opens the dictionary's encrypted tables
    };
    struct OpenedTable {
        Handle connection = 0;
        std::unique_ptr<cursor::TableCursor> cursor;
        std::uint32_t options = 0;
        std::string password{};  // given by EnableEncryption, for EncryptTable
    };

    // Remembers a failure for GetLastError and returns its status (success passes through).
    [[nodiscard]] Status Report(Status status, std::string message);
    [[nodiscard]] Status Report(Status status) {
        return status == AE_SUCCESS ? status : Report(status, std::string());
    }
    // Runs `body(cursor)` on an open table / `body(cursor, field)` on one of its fields by name,
    // reporting a bad handle, an unknown field or the status the body returns.
    template <class Body>
    [[nodiscard]] Status WithTable(Handle table, Body body) {
        cursor::TableCursor* cursor = FindTable(table);
        if (cursor == nullptr) return Report(AE_INVALID_TABLE_HANDLE);
        return Guarded([&] { return Report(body(cursor)); });
    }
    // A move through an index handle follows its tag's order (`onIndex(order)`), one through a
    // table handle the table's (`onTable(cursor)`).
    template <class OnIndex, class OnTable>
    [[nodiscard]] Status Navigate(Handle object, OnIndex onIndex, OnTable onTable);
    // Runs `body` and answers its status. What the units below throw stops here: a damaged
    // index answers AE_CORRUPT_INDEX with its reason, never an exception to the caller.
    template <class Body>
    [[nodiscard]] Status Guarded(Body body) {
        try {
            return body();
        } catch (const cdx::IndexCorrupt& corrupt) {
            return Report(AE_CORRUPT_INDEX, corrupt.what());
        }
    }
    template <class Body>
    [[nodiscard]] Status WithField(Handle table, std::string_view name, Body body) {
        cursor::TableCursor* cursor = nullptr;
        const dbf::Field* field = nullptr;
        if (Status status = TableField(table, name, cursor, field); status != AE_SUCCESS)
            return status;
        return Guarded([&] { return Report(body(cursor, field)); });
    }
    [[nodiscard]] Status TableField(Handle table, std::string_view field,
                                    cursor::TableCursor*& cursor, const dbf::Field*& found);
    [[nodiscard]] Status OpenPath(Handle connection, std::string_view name, std::string& path);
    [[nodiscard]] Status Register(Handle connection, std::unique_ptr<cursor::TableCursor> cursor,
                                  std::uint32_t options, Handle& table);
    bool AliasTaken(Handle connection, const std::string& alias) const;
    // Index orders and optimized filters (engine_index.cpp): the structural index is opened
    // with its table, and index handles navigate in their tag's order.
    order::OrderRegistry& Orders();
    // `structural`: with the table's structural index opened.
    [[nodiscard]] Status AttachIndexes(Handle table, bool structural = true);
    [[nodiscard]] Status OpenTableFile(Handle connection, std::string_view name,
                                       std::string_view alias, std::uint32_t options,
                                       bool structural, Handle& table);
    void DetachIndexes(Handle table);
    // Rewrites a table under `cipher` (null: plain) with `mark` in its header (null: none),
    // and its open index files with it (engine_crypt.cpp).
    [[nodiscard]] Status RecodeTable(Handle table, std::shared_ptr<const crypt::FileCipher> cipher,
                                     const crypt::EncryptionMark* mark);
    // Data dictionaries (engine_dictionary.cpp): connections to them, their tables opening by
    // name, their views in statements.
    [[nodiscard]] Status ConnectDictionary(std::string_view path, std::string_view user,
                                           std::string_view password, Handle& connection);
    std::optional<std::string> DictionaryTablePath(Handle connection, std::string_view name);
    std::optional<std::string> DictionaryView(Handle connection, std::string_view name);
    void ApplyConnectionPassword(Handle table);
    [[nodiscard]] Status OnDictionary(
        Handle dictionary,
        const std::function<Status(dictionary::DataDictionary&, std::string&)>& body);
    // SQL statements (engine_sql.cpp).
    sql::StatementRegistry& Statements();
    [[nodiscard]] Status OnStatement(Handle statement,
                                     const std::function<Status(sql::StatementSettings&)>& body);

    cursor::EngineSettings settings_;
    std::map<Handle, Connection> connections_;
    std::map<Handle, OpenedTable> tables_;
    // The table FindTable found last: every call of a walk asks for the same one.
    struct LastTable {
        Handle handle = 0;
        cursor::TableCursor* cursor = nullptr;
    };
    LastTable lastTable_;
    std::map<Handle, std::uint32_t> handleLongs_;
    Handle nextHandle_ = kEngineHandleStart;
    std::uint16_t cachedCursors_ = 0;
    Status lastError_ = AE_SUCCESS;
    std::string lastErrorText_;
    ProgressCallback progress_;
    std::uint32_t progressId_ = 0;
    // Shared, not unique: this header leaves the registry's type incomplete.
    std::shared_ptr<sql::StatementRegistry> statements_;
    // Declared last: it refers to the open tables and goes first.
    std::unique_ptr<order::OrderRegistry> orders_;
};

}  // namespace fnrk::engine

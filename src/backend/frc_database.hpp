#pragma once

// FRCDatabase: the engine's operation set over SQL databases (SQLite embedded, PostgreSQL on a
// server; the dialect decides the engine). Each connection opens one database; tables, index
// tags and records live in it, locks are the database's (see TableStore and TableLocks). Handles
// are handed out from handleStart up, within the backend's range.
//
// SQL statements run over the backend's own operations, as the engine's run over its files, and
// their static cursors are tables of the connection's database.
//
// A data dictionary is the engine's dictionary file, beside the dossier; connecting through it
// logs its user in and reaches the database of its folder, and its views serve statements.
//
// An encrypted table keeps its rows sealed with its password's key, as the engine's cipher
// seals a table file (see TableStore).

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "backend/backend_table.hpp"
#include "backend/sql_backend.hpp"
#include "backend/sql_dialect.hpp"
#include "engine/cursor/engine_settings.hpp"
#include "engine/dictionary/data_dictionary.hpp"
#include "engine/sql/statement_registry.hpp"

namespace fnrk::backend {

class FRCDatabase final : public SqlBackend {
  public:
    using MgmtConfig = engine::MgmtConfig;
    using ProgressCallback = engine::ProgressCallback;

    FRCDatabase();
    ~FRCDatabase() override;

    Handle handleStart() const override { return handleStart_; }
    void handleStart(Handle start) override { handleStart_ = start; }
    std::string TypeOfConnection() const override { return typeOfConnection_; }
    void TypeOfConnection(std::string_view type) override { typeOfConnection_ = type; }

    [[nodiscard]] Status TableCopy(Handle connection, std::string_view from,
                                   std::string_view to) override;
    [[nodiscard]] Status TableExists(Handle connection, std::string_view name,
                                     bool& exists) override;
    [[nodiscard]] Status DropTable(Handle connection, std::string_view name) override;
    [[nodiscard]] Status TableNames(Handle connection, std::vector<std::string>& names) override;
    [[nodiscard]] Status GetActiveIndexHandle(Handle table, Handle& index) override;
    [[nodiscard]] Status SetActiveIndexHandle(Handle table, Handle index) override;
    [[nodiscard]] Status GetAllTable(std::vector<Handle>& tables) override;
    [[nodiscard]] Status InitCopyTableContents(Handle to) override;
    [[nodiscard]] Status CloseCopyTableContents(Handle to) override;
    [[nodiscard]] Status RefreshTable(Handle table) override;

    // The operation set (engine/operations.def).
#define FNRK_OPERATION(name, parameters, arguments) [[nodiscard]] Status name parameters override;
#include "engine/operations.def"

  private:
    struct Connection {
        std::string path;
        ConnectionTarget target;
        const SqlDialect* dialect = nullptr;
        std::unique_ptr<SqlSession> session;
        std::uint16_t serverType = engine::ADS_LOCAL_SERVER;
        // A connection through a data dictionary: its file and the user logged in.
        std::string dictionary;
        std::string user;
    };
    struct OpenTableEntry {
        Handle connection = 0;
        std::string alias;
        std::string fileName;
        std::uint32_t handleLong = 0;
        std::unique_ptr<BackendTable> table;
        Handle activeIndex = 0;  // the order its users set (ActiveIndexHandle)
        std::string password;    // the one given to this handle (EnableEncryption)
    };
    struct IndexEntry {
        Handle table = 0;
        std::string tag;
    };
    // A table, or a table walked in a tag's order (index handle).
    struct Target {
        Handle handle = 0;  // the table's handle
        OpenTableEntry* entry = nullptr;
        Order order;
        BackendTable& table() const { return *entry->table; }
    };

    template <class Call>
    [[nodiscard]] Status Guarded(Call call);
    // Resolve the handle, then run the body and report its status: `body(table, order)` for a
    // table or index handle, `body(table, field)` for a field of one, `body(table, tag index,
    // tag)` for an index handle.
    template <class Body>
    [[nodiscard]] Status OnTable(Handle object, Body body);
    template <class Body>
    [[nodiscard]] Status OnField(Handle object, std::string_view field, Body body);
    template <class Body>
    [[nodiscard]] Status OnIndex(Handle index, Body body);
    [[nodiscard]] Status Report(Status status, std::string message = {});
    Handle NewHandle();
    Connection* FindConnection(Handle connection);
    OpenTableEntry* FindTable(Handle table);
    // Table handles and index handles; AE_INVALID_HANDLE otherwise.
    [[nodiscard]] Status Resolve(Handle object, Target& target);
    [[nodiscard]] Status ResolveTable(Handle table, OpenTableEntry*& entry);
    [[nodiscard]] Status ResolveIndex(Handle index, Target& target);
    [[nodiscard]] Status ResolveField(Handle table, std::string_view field, OpenTableEntry*& entry,
                                      const engine::dbf::Field*& found);
    Handle IndexHandleFor(Handle table, const std::string& tag);
    [[nodiscard]] Status OpenByName(Handle connection, std::string_view name,
                                    std::string_view alias, std::uint32_t options, Handle& table);
    [[nodiscard]] Status Connect(std::string_view path, std::uint16_t serverType,
                                 Handle& connection);
    void CloseTableEntry(Handle table);
    engine::sql::StatementRegistry& Statements();
    // A connection to the database of the dictionary's folder, knowing the dictionary.
    Status ConnectDictionary(const std::string& path, std::string_view user,
                             std::string_view password, Handle& connection);
    std::optional<std::string> DictionaryView(Handle connection, std::string_view name);
    // The table a dictionary name stands for, on a connection through a dictionary.
    std::optional<std::string> DictionaryTable(Handle connection, std::string_view name);
    Status OnDictionary(
        Handle dictionary,
        const std::function<Status(engine::dictionary::DataDictionary&, std::string&)>& body);
    Status OnStatement(Handle statement,
                       const std::function<Status(engine::sql::StatementSettings&)>& body);

    Handle handleStart_ = 0;
    Handle issued_ = 0;
    std::string typeOfConnection_;
    engine::cursor::EngineSettings settings_;
    ProgressCallback callback_;
    std::map<Handle, std::unique_ptr<Connection>> connections_;
    std::map<Handle, OpenTableEntry> tables_;
    std::map<Handle, IndexEntry> indexes_;
    Status lastError_ = engine::AE_SUCCESS;
    std::string lastErrorText_;
    std::unique_ptr<engine::sql::StatementRegistry> statements_;
};

template <class Call>
Status FRCDatabase::Guarded(Call call) {
    try {
        return call();
    } catch (const SqlFailure& failure) {
        return Report(engine::AE_SQL_ERROR, failure.what());
    } catch (const engine::expr::ExpressionError& error) {
        return Report(engine::AE_INVALID_EXPRESSION, error.what());
    } catch (const std::bad_alloc&) {
        return Report(engine::AE_ALLOCATION_FAILED);
    }
}

template <class Body>
Status FRCDatabase::OnTable(Handle object, Body body) {
    return Guarded([&] {
        Target target;
        if (Status status = Resolve(object, target); status != engine::AE_SUCCESS) return status;
        return Report(body(target.table(), target.order));
    });
}

template <class Body>
Status FRCDatabase::OnField(Handle object, std::string_view field, Body body) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        const engine::dbf::Field* found = nullptr;
        if (Status status = ResolveField(object, field, entry, found);
            status != engine::AE_SUCCESS) {
            return status;
        }
        return Report(body(*entry->table, *found));
    });
}

template <class Body>
Status FRCDatabase::OnIndex(Handle index, Body body) {
    return Guarded([&] {
        Target target;
        if (Status status = ResolveIndex(index, target); status != engine::AE_SUCCESS) {
            return status;
        }
        const std::size_t tag = *target.order;
        return Report(body(target.table(), tag, target.table().layout().tags[tag]));
    });
}

}  // namespace fnrk::backend

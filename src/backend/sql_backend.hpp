#pragma once

// What the dispatch layer asks of a SQL backend: the engine's operation set, plus the members
// that only a SQL-kept dossier has (the engine side does that work on files itself).

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/operations.hpp"

namespace fnrk::backend {

using engine::Handle;
using engine::Status;

// Each backend hands out its handles in a range of this size starting at its handleStart.
inline constexpr Handle kBackendHandleRange = 300'000;

class SqlBackend : public engine::Operations {
  public:
    // First handle number of this backend's range; set before connecting.
    virtual Handle handleStart() const = 0;
    virtual void handleStart(Handle start) = 0;
    // "SQL" once the dispatch has used the object for a SQL connection.
    virtual std::string TypeOfConnection() const = 0;
    virtual void TypeOfConnection(std::string_view type) = 0;

    // Copies table `from` into a new table `to` (structure, records and index tags).
    [[nodiscard]] virtual Status TableCopy(Handle connection, std::string_view from,
                                           std::string_view to) = 0;
    [[nodiscard]] virtual Status TableExists(Handle connection, std::string_view name,
                                             bool& exists) = 0;
    [[nodiscard]] virtual Status DropTable(Handle connection, std::string_view name) = 0;
    // The index the users of an open table made its order (0: natural order), kept with the
    // table so that whoever takes the table up by its handle finds the same order.
    [[nodiscard]] virtual Status GetActiveIndexHandle(Handle table, Handle& index) = 0;
    [[nodiscard]] virtual Status SetActiveIndexHandle(Handle table, Handle index) = 0;
    // The names of every table of the connection's database, in name order.
    [[nodiscard]] virtual Status TableNames(Handle connection, std::vector<std::string>& names) = 0;
    // The open tables of this backend (the engine's GetAllTables; the name is the backend's).
    [[nodiscard]] virtual Status GetAllTable(std::vector<Handle>& tables) = 0;
    // A bulk copy into `to` in one transaction: Init, any number of CopyTableContents, Close.
    [[nodiscard]] virtual Status InitCopyTableContents(Handle to) = 0;
    [[nodiscard]] virtual Status CloseCopyTableContents(Handle to) = 0;
    // Forgets what the table object holds of the current record and reads it again.
    [[nodiscard]] virtual Status RefreshTable(Handle table) = 0;
};

}  // namespace fnrk::backend

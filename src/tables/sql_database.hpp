#pragma once

// SqlDatabase: every table operation of the library passes here. Each wrapper has the engine
// function's name, arguments and status, and sends the call to the embedded engine or to one of
// the SQL backends, by the range of its handle, or for calls that open or connect by name, by
// the path. Global settings are broadcast to the engine and every backend.
//
// Handle ranges (fixed by the contract with the backends):
//   0 .. 299,999 Folder, 300,000 .. User, 600,000 .. Org, 900,000 .. Origin,
//   1,200,000 / 1,500,000 / 1,800,000 / 2,100,000 .. 2,399,999 Archive 0 / 1 / 2 / 3,
//   2,400,000 and above: the engine.

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backend/mgmt_config_memory.hpp"
#include "backend/sql_backend.hpp"
#include "engine/operations.hpp"
#include "tables/archive_backend.hpp"

namespace fnrk::tables {

// The backend kinds that own a handle range, in range order (the number is the range index).
enum class BackendSlot { Folder, User, Org, Origin, Archive0, Archive1, Archive2, Archive3 };

inline constexpr int kArchiveSlots = 5;

using BackendFactory = std::function<std::unique_ptr<backend::SqlBackend>()>;

class SqlDatabase final : public engine::Operations {
  public:
    using Handle = engine::Handle;
    using Status = engine::Status;
    using MgmtConfig = engine::MgmtConfig;
    using ProgressCallback = engine::ProgressCallback;

    // `engine` is the process's table engine; `makeBackend` creates a SQL backend object each
    // time a slot needs one.
    SqlDatabase(engine::Operations& engine, BackendFactory makeBackend);

    // --- where things are (the routing by path reads them)
    void SetSqlRootPath(std::string path) { sqlRootPath_ = std::move(path); }
    const std::string& SqlRootPath() const { return sqlRootPath_; }
    void SetOrgPath(std::string path) { orgPath_ = std::move(path); }
    void SetDossierFolder(std::string folder) { dossierFolder_ = std::move(folder); }
    // Holds "users.data" and "org.data".
    void SetApplicationFolder(std::string folder) { applicationFolder_ = std::move(folder); }

    // --- backend slots
    backend::SqlBackend* Backend(BackendSlot slot) const;
    bool IsConnected(BackendSlot slot) const { return connected_[static_cast<int>(slot)]; }
    // Creates (or replaces) Archive slot `index` for `folder`; an index outside 0 to 4 throws
    // std::out_of_range and changes nothing.
    ArchiveBackend& CreateArchiveBackend(int index, std::string_view folder,
                                         std::string_view tempPath);
    ArchiveBackend* Archive(int index) const;
    // The Archive slot that serves `folder`: the one whose Path it is, else the first empty one
    // that owns a handle range (0 to 3), created for it; -1 when each serves another folder.
    int ArchiveSlotFor(std::string_view folder, std::string_view tempPath);
    // The first handle of Archive slot `index`: a connect given it as the handle connects
    // through that slot. Slot 4's would be the engine's first: its backend connects nothing.
    static Handle ArchiveHandleBase(int index);
    // Whether a path names a slot by the path tests of the routing (connected or not).
    bool RoutesToSlot(std::string_view path, BackendSlot& slot) const {
        return MatchPath(path, slot);
    }

    // The configuration record copied, member by member, into a "MGMT_CONFIG_MEMORY" object.
    [[nodiscard]] Status MgGetConfigInfo(Handle managementConnection,
                                         backend::MGMT_CONFIG_MEMORY& memory);

    // Operations of the SQL backends only; for an engine handle the caller does the file work.
    [[nodiscard]] Status TableCopy(Handle connection, std::string_view from, std::string_view to);
    [[nodiscard]] Status TableExists(Handle connection, std::string_view name, bool& exists);
    [[nodiscard]] Status DropTable(Handle connection, std::string_view name);
    // The active index kept with a SQL-kept table (its slot's ActiveIndexHandle); a table of the
    // engine answers AE_INVALID_TABLE_HANDLE, its users keep its order themselves.
    [[nodiscard]] Status GetActiveIndexHandle(Handle table, Handle& index);
    [[nodiscard]] Status SetActiveIndexHandle(Handle table, Handle index);
    // The tables of a SQL backend's connection, in name order.
    [[nodiscard]] Status TableNames(Handle connection, std::vector<std::string>& names);

    // The operation set (engine/operations.def).
#define FNRK_OPERATION(name, parameters, arguments) [[nodiscard]] Status name parameters override;
#include "engine/operations.def"

  private:
    template <class Call>
    [[nodiscard]] Status Routed(Handle handle, Call call);
    template <class Call>
    [[nodiscard]] Status RoutedByName(Handle handle, std::string_view path, Call call);
    template <class Call>
    [[nodiscard]] Status Broadcast(Call call);
    template <class Call>
    [[nodiscard]] Status ConnectThrough(std::string_view serverPath, Handle& connection,
                                        Call connect);

    // The slot whose range holds a handle from 1 to 2,399,999.
    static BackendSlot SlotOfHandle(Handle handle);
    // The slot a path belongs to by the path tests, whether or not it is connected.
    bool MatchPath(std::string_view path, BackendSlot& slot) const;
    // The engine, or the backend a handle (or, for a handle of 0 or less, a path) routes to;
    // nullptr when the owning backend does not exist.
    engine::Operations* Owner(Handle handle, std::string_view path = {});
    // The backend (never the engine) that owns a connection handle or path; nullptr otherwise.
    backend::SqlBackend* SqlOwner(Handle connection, std::string_view path);
    backend::SqlBackend& BackendForConnect(BackendSlot slot);
    std::string FixedDatabasePath(Handle kind, std::string_view serverPath) const;
    void MarkConnected(Handle connection);
    // Org, User, Folder, Origin, then the Archive slots' databases: the broadcast order.
    std::vector<backend::SqlBackend*> BroadcastOrder() const;

    engine::Operations& engine_;
    BackendFactory makeBackend_;
    std::array<std::unique_ptr<backend::SqlBackend>, 4> singles_;  // Folder, User, Org, Origin
    std::array<std::unique_ptr<ArchiveBackend>, kArchiveSlots> archives_;
    std::array<bool, 8> connected_{};
    std::string sqlRootPath_;
    std::string orgPath_;
    std::string dossierFolder_;
    std::string applicationFolder_;
    // The global settings broadcast so far, given to backends made later.
    std::optional<std::string> dateFormat_;
    std::optional<std::uint16_t> epoch_;
    std::optional<bool> showDeleted_;
};

template <class Call>
SqlDatabase::Status SqlDatabase::Routed(Handle handle, Call call) {
    engine::Operations* owner = Owner(handle);
    return owner ? call(*owner) : engine::AE_INVALID_HANDLE;
}

template <class Call>
SqlDatabase::Status SqlDatabase::RoutedByName(Handle handle, std::string_view path, Call call) {
    engine::Operations* owner = Owner(handle, path);
    return owner ? call(*owner) : engine::AE_INVALID_HANDLE;
}

template <class Call>
SqlDatabase::Status SqlDatabase::Broadcast(Call call) {
    Status first = call(engine_);
    for (backend::SqlBackend* backend : BroadcastOrder()) {
        Status status = call(*backend);
        if (first == engine::AE_SUCCESS) first = status;
    }
    return first;
}

}  // namespace fnrk::tables

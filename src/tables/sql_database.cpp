#include "tables/sql_database.hpp"

#include <filesystem>
#include <stdexcept>

#include "backend/connection_xml.hpp"
#include "platform/text.hpp"

namespace fnrk::tables {

namespace {

using engine::Handle;
using engine::Status;

constexpr Handle kRange = backend::kBackendHandleRange;
constexpr Handle kUserDatabase = 300'000;
constexpr Handle kOrgDatabase = 600'000;
constexpr Handle kFirstArchiveHandle = 1'200'000;
constexpr std::string_view kSqlMarker = "<SQL>";
constexpr std::string_view kDirMarker = "<DIR>";

bool Contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool IsSeparator(char c) {
    return c == '/' || c == '\\';
}

// Whether `folder` is in `path` as whole components: followed by a separator or the end, and
// preceded by the start, a separator or a marker ("<DIR>") unless it begins with a separator
// itself. "/data/SOC1" is in "/data/SOC1/a.dbf", not in "/data/SOC10/a.dbf".
bool ContainsFolder(std::string_view path, std::string_view folder) {
    std::string_view trimmed = folder;
    while (!trimmed.empty() && IsSeparator(trimmed.back())) trimmed.remove_suffix(1);
    if (trimmed.empty()) return Contains(path, folder);  // the root holds every path
    for (std::size_t at = path.find(trimmed); at != std::string_view::npos;
         at = path.find(trimmed, at + 1)) {
        const std::size_t end = at + trimmed.size();
        const bool ends = end == path.size() || IsSeparator(path[end]);
        const bool starts = at == 0 || IsSeparator(trimmed.front()) || IsSeparator(path[at - 1]) ||
                            path[at - 1] == '>';
        if (starts && ends) return true;
    }
    return false;
}

std::string_view AfterDirMarker(std::string_view path) {
    auto at = path.find(kDirMarker);
    return at == std::string_view::npos ? path : path.substr(at + kDirMarker.size());
}

// A dossier's parameter table in a folder marked as SQL-kept by "FRSQL.DBF".
bool IsSqlKeptParameterTable(std::string_view path) {
    std::string_view file = AfterDirMarker(path);
    if (!Contains(platform::UpperCase(file), "_PARAM.DBF")) return false;
    std::error_code ignored;
    auto folder = std::filesystem::path(std::string(file)).parent_path();
    return std::filesystem::exists(folder / "FRSQL.DBF", ignored);
}

}  // namespace

SqlDatabase::SqlDatabase(engine::Operations& engine, BackendFactory makeBackend)
    : engine_(engine), makeBackend_(std::move(makeBackend)) {}

backend::SqlBackend* SqlDatabase::Backend(BackendSlot slot) const {
    int index = static_cast<int>(slot);
    if (index < 4) return singles_[index].get();
    const auto& archive = archives_[index - 4];
    return archive ? archive->FRDataBase.get() : nullptr;
}

ArchiveBackend* SqlDatabase::Archive(int index) const {
    if (index < 0 || index >= kArchiveSlots) return nullptr;
    return archives_[index].get();
}

ArchiveBackend& SqlDatabase::CreateArchiveBackend(int index, std::string_view folder,
                                                  std::string_view tempPath) {
    if (index < 0 || index >= kArchiveSlots) {
        throw std::out_of_range("Archive slot " + std::to_string(index) +
                                " is out of range (0 to 4)");
    }
    auto slot = std::make_unique<ArchiveBackend>();
    slot->FRDataBase = makeBackend_();
    slot->FRDataBase->handleStart(kFirstArchiveHandle + index * kRange);
    // Fixed, valid settings: a backend cannot refuse them.
    engine::IgnoreStatus(slot->FRDataBase->ShowDeleted(false));
    engine::IgnoreStatus(slot->FRDataBase->SetDateFormat("DD/MM/YYYY"));
    engine::IgnoreStatus(slot->FRDataBase->SetEpoch(2000));
    slot->Path = ArchiveFolder(std::string(folder));
    slot->TempPath = tempPath;
    archives_[index] = std::move(slot);
    return *archives_[index];
}

int SqlDatabase::ArchiveSlotFor(std::string_view folder, std::string_view tempPath) {
    const std::string path = ArchiveFolder(std::string(folder));
    // Only slots 0 to 3 own a handle range, so only they can serve a connection.
    for (int index = 0; index < 4; ++index)
        if (archives_[index] && archives_[index]->Path == path) return index;
    for (int index = 0; index < 4; ++index) {
        if (archives_[index]) continue;
        CreateArchiveBackend(index, folder, tempPath);
        return index;
    }
    return -1;
}

Handle SqlDatabase::ArchiveHandleBase(int index) {
    return kFirstArchiveHandle + index * kRange;
}

// --- routing

BackendSlot SqlDatabase::SlotOfHandle(Handle handle) {
    return static_cast<BackendSlot>(handle / kRange);
}

bool SqlDatabase::MatchPath(std::string_view path, BackendSlot& slot) const {
    if (!sqlRootPath_.empty() && ContainsFolder(path, sqlRootPath_)) {
        slot = BackendSlot::Origin;
        return true;
    }
    // Only slots 0 to 3 own a handle range, so only they can serve a path.
    for (int index = 0; index < 4; ++index) {
        const auto& archive = archives_[index];
        if (archive && !archive->Path.empty() && ContainsFolder(path, archive->Path)) {
            slot = static_cast<BackendSlot>(static_cast<int>(BackendSlot::Archive0) + index);
            return true;
        }
    }
    if (!orgPath_.empty() && ContainsFolder(path, orgPath_)) {
        slot = BackendSlot::Org;
        return true;
    }
    if (IsSqlKeptParameterTable(path)) {
        slot = BackendSlot::User;
        return true;
    }
    if (!dossierFolder_.empty() && ContainsFolder(path, dossierFolder_)) {
        slot = BackendSlot::Folder;
        return true;
    }
    return false;
}

engine::Operations* SqlDatabase::Owner(Handle handle, std::string_view path) {
    if (handle >= engine::kEngineHandleStart) return &engine_;
    if (handle >= 1) return Backend(SlotOfHandle(handle));
    if (platform::Trim(path).empty()) return &engine_;
    BackendSlot slot;
    // A backend that matches but is not connected leaves the call to the engine.
    if (MatchPath(path, slot) && IsConnected(slot)) return Backend(slot);
    return &engine_;
}

// --- connections

backend::SqlBackend& SqlDatabase::BackendForConnect(BackendSlot slot) {
    int index = static_cast<int>(slot);
    if (index >= 4) {
        auto& archive = archives_[index - 4];
        if (!archive) CreateArchiveBackend(index - 4, "", "");
        return *archive->FRDataBase;
    }
    auto& single = singles_[index];
    if (!single) {
        single = makeBackend_();
        single->handleStart(index * kRange);
        // A backend made after the settings were broadcast still follows them; they were
        // accepted when they were broadcast.
        if (dateFormat_) engine::IgnoreStatus(single->SetDateFormat(*dateFormat_));
        if (epoch_) engine::IgnoreStatus(single->SetEpoch(*epoch_));
        if (showDeleted_) engine::IgnoreStatus(single->ShowDeleted(*showDeleted_));
    }
    return *single;
}

std::string SqlDatabase::FixedDatabasePath(Handle kind, std::string_view serverPath) const {
    const char* file = kind == kUserDatabase  ? "users.data"
                       : kind == kOrgDatabase ? "org.data"
                                              : nullptr;
    if (!file || applicationFolder_.empty()) return std::string(serverPath);
    auto description = std::filesystem::path(applicationFolder_) / file;
    std::error_code ignored;
    if (!std::filesystem::exists(description, ignored)) return std::string(serverPath);
    backend::ConnectionXml reader;
    if (!reader.Load(description.string())) return std::string(serverPath);
    return std::string(kSqlMarker) + reader.GetConnectionString() + std::string(kDirMarker) +
           ArchiveFolder(applicationFolder_);
}

void SqlDatabase::MarkConnected(Handle connection) {
    if (connection < 0 || connection >= engine::kEngineHandleStart) return;
    connected_[static_cast<int>(SlotOfHandle(connection))] = true;
}

template <class Call>
Status SqlDatabase::ConnectThrough(std::string_view serverPath, Handle& connection, Call connect) {
    const Handle kind = connection;
    std::string path = FixedDatabasePath(kind, serverPath);
    BackendSlot slot = BackendSlot::Folder;
    bool matched = MatchPath(path, slot);
    bool sqlWanted = Contains(path, kSqlMarker);
    if (!sqlWanted && !(matched && IsConnected(slot))) return connect(engine_, path);
    if (kind >= 1 && kind < engine::kEngineHandleStart) slot = SlotOfHandle(kind);
    backend::SqlBackend& backend = BackendForConnect(slot);
    if (backend.TypeOfConnection() != "SQL") backend.TypeOfConnection("SQL");
    if (path.starts_with(kSqlMarker) && !Contains(path, kDirMarker)) {
        path = platform::Trim(std::string_view(path).substr(kSqlMarker.size()));
    }
    Status status = connect(backend, path);
    if (status == engine::AE_SUCCESS) MarkConnected(connection);
    return status;
}

Status SqlDatabase::Connect26(std::string_view serverPath, std::uint16_t serverTypes,
                              Handle& connection) {
    return ConnectThrough(serverPath, connection,
                          [&](engine::Operations& target, std::string_view path) {
                              return target.Connect26(path, serverTypes, connection);
                          });
}

Status SqlDatabase::Connect60(std::string_view serverPath, std::uint16_t serverTypes,
                              std::string_view userName, std::string_view password,
                              std::uint32_t options, Handle& connection) {
    return ConnectThrough(
        serverPath, connection, [&](engine::Operations& target, std::string_view path) {
            return target.Connect60(path, serverTypes, userName, password, options, connection);
        });
}

Status SqlDatabase::FindConnection25(std::string_view fullPath, Handle& connection) {
    return ConnectThrough(fullPath, connection,
                          [&](engine::Operations& target, std::string_view path) {
                              return target.FindConnection25(path, connection);
                          });
}

// --- broadcasts

std::vector<backend::SqlBackend*> SqlDatabase::BroadcastOrder() const {
    std::vector<backend::SqlBackend*> order;
    for (BackendSlot slot :
         {BackendSlot::Org, BackendSlot::User, BackendSlot::Folder, BackendSlot::Origin}) {
        if (auto* backend = Backend(slot)) order.push_back(backend);
    }
    for (const auto& archive : archives_) {
        if (archive && archive->FRDataBase) order.push_back(archive->FRDataBase.get());
    }
    return order;
}

Status SqlDatabase::SetDateFormat(std::string_view format) {
    dateFormat_ = std::string(format);
    return Broadcast([&](engine::Operations& o) { return o.SetDateFormat(format); });
}
Status SqlDatabase::SetEpoch(std::uint16_t century) {
    epoch_ = century;
    return Broadcast([&](engine::Operations& o) { return o.SetEpoch(century); });
}
Status SqlDatabase::ShowDeleted(bool showDeleted) {
    showDeleted_ = showDeleted;
    return Broadcast([&](engine::Operations& o) { return o.ShowDeleted(showDeleted); });
}
Status SqlDatabase::GetVersion(std::uint32_t& major, std::uint32_t& minor, std::string& letter,
                               std::string& description) {
    // The library's version is the engine's: the backends are asked for their status only.
    Status first = engine_.GetVersion(major, minor, letter, description);
    for (backend::SqlBackend* backend : BroadcastOrder()) {
        std::uint32_t backendMajor = 0;
        std::uint32_t backendMinor = 0;
        std::string backendLetter;
        std::string backendDescription;
        const Status status =
            backend->GetVersion(backendMajor, backendMinor, backendLetter, backendDescription);
        if (first == engine::AE_SUCCESS) first = status;
    }
    return first;
}

Status SqlDatabase::GetAllTables(std::vector<Handle>& tables) {
    // Each backend adds its own tables to the engine's, so that a table is found by alias
    // wherever it is kept.
    Status first = engine_.GetAllTables(tables);
    for (backend::SqlBackend* backend : BroadcastOrder()) {
        std::vector<Handle> more;
        Status status = backend->GetAllTable(more);
        tables.insert(tables.end(), more.begin(), more.end());
        if (first == engine::AE_SUCCESS) first = status;
    }
    return first;
}

// --- error text and configuration

Status SqlDatabase::GetLastError(Status& errorCode, std::string& text) {
    errorCode = engine::AE_SUCCESS;
    text.clear();
    std::string part;
    Status first = engine_.GetLastError(errorCode, part);
    if (!part.empty()) text = "Ads : " + part;
    auto ask = [&](backend::SqlBackend& backend, std::string_view marker) {
        Status code = engine::AE_SUCCESS;
        part.clear();
        Status status = backend.GetLastError(code, part);
        if (first == engine::AE_SUCCESS) first = status;
        if (errorCode == engine::AE_SUCCESS) errorCode = code;
        if (!part.empty()) text += std::string(marker) + part;
    };
    const std::pair<BackendSlot, std::string_view> singles[] = {
        {BackendSlot::Org, " Org : "},
        {BackendSlot::User, " User : "},
        {BackendSlot::Folder, " Folder : "},
        {BackendSlot::Origin, " Origin : "}};
    for (const auto& [slot, marker] : singles) {
        if (Backend(slot) && IsConnected(slot)) ask(*Backend(slot), marker);
    }
    for (int index = 0; index < kArchiveSlots; ++index) {
        const auto& archive = archives_[index];
        if (archive && archive->FRDataBase) {
            ask(*archive->FRDataBase, " Archive " + std::to_string(index) + " : ");
        }
    }
    return first;
}

Status SqlDatabase::MgGetConfigInfo(Handle managementConnection,
                                    backend::MGMT_CONFIG_MEMORY& memory) {
    MgmtConfig config;
    Status status = engine_.MgGetConfigInfo(managementConnection, config);
    if (status == engine::AE_SUCCESS) backend::CopyConfigInto(config, memory);
    return status;
}

// --- operations of the SQL backends only

backend::SqlBackend* SqlDatabase::SqlOwner(Handle connection, std::string_view path) {
    engine::Operations* owner = Owner(connection, path);
    if (owner == &engine_) return nullptr;
    return static_cast<backend::SqlBackend*>(owner);
}

Status SqlDatabase::TableCopy(Handle connection, std::string_view from, std::string_view to) {
    auto* owner = SqlOwner(connection, from);
    return owner ? owner->TableCopy(connection, from, to) : engine::AE_INVALID_CONNECTION_HANDLE;
}

Status SqlDatabase::TableExists(Handle connection, std::string_view name, bool& exists) {
    auto* owner = SqlOwner(connection, name);
    return owner ? owner->TableExists(connection, name, exists)
                 : engine::AE_INVALID_CONNECTION_HANDLE;
}

Status SqlDatabase::GetActiveIndexHandle(Handle table, Handle& index) {
    auto* owner = SqlOwner(table, {});
    return owner ? owner->GetActiveIndexHandle(table, index) : engine::AE_INVALID_TABLE_HANDLE;
}

Status SqlDatabase::SetActiveIndexHandle(Handle table, Handle index) {
    auto* owner = SqlOwner(table, {});
    return owner ? owner->SetActiveIndexHandle(table, index) : engine::AE_INVALID_TABLE_HANDLE;
}

Status SqlDatabase::TableNames(Handle connection, std::vector<std::string>& names) {
    auto* owner = SqlOwner(connection, {});
    return owner ? owner->TableNames(connection, names) : engine::AE_INVALID_CONNECTION_HANDLE;
}

Status SqlDatabase::DropTable(Handle connection, std::string_view name) {
    auto* owner = SqlOwner(connection, name);
    return owner ? owner->DropTable(connection, name) : engine::AE_INVALID_CONNECTION_HANDLE;
}

}  // namespace fnrk::tables

#include "cli/table_access.hpp"

#include <stdexcept>

#include "cli/command_registry.hpp"
#include "cli/password_file.hpp"
#include "engine/constants.hpp"
#include "tables/dossier_place.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::cli {

namespace {

using engine::AE_SUCCESS;
using engine::Handle;
using engine::Operations;

// Every table command sees deleted records: they are dumped, listed in tag orders and found.
Operations& TableLayer() {
    tables::SqlDatabase& layer = tables::SharedSqlDatabase();
    static const bool ready = [&] {
        // Settings every implementation takes, for the engine and the backends alike.
        engine::IgnoreStatus(layer.ShowDeleted(true));
        engine::IgnoreStatus(layer.SetDateFormat(kCommandDateFormat));
        return true;
    }();
    static_cast<void>(ready);
    return layer;
}

std::uint32_t OpenOptions(TableAccess access) {
    switch (access) {
        case TableAccess::Read:
            return engine::ADS_SHARED | engine::ADS_READONLY;
        case TableAccess::Write:
            return engine::ADS_SHARED;
        default:
            return engine::ADS_EXCLUSIVE;
    }
}

}  // namespace

std::string TableSource::Shown() const {
    return database.empty() ? file : "table " + table;
}

CLI::App* AddTableSource(CLI::App* command, TableSource& source) {
    command->add_option("FILE", source.file, "table file (.dbf)");
    auto* database = command->add_option(
        "--database", source.database,
        "SQL database: sqlite:PATH, postgresql://... or a libpq connection string");
    auto* table = command->add_option("--table", source.table, "table of the SQL database");
    command->add_option("--password-file", source.passwordFile,
                        "file whose first line is the password of an encrypted table");
    database->needs(table);
    table->needs(database);
    return command;
}

std::string ConnectionPathOf(const std::string& url) {
    tables::DossierPlace place;
    try {
        place = tables::ParseDossierPlace(url);
    } catch (const std::invalid_argument& error) {
        throw CommandFailure(error.what());
    }
    if (place.kind == tables::DossierPlace::Kind::Folder)
        throw CommandFailure("not a database URL (sqlite:PATH, postgresql://... or key=value ...)");
    return tables::ConnectionPath(place);
}

OpenedTable::OpenedTable(const TableSource& source, TableAccess access)
    : ops_(TableLayer()), shown_(source.Shown()) {
    const std::string name = Connect(source);
    Opened(ops_.OpenTable(connection_, name, "", engine::ADS_CDX, engine::ADS_ANSI,
                          engine::ADS_COMPATIBLE_LOCKING, engine::ADS_IGNORERIGHTS,
                          OpenOptions(access), table_),
           "", "cannot open " + shown_);
    Unlock(source, access);
}

void OpenedTable::Unlock(const TableSource& source, TableAccess access) {
    try {
        UnlockOpened(source, access);
    } catch (const CommandFailure&) {
        // The destructor of a constructor that throws does not run.
        engine::IgnoreStatus(ops_.CloseTable(table_));  // the refusal is the answer
        if (connection_ != 0) engine::IgnoreStatus(ops_.Disconnect(connection_));
        throw;
    }
}

void OpenedTable::UnlockOpened(const TableSource& source, TableAccess access) {
    bool encrypted = false;
    if (ops_.IsTableEncrypted(table_, encrypted) != AE_SUCCESS || !encrypted) return;
    if (source.passwordFile.empty()) {
        if (access == TableAccess::Read)
            throw CommandFailure(shown_ + " is encrypted: give its password (--password-file)");
        return;  // a write without it is refused by the layer, with its reason
    }
    CheckWithReason(ops_, ops_.EnableEncryption(table_, ReadPasswordFile(source.passwordFile)),
                    "the password is not the one of " + shown_);
}

OpenedTable::OpenedTable(const TableSource& source, const NewTable& created)
    : ops_(TableLayer()), shown_(source.Shown()) {
    const std::string name = Connect(source);
    const engine::Status status = ops_.CreateTable(
        connection_, name, "", engine::ADS_CDX, engine::ADS_ANSI, engine::ADS_COMPATIBLE_LOCKING,
        engine::ADS_IGNORERIGHTS, 0, created.fields, table_);
    Opened(status, status == engine::AE_INVALID_FIELDDEF ? "bad field list: " : "",
           "cannot create " + shown_);
}

OpenedTable::OpenedTable(const TableSource& source, WithoutIndexes)
    : ops_(TableLayer()), shown_(source.Shown()) {
    if (source.file.empty()) throw CommandFailure("a table of a database has no index file");
    // The shared layer's engine: the handle is one of the layer's engine handles.
    Opened(tables::SharedEngine().OpenTableWithoutIndexes(0, source.file, table_), "",
           "cannot open " + shown_);
    Unlock(source, TableAccess::Read);
}

std::string OpenedTable::Connect(const TableSource& source) {
    if (source.database.empty() == source.file.empty())
        throw CommandFailure("name a table: FILE, or --database URL --table NAME");
    if (source.database.empty()) return source.file;
    CheckWithReason(
        ops_,
        ops_.Connect26(ConnectionPathOf(source.database), engine::ADS_LOCAL_SERVER, connection_),
        "cannot connect to the database");
    return source.table;
}

void OpenedTable::Opened(engine::Status status, const std::string& prefix,
                         const std::string& fallback) {
    if (status == AE_SUCCESS) return;
    const std::string reason = LastErrorText(ops_, status);  // before the disconnect
    if (connection_ != 0) {
        // The open's failure is the answer; the connection only goes. A table of a database
        // is named, since the backend's reason may not name it.
        engine::IgnoreStatus(ops_.Disconnect(connection_));
        throw CommandFailure(fallback + (reason.empty() ? "" : ": " + prefix + reason));
    }
    throw CommandFailure(reason.empty() ? fallback : prefix + reason);
}

OpenedTable::~OpenedTable() {
    // A close that fails has nothing left to tell: the command's own steps reported theirs.
    engine::IgnoreStatus(ops_.CloseTable(table_));
    if (connection_ != 0) engine::IgnoreStatus(ops_.Disconnect(connection_));
}

std::string LastErrorText(Operations& ops, engine::Status status) {
    engine::Status code = status;
    std::string text;
    engine::IgnoreStatus(ops.GetLastError(code, text));  // no text: the caller's words say it
    return text;
}

void CheckWithReason(Operations& ops, engine::Status status, const std::string& fallback) {
    if (status == AE_SUCCESS) return;
    const std::string text = LastErrorText(ops, status);
    throw CommandFailure(text.empty() ? fallback : text);
}

}  // namespace fnrk::cli

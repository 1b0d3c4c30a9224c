#include "tables/dossier_copy.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "backend/sql_session.hpp"
#include "backend/staged_schema.hpp"
#include "engine/constants.hpp"
#include "engine/field_list_types.hpp"
#include "platform/processes.hpp"
#include "platform/text.hpp"

namespace fnrk::tables {

using namespace engine;  // option and status numbers

namespace {

namespace fs = std::filesystem;
using Kind = DossierPlace::Kind;

// A failed step: its status and what to tell.
struct CopyFailure {
    Status status;
    std::string reason;
};

std::string LastError(SqlDatabase& db, Status status) {
    Status code = status;
    std::string text;
    IgnoreStatus(db.GetLastError(code, text));  // without a text the status number tells
    return text.empty() ? "status " + std::to_string(status) : text;
}

void Require(SqlDatabase& db, Status status, const std::string& doing) {
    if (status != AE_SUCCESS) throw CopyFailure{status, doing + ": " + LastError(db, status)};
}

// A connection of the shared layer, given back at the end.
class Connection {
  public:
    Connection(SqlDatabase& db, const DossierPlace& place) : db_(db) {
        Require(db, db.Connect26(ConnectionPath(place), ADS_LOCAL_SERVER, handle_),
                "cannot reach the " + Shown(place));
    }
    ~Connection() {
        // Closing what was only read or is thrown away has nothing to report.
        if (handle_ != 0) IgnoreStatus(db_.Disconnect(handle_));
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    Handle handle() const { return handle_; }

  private:
    SqlDatabase& db_;
    Handle handle_ = 0;
};

// A table of the shared layer, closed at the end if Close() was not reached.
class Table {
  public:
    Table(SqlDatabase& db, Handle handle) : db_(db), handle_(handle) {}
    ~Table() {
        if (handle_ != 0) IgnoreStatus(db_.CloseTable(handle_));  // after a failure already told
    }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;
    Handle handle() const { return handle_; }
    // Writes what is pending; its failure is the copy's.
    void Close() {
        const Handle handle = std::exchange(handle_, 0);
        Require(db_, db_.CloseTable(handle), "writing");
    }

  private:
    SqlDatabase& db_;
    Handle handle_;
};

// The tables of a dossier: the table files of a folder, or the catalog of a database.
std::vector<std::string> TableNames(SqlDatabase& db, const DossierPlace& place, Handle connection) {
    std::vector<std::string> names;
    if (place.kind != Kind::Folder) {
        Require(db, db.TableNames(connection, names), "cannot list the tables");
        return names;
    }
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(place.where, error)) {
        const fs::path& path = entry.path();
        if (entry.is_regular_file() && platform::UpperCase(path.extension().string()) == ".DBF")
            names.push_back(path.stem().string());
    }
    if (error) throw CopyFailure{AE_FILE_NOT_FOUND, "cannot read folder " + place.where};
    std::sort(names.begin(), names.end());
    return names;
}

// The name a table is opened or created under in its place's connection.
std::string TableName(const DossierPlace& place, const std::string& table) {
    return place.kind == Kind::Folder ? table + ".dbf" : table;
}

// The field list CreateTable takes for the table's fields, and which of them are memos.
struct Structure {
    std::string fieldList;
    std::vector<std::pair<std::string, std::uint16_t>> memos;  // name and type
};

Structure ReadStructure(SqlDatabase& db, Handle table, const std::string& name) {
    Structure structure;
    std::uint16_t count = 0;
    Require(db, db.GetNumFields(table, count), name);
    for (std::uint16_t number = 1; number <= count; ++number) {
        std::string field;
        std::uint16_t type = 0, decimals = 0;
        std::uint32_t length = 0;
        Require(db, db.GetFieldName(table, number, field), name);
        Require(db, db.GetFieldType(table, field, type), name + "." + field);
        Require(db, db.GetFieldLength(table, field, length), name + "." + field);
        Require(db, db.GetFieldDecimals(table, field, decimals), name + "." + field);
        const std::string_view typeName = FieldListTypeName(type);
        if (typeName.empty())
            throw CopyFailure{AE_INVALID_FIELD_TYPE,
                              name + "." + field + ": a field of this type cannot be copied"};
        if (!structure.fieldList.empty()) structure.fieldList += ";";
        structure.fieldList += field + "," + std::string(typeName) + "," + std::to_string(length) +
                               "," + std::to_string(decimals);
        if (type == ADS_MEMO || type == ADS_BINARY || type == ADS_IMAGE)
            structure.memos.emplace_back(field, type);
    }
    return structure;
}

void CopyMemo(SqlDatabase& db, Handle from, Handle to, const std::string& field,
              std::uint16_t type) {
    if (type == ADS_MEMO) {
        std::string text;
        Require(db, db.GetString(from, field, text, ADS_NONE), "reading " + field);
        Require(db, db.SetString(to, field, text), "writing " + field);
        return;
    }
    std::uint32_t length = 0;
    std::string bytes;
    Require(db, db.GetBinaryLength(from, field, length), "reading " + field);
    if (length > 0) Require(db, db.GetBinary(from, field, 0, length, bytes), "reading " + field);
    Require(db, db.SetBinary(to, field, type, length, 0, bytes), "writing " + field);
}

// Every record in record-number order, as stored: the bytes (deletion flag included), then
// each memo, whose block number the bytes cannot carry over.
void CopyRecords(SqlDatabase& db, Handle from, Handle to, const Structure& structure) {
    std::uint32_t count = 0;
    Require(db, db.GetRecordCount(from, ADS_IGNOREFILTERS, count), "counting records");
    for (std::uint32_t record = 1; record <= count; ++record) {
        const std::string which = "record " + std::to_string(record);
        std::string bytes;
        Require(db, db.GotoRecord(from, record), which);
        Require(db, db.GetRecord(from, bytes), which);
        Require(db, db.AppendRecord(to), which);
        Require(db, db.SetRecord(to, bytes), which);
        for (const auto& [field, type] : structure.memos) CopyMemo(db, from, to, field, type);
    }
}

void CopyTags(SqlDatabase& db, Handle from, Handle to) {
    std::vector<Handle> tags;
    Require(db, db.GetAllIndexes(from, tags), "reading the tags");
    for (const Handle tag : tags) {
        std::string name, key, condition;
        bool unique = false, descending = false;
        Require(db, db.GetIndexName(tag, name), "reading a tag");
        Require(db, db.GetIndexExpr(tag, key), name);
        Require(db, db.GetIndexCondition(tag, condition), name);
        Require(db, db.IsIndexUnique(tag, unique), name);
        Require(db, db.IsIndexDescending(tag, descending), name);
        std::uint32_t options = ADS_COMPOUND;
        if (unique) options |= ADS_UNIQUE;
        if (descending) options |= ADS_DESCENDING;
        Handle created = 0;
        Require(db, db.CreateIndex(to, "", name, key, condition, "", options, created),
                "tag " + name);
    }
}

// Opens an encrypted source with the password; answers whether it is encrypted.
bool OpenEncrypted(SqlDatabase& db, Handle table, const std::string& password) {
    bool encrypted = false;
    Require(db, db.IsTableEncrypted(table, encrypted), "reading");
    if (!encrypted) return false;
    if (password.empty())
        throw CopyFailure{AE_ENCRYPTION_NOT_ENABLED, "it is encrypted: give its password"};
    Require(db, db.EnableEncryption(table, password), "opening it with the password");
    return true;
}

void CopyTable(SqlDatabase& db, const DossierPlace& from, Handle source, const DossierPlace& to,
               Handle target, const std::string& name, const std::string& password) {
    try {
        Handle opened = 0;
        Require(db,
                db.OpenTable(source, TableName(from, name), "", ADS_CDX, ADS_ANSI,
                             ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_READONLY | ADS_SHARED,
                             opened),
                "cannot open");
        Table in(db, opened);
        const bool encrypted = OpenEncrypted(db, in.handle(), password);
        const Structure structure = ReadStructure(db, in.handle(), name);
        Handle created = 0;
        Require(db,
                db.CreateTable(target, TableName(to, name), "", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, structure.fieldList,
                               created),
                "cannot create");
        Table out(db, created);
        // Encrypted before it takes a record, so that none is ever written in plain.
        if (encrypted) {
            Require(db, db.EnableEncryption(created, password), "encrypting");
            Require(db, db.EncryptTable(created), "encrypting");
        }
        // A SQL-kept target takes the records in one transaction.
        backend::SqlBackend* bulk =
            created < kEngineHandleStart
                ? db.Backend(static_cast<BackendSlot>(created / backend::kBackendHandleRange))
                : nullptr;
        if (bulk != nullptr) Require(db, bulk->InitCopyTableContents(created), "copying");
        try {
            CopyRecords(db, in.handle(), created, structure);
        } catch (const CopyFailure&) {
            // The records' failure is the answer; the half-filled table goes with the staging.
            if (bulk != nullptr) IgnoreStatus(bulk->CloseCopyTableContents(created));
            throw;
        }
        if (bulk != nullptr) Require(db, bulk->CloseCopyTableContents(created), "copying");
        CopyTags(db, in.handle(), created);
        out.Close();
    } catch (CopyFailure& failure) {
        failure.reason = "table " + name + ": " + failure.reason;
        throw;
    }
}

// Removes the entries of `folder` named `prefix` + the id of a process that has ended (and
// any of `suffixes` after it): what copies that were killed left.
void RemoveAbandoned(const fs::path& folder, const std::string& prefix,
                     std::span<const std::string_view> suffixes) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        std::string_view rest = name;
        if (!rest.starts_with(prefix)) continue;
        rest.remove_prefix(prefix.size());
        for (const std::string_view suffix : suffixes)
            if (!suffix.empty() && rest.ends_with(suffix)) rest.remove_suffix(suffix.size());
        if (rest.empty() || rest.find_first_not_of("0123456789") != std::string_view::npos ||
            rest.size() > 9)
            continue;
        if (platform::ProcessIsRunning(std::stoll(std::string(rest)))) continue;
        std::error_code ignored;  // one that cannot be removed stays under its temporary name
        fs::remove_all(entry.path(), ignored);
    }
}

// Where the copy is built beside the target, and how it is put in place or thrown away. What
// earlier copies to the same target left when they were killed is removed first, never what a
// copy that still runs is building.
class Staging {
  public:
    Staging(SqlDatabase& db, const DossierPlace& target) : target_(target), place_(target) {
        const std::string suffix = ".copying-" + std::to_string(::getpid());
        std::error_code error;
        switch (target.kind) {
            case Kind::Folder:
                if (fs::exists(target.where, error) && !fs::is_empty(target.where, error))
                    throw CopyFailure{AE_INVALID_PATH, Shown(target) + " already holds files"};
                place_.where = (fs::absolute(target.where).parent_path() /
                                ("." + fs::path(target.where).filename().string() + suffix))
                                   .string();
                RemoveAbandoned(fs::path(place_.where).parent_path(),
                                "." + fs::path(target.where).filename().string() + ".copying-", {});
                fs::remove_all(place_.where, error);  // this process's id was a killed copy's
                if (!fs::create_directories(place_.where, error))
                    throw CopyFailure{AE_FILE_NOT_FOUND, "cannot create " + place_.where};
                break;
            case Kind::Sqlite:
                if (fs::exists(target.where, error))
                    throw CopyFailure{AE_INVALID_PATH, Shown(target) + " exists already"};
                place_.where = target.where + suffix;
                RemoveAbandoned(fs::absolute(target.where).parent_path(),
                                fs::path(target.where).filename().string() + ".copying-",
                                kSqliteFileSuffixes);
                RemoveSqliteFiles(place_.where);
                break;
            case Kind::Postgres: {
                Connection connection(db, target);
                if (!TableNames(db, target, connection.handle()).empty())
                    throw CopyFailure{AE_INVALID_PATH, Shown(target) + " holds tables already"};
                place_.schema = "fnrk_copying_" + std::to_string(::getpid());
                try {
                    backend::DropAbandonedStagedSchemas(ConnectionPath(target));
                    claim_ = std::make_unique<backend::StagedSchemaClaim>(ConnectionPath(target),
                                                                          place_.schema);
                } catch (const backend::SqlFailure& failure) {
                    throw CopyFailure{AE_SQL_ERROR,
                                      "cannot stage the copy: " + std::string(failure.what())};
                }
                Discard();
                break;
            }
        }
    }

    const DossierPlace& place() const { return place_; }

    void Publish() {
        std::error_code error;
        switch (target_.kind) {
            case Kind::Folder:
                fs::remove(target_.where, error);  // an empty folder made room for the copy
                [[fallthrough]];
            case Kind::Sqlite:
                fs::rename(place_.where, target_.where, error);
                if (error)
                    throw CopyFailure{AE_FILE_NOT_FOUND,
                                      "cannot put the copy in place: " + error.message()};
                break;
            case Kind::Postgres:
                try {
                    backend::PublishStagedSchema(ConnectionPath(target_), place_.schema);
                } catch (const backend::SqlFailure& failure) {
                    throw CopyFailure{AE_SQL_ERROR, "cannot put the copy in place: " +
                                                        std::string(failure.what())};
                }
                break;
        }
    }

    // Removes the staged copy; a removal that fails leaves it under its temporary name.
    void Discard() noexcept {
        std::error_code error;
        switch (target_.kind) {
            case Kind::Folder:
                fs::remove_all(place_.where, error);
                break;
            case Kind::Sqlite:
                RemoveSqliteFiles(place_.where);
                break;
            case Kind::Postgres:
                try {
                    backend::DropStagedSchema(ConnectionPath(target_), place_.schema);
                } catch (const backend::SqlFailure&) {
                }
                break;
        }
    }

  private:
    static constexpr std::array<std::string_view, 3> kSqliteFileSuffixes = {"-journal", "-wal",
                                                                            "-shm"};

    static void RemoveSqliteFiles(const std::string& file) {
        std::error_code error;
        fs::remove(file, error);
        for (const std::string_view suffix : kSqliteFileSuffixes)
            fs::remove(file + std::string(suffix), error);
    }

    DossierPlace target_;
    DossierPlace place_;
    std::unique_ptr<backend::StagedSchemaClaim> claim_;  // a PostgreSQL staging schema's
};

// The source must hold a dossier: a missing folder or SQLite file is not an empty one.
void RequireSource(const DossierPlace& from) {
    std::error_code error;
    if (from.kind == Kind::Folder && !fs::is_directory(from.where, error))
        throw CopyFailure{AE_FILE_NOT_FOUND, Shown(from) + " does not exist"};
    if (from.kind == Kind::Sqlite && !fs::is_regular_file(from.where, error))
        throw CopyFailure{AE_FILE_NOT_FOUND, Shown(from) + " does not exist"};
}

void CopyInto(SqlDatabase& db, const DossierPlace& from, const DossierPlace& to,
              const std::string& password, const DossierCopyProgress& progress) {
    Connection source(db, from);
    const std::vector<std::string> names = TableNames(db, from, source.handle());
    if (names.empty()) throw CopyFailure{AE_TABLE_NOT_FOUND, Shown(from) + " holds no table"};
    Connection target(db, to);
    for (std::size_t done = 0; done < names.size(); ++done) {
        if (progress) progress(names[done], done, names.size());
        CopyTable(db, from, source.handle(), to, target.handle(), names[done], password);
    }
    if (progress) progress({}, names.size(), names.size());
}

}  // namespace

Status CopyDossier(SqlDatabase& db, const DossierPlace& from, const DossierPlace& to,
                   const std::string& password, const DossierCopyProgress& progress,
                   std::string& error) {
    try {
        RequireSource(from);
        Staging staging(db, to);
        try {
            CopyInto(db, from, staging.place(), password, progress);
            staging.Publish();
        } catch (const CopyFailure&) {
            staging.Discard();
            throw;
        }
        return AE_SUCCESS;
    } catch (const CopyFailure& failure) {
        error = failure.reason;
        return failure.status;
    }
}

}  // namespace fnrk::tables

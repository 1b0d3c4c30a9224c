// Work areas: appending the records of another table, and the encryption routines.

#include <filesystem>

#include "platform/text.hpp"
#include "tables/record_copy.hpp"
#include "tables/work_area.hpp"

namespace fnrk::tables {

using namespace engine;  // option and status numbers

namespace {

// Whether the same implementation holds both handles (the engine, or one backend slot).
bool SameOwner(Handle a, Handle b) {
    if (a >= kEngineHandleStart || b >= kEngineHandleStart)
        return a >= kEngineHandleStart && b >= kEngineHandleStart;
    return a / backend::kBackendHandleRange == b / backend::kBackendHandleRange;
}

bool IsEncryptionRefusal(Status status) {
    return status == AE_TABLE_ENCRYPTED || status == AE_INVALID_PASSWORD ||
           status == AE_ENCRYPTION_NOT_ENABLED;
}

}  // namespace

Status WorkAreas::appendfrom(std::string_view sourcePath, std::string_view condition) {
    // Deleted records are never appended, whatever the engine's deleted setting.
    const std::string trimmed = platform::Trim(condition);
    const std::string filter =
        trimmed.empty() ? ".not. deleted()" : trimmed + " .and. .not. deleted()";

    // A source that is open already is used as it stands, its own filter put back afterwards;
    // otherwise it is opened for this call only, on the work areas' connection.
    Handle source = 0;
    const std::string sourceName =
        std::filesystem::path(platform::Trim(sourcePath)).stem().string();
    const bool wasOpen = FindAlias(sourceName, source);
    // A source kept elsewhere (files beside a SQL-kept dossier, or the other way round) is
    // reached through a connection to its own folder, which the dispatch routes.
    Handle ownConnection = 0;
    if (!wasOpen) {
        auto open = [&](Handle connection) {
            return db_.OpenTable(connection, sourcePath, "TEMP", ADS_CDX, ADS_ANSI,
                                 ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS,
                                 ADS_SHARED | ADS_READONLY, source);
        };
        Status status = open(connection_);
        const std::string folder =
            std::filesystem::path(platform::Trim(sourcePath)).parent_path().string();
        if (status != AE_SUCCESS && !folder.empty() &&
            db_.Connect26(folder, ADS_LOCAL_SERVER, ownConnection) == AE_SUCCESS) {
            if (!SameOwner(ownConnection, connection_)) status = open(ownConnection);
            if (status != AE_SUCCESS) {
                IgnoreStatus(db_.Disconnect(ownConnection));  // the open's status is the answer
                ownConnection = 0;
            }
        }
        bool encrypted = false;
        // An encrypted source cannot be read without the password: that is an open failure too.
        if (status == AE_SUCCESS && db_.IsTableEncrypted(source, encrypted) == AE_SUCCESS &&
            encrypted) {
            status = password_.empty() ? AE_ENCRYPTION_NOT_ENABLED
                                       : db_.EnableEncryption(source, password_);
            if (status != AE_SUCCESS) IgnoreStatus(db_.CloseTable(source));  // reported: status
        }
        if (status != AE_SUCCESS) {
            if (ownConnection != 0) IgnoreStatus(db_.Disconnect(ownConnection));
            ShowError((IsEncryptionRefusal(status) ? "appendfrom error encryption "
                                                   : "appendfrom error opening ") +
                      std::string(sourcePath));
            return status;
        }
    }
    std::string earlierFilter;
    if (db_.GetAOF(source, earlierFilter) != AE_SUCCESS) earlierFilter.clear();

    Status status = db_.SetAOF(source, filter, ADS_RESOLVE_DYNAMIC);
    if (status == AE_SUCCESS) {
        backend::SqlBackend* targetBackend =
            current_ > 0 && current_ < kEngineHandleStart
                ? db_.Backend(static_cast<BackendSlot>(current_ / backend::kBackendHandleRange))
                : nullptr;
        // Between implementations the records go field by field.
        auto copy = [&] {
            return SameOwner(source, current_)
                       ? db_.CopyTableContents(source, current_, ADS_RESPECTFILTERS)
                       : CopyRecordsAcross(db_, source, db_, current_);
        };
        if (targetBackend != nullptr) {
            // A SQL-kept target takes the records in one transaction, then reads its row again.
            status = targetBackend->InitCopyTableContents(current_);
            if (status == AE_SUCCESS) status = copy();
            const Status closed = targetBackend->CloseCopyTableContents(current_);
            if (status == AE_SUCCESS) status = closed;
            if (status == AE_SUCCESS) status = targetBackend->RefreshTable(current_);
        } else {
            status = copy();
        }
    }
    if (status != AE_SUCCESS) ShowError(std::string(sourcePath) + "error copying ");

    // The source is put back as it was found; the copy's status is the answer.
    IgnoreStatus(db_.ClearAOF(source));
    if (!earlierFilter.empty())
        IgnoreStatus(db_.SetAOF(source, earlierFilter, ADS_RESOLVE_DYNAMIC));
    if (!wasOpen) IgnoreStatus(db_.CloseTable(source));
    if (ownConnection != 0) IgnoreStatus(db_.Disconnect(ownConnection));
    return status;
}

Status WorkAreas::sx_Encrypt(std::string_view password) {
    const Status status = db_.EnableEncryption(current_, password);
    return status == AE_SUCCESS ? db_.EncryptTable(current_) : status;
}

Status WorkAreas::sx_Decrypt(std::string_view password) {
    const Status status = db_.EnableEncryption(current_, password);
    return status == AE_SUCCESS ? db_.DecryptTable(current_) : status;
}

bool WorkAreas::sx_IsEncrypted() {
    bool encrypted = false;
    return db_.IsTableEncrypted(current_, encrypted) == AE_SUCCESS && encrypted;
}

}  // namespace fnrk::tables

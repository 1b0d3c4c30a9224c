// Encryption of a SQL-kept table, with the engine's keys and statuses: a password given to a
// handle opens an encrypted table (or is kept for EncryptTable); encrypting and decrypting write
// every row anew, on a table open exclusively.

#include "backend/frc_database.hpp"
#include "engine/crypt/encryption_mark.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers

Status FRCDatabase::EnableEncryption(Handle table, std::string_view password) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
        const TableStore& store = entry->table->store();
        if (!store.encrypted()) {
            entry->password = password;  // kept for EncryptTable
            return AE_SUCCESS;
        }
        // An open table keeps the password it has (SQL statements pass theirs, often none).
        if (password.empty() && !store.locked()) return AE_SUCCESS;
        auto cipher = crypt::Unlock(*store.mark(), password);
        if (cipher == nullptr)
            return Report(AE_INVALID_PASSWORD, "wrong password for " + entry->fileName);
        entry->password = password;
        if (!store.locked()) return AE_SUCCESS;
        return Report(entry->table->Unlock(std::move(cipher)));
    });
}

Status FRCDatabase::EncryptTable(Handle table) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
        if (entry->table->store().encrypted()) return AE_SUCCESS;
        if (entry->password.empty())
            return Report(AE_ENCRYPTION_NOT_ENABLED, "no password given for " + entry->fileName);
        const crypt::NewKey key = crypt::MakeKey(entry->password);
        return Report(entry->table->Recode(key.cipher, &key.mark));
    });
}

Status FRCDatabase::DecryptTable(Handle table) {
    return Guarded([&] {
        OpenTableEntry* entry = nullptr;
        if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
        const TableStore& store = entry->table->store();
        if (!store.encrypted()) return Report(AE_TABLE_NOT_ENCRYPTED);
        if (store.locked())
            return Report(AE_ENCRYPTION_NOT_ENABLED, "no password given for " + entry->fileName);
        return Report(entry->table->Recode(nullptr, nullptr));
    });
}

Status FRCDatabase::IsTableEncrypted(Handle table, bool& encrypted) {
    OpenTableEntry* entry = nullptr;
    if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
    encrypted = entry->table->store().encrypted();
    return AE_SUCCESS;
}

}  // namespace fnrk::backend

// Engine operations of table encryption (crypt/): a password opens an encrypted table for its
// handle; encrypting and decrypting write the records, memos and open index files anew beside the
// old ones.

#include "engine/crypt/encryption_mark.hpp"
#include "engine/engine.hpp"
#include "engine/order/order_registry.hpp"

namespace fnrk::engine {

Status Engine::EnableEncryption(Handle table, std::string_view password) {
    const auto found = tables_.find(table);
    if (found == tables_.end()) return Report(AE_INVALID_TABLE_HANDLE);
    cursor::TableCursor& cursor = *found->second.cursor;
    dbf::TableFile& file = cursor.file();
    if (!file.encrypted()) {
        // Kept for EncryptTable.
        found->second.password = std::string(password);
        return AE_SUCCESS;
    }
    // An open table keeps the password it has (SQL statements pass theirs, often none).
    if (password.empty() && !file.locked()) return AE_SUCCESS;
    auto cipher = crypt::Unlock(crypt::ReadMark(file.header().reserved), password);
    if (cipher == nullptr) return Report(AE_INVALID_PASSWORD, "wrong password for " + file.path());
    found->second.password = std::string(password);
    // An open table keeps its cipher: its index files use it.
    if (!file.locked()) return AE_SUCCESS;
    file.SetCipher(std::move(cipher));
    std::string message;
    order::TableOrders* orders = Orders().FindTable(table);
    if (orders != nullptr) {
        if (Status status = orders->indexes->OpenStructural(message); status != AE_SUCCESS)
            return Report(status, message);
    }
    return Report(cursor.GotoTop());
}

Status Engine::EncryptTable(Handle table) {
    const auto found = tables_.find(table);
    if (found == tables_.end()) return Report(AE_INVALID_TABLE_HANDLE);
    cursor::TableCursor& cursor = *found->second.cursor;
    if (cursor.file().encrypted()) return AE_SUCCESS;
    if (found->second.password.empty())
        return Report(AE_ENCRYPTION_NOT_ENABLED, "no password given for " + cursor.file().path());
    const crypt::NewKey key = crypt::MakeKey(found->second.password);
    return RecodeTable(table, key.cipher, &key.mark);
}

Status Engine::DecryptTable(Handle table) {
    const auto found = tables_.find(table);
    if (found == tables_.end()) return Report(AE_INVALID_TABLE_HANDLE);
    const dbf::TableFile& file = found->second.cursor->file();
    if (!file.encrypted()) return Report(AE_TABLE_NOT_ENCRYPTED);
    if (file.locked())
        return Report(AE_ENCRYPTION_NOT_ENABLED, "no password given for " + file.path());
    return RecodeTable(table, nullptr, nullptr);
}

Status Engine::RecodeTable(Handle table, std::shared_ptr<const crypt::FileCipher> cipher,
                           const crypt::EncryptionMark* mark) {
    cursor::TableCursor& cursor = *tables_.at(table).cursor;
    if (Status status = cursor.Flush(); status != AE_SUCCESS) return Report(status);
    dbf::TableFile& file = cursor.file();
    std::string message;
    const crypt::ReservedBytes reserved = crypt::WithMark(file.header().reserved, mark);
    // The index files are written anew under the table's new cipher, beside the old ones. The
    // message is read only once Recode has written it.
    const Status status = file.Recode(std::move(cipher), reserved, message);
    return Report(status, message);
}

Status Engine::IsTableEncrypted(Handle table, bool& encrypted) {
    return WithTable(table, [&](cursor::TableCursor* cursor) {
        encrypted = cursor->file().encrypted();
        return AE_SUCCESS;
    });
}

}  // namespace fnrk::engine

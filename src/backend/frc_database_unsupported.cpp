// What a SQL-kept dossier does not offer: table encryption (the database protects its data). Each
// answers AE_NOT_IMPLEMENTED with a text that says so, which GetLastError passes on.

#include "backend/frc_database.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers

namespace {

constexpr const char* kNotOffered = "not offered by the SQL backend";

}  // namespace

Status FRCDatabase::EnableEncryption(Handle, std::string_view) {
    return Report(AE_NOT_IMPLEMENTED, kNotOffered);
}
Status FRCDatabase::EncryptTable(Handle) {
    return Report(AE_NOT_IMPLEMENTED, kNotOffered);
}
Status FRCDatabase::DecryptTable(Handle) {
    return Report(AE_NOT_IMPLEMENTED, kNotOffered);
}

Status FRCDatabase::IsTableEncrypted(Handle table, bool& encrypted) {
    OpenTableEntry* entry = nullptr;
    if (Status status = ResolveTable(table, entry); status != AE_SUCCESS) return status;
    encrypted = false;
    return AE_SUCCESS;
}

}  // namespace fnrk::backend

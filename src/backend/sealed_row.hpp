#pragma once

// An encrypted table's rows in the database. A row keeps its record number and deletion flag in
// plain (pack needs them, as a table file's deletion flag stays plain); its record bytes and
// memos are one sealed value, encrypted with the table's key at a fresh random place of its key
// stream each time the row is written, so that no two writes share keystream. The place leads
// the sealed value in plain. Key columns hold only whether the row is in the tag: its keys are
// computed from the opened record, and the table's orders in the workstation.
//
// The table's encryption mark (salt and password verifier) lives in the catalog table
// fnrk_crypt, beside its name and its count of writes (see TableStore).

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backend/sql_session.hpp"
#include "engine/crypt/encryption_mark.hpp"

namespace fnrk::backend {

// The record bytes (deletion flag aside) and memos of a row, sealed.
std::string SealRow(const engine::crypt::FileCipher& cipher, std::string_view record,
                    const std::vector<std::string>& memos);
// Fills the record bytes after the deletion flag and the memos (one per field) from a sealed
// value; throws SqlFailure when the value is not one of a row of this layout.
void OpenRow(const engine::crypt::FileCipher& cipher, std::string_view sealed, std::string& record,
             std::vector<std::string>& memos);

// The marks of the catalog table fnrk_crypt (see TableStore::EnsureCatalog).
std::optional<engine::crypt::EncryptionMark> ReadMark(SqlSession& session,
                                                      const std::string& table);
// Records the table's mark, or, with none, that the table is plain.
void WriteMark(SqlSession& session, const std::string& table,
               const engine::crypt::EncryptionMark* mark);

}  // namespace fnrk::backend

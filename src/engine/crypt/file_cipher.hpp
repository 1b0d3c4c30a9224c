#pragma once

// The cipher of an encrypted table, shared by its table, memo and index files.
//
// How a table is encrypted:
// - Key: PBKDF2-HMAC-SHA256 of the password over a random 8-byte salt (kKeyIterations rounds)
//   gives 32 bytes of AES-256 key and 7 bytes of password verifier. A password whose verifier
//   differs is refused (AE_INVALID_PASSWORD) before any byte is decrypted.
// - Mark: the table header's reserved bytes hold it, so that it travels with the table file
//   whenever the file is copied (a side file could be left behind, and the table with it would
//   be lost). Byte 15 (the header's encryption flag) is kEncryptedMark, bytes 16-23 the salt,
//   bytes 24-27 then 12-14 the verifier.
// - Bytes: AES-256-CTR whose counter is the byte position in the file, with a stream number
//   in the counter's first byte so that the three files of a table never share keystream. The
//   same length, and random access, as plain files: records are encrypted from their second
//   byte (the deletion flag stays readable for pack), memos from the end of the memo header
//   (block chain and block size stay plain), indexes from the end of the file header (free list
//   and change counter stay plain). A byte rewritten in place reuses its keystream; this guards
//   files at rest, not a disk seen before and after each write.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/crypto.hpp"

namespace fnrk::engine::crypt {

enum class CipherStream : std::uint8_t { Records = 1, Memos = 2, Index = 3 };

using TableKey = platform::crypto::Aes256Key;

class FileCipher {
  public:
    explicit FileCipher(const TableKey& key) : aes_(key) {}

    // XORs `length` bytes found at `offset` in the file of `stream` with their keystream:
    // encrypts plain bytes and decrypts encrypted ones.
    void Apply(CipherStream stream, std::uint64_t offset, char* bytes, std::size_t length) const;

  private:
    // Kept between calls: setting up a key costs more than a record's worth of AES.
    platform::crypto::Aes256 aes_;
};

// Recodes bytes of one stream from one cipher to another; a null cipher means plain bytes.
void Recode(const FileCipher* from, const FileCipher* to, CipherStream stream, std::uint64_t offset,
            char* bytes, std::size_t length);

}  // namespace fnrk::engine::crypt

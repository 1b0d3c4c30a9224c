#pragma once

// The mark an encrypted table carries in its header's reserved bytes (see file_cipher.hpp):
// reading and writing it, making one for a new password, and turning a password into the
// table's cipher.

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "engine/crypt/file_cipher.hpp"

namespace fnrk::engine::crypt {

// The header's bytes 12 to 27, as the table header keeps them.
inline constexpr std::size_t kReservedOffset = 12;
using ReservedBytes = std::array<std::uint8_t, 16>;

inline constexpr std::uint8_t kEncryptedMark = 0x01;
inline constexpr int kKeyIterations = 100'000;

struct EncryptionMark {
    std::array<std::uint8_t, 8> salt{};
    std::array<std::uint8_t, 7> verifier{};
};

bool IsEncrypted(const ReservedBytes& reserved);
// The salt and verifier of an encrypted table's reserved bytes.
EncryptionMark ReadMark(const ReservedBytes& reserved);
// The reserved bytes with the mark set (or cleared, for a null mark), the rest as they were.
ReservedBytes WithMark(const ReservedBytes& reserved, const EncryptionMark* mark);

// A fresh random salt and the verifier of `password` under it, with the cipher that goes
// with them.
struct NewKey {
    EncryptionMark mark;
    std::shared_ptr<const FileCipher> cipher;
};
NewKey MakeKey(std::string_view password);
// The cipher of a table with this mark, or null when the password is not the table's.
std::shared_ptr<const FileCipher> Unlock(const EncryptionMark& mark, std::string_view password);

}  // namespace fnrk::engine::crypt

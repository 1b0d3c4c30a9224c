#pragma once

// Passwords kept for checking only: PBKDF2-HMAC-SHA256 over a random salt, never the password.

#include <string>
#include <string_view>

namespace fnrk::engine::crypt {

struct PasswordHash {
    std::string salt;  // hexadecimal
    std::string hash;  // hexadecimal
};

PasswordHash HashPassword(std::string_view password);
bool PasswordMatches(const PasswordHash& stored, std::string_view password);

// 32 random bytes in hexadecimal: the password of a file that only this process opens, kept in
// memory and never written.
std::string RandomPassword();

// PBKDF2-HMAC-SHA256 with the iteration count of every key and hash of this engine.
void DeriveBytes(std::string_view password, const unsigned char* salt, std::size_t saltLength,
                 unsigned char* out, std::size_t outLength);

}  // namespace fnrk::engine::crypt

#include "engine/crypt/password_hash.hpp"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <array>
#include <stdexcept>

#include "engine/crypt/encryption_mark.hpp"

namespace fnrk::engine::crypt {

namespace {

constexpr std::size_t kSaltLength = 16;
constexpr std::size_t kHashLength = 32;

std::string Hex(const unsigned char* bytes, std::size_t length) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0x0F];
    }
    return text;
}

// Empty when `text` is not hexadecimal of an even length.
std::string FromHex(std::string_view text) {
    std::string bytes;
    if (text.size() % 2 != 0) return {};
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int high = OPENSSL_hexchar2int(static_cast<unsigned char>(text[i]));
        const int low = OPENSSL_hexchar2int(static_cast<unsigned char>(text[i + 1]));
        if (high < 0 || low < 0) return {};
        bytes += static_cast<char>(high * 16 + low);
    }
    return bytes;
}

std::string HashWith(std::string_view password, const std::string& salt) {
    std::array<unsigned char, kHashLength> hash{};
    DeriveBytes(password, reinterpret_cast<const unsigned char*>(salt.data()), salt.size(),
                hash.data(), hash.size());
    return Hex(hash.data(), hash.size());
}

}  // namespace

void DeriveBytes(std::string_view password, const unsigned char* salt, std::size_t saltLength,
                 unsigned char* out, std::size_t outLength) {
    if (PKCS5_PBKDF2_HMAC(password.data(), static_cast<int>(password.size()), salt,
                          static_cast<int>(saltLength), kKeyIterations, EVP_sha256(),
                          static_cast<int>(outLength), out) != 1)
        throw std::runtime_error("PBKDF2 failed");
}

PasswordHash HashPassword(std::string_view password) {
    std::array<unsigned char, kSaltLength> salt{};
    if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1)
        throw std::runtime_error("no random bytes for a salt");
    const std::string saltBytes(reinterpret_cast<const char*>(salt.data()), salt.size());
    return {Hex(salt.data(), salt.size()), HashWith(password, saltBytes)};
}

bool PasswordMatches(const PasswordHash& stored, std::string_view password) {
    const std::string salt = FromHex(stored.salt);
    if (salt.empty() || stored.hash.size() != kHashLength * 2) return false;
    const std::string hash = HashWith(password, salt);
    return CRYPTO_memcmp(hash.data(), stored.hash.data(), hash.size()) == 0;
}

std::string RandomPassword() {
    std::array<unsigned char, kHashLength> bytes{};
    if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1)
        throw std::runtime_error("no random bytes for a password");
    std::string password = Hex(bytes.data(), bytes.size());
    OPENSSL_cleanse(bytes.data(), bytes.size());
    return password;
}

}  // namespace fnrk::engine::crypt

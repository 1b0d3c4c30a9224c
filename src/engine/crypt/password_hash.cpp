#include "engine/crypt/password_hash.hpp"

#include <array>

#include "engine/crypt/encryption_mark.hpp"
#include "platform/crypto.hpp"

namespace fnrk::engine::crypt {

namespace {

namespace crypto = platform::crypto;

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

// The value of a hexadecimal digit; -1 for any other character.
int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Empty when `text` is not hexadecimal of an even length.
std::string FromHex(std::string_view text) {
    std::string bytes;
    if (text.size() % 2 != 0) return {};
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int high = HexValue(text[i]);
        const int low = HexValue(text[i + 1]);
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
    crypto::Pbkdf2Sha256(password, salt, saltLength, kKeyIterations, out, outLength);
}

PasswordHash HashPassword(std::string_view password) {
    std::array<unsigned char, kSaltLength> salt{};
    crypto::RandomBytes(salt.data(), salt.size());
    const std::string saltBytes(reinterpret_cast<const char*>(salt.data()), salt.size());
    return {Hex(salt.data(), salt.size()), HashWith(password, saltBytes)};
}

bool PasswordMatches(const PasswordHash& stored, std::string_view password) {
    const std::string salt = FromHex(stored.salt);
    if (salt.empty() || stored.hash.size() != kHashLength * 2) return false;
    const std::string hash = HashWith(password, salt);
    return crypto::EqualInConstantTime(hash.data(), stored.hash.data(), hash.size());
}

std::string RandomPassword() {
    std::array<unsigned char, kHashLength> bytes{};
    crypto::RandomBytes(bytes.data(), bytes.size());
    std::string password = Hex(bytes.data(), bytes.size());
    crypto::Cleanse(bytes.data(), bytes.size());
    return password;
}

}  // namespace fnrk::engine::crypt

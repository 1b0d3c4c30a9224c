#include "engine/crypt/encryption_mark.hpp"

#include <algorithm>

#include "engine/crypt/password_hash.hpp"
#include "platform/crypto.hpp"

namespace fnrk::engine::crypt {

namespace {

namespace crypto = platform::crypto;

// Positions inside the reserved bytes (header offset minus 12).
constexpr std::size_t kMarkAt = 3;
constexpr std::size_t kSaltAt = 4;
constexpr std::size_t kVerifierTailAt = 12;  // four verifier bytes here, the other three at 0

struct Derived {
    TableKey key{};
    std::array<std::uint8_t, 7> verifier{};
};

Derived Derive(std::string_view password, const std::array<std::uint8_t, 8>& salt) {
    std::array<unsigned char, 32 + 7> out{};
    DeriveBytes(password, salt.data(), salt.size(), out.data(), out.size());
    Derived derived;
    std::copy_n(out.begin(), 32, derived.key.begin());
    std::copy_n(out.begin() + 32, 7, derived.verifier.begin());
    crypto::Cleanse(out.data(), out.size());
    return derived;
}

}  // namespace

bool IsEncrypted(const ReservedBytes& reserved) {
    return reserved[kMarkAt] == kEncryptedMark;
}

EncryptionMark ReadMark(const ReservedBytes& reserved) {
    EncryptionMark mark;
    std::copy_n(reserved.begin() + kSaltAt, mark.salt.size(), mark.salt.begin());
    std::copy_n(reserved.begin() + kVerifierTailAt, 4, mark.verifier.begin());
    std::copy_n(reserved.begin(), 3, mark.verifier.begin() + 4);
    return mark;
}

ReservedBytes WithMark(const ReservedBytes& reserved, const EncryptionMark* mark) {
    ReservedBytes bytes = reserved;
    const EncryptionMark none;
    const EncryptionMark& written = mark != nullptr ? *mark : none;
    bytes[kMarkAt] = mark != nullptr ? kEncryptedMark : 0;
    std::copy(written.salt.begin(), written.salt.end(), bytes.begin() + kSaltAt);
    std::copy_n(written.verifier.begin(), 4, bytes.begin() + kVerifierTailAt);
    std::copy_n(written.verifier.begin() + 4, 3, bytes.begin());
    return bytes;
}

NewKey MakeKey(std::string_view password) {
    NewKey made;
    crypto::RandomBytes(made.mark.salt.data(), made.mark.salt.size());
    Derived derived = Derive(password, made.mark.salt);
    made.mark.verifier = derived.verifier;
    made.cipher = std::make_shared<const FileCipher>(derived.key);
    crypto::Cleanse(derived.key.data(), derived.key.size());
    return made;
}

std::shared_ptr<const FileCipher> Unlock(const EncryptionMark& mark, std::string_view password) {
    Derived derived = Derive(password, mark.salt);
    std::shared_ptr<const FileCipher> cipher;
    if (crypto::EqualInConstantTime(derived.verifier.data(), mark.verifier.data(),
                                    mark.verifier.size()))
        cipher = std::make_shared<const FileCipher>(derived.key);
    crypto::Cleanse(derived.key.data(), derived.key.size());
    return cipher;
}

}  // namespace fnrk::engine::crypt

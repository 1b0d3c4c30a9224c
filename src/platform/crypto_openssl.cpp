// The crypto interface over OpenSSL's libcrypto (the Linux build).

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <climits>
#include <stdexcept>

#include "platform/crypto.hpp"

namespace fnrk::platform::crypto {

struct Aes256::State {
    EVP_CIPHER_CTX* context = nullptr;
    ~State() { EVP_CIPHER_CTX_free(context); }
};

Aes256::Aes256(const Aes256Key& key) : state_(std::make_unique<State>()) {
    state_->context = EVP_CIPHER_CTX_new();
    if (state_->context == nullptr ||
        EVP_EncryptInit_ex(state_->context, EVP_aes_256_ecb(), nullptr, key.data(), nullptr) != 1 ||
        EVP_CIPHER_CTX_set_padding(state_->context, 0) != 1)
        throw std::runtime_error("AES-256 is not available");
}

Aes256::~Aes256() = default;

void Aes256::EncryptBlocks(const unsigned char* in, unsigned char* out, std::size_t blocks) const {
    constexpr std::size_t kMaxBlocks = INT_MAX / kAesBlockSize;
    for (std::size_t done = 0; done < blocks;) {
        const std::size_t part = std::min(kMaxBlocks, blocks - done);
        int written = 0;
        if (EVP_EncryptUpdate(state_->context, out + done * kAesBlockSize, &written,
                              in + done * kAesBlockSize,
                              static_cast<int>(part * kAesBlockSize)) != 1)
            throw std::runtime_error("AES-256 failed");
        done += part;
    }
}

void Pbkdf2Sha256(std::string_view password, const unsigned char* salt, std::size_t saltLength,
                  std::uint32_t iterations, unsigned char* out, std::size_t outLength) {
    if (PKCS5_PBKDF2_HMAC(password.data(), static_cast<int>(password.size()), salt,
                          static_cast<int>(saltLength), static_cast<int>(iterations), EVP_sha256(),
                          static_cast<int>(outLength), out) != 1)
        throw std::runtime_error("PBKDF2 failed");
}

void RandomBytes(unsigned char* out, std::size_t length) {
    if (RAND_bytes(out, static_cast<int>(length)) != 1) throw std::runtime_error("no random bytes");
}

Md5Digest Md5(const void* data, std::size_t size) {
    Md5Digest digest{};
    unsigned int length = 0;
    if (EVP_Digest(data, size, digest.data(), &length, EVP_md5(), nullptr) != 1 ||
        length != digest.size())
        throw std::runtime_error("MD5 digest failed");
    return digest;
}

}  // namespace fnrk::platform::crypto

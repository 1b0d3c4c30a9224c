#include "engine/crypt/file_cipher.hpp"

#include <algorithm>
#include <stdexcept>

namespace fnrk::engine::crypt {

namespace {

constexpr std::size_t kBlockSize = 16;

}  // namespace

FileCipher::FileCipher(const TableKey& key)
    : key_(key), context_(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free) {
    if (context_ == nullptr ||
        EVP_EncryptInit_ex(context_.get(), EVP_aes_256_ctr(), nullptr, key_.data(), nullptr) != 1)
        throw std::runtime_error("AES-256-CTR is not available");
}

FileCipher::~FileCipher() {
    OPENSSL_cleanse(key_.data(), key_.size());
}

void FileCipher::Apply(CipherStream stream, std::uint64_t offset, char* bytes,
                       std::size_t length) const {
    if (length == 0) return;
    std::array<unsigned char, kBlockSize> counter{};
    counter[0] = static_cast<unsigned char>(stream);
    std::uint64_t block = offset / kBlockSize;
    for (std::size_t i = kBlockSize; i-- > 8; block >>= 8)
        counter[i] = static_cast<unsigned char>(block & 0xFF);
    EVP_CIPHER_CTX* context = context_.get();
    int written = 0;
    if (EVP_EncryptInit_ex(context, nullptr, nullptr, nullptr, counter.data()) != 1)
        throw std::runtime_error("AES-256-CTR cannot start");
    // Into the first block as far as the offset lies in it.
    if (const std::size_t skip = offset % kBlockSize; skip != 0) {
        unsigned char waste[kBlockSize] = {};
        EVP_EncryptUpdate(context, waste, &written, waste, static_cast<int>(skip));
    }
    auto* data = reinterpret_cast<unsigned char*>(bytes);
    constexpr std::size_t kChunk = 1 << 30;
    for (std::size_t done = 0; done < length; done += kChunk) {
        const int part = static_cast<int>(std::min(kChunk, length - done));
        if (EVP_EncryptUpdate(context, data + done, &written, data + done, part) != 1)
            throw std::runtime_error("AES-256-CTR failed");
    }
}

void Recode(const FileCipher* from, const FileCipher* to, CipherStream stream, std::uint64_t offset,
            char* bytes, std::size_t length) {
    if (from != nullptr) from->Apply(stream, offset, bytes, length);
    if (to != nullptr) to->Apply(stream, offset, bytes, length);
}

}  // namespace fnrk::engine::crypt

#include "engine/crypt/file_cipher.hpp"

#include <algorithm>
#include <array>

namespace fnrk::engine::crypt {

namespace {

using platform::crypto::kAesBlockSize;

// Keystream is made this many blocks at a time.
constexpr std::size_t kBatchBlocks = 256;

}  // namespace

void FileCipher::Apply(CipherStream stream, std::uint64_t offset, char* bytes,
                       std::size_t length) const {
    // Counter block: the stream number, six zero bytes, then the block's number big-endian.
    std::array<unsigned char, kBatchBlocks * kAesBlockSize> keystream{};
    std::uint64_t block = offset / kAesBlockSize;
    std::size_t skip = offset % kAesBlockSize;  // into the first block as far as the offset lies
    auto* data = reinterpret_cast<unsigned char*>(bytes);
    while (length > 0) {
        const std::size_t blocks =
            std::min(kBatchBlocks, (skip + length + kAesBlockSize - 1) / kAesBlockSize);
        for (std::size_t b = 0; b < blocks; ++b, ++block) {
            unsigned char* counter = keystream.data() + b * kAesBlockSize;
            std::fill_n(counter, 8, 0);
            counter[0] = static_cast<unsigned char>(stream);
            for (std::size_t i = 0; i < 8; ++i)
                counter[15 - i] = static_cast<unsigned char>(block >> (8 * i));
        }
        aes_.EncryptBlocks(keystream.data(), keystream.data(), blocks);
        const std::size_t part = std::min(length, blocks * kAesBlockSize - skip);
        for (std::size_t i = 0; i < part; ++i) data[i] ^= keystream[skip + i];
        data += part;
        length -= part;
        skip = 0;
    }
}

void Recode(const FileCipher* from, const FileCipher* to, CipherStream stream, std::uint64_t offset,
            char* bytes, std::size_t length) {
    if (from != nullptr) from->Apply(stream, offset, bytes, length);
    if (to != nullptr) to->Apply(stream, offset, bytes, length);
}

}  // namespace fnrk::engine::crypt

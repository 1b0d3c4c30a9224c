#include "utilities/md5_digest.hpp"

#include <array>
#include <stdexcept>

#include <openssl/evp.h>

#include "platform/codepage.hpp"

namespace fnrk::utilities {

namespace {

std::string Md5Hex(const void* data, std::size_t size) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    if (EVP_Digest(data, size, digest.data(), &length, EVP_md5(), nullptr) != 1)
        throw std::runtime_error("MD5 digest failed");
    static constexpr char kHex[] = "0123456789abcdef";
    std::string hex;
    for (unsigned int i = 0; i < length; ++i) {
        hex += kHex[digest[i] >> 4];
        hex += kHex[digest[i] & 0x0F];
    }
    return hex;
}

}  // namespace

std::string ConvertToMD5(std::string_view text) {
    const std::string ansi = platform::Utf8ToCp1252(text);
    return Md5Hex(ansi.data(), ansi.size());
}

std::string ConvertTabOfByteToMD5(const std::vector<std::uint8_t>& bytes) {
    return Md5Hex(bytes.data(), bytes.size());
}

}  // namespace fnrk::utilities

#include "utilities/md5_digest.hpp"

#include "platform/codepage.hpp"
#include "platform/crypto.hpp"

namespace fnrk::utilities {

namespace {

std::string Md5Hex(const void* data, std::size_t size) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string hex;
    for (const unsigned char byte : platform::crypto::Md5(data, size)) {
        hex += kHex[byte >> 4];
        hex += kHex[byte & 0x0F];
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

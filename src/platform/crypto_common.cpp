// The parts of the crypto interface that need no library, the same in every build.

#include "platform/crypto.hpp"

#include <cstring>

namespace fnrk::platform::crypto {

bool EqualInConstantTime(const void* a, const void* b, std::size_t length) {
    const auto* left = static_cast<const volatile unsigned char*>(a);
    const auto* right = static_cast<const volatile unsigned char*>(b);
    unsigned char difference = 0;
    for (std::size_t i = 0; i < length; ++i) difference |= left[i] ^ right[i];
    return difference == 0;
}

std::uint64_t RandomNumber() {
    unsigned char bytes[sizeof(std::uint64_t)];
    RandomBytes(bytes, sizeof bytes);
    std::uint64_t number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

void Cleanse(void* data, std::size_t length) {
    auto* bytes = static_cast<volatile unsigned char*>(data);
    for (std::size_t i = 0; i < length; ++i) bytes[i] = 0;
}

}  // namespace fnrk::platform::crypto

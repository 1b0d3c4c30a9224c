#include "platform/base64.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

namespace fnrk::platform {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The value of each character; -1 for a character outside the alphabet.
constexpr std::array<int, 256> Values() {
    std::array<int, 256> values{};
    values.fill(-1);
    for (int i = 0; i < 64; ++i) values[static_cast<unsigned char>(kAlphabet[i])] = i;
    return values;
}

}  // namespace

std::string Base64Encode(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j)
            group = group << 8 | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0u);
        for (std::size_t j = 0; j < 4; ++j)
            text += j <= count ? kAlphabet[(group >> (18 - 6 * j)) & 0x3F] : '=';
    }
    return text;
}

std::optional<std::string> Base64Decode(std::string_view text) {
    static constexpr std::array<int, 256> kValues = Values();
    if (text.size() % 4 != 0) return std::nullopt;
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const bool last = i + 4 == text.size();
        std::size_t padding = 0;
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 4; ++j) {
            const char c = text[i + j];
            int value = kValues[static_cast<unsigned char>(c)];
            if (c == '=' && last && j >= 2) {
                ++padding;
                value = 0;
            } else if (value < 0 || padding > 0) {
                return std::nullopt;
            }
            group = group << 6 | static_cast<std::uint32_t>(value);
        }
        for (std::size_t j = 0; j < 3 - padding; ++j)
            bytes += static_cast<char>((group >> (16 - 8 * j)) & 0xFF);
    }
    return bytes;
}

}  // namespace fnrk::platform

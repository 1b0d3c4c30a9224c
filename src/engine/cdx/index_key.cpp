#include "engine/cdx/index_key.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace fnrk::engine::cdx {

char PadByteOf(KeyKind kind) {
    return kind == KeyKind::Character ? ' ' : '\0';
}

std::size_t KeyLengthOf(KeyKind kind, std::size_t characterLength) {
    switch (kind) {
        case KeyKind::Numeric:
        case KeyKind::Date:
            return 8;
        case KeyKind::Logical:
            return 1;
        case KeyKind::Character:
            break;
    }
    return characterLength;
}

void WriteNumberKey(double value, char* out) {
    if (value == 0.0) value = 0.0;  // -0 and +0 are one key
    auto bits = std::bit_cast<std::uint64_t>(value);
    // Positive numbers get the sign bit set so they sort above negatives; negative numbers are
    // inverted so that larger magnitudes sort lower.
    bits = (bits >> 63) != 0 ? ~bits : bits | (std::uint64_t{1} << 63);
    for (int i = 0; i < 8; ++i) out[i] = static_cast<char>((bits >> (56 - 8 * i)) & 0xFF);
}

std::string EncodeNumberKey(double value) {
    std::string key(8, '\0');
    WriteNumberKey(value, key.data());
    return key;
}

double DecodeNumberKey(std::string_view key) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < 8 && i < key.size(); ++i)
        bits = (bits << 8) | static_cast<unsigned char>(key[i]);
    bits = (bits >> 63) != 0 ? bits & ~(std::uint64_t{1} << 63) : ~bits;
    return std::bit_cast<double>(bits);
}

std::string EncodeLogicalKey(bool value) {
    return value ? "T" : "F";
}

void WriteCharacterKey(std::string_view windows1252, std::size_t keyLength, char* out) {
    const std::size_t used = std::min(windows1252.size(), keyLength);
    std::memcpy(out, windows1252.data(), used);
    std::memset(out + used, ' ', keyLength - used);
}

std::string EncodeCharacterKey(std::string_view windows1252, std::size_t keyLength) {
    std::string key(keyLength, ' ');
    WriteCharacterKey(windows1252, keyLength, key.data());
    return key;
}

int ComparePrefix(std::string_view stored, std::string_view probe) {
    return stored.substr(0, probe.size()).compare(probe);
}

}  // namespace fnrk::engine::cdx

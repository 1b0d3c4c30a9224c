#pragma once

// Header-only. Little- and big-endian integers inside file bytes (DBF is little-endian, FPT
// big-endian).

#include <cstdint>

namespace fnrk::engine::io {

inline std::uint16_t ReadLe16(const char* p) {
    const auto* b = reinterpret_cast<const unsigned char*>(p);
    return static_cast<std::uint16_t>(b[0] | (b[1] << 8));
}

inline std::uint32_t ReadLe32(const char* p) {
    const auto* b = reinterpret_cast<const unsigned char*>(p);
    return std::uint32_t{b[0]} | (std::uint32_t{b[1]} << 8) | (std::uint32_t{b[2]} << 16) |
           (std::uint32_t{b[3]} << 24);
}

inline std::uint32_t ReadBe32(const char* p) {
    const auto* b = reinterpret_cast<const unsigned char*>(p);
    return (std::uint32_t{b[0]} << 24) | (std::uint32_t{b[1]} << 16) | (std::uint32_t{b[2]} << 8) |
           std::uint32_t{b[3]};
}

inline void WriteLe16(char* p, std::uint16_t value) {
    p[0] = static_cast<char>(value & 0xFF);
    p[1] = static_cast<char>(value >> 8);
}

inline void WriteLe32(char* p, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<char>((value >> (8 * i)) & 0xFF);
}

inline void WriteBe32(char* p, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<char>((value >> (8 * (3 - i))) & 0xFF);
}

inline void WriteBe16(char* p, std::uint16_t value) {
    p[0] = static_cast<char>(value >> 8);
    p[1] = static_cast<char>(value & 0xFF);
}

inline std::uint16_t ReadBe16(const char* p) {
    const auto* b = reinterpret_cast<const unsigned char*>(p);
    return static_cast<std::uint16_t>((b[0] << 8) | b[1]);
}

}  // namespace fnrk::engine::io

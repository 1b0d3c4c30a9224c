#include "engine/expr/ansi_case.hpp"

namespace fnrk::engine::expr {
namespace {

// Pairs outside the plain a-z / à-þ runs: š/Š, œ/Œ, ž/Ž, ÿ/Ÿ.
constexpr unsigned char kLowerSpecial[] = {0x9A, 0x9C, 0x9E, 0xFF};
constexpr unsigned char kUpperSpecial[] = {0x8A, 0x8C, 0x8E, 0x9F};

}  // namespace

char AnsiUpper(char byte) {
    const auto c = static_cast<unsigned char>(byte);
    if ((c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7)) {
        return static_cast<char>(c - 0x20);
    }
    for (int i = 0; i < 4; ++i) {
        if (c == kLowerSpecial[i]) return static_cast<char>(kUpperSpecial[i]);
    }
    return byte;
}

char AnsiLower(char byte) {
    const auto c = static_cast<unsigned char>(byte);
    if ((c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) {
        return static_cast<char>(c + 0x20);
    }
    for (int i = 0; i < 4; ++i) {
        if (c == kUpperSpecial[i]) return static_cast<char>(kLowerSpecial[i]);
    }
    return byte;
}

}  // namespace fnrk::engine::expr

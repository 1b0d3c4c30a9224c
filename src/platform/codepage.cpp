#include "platform/codepage.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/utf8.hpp"

namespace fnrk::platform {
namespace {

// Code points of bytes 0x80..0x9F in Windows-1252; 0 where the code page leaves the byte
// unassigned.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

char32_t ByteToCodePoint(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F) {
        const char32_t mapped = kHighControls[byte - 0x80];
        return mapped != 0 ? mapped : byte;  // unassigned bytes pass through as C1 controls
    }
    return byte;
}

int CodePointToByte(char32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<int>(cp);
    for (std::size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == cp) return static_cast<int>(0x80 + i);
    }
    if (cp >= 0x80 && cp <= 0x9F && kHighControls[cp - 0x80] == 0) return static_cast<int>(cp);
    return -1;
}

}  // namespace

std::string Cp1252ToUtf8(std::string_view ansi) {
    std::string out;
    out.reserve(ansi.size() + ansi.size() / 8);
    std::size_t pos = 0;
    while (pos < ansi.size()) {
        // Runs of ASCII, nearly all of any table or file, are copied as they are.
        std::size_t asciiEnd = pos;
        while (asciiEnd < ansi.size() && static_cast<unsigned char>(ansi[asciiEnd]) < 0x80) {
            ++asciiEnd;
        }
        out.append(ansi, pos, asciiEnd - pos);
        if (asciiEnd == ansi.size()) break;
        AppendUtf8CodePoint(out, ByteToCodePoint(static_cast<unsigned char>(ansi[asciiEnd])));
        pos = asciiEnd + 1;
    }
    return out;
}

std::string Utf8ToCp1252(std::string_view utf8, char replacement) {
    // ASCII, most text, is the same in both.
    if (std::all_of(utf8.begin(), utf8.end(),
                    [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return std::string(utf8);
    std::string out;
    out.reserve(utf8.size());
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        char32_t cp = 0;
        if (!DecodeUtf8CodePoint(utf8, pos, cp)) {
            out += replacement;
            continue;
        }
        const int byte = CodePointToByte(cp);
        out += byte >= 0 ? static_cast<char>(byte) : replacement;
    }
    return out;
}

}  // namespace fnrk::platform

#include "platform/codepage.hpp"

#include <array>
#include <cstdint>

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

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

int CodePointToByte(char32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<int>(cp);
    for (std::size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == cp) return static_cast<int>(0x80 + i);
    }
    if (cp >= 0x80 && cp <= 0x9F && kHighControls[cp - 0x80] == 0) return static_cast<int>(cp);
    return -1;
}

// Decodes one UTF-8 sequence at `pos`; returns false (and advances one byte) when it is invalid.
bool DecodeUtf8(std::string_view text, std::size_t& pos, char32_t& cp) {
    const auto lead = static_cast<unsigned char>(text[pos]);
    int length = 0;
    if (lead < 0x80) {
        cp = lead;
        length = 1;
    } else if ((lead & 0xE0) == 0xC0) {
        cp = lead & 0x1F;
        length = 2;
    } else if ((lead & 0xF0) == 0xE0) {
        cp = lead & 0x0F;
        length = 3;
    } else if ((lead & 0xF8) == 0xF0) {
        cp = lead & 0x07;
        length = 4;
    } else {
        ++pos;
        return false;
    }
    if (pos + length > text.size()) {
        ++pos;
        return false;
    }
    for (int i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[pos + i]);
        if ((next & 0xC0) != 0x80) {
            ++pos;
            return false;
        }
        cp = (cp << 6) | (next & 0x3F);
    }
    static constexpr char32_t kMinimum[] = {0, 0, 0x80, 0x800, 0x10000};
    if (cp < kMinimum[length] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        ++pos;
        return false;
    }
    pos += length;
    return true;
}

}  // namespace

std::string Cp1252ToUtf8(std::string_view ansi) {
    std::string out;
    out.reserve(ansi.size() + ansi.size() / 8);
    for (const char c : ansi) AppendUtf8(out, ByteToCodePoint(static_cast<unsigned char>(c)));
    return out;
}

std::string Utf8ToCp1252(std::string_view utf8, char replacement) {
    std::string out;
    out.reserve(utf8.size());
    std::size_t pos = 0;
    while (pos < utf8.size()) {
        char32_t cp = 0;
        if (!DecodeUtf8(utf8, pos, cp)) {
            out += replacement;
            continue;
        }
        const int byte = CodePointToByte(cp);
        out += byte >= 0 ? static_cast<char>(byte) : replacement;
    }
    return out;
}

}  // namespace fnrk::platform

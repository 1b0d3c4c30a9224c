#include "platform/utf8.hpp"

namespace fnrk::platform {

void AppendUtf8CodePoint(std::string& out, char32_t cp) {
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

bool DecodeUtf8CodePoint(std::string_view text, std::size_t& pos, char32_t& cp) {
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

std::wstring Utf8ToUtf16(std::string_view text) {
    std::wstring out;
    for (std::size_t pos = 0; pos < text.size();) {
        char32_t cp = 0;
        if (!DecodeUtf8CodePoint(text, pos, cp)) cp = 0xFFFD;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out += static_cast<wchar_t>(0xD800 + (cp >> 10));
            out += static_cast<wchar_t>(0xDC00 + (cp & 0x3FF));
        } else {
            out += static_cast<wchar_t>(cp);
        }
    }
    return out;
}

std::string Utf16ToUtf8(std::wstring_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t cp = static_cast<char16_t>(text[i]);
        if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < text.size() &&
            static_cast<char16_t>(text[i + 1]) >= 0xDC00 &&
            static_cast<char16_t>(text[i + 1]) < 0xE000) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (static_cast<char16_t>(text[++i]) - 0xDC00);
        } else if (cp >= 0xD800 && cp < 0xE000) {
            cp = 0xFFFD;
        }
        AppendUtf8CodePoint(out, cp);
    }
    return out;
}

}  // namespace fnrk::platform

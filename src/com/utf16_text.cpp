#include "com/utf16_text.hpp"

#include <windows.h>

#include <new>

namespace fnrk::com {

std::wstring Utf16FromUtf8(std::string_view text) {
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), length);
    return wide;
}

std::string Utf8FromUtf16(std::wstring_view text) {
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, narrow.data(), length, nullptr, nullptr);
    return narrow;
}

BSTR BstrFromUtf8(std::string_view text) {
    const std::wstring wide = Utf16FromUtf8(text);
    BSTR copy = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (copy == nullptr) throw std::bad_alloc();
    return copy;
}

std::string Utf8FromBstr(BSTR text) {
    if (text == nullptr) return {};
    return Utf8FromUtf16(std::wstring_view(text, SysStringLen(text)));
}

}  // namespace fnrk::com

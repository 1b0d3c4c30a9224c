#pragma once

// Encoding and decoding of single UTF-8 code points, shared by the code-page and text routines.

#include <string>
#include <string_view>

namespace fnrk::platform {

void AppendUtf8CodePoint(std::string& out, char32_t cp);

// Decodes one UTF-8 sequence at `pos`; returns false (and advances one byte) when it is invalid,
// truncated, overlong or a surrogate.
bool DecodeUtf8CodePoint(std::string_view text, std::size_t& pos, char32_t& cp);

// UTF-16 in wchar_t units, as Windows' W functions take it. An invalid UTF-8 sequence becomes
// U+FFFD; so does an unpaired surrogate on the way back.
std::wstring Utf8ToUtf16(std::string_view text);
std::string Utf16ToUtf8(std::wstring_view text);

}  // namespace fnrk::platform

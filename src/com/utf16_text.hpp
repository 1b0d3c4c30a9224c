#pragma once

// Text across the COM boundary: BSTRs and the registry hold UTF-16, the library holds UTF-8.

#include <oaidl.h>

#include <string>
#include <string_view>

namespace fnrk::com {

std::wstring Utf16FromUtf8(std::string_view text);
std::string Utf8FromUtf16(std::wstring_view text);
// A new BSTR the receiver frees; std::bad_alloc when none can be had.
BSTR BstrFromUtf8(std::string_view text);
// A null BSTR is the empty text.
std::string Utf8FromBstr(BSTR text);

}  // namespace fnrk::com

#pragma once

// Windows-1252 ("ANSI") text of the tables and files <-> UTF-8 text of the library's interfaces.

#include <string>
#include <string_view>

namespace fnrk::platform {

std::string Cp1252ToUtf8(std::string_view ansi);

// Characters that Windows-1252 cannot hold become `replacement`; invalid UTF-8 bytes too.
std::string Utf8ToCp1252(std::string_view utf8, char replacement = '?');

}  // namespace fnrk::platform

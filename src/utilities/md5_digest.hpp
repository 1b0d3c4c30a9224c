#pragma once

// The MD5 digests the applications compare with those stored in tables and sent to online
// services: lower-case hexadecimal, 32 characters.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fnrk::utilities {

// MD5 of a text as the applications hash it: its Windows-1252 bytes (characters outside
// Windows-1252 become "?", as the conversion of the original callers does).
std::string ConvertToMD5(std::string_view text);

// MD5 of the bytes themselves.
std::string ConvertTabOfByteToMD5(const std::vector<std::uint8_t>& bytes);

}  // namespace fnrk::utilities

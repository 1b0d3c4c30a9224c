#pragma once

// Base64 (RFC 4648, with padding), as XML documents and the JSON of the command line carry bytes.

#include <optional>
#include <string>
#include <string_view>

namespace fnrk::platform {

std::string Base64Encode(std::string_view bytes);

// Nothing when `text` is not padded base64.
std::optional<std::string> Base64Decode(std::string_view text);

}  // namespace fnrk::platform

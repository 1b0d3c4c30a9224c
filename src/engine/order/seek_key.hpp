#pragma once

// Seek and scope values as the API gives them, turned into a tag's key bytes, and keys turned
// back into API text.

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/errors.hpp"
#include "engine/order/table_indexes.hpp"

namespace fnrk::engine::order {

// ADS_STRINGKEY: UTF-8 text (a number's text for numeric tags); ADS_DOUBLEKEY: the 8 bytes of a
// host-order double for numeric and date tags; ADS_RAWKEY: key bytes as stored.
[[nodiscard]] Status SeekKeyBytes(const OpenTag& tag, std::string_view value,
                                  std::uint16_t dataType, std::string& key);

// Character and logical keys as UTF-8; binary keys as their bytes.
std::string KeyText(const OpenTag& tag, const std::string& key);

}  // namespace fnrk::engine::order

#pragma once

#include <cstdint>
#include <string_view>

namespace fnrk::tables {

// The engine open options of an open mode ("SHARED", "EXCLUSIVE" or "READONLY", any case, blanks
// around ignored); false for any other text.
bool OpenOptionsOf(std::string_view mode, std::uint32_t& options);

}  // namespace fnrk::tables

#pragma once

// The four kinds of value an xBase expression yields.

#include <cstdint>
#include <string_view>

namespace fnrk::engine::expr {

// Character values are Windows-1252 bytes; numeric values are doubles; dates are julian day
// numbers with 0 for the empty date; logical values are bool.
enum class ValueType : std::uint8_t { Character, Numeric, Date, Logical };

// "character", "numeric", "date" or "logical", for messages.
std::string_view TypeName(ValueType type);

}  // namespace fnrk::engine::expr

#pragma once

// Comparing character values by their bytes (the machine order of Windows-1252).

#include <string_view>

namespace fnrk::engine::expr {

// The xBase rule of "=", "<", ">" and their kin: bytes are compared up to the end of the right
// side, so 'ABC' = 'AB' and anything = ''; a left side that ends first is the smaller one
// ('AB' < 'AB '). Negative, zero or positive.
int CompareToRightLength(std::string_view left, std::string_view right);

// Both sides blank-padded to the longer one: 'AB' and 'AB ' are equal.
int ComparePadded(std::string_view left, std::string_view right);

}  // namespace fnrk::engine::expr

#pragma once

// Comparing character values by their bytes (the machine order of Windows-1252).

#include <string_view>

namespace fnrk::engine::expr {

// The xBase rule of "=", "<", ">" and their kin: the left side is cut or blank-padded to the
// length of the right side before comparing, so 'ABC' = 'AB' and anything = ''. Negative, zero
// or positive.
int CompareToRightLength(std::string_view left, std::string_view right);

// Both sides blank-padded to the longer one: 'AB' and 'AB ' are equal.
int ComparePadded(std::string_view left, std::string_view right);

}  // namespace fnrk::engine::expr

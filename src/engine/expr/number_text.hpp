#pragma once

// Numbers the xBase way: numeric fields and VAL on the way in, STR on the way out, rounding
// and the modulus. None of these allocate.

#include <cstddef>
#include <string_view>

namespace fnrk::engine::expr {

// The number at the start of the text after leading blanks ("  -12.50", "12abc" -> 12); 0
// when there is none.
double ReadNumber(std::string_view text);

// Rounds half away from zero at `decimals` places (negative: to tens, hundreds, ...), forgiving
// the binary representation error of decimal fractions (2.675 rounds to 2.68).
double RoundHalfAway(double value, int decimals);

// The remainder takes the sign of the divisor (MOD, %).
double Modulo(double dividend, double divisor);

// STR(value, length, decimals) into out[0..length): right-aligned; when the number does not fit
// with its decimals, fewer decimals; when even the integer part does not fit, all "*".
void WriteStr(double value, std::size_t length, int decimals, char* out);

}  // namespace fnrk::engine::expr

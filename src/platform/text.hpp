#pragma once

// Small text routines used all over the library. Strings are UTF-8 unless a name says otherwise.

#include <string>
#include <string_view>

namespace fnrk::platform {

// Blanks (spaces only, as the classic Trim functions do) removed at both ends / the left / the
// right.
std::string Trim(std::string_view text);
std::string TrimLeft(std::string_view text);
std::string TrimRight(std::string_view text);

// Upper / lower case of UTF-8 text, accented Latin letters included ("é" -> "É", "ß" unchanged).
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);

// Case-insensitive comparison of UTF-8 text (by UpperCase).
bool EqualsNoCase(std::string_view a, std::string_view b);

// Text padded with blanks (or cut) to exactly `width` characters (UTF-8 characters, not bytes).
std::string PadRight(std::string_view text, std::size_t width);

// Number of UTF-8 characters in the text.
std::size_t CharCount(std::string_view text);

// The first `count` UTF-8 characters (Left), the last `count` (Right).
std::string LeftChars(std::string_view text, std::size_t count);
std::string RightChars(std::string_view text, std::size_t count);

// Round half to even ("banker's rounding") at `decimals` places, as the classic Round function
// does.
double RoundHalfEven(double value, int decimals);

// Formats a number with a classic Format pattern made of "0", "#" and one ".":
// "#0.00" -> "1234.50", "0#" -> "07", "#.#" -> "3.1", "0.0000". The decimal separator is always
// ".", whatever the process locale; no thousands separator; the value is rounded half away from
// zero at the pattern's decimals as the classic Format does (on the 15-digit decimal form of the
// double, so 1.005 gives "1.01"). A negative value gets a leading "-" unless it rounds to zero. A
// pattern with "." always shows the point ("#.#" of 3 is "3."). Text before and after the
// placeholders is kept ("0.00 EUR").
std::string FormatNumber(double value, std::string_view pattern);

}  // namespace fnrk::platform

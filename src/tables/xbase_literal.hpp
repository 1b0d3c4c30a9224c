#pragma once

// Text as an xBase string literal inside a search or filter expression. The language has no
// escape inside a literal, so the delimiter is chosen among those the text does not hold; this
// keeps a value (a user name, an account number) from ever changing the expression.

#include <optional>
#include <string>
#include <string_view>

namespace fnrk::tables {

// 'text', "text" or [text], the first delimiter the text does not hold; nothing when the text
// holds all of them (no literal can carry it).
std::optional<std::string> XBaseStringLiteral(std::string_view text);

}  // namespace fnrk::tables

#pragma once

// The statement dialect of the library turned into SQLite's: the "{static}" cursor hint (any
// letter case) is dropped, and LEFT( / RIGHT( become the functions registered for them (both
// are join keywords to SQLite). [Bracketed] names, TRUE and FALSE are SQLite's own already.
// Text inside quotes, brackets and comments is left alone.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fnrk::engine::sql {

inline constexpr std::string_view kLeftFunction = "fnrk_left";
inline constexpr std::string_view kRightFunction = "fnrk_right";

struct RewrittenStatement {
    std::string text;
    // For every character of `text` (and one past its end), its offset in the original.
    std::vector<std::size_t> origin;

    std::size_t OriginalOffset(std::size_t offset) const {
        return origin.empty() ? 0 : origin[offset < origin.size() ? offset : origin.size() - 1];
    }
};

RewrittenStatement RewriteDialect(std::string_view statement);

// A column name SQLite made from rewritten text, with LEFT / RIGHT spelled as written.
std::string OriginalSpelling(std::string_view columnName);

}  // namespace fnrk::engine::sql

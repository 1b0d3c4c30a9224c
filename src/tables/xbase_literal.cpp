#include "tables/xbase_literal.hpp"

namespace fnrk::tables {

std::optional<std::string> XBaseStringLiteral(std::string_view text) {
    const std::string value(text);
    if (value.find('\'') == std::string::npos) return "'" + value + "'";
    if (value.find('"') == std::string::npos) return "\"" + value + "\"";
    if (value.find(']') == std::string::npos) return "[" + value + "]";
    return std::nullopt;
}

}  // namespace fnrk::tables

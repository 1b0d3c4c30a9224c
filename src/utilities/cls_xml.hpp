#pragma once

// clsXml: text made safe to place between XML tags or inside an attribute value written by hand.

#include <string>
#include <string_view>

namespace fnrk::utilities {

class clsXml {
  public:
    // The five characters XML reserves become their predefined entities: "&" -> "&amp;",
    // "<" -> "&lt;", ">" -> "&gt;", '"' -> "&quot;", "'" -> "&apos;". An "&" that already starts
    // an entity is escaped too: the text is taken as plain text, never as markup.
    std::string Escaping(std::string_view text) const;
};

}  // namespace fnrk::utilities

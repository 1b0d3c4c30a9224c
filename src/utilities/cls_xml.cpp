#include "utilities/cls_xml.hpp"

namespace fnrk::utilities {

std::string clsXml::Escaping(std::string_view text) const {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&apos;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

}  // namespace fnrk::utilities

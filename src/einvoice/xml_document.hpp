#pragma once

// A thin layer over libxml2 for writing UBL: one document whose root declares its namespace
// prefixes, elements created with prefixed names ("cbc:ID") and appended to their parent at once.
// Text is trimmed and cleaned of what XML 1.0 cannot carry, so the file is well-formed whatever
// the caller's data holds.

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <libxml/tree.h>

namespace fnrk::einvoice {

// Text without invalid UTF-8 and without the control characters XML 1.0 forbids.
std::string XmlSafeText(std::string_view text);

class XmlElement {
  public:
    explicit XmlElement(xmlNodePtr node) : node_(node) {}

    // Appends a child "prefix:name" holding the trimmed text (no text node when empty).
    XmlElement Add(std::string_view qualifiedName, std::string_view text = {});
    // Same, with the text as given, blanks around it kept.
    XmlElement AddVerbatim(std::string_view qualifiedName, std::string_view text);
    // Like Add, but leaves the element out when the trimmed text is empty.
    void AddIfNotEmpty(std::string_view qualifiedName, std::string_view text);
    XmlElement& Attribute(std::string_view name, std::string_view value);
    // The bytes as base64 text content.
    void SetBase64(const std::string& bytes);

  private:
    xmlNodePtr node_;
};

class XmlDocument {
  public:
    // Namespace declarations in the order they appear on the root; an empty prefix is the default
    // namespace, which the root element itself is in.
    using Namespaces = std::vector<std::pair<std::string, std::string>>;
    XmlDocument(std::string_view rootName, const Namespaces& namespaces);
    ~XmlDocument();
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    XmlElement Root() { return XmlElement(root_); }
    // UTF-8 with the XML declaration; false when the file cannot be written.
    bool Save(const std::filesystem::path& path) const;

  private:
    xmlDocPtr doc_;
    xmlNodePtr root_;
};

}  // namespace fnrk::einvoice

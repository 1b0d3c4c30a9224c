#pragma once

// Reads back a written UBL file and answers XPath questions on it. The prefixes cbc and cac are
// the UBL ones; "doc" is the root's own namespace, whichever document it is.

#include <filesystem>
#include <string>
#include <vector>

#include <libxml/tree.h>
#include <libxml/xpath.h>

namespace fnrk::testing {

class XmlProbe {
  public:
    explicit XmlProbe(const std::filesystem::path& file);
    ~XmlProbe();
    XmlProbe(const XmlProbe&) = delete;
    XmlProbe& operator=(const XmlProbe&) = delete;

    bool parsed() const { return doc_ != nullptr; }
    // Text of the first node found, "" when none.
    std::string Text(const std::string& xpath) const;
    int Count(const std::string& xpath) const;
    // An XPath expression ("sum(//cbc:Amount)") or the first node found, as a number; NaN when
    // it is not one.
    double Number(const std::string& xpath) const;
    // Qualified names of the element children of the first node found, in document order.
    std::vector<std::string> ChildNames(const std::string& xpath) const;
    // Names of the attributes of the first element found, in document order.
    std::vector<std::string> AttributeNames(const std::string& xpath) const;
    // "prefix=uri" of each namespace declared on the root, in order ("=uri" for the default).
    std::vector<std::string> RootNamespaces() const;

  private:
    xmlNodePtr First(const std::string& xpath) const;
    xmlXPathObjectPtr Evaluate(const std::string& xpath) const;

    xmlDocPtr doc_ = nullptr;
    xmlXPathContextPtr context_ = nullptr;
};

}  // namespace fnrk::testing

#pragma once

// Parsing a written document back with libxml2 and comparing it, element by element, with the
// tree a test expects.

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace fnrk::testing {

struct ExpectedElement {
    std::string name;  // as written, prefix included
    std::string uri;   // its namespace
    std::vector<std::pair<std::string, std::string>> attributes = {};  // in document order
    std::string text = {};                                             // text of a leaf
    std::vector<ExpectedElement> children = {};
};

struct XmlDocFree {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
using ParsedXml = std::unique_ptr<xmlDoc, XmlDocFree>;

// Parses with namespace checks; nullptr when the text is not namespace-well-formed XML.
ParsedXml ParseXml(const std::string& text);

// Describes every difference between the element and the expectation (empty when none).
std::vector<std::string> CompareElement(const xmlNode* element, const ExpectedElement& expected);

// Child elements in document order.
std::vector<const xmlNode*> ChildElements(const xmlNode* element);

std::string QualifiedName(const xmlNode* element);

}  // namespace fnrk::testing

#include "xml_expectation.hpp"

#include <libxml/parser.h>

namespace fnrk::testing {
namespace {

std::string Text(const xmlChar* text) {
    return text == nullptr ? std::string() : reinterpret_cast<const char*>(text);
}

void RecordError(void* errors, xmlError* error) {
    static_cast<std::vector<std::string>*>(errors)->push_back(
        Text(reinterpret_cast<const xmlChar*>(error->message)));
}

void Compare(const xmlNode* element, const ExpectedElement& expected, const std::string& path,
             std::vector<std::string>& differences) {
    const std::string here = path + "/" + expected.name;
    if (QualifiedName(element) != expected.name) {
        differences.push_back(here + ": found " + QualifiedName(element));
        return;
    }
    const std::string uri = element->ns == nullptr ? "" : Text(element->ns->href);
    if (uri != expected.uri) differences.push_back(here + ": namespace " + uri);

    std::vector<std::pair<std::string, std::string>> attributes;
    for (const xmlAttr* attribute = element->properties; attribute != nullptr;
         attribute = attribute->next) {
        xmlChar* value = xmlNodeListGetString(element->doc, attribute->children, 1);
        attributes.emplace_back(Text(attribute->name), Text(value));
        xmlFree(value);
    }
    if (attributes != expected.attributes) {
        std::string found;
        for (const auto& [name, value] : attributes) found += " " + name + "=\"" + value + "\"";
        differences.push_back(here + ": attributes" + found);
    }

    const auto children = ChildElements(element);
    if (children.empty()) {
        xmlChar* content = xmlNodeGetContent(element);
        const std::string text = Text(content);
        xmlFree(content);
        if (text != expected.text) differences.push_back(here + ": text \"" + text + "\"");
    }
    if (children.size() != expected.children.size()) {
        std::string found;
        for (const xmlNode* child : children) found += " " + QualifiedName(child);
        differences.push_back(here + ": children" + found);
        return;
    }
    for (std::size_t i = 0; i < children.size(); ++i)
        Compare(children[i], expected.children[i], here, differences);
}

}  // namespace

ParsedXml ParseXml(const std::string& text) {
    std::vector<std::string> errors;
    xmlSetStructuredErrorFunc(&errors, reinterpret_cast<xmlStructuredErrorFunc>(&RecordError));
    ParsedXml doc(xmlReadMemory(text.data(), static_cast<int>(text.size()), "declaration.xml",
                                nullptr, XML_PARSE_NONET | XML_PARSE_NOBLANKS));
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    if (!errors.empty()) doc.reset();
    return doc;
}

std::vector<std::string> CompareElement(const xmlNode* element, const ExpectedElement& expected) {
    std::vector<std::string> differences;
    if (element == nullptr)
        differences.push_back("no element where " + expected.name + " was expected");
    else
        Compare(element, expected, "", differences);
    return differences;
}

std::vector<const xmlNode*> ChildElements(const xmlNode* element) {
    std::vector<const xmlNode*> children;
    for (const xmlNode* child = element->children; child != nullptr; child = child->next)
        if (child->type == XML_ELEMENT_NODE) children.push_back(child);
    return children;
}

std::string QualifiedName(const xmlNode* element) {
    std::string name = Text(element->name);
    if (element->ns != nullptr && element->ns->prefix != nullptr)
        name = Text(element->ns->prefix) + ":" + name;
    return name;
}

}  // namespace fnrk::testing

#include "xml_probe.hpp"

#include <libxml/parser.h>
#include <libxml/xpathInternals.h>

namespace fnrk::testing {
namespace {

const xmlChar* Chars(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

std::string QualifiedName(xmlNodePtr node) {
    std::string name = reinterpret_cast<const char*>(node->name);
    if (node->ns != nullptr && node->ns->prefix != nullptr) {
        name = std::string(reinterpret_cast<const char*>(node->ns->prefix)) + ":" + name;
    }
    return name;
}

}  // namespace

XmlProbe::XmlProbe(const std::filesystem::path& file) {
    doc_ = xmlReadFile(file.string().c_str(), nullptr, XML_PARSE_NONET);
    if (doc_ == nullptr) return;
    context_ = xmlXPathNewContext(doc_);
    xmlXPathRegisterNs(
        context_, Chars("cbc"),
        Chars("urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2"));
    xmlXPathRegisterNs(
        context_, Chars("cac"),
        Chars("urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2"));
    xmlNodePtr root = xmlDocGetRootElement(doc_);
    if (root != nullptr && root->ns != nullptr) {
        xmlXPathRegisterNs(context_, Chars("doc"), root->ns->href);
    }
}

XmlProbe::~XmlProbe() {
    if (context_ != nullptr) xmlXPathFreeContext(context_);
    if (doc_ != nullptr) xmlFreeDoc(doc_);
}

xmlXPathObjectPtr XmlProbe::Evaluate(const std::string& xpath) const {
    if (context_ == nullptr) return nullptr;
    return xmlXPathEvalExpression(Chars(xpath.c_str()), context_);
}

xmlNodePtr XmlProbe::First(const std::string& xpath) const {
    xmlXPathObjectPtr result = Evaluate(xpath);
    xmlNodePtr node = nullptr;
    if (result != nullptr && result->nodesetval != nullptr && result->nodesetval->nodeNr > 0) {
        node = result->nodesetval->nodeTab[0];
    }
    xmlXPathFreeObject(result);
    return node;
}

std::string XmlProbe::Text(const std::string& xpath) const {
    xmlNodePtr node = First(xpath);
    if (node == nullptr) return {};
    xmlChar* content = xmlNodeGetContent(node);
    std::string text = content == nullptr ? "" : reinterpret_cast<const char*>(content);
    xmlFree(content);
    return text;
}

double XmlProbe::Number(const std::string& xpath) const {
    xmlXPathObjectPtr result = Evaluate(xpath);
    const double value = result != nullptr ? xmlXPathCastToNumber(result) : 0.0;
    xmlXPathFreeObject(result);
    return value;
}

int XmlProbe::Count(const std::string& xpath) const {
    xmlXPathObjectPtr result = Evaluate(xpath);
    const int count =
        result != nullptr && result->nodesetval != nullptr ? result->nodesetval->nodeNr : 0;
    xmlXPathFreeObject(result);
    return count;
}

std::vector<std::string> XmlProbe::ChildNames(const std::string& xpath) const {
    std::vector<std::string> names;
    xmlNodePtr node = First(xpath);
    if (node == nullptr) return names;
    for (xmlNodePtr child = node->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) names.push_back(QualifiedName(child));
    }
    return names;
}

std::vector<std::string> XmlProbe::AttributeNames(const std::string& xpath) const {
    std::vector<std::string> names;
    xmlNodePtr node = First(xpath);
    if (node == nullptr) return names;
    for (xmlAttrPtr attribute = node->properties; attribute != nullptr;
         attribute = attribute->next) {
        names.emplace_back(reinterpret_cast<const char*>(attribute->name));
    }
    return names;
}

std::vector<std::string> XmlProbe::RootNamespaces() const {
    std::vector<std::string> declarations;
    xmlNodePtr root = doc_ == nullptr ? nullptr : xmlDocGetRootElement(doc_);
    if (root == nullptr) return declarations;
    for (xmlNsPtr ns = root->nsDef; ns != nullptr; ns = ns->next) {
        const std::string prefix =
            ns->prefix == nullptr ? "" : reinterpret_cast<const char*>(ns->prefix);
        declarations.push_back(prefix + "=" + reinterpret_cast<const char*>(ns->href));
    }
    return declarations;
}

}  // namespace fnrk::testing

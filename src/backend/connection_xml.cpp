#include "backend/connection_xml.hpp"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>

namespace fnrk::backend {

namespace {

struct DocumentFree {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};

std::string ElementText(xmlNode* element) {
    xmlChar* content = xmlNodeGetContent(element);
    std::string text = content ? reinterpret_cast<const char*>(content) : "";
    xmlFree(content);
    return text;
}

}  // namespace

bool ConnectionXml::Load(std::string_view path) {
    connectionString_.clear();
    loadError_.clear();
    std::unique_ptr<xmlDoc, DocumentFree> document(
        xmlReadFile(std::string(path).c_str(), nullptr,
                    XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
    if (!document) {
        loadError_ = "cannot read " + std::string(path);
        return false;
    }
    xmlNode* root = xmlDocGetRootElement(document.get());
    if (!root || xmlStrcmp(root->name, BAD_CAST "connection") != 0) {
        loadError_ = "no <connection> element in " + std::string(path);
        return false;
    }
    std::string joined;
    for (xmlNode* child = root->children; child; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) continue;
        std::string value = ElementText(child);
        if (value.find(';') != std::string::npos || value.find('<') != std::string::npos) {
            loadError_ = "value of <" + std::string(reinterpret_cast<const char*>(child->name)) +
                         "> may not hold ';' or '<'";
            return false;
        }
        if (!joined.empty()) joined += ';';
        joined += reinterpret_cast<const char*>(child->name);
        joined += '=';
        joined += value;
    }
    if (joined.empty()) {
        loadError_ = "empty <connection> in " + std::string(path);
        return false;
    }
    connectionString_ = std::move(joined);
    return true;
}

}  // namespace fnrk::backend

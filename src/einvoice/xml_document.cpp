#include "einvoice/xml_document.hpp"

#include "platform/base64.hpp"
#include "platform/text.hpp"
#include "platform/utf8.hpp"

namespace fnrk::einvoice {
namespace {

const xmlChar* Chars(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

bool AllowedInXml(char32_t cp) {
    if (cp < 0x20) return cp == 0x09 || cp == 0x0A || cp == 0x0D;
    return cp != 0xFFFE && cp != 0xFFFF;
}

}  // namespace

std::string XmlSafeText(std::string_view text) {
    std::string safe;
    safe.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        const std::size_t start = pos;
        char32_t cp = 0;
        if (platform::DecodeUtf8CodePoint(text, pos, cp) && AllowedInXml(cp)) {
            safe.append(text.substr(start, pos - start));
        }
    }
    return safe;
}

XmlElement XmlElement::Add(std::string_view qualifiedName, std::string_view text) {
    return AddVerbatim(qualifiedName, platform::Trim(text));
}

XmlElement XmlElement::AddVerbatim(std::string_view qualifiedName, std::string_view text) {
    const std::string name(qualifiedName);
    const auto colon = name.find(':');
    xmlNsPtr ns = nullptr;
    std::string localName = name;
    if (colon != std::string::npos) {
        ns = xmlSearchNs(node_->doc, node_, Chars(name.substr(0, colon)));
        if (ns != nullptr) localName = name.substr(colon + 1);
    }
    xmlNodePtr child = xmlNewDocNode(node_->doc, ns, Chars(localName), nullptr);
    xmlAddChild(node_, child);
    const std::string content = XmlSafeText(text);
    if (!content.empty()) xmlNodeAddContent(child, Chars(content));
    return XmlElement(child);
}

void XmlElement::AddIfNotEmpty(std::string_view qualifiedName, std::string_view text) {
    if (!platform::Trim(text).empty()) Add(qualifiedName, text);
}

XmlElement& XmlElement::Attribute(std::string_view name, std::string_view value) {
    xmlNewProp(node_, Chars(std::string(name)), Chars(XmlSafeText(value)));
    return *this;
}

void XmlElement::SetBase64(const std::string& bytes) {
    xmlNodeAddContent(node_, Chars(platform::Base64Encode(bytes)));
}

XmlDocument::XmlDocument(std::string_view rootName, const Namespaces& namespaces)
    : doc_(xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"))) {
    root_ = xmlNewDocNode(doc_, nullptr, Chars(std::string(rootName)), nullptr);
    xmlDocSetRootElement(doc_, root_);
    for (const auto& [prefix, uri] : namespaces) {
        xmlNsPtr ns = xmlNewNs(root_, Chars(uri), prefix.empty() ? nullptr : Chars(prefix));
        if (prefix.empty()) xmlSetNs(root_, ns);
    }
}

XmlDocument::~XmlDocument() {
    xmlFreeDoc(doc_);
}

bool XmlDocument::Save(const std::filesystem::path& path) const {
    return xmlSaveFormatFileEnc(path.string().c_str(), doc_, "UTF-8", 1) >= 0;
}

}  // namespace fnrk::einvoice

#include "declarations/declaration_document.hpp"

#include <fstream>
#include <system_error>

namespace fnrk::declarations {
namespace {

const xmlChar* Xml(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

struct SplitName {
    bool prefixed = false;
    std::string prefix;
    std::string local;

    const xmlChar* PrefixOrNull() const { return prefixed ? Xml(prefix) : nullptr; }
};

SplitName Split(std::string_view qualifiedName) {
    auto colon = qualifiedName.find(':');
    if (colon == std::string_view::npos) return {false, "", std::string(qualifiedName)};
    return {true, std::string(qualifiedName.substr(0, colon)),
            std::string(qualifiedName.substr(colon + 1))};
}

std::string QualifiedName(const xmlNode* node) {
    std::string name = reinterpret_cast<const char*>(node->name);
    if (node->ns != nullptr && node->ns->prefix != nullptr)
        name = std::string(reinterpret_cast<const char*>(node->ns->prefix)) + ":" + name;
    return name;
}

void FindLast(xmlNode* node, const std::string& name, xmlNode*& last) {
    for (; node != nullptr; node = node->next) {
        if (node->type != XML_ELEMENT_NODE) continue;
        if (QualifiedName(node) == name) last = node;
        FindLast(node->children, name, last);
    }
}

}  // namespace

DeclarationDocument::DeclarationDocument() : doc_(xmlNewDoc(BAD_CAST "1.0")) {
    if (!doc_) throw std::bad_alloc();
}

xmlNode* DeclarationDocument::CreateRoot(std::string_view qualifiedName,
                                         std::span<const NamespaceBinding> namespaces) {
    if (root() != nullptr) throw DeclarationError("the document already holds a consignment");
    const SplitName name = Split(qualifiedName);
    xmlNode* element = xmlNewDocNode(doc_.get(), nullptr, Xml(name.local), nullptr);
    xmlDocSetRootElement(doc_.get(), element);
    for (const auto& [prefix, uri] : namespaces) DeclareNamespace(element, prefix, uri);
    xmlSetNs(element, xmlSearchNs(doc_.get(), element, name.PrefixOrNull()));
    return element;
}

xmlNode* DeclarationDocument::LastElement(std::string_view qualifiedName,
                                          std::string_view purpose) const {
    xmlNode* last = nullptr;
    FindLast(root(), std::string(qualifiedName), last);
    if (last == nullptr)
        throw DeclarationError("no " + std::string(qualifiedName) + " element to append " +
                               std::string(purpose) + " to");
    return last;
}

std::string DeclarationDocument::Serialize() const {
    xmlChar* text = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(doc_.get(), &text, &size, "UTF-8", 1);
    std::string result(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
    xmlFree(text);
    return result;
}

bool DeclarationDocument::Save(const std::filesystem::path& file) const {
    const std::string text = Serialize();
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        if (out && out.write(text.data(), static_cast<std::streamsize>(text.size())) && out.flush())
            return true;
    }
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    return false;
}

void DeclareNamespace(xmlNode* element, std::string_view prefix, std::string_view uri) {
    const std::string prefixText(prefix);
    xmlNs* ns =
        xmlNewNs(element, Xml(std::string(uri)), prefix.empty() ? nullptr : Xml(prefixText));
    if (ns == nullptr)
        throw std::logic_error("prefix \"" + prefixText + "\" declared twice on one element");
}

xmlNode* AppendElement(xmlNode* parent, std::string_view qualifiedName,
                       std::string_view uriIfUnbound) {
    const SplitName name = Split(qualifiedName);
    xmlNode* element = xmlNewChild(parent, nullptr, Xml(name.local), nullptr);
    xmlNs* ns = xmlSearchNs(parent->doc, parent, name.PrefixOrNull());
    if (ns == nullptr && !uriIfUnbound.empty()) {
        DeclareNamespace(element, name.prefix, uriIfUnbound);
        ns = element->nsDef;
    }
    if (ns == nullptr && name.prefixed)
        throw std::logic_error("prefix of " + std::string(qualifiedName) + " is not declared");
    xmlSetNs(element, ns);
    return element;
}

xmlNode* AppendTextElement(xmlNode* parent, std::string_view qualifiedName, std::string_view text,
                           std::string_view uriIfUnbound) {
    xmlNode* element = AppendElement(parent, qualifiedName, uriIfUnbound);
    xmlNodeAddContentLen(element, reinterpret_cast<const xmlChar*>(text.data()),
                         static_cast<int>(text.size()));
    return element;
}

void SetAttribute(xmlNode* element, std::string_view name, std::string_view value) {
    xmlSetProp(element, Xml(std::string(name)), Xml(std::string(value)));
}

}  // namespace fnrk::declarations

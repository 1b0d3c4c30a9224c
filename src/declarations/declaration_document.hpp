#pragma once

// The XML document of an OSS or MOSS consignment, held by the caller between the writer calls
// that add its sections, and the few DOM steps those writers share.

#include <libxml/tree.h>

#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace fnrk::declarations {

// A writer called out of document order (a row before its member state, a second header, ...).
class DeclarationError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A prefix (empty for the default namespace) and the URI it stands for.
using NamespaceBinding = std::pair<std::string_view, std::string_view>;

class DeclarationDocument {
  public:
    DeclarationDocument();

    xmlDoc* doc() const { return doc_.get(); }
    xmlNode* root() const { return xmlDocGetRootElement(doc_.get()); }

    // Starts the consignment with its root element declaring the namespaces, in that order, as
    // prefix and URI (an empty prefix for the default namespace); DeclarationError when the
    // document has a root already.
    xmlNode* CreateRoot(std::string_view qualifiedName,
                        std::span<const NamespaceBinding> namespaces);

    // The last element of that name ("ns0:OSSDeclaration") in document order;
    // DeclarationError naming it and `purpose` when there is none.
    xmlNode* LastElement(std::string_view qualifiedName, std::string_view purpose) const;

    // The document as UTF-8 text, with its XML declaration.
    std::string Serialize() const;

    // Writes the document to a file; false when the file cannot be written (none is left).
    bool Save(const std::filesystem::path& file) const;

  private:
    struct Free {
        void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
    };
    std::unique_ptr<xmlDoc, Free> doc_;
};

// Binds a prefix (empty for the default namespace) on an element.
void DeclareNamespace(xmlNode* element, std::string_view prefix, std::string_view uri);

// Appends an element named "prefix:local" or "local" in the namespace its prefix is bound to.
// A prefix not bound in scope is declared on the new element with `uriIfUnbound`; without one
// it is a programming fault (std::logic_error).
xmlNode* AppendElement(xmlNode* parent, std::string_view qualifiedName,
                       std::string_view uriIfUnbound = {});

// The same with a text content (escaped as needed).
xmlNode* AppendTextElement(xmlNode* parent, std::string_view qualifiedName, std::string_view text,
                           std::string_view uriIfUnbound = {});

void SetAttribute(xmlNode* element, std::string_view name, std::string_view value);

}  // namespace fnrk::declarations

#pragma once

// Look-ups answered from values held in memory: the command line fills them from its JSON input,
// the demo from its sample dossier. Keys are matched as the table searches match them: parameter
// keys and country codes trimmed and upper-cased, VAT codes trimmed. What is not held here is
// asked of the fallback, when one is set (the command line's dossier tables).

#include <map>
#include <string>

#include "einvoice/invoice_lookups.hpp"

namespace fnrk::einvoice {

class FixedInvoiceLookups : public InvoiceLookups {
  public:
    void SetParam(std::string_view key, std::string_view value);
    void SetVatCategory(std::string_view vatCode, std::string_view category);
    void SetEasScheme(std::string_view countryCode, std::string_view scheme);
    // `fallback` must outlive this object; nullptr: none.
    void SetFallback(const InvoiceLookups* fallback) { fallback_ = fallback; }

    std::string ParamValue(std::string_view key) const override;
    std::string UblVatCategory(std::string_view vatCode) const override;
    std::string EasScheme(std::string_view countryCode) const override;

  private:
    template <typename Ask>
    std::string Find(const std::map<std::string, std::string>& values, const std::string& key,
                     Ask askFallback) const;

    std::map<std::string, std::string> params_;
    std::map<std::string, std::string> vatCategories_;
    std::map<std::string, std::string> easSchemes_;
    const InvoiceLookups* fallback_ = nullptr;
};

}  // namespace fnrk::einvoice

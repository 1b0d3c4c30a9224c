#pragma once

// Look-ups answered from values held in memory: the command line fills them from its JSON input,
// the demo from its sample dossier. Keys are matched as the table searches match them: parameter
// keys and country codes trimmed and upper-cased, VAT codes trimmed.

#include <map>
#include <string>

#include "einvoice/invoice_lookups.hpp"

namespace fnrk::einvoice {

class FixedInvoiceLookups : public InvoiceLookups {
  public:
    void SetParam(std::string_view key, std::string_view value);
    void SetVatCategory(std::string_view vatCode, std::string_view category);
    void SetEasScheme(std::string_view countryCode, std::string_view scheme);

    std::string ParamValue(std::string_view key) const override;
    std::string UblVatCategory(std::string_view vatCode) const override;
    std::string EasScheme(std::string_view countryCode) const override;

  private:
    std::map<std::string, std::string> params_;
    std::map<std::string, std::string> vatCategories_;
    std::map<std::string, std::string> easSchemes_;
};

}  // namespace fnrk::einvoice

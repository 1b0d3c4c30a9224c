#pragma once

// The invoice writer's look-ups answered from the company's own tables, through the table
// access object: parameters from "PARAM", tax categories from the VAT-code table ("CODEVAT",
// tag "SEEKUBLVAT", field "TAXCODE"), electronic-address schemes from the country table
// ("COUNTRY", tag "SEEKEAS", field "XMLCODE"). A table that is not open is opened quietly;
// what cannot be found answers empty.

#include "company/soc_param_col_class_api.hpp"
#include "einvoice/invoice_lookups.hpp"

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::einvoice {

class TableInvoiceLookups final : public InvoiceLookups {
  public:
    // `tables` must outlive this object.
    explicit TableInvoiceLookups(tables::AdsClass& tables) : tables_(tables), params_(tables) {}

    std::string ParamValue(std::string_view key) const override;
    std::string UblVatCategory(std::string_view vatCode) const override;
    std::string EasScheme(std::string_view countryCode) const override;

  private:
    // Field `field` (trimmed) of the record of `alias` found by `key` in tag `tag`; the caller's
    // current alias and the table's order are left as they were.
    std::string SeekField(std::string_view alias, std::string_view tag, std::string_view key,
                          std::string_view field) const;

    tables::AdsClass& tables_;
    mutable company::SocParamColClassApi params_;
};

}  // namespace fnrk::einvoice

#pragma once

// What the invoice writer reads from the company's tables: parameters, the UN/EDIFACT 5305 tax
// category of a VAT code and the electronic-address scheme of a country. Each answers empty text
// when the table, the record or the key is missing.

#include <string>
#include <string_view>

namespace fnrk::einvoice {

class InvoiceLookups {
  public:
    virtual ~InvoiceLookups() = default;

    // Full value of a company parameter ("INVNBDECQT", "INVNBDEC", "PEPPOLEmailSender", ...).
    virtual std::string ParamValue(std::string_view key) const = 0;

    // Field "TAXCODE" of the VAT-code table found through "SEEKUBLVAT" (e.g. "S", "E", "AE").
    virtual std::string UblVatCategory(std::string_view vatCode) const = 0;

    // Field "XMLCODE" of the country table found through "SEEKEAS" (e.g. "0208").
    virtual std::string EasScheme(std::string_view countryCode) const = 0;
};

}  // namespace fnrk::einvoice

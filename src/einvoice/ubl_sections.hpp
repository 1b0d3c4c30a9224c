#pragma once

// Pieces of sections that several method families of clsUBL write alike.

#include <string_view>

#include "einvoice/ubl_values.hpp"
#include "einvoice/xml_document.hpp"

namespace fnrk::einvoice {

struct TaxCategoryValues {
    std::string_view id;        // UN/EDIFACT 5305 letter
    std::string_view idScheme;  // "schemeID" of the letter; none when empty
    std::string_view name;      // left out when empty
    double rate = 0.0;
    std::string_view exemptionReason;      // left out when empty
    std::string_view exemptionReasonCode;  // left out when empty
};

// A tax category of the UBL 2.1 profiles ("cac:TaxCategory", "cac:ClassifiedTaxCategory"):
// ID, Name, Percent (none for "O", not subject to VAT, which has no rate), TaxExemptionReasonCode,
// TaxExemptionReason and the "VAT" tax scheme.
void AddTaxCategory(XmlElement parent, std::string_view elementName,
                    const TaxCategoryValues& values, const NumberWriter& numbers);

// "cac:PayeeFinancialAccount" with the IBAN and the BIC under "cac:FinancialInstitutionBranch" /
// "cac:FinancialInstitution" (left out when the BIC is empty, unless `withEmptyBic`); both
// identifiers carry the attribute `schemeAttribute` ("schemeName" or "schemeID") naming their
// scheme.
void AddPayeeAccount(XmlElement means, std::string_view iban, std::string_view bic,
                     std::string_view schemeAttribute, bool withEmptyBic);

}  // namespace fnrk::einvoice

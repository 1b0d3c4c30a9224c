#pragma once

// A coherent sample sales document of a Belgian company: three VAT rates, an exempt line, a line
// discount, a trade discount, a transport charge and a 2% cash discount. The demo writes it, and
// the checks of the writer validate it against the PEPPOL rules.

#include <string>

#include "einvoice/fixed_invoice_lookups.hpp"
#include "einvoice/sales_document.hpp"

namespace fnrk::einvoice {

SalesDocument SampleSalesDocument(bool isCreditNote, const std::string& attachmentPath);

// The parameters and table answers of the sample company.
FixedInvoiceLookups SampleLookups();

}  // namespace fnrk::einvoice

#pragma once

// The values the sales module hands to the section methods of clsUBL for a party, an invoice
// line and a row of the sub-total table.

#include <string>

namespace fnrk::einvoice {

struct UblParty {
    std::string vatNumber;  // with its two-letter country prefix; "NA" for a customer without one
    std::string name;
    std::string street;
    std::string city;
    std::string postalCode;
    std::string countryCode;
    std::string countryName;
    std::string telephone;
    std::string fax;
    std::string email;
};

struct UblLine {
    std::string lineNumber;
    std::string note;
    double quantity = 0.0;
    double lineAmount = 0.0;  // net, after the line discount
    double discountPercent = 0.0;
    double discountAmount = 0.0;  // 0: the line has no discount
    std::string vatCode;
    double vatRate = 0.0;
    double taxAmount = 0.0;
    std::string exemptionReason;
    std::string itemCode;
    std::string itemName;  // PEPPOL BIS 3; the first description line when empty
    double unitPrice = 0.0;
    std::string exemptionReasonCode;  // such as "VATEX-EU-IC"; written only when given
};

// One row per VAT rate. The writers read the amounts as rate (percent), taxable amount and tax
// amount, the codes as VAT code, tax exemption reason and tax exemption reason code.
struct SubTotalRow {
    double first = 0.0;
    double second = 0.0;
    double third = 0.0;
    std::string firstCode;
    std::string secondCode;
    std::string thirdCode;
};

}  // namespace fnrk::einvoice

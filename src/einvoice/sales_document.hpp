#pragma once

// One sales document as the sales module holds it, and its writing through clsUBL in the order
// the sales module calls the sections, for each of the three profiles.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "einvoice/invoice_lookups.hpp"
#include "einvoice/ubl_records.hpp"

namespace fnrk::einvoice {

enum class InvoiceProfile { Basic, EfffPeppol, PeppolV3 };

// The format words of the façade: "EFFFPEPPOL" and "PEPPOLV3" for the two newer families, "UBL"
// and "EFFF" for the basic one (letter case aside); any other word is no profile.
std::optional<InvoiceProfile> ProfileFromFormatWord(std::string_view word);

struct SalesAllowance {
    bool isCharge = false;
    // An allowance on the VAT base (trade or cash discount of one VAT rate); the newer profiles
    // write its reason themselves.
    bool onVatBase = false;
    bool isCashDiscount = false;
    std::string reason;
    double amount = 0.0;
    double percent = 0.0;
    std::string vatCode;
    double vatRate = 0.0;
};

struct SalesVatRow {
    double rate = 0.0;
    double taxable = 0.0;
    double tax = 0.0;
    std::string vatCode;
    std::string exemptionReason;
    std::string exemptionReasonCode;
};

struct SalesLine {
    UblLine values;
    std::vector<std::string> description;
};

struct SalesDocument {
    std::string number;
    bool isCreditNote = false;
    std::string issueDate;  // "DD/MM/YYYY"
    std::string dueDate;
    std::string taxPointDate;
    std::string currency = "EUR";
    std::string note;
    std::string orderReference;
    std::string billingReference;  // the invoice a credit note corrects
    std::string attachment;        // path of the PDF image of the document
    // Where and when the goods went (an intra-community supply must say it), "DD/MM/YYYY".
    std::string deliveryDate;
    std::string deliverToCountry;
    std::string invoicePeriodStart;
    std::string invoicePeriodEnd;

    UblParty supplier;
    UblParty customer;
    bool customerWithoutVat = false;
    std::string customerPeppolId;
    std::string customerPeppolScheme;

    std::string structuredReference;
    std::string communication;
    std::string iban;
    std::string bic;
    std::string paymentTermsNote;
    double discountPercent = 0.0;
    std::string discountDays;
    double discountAmount = 0.0;
    std::string discountEndDate;

    std::vector<SalesAllowance> allowances;
    std::vector<SalesVatRow> vatRows;
    double taxTotal = 0.0;
    double cashDiscount = 0.0;
    double lineTotal = 0.0;
    double totalWithoutTax = 0.0;
    double totalWithTax = 0.0;
    double allowanceTotal = 0.0;
    double chargeTotal = 0.0;
    double prepaidAmount = 0.0;
    double payableAmount = 0.0;
    std::vector<SalesLine> lines;
};

// Writes the document to `path`; false (and no file) when a section is refused or the file
// cannot be saved. A document with a VAT row not subject to VAT ("O") shows neither party's VAT
// number, as that category requires.
bool WriteSalesDocument(const SalesDocument& document, InvoiceProfile profile,
                        const InvoiceLookups& lookups, const std::string& path);

}  // namespace fnrk::einvoice

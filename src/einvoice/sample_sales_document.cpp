#include "einvoice/sample_sales_document.hpp"

#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

SalesLine Line(std::string number, double quantity, double price, double discount,
               std::string vatCode, double rate, std::string name, std::string description) {
    SalesLine line;
    line.values.lineNumber = std::move(number);
    line.values.quantity = quantity;
    line.values.unitPrice = price;
    line.values.discountAmount = discount;
    line.values.discountPercent = discount == 0.0 ? 0.0 : discount * 100.0 / (quantity * price);
    line.values.lineAmount = quantity * price - discount;
    line.values.vatCode = std::move(vatCode);
    line.values.vatRate = rate;
    line.values.itemCode = "ART-" + line.values.lineNumber;
    line.values.itemName = std::move(name);
    line.description = {std::move(description)};
    return line;
}

SalesAllowance CashDiscountOn(std::string vatCode, double rate, double amount) {
    SalesAllowance allowance;
    allowance.onVatBase = true;
    allowance.isCashDiscount = true;
    allowance.amount = amount;
    allowance.percent = 2.0;
    allowance.vatCode = std::move(vatCode);
    allowance.vatRate = rate;
    return allowance;
}

}  // namespace

SalesDocument SampleSalesDocument(bool isCreditNote, const std::string& attachmentPath) {
    SalesDocument d;
    d.number = isCreditNote ? "CN2025-0007" : "INV2025-0042";
    d.isCreditNote = isCreditNote;
    d.issueDate = "14/03/2025";
    d.dueDate = "13/04/2025";
    d.taxPointDate = "14/03/2025";
    d.note = "Thank you for your order & your trust <3";
    d.orderReference = "PO-7781";
    if (isCreditNote) d.billingReference = "INV2025-0042";
    d.attachment = attachmentPath;

    d.supplier = {"BE0477472701",
                  "Atelier Fennrick SPRL",
                  "Rue de l'Été 12",
                  "Liège",
                  "4000",
                  "BE",
                  "Belgique",
                  "+32 4 123 45 67",
                  "",
                  "sales@atelier.example"};
    d.customer = {"BE0812345603",
                  "Brasserie Ölbaum NV",
                  "Kerkstraat 5",
                  "Gent",
                  "9000",
                  "BE",
                  "België",
                  "+32 9 765 43 21",
                  "",
                  "ap@olbaum.example"};

    d.structuredReference = "+++090/9337/55493+++";
    d.communication = "Invoice " + d.number;
    d.iban = "BE68 5390 0754 7034";
    d.bic = "GKCCBEBB";
    d.paymentTermsNote = "30 days";
    d.discountPercent = 2.0;
    d.discountDays = "8";
    d.discountAmount = 19.00;

    SalesAllowance trade;
    trade.onVatBase = true;
    trade.amount = 50.00;
    trade.percent = 10.0;
    trade.vatCode = "V21";
    trade.vatRate = 21.0;
    SalesAllowance transport;
    transport.isCharge = true;
    transport.reason = "Transport";
    transport.amount = 20.00;
    transport.vatCode = "V21";
    transport.vatRate = 21.0;
    // The cash discount lowers each VAT base and comes back as an exempt charge, so that the
    // amount payable stays the full one.
    SalesAllowance cashBack;
    cashBack.isCharge = true;
    cashBack.reason = "Cash Discount";
    cashBack.amount = 19.00;
    cashBack.vatCode = "V0";
    d.allowances = {trade,
                    transport,
                    CashDiscountOn("V21", 21.0, 9.40),
                    CashDiscountOn("V12", 12.0, 7.20),
                    CashDiscountOn("V6", 6.0, 2.40),
                    cashBack};

    // The exempt row's own 200.00; the cash discount is added to it by the tax total.
    d.vatRows = {{21.0, 460.60, 96.73, "V21", "", ""},
                 {12.0, 352.80, 42.34, "V12", "", ""},
                 {6.0, 117.60, 7.06, "V6", "", ""},
                 {0.0, 200.00, 0.0, "V0", "TAXEXEMPTIONREASON", ""}};
    d.taxTotal = 146.13;
    d.cashDiscount = 19.00;
    d.lineTotal = 1180.00;
    d.allowanceTotal = 69.00;
    d.chargeTotal = 39.00;
    d.totalWithoutTax = 1150.00;
    d.totalWithTax = 1296.13;
    d.payableAmount = 1296.13;

    d.lines = {Line("1", 10, 50.00, 0.0, "V21", 21.0, "Oak shelf", "Oak shelf, 80 cm"),
               Line("2", 4, 100.00, 40.00, "V12", 12.0, "Renovation work", "Renovation work"),
               Line("3", 3, 40.00, 0.0, "V6", 6.0, "Manual", "Assembly manual"),
               Line("4", 1, 200.00, 0.0, "V0", 0.0, "Training", "Training day")};
    d.lines[3].values.exemptionReason = "TAXEXEMPTIONREASON";
    for (SalesLine& line : d.lines) {
        line.values.taxAmount =
            platform::RoundHalfEven(line.values.lineAmount * line.values.vatRate / 100.0, 2);
    }
    return d;
}

FixedInvoiceLookups SampleLookups() {
    FixedInvoiceLookups lookups;
    lookups.SetParam("INVNBDECQT", "2");
    lookups.SetParam("INVNBDEC", "2");
    lookups.SetParam("PEPPOLEmailSender", "invoices@atelier.example");
    lookups.SetVatCategory("V21", "S");
    lookups.SetVatCategory("V12", "S");
    lookups.SetVatCategory("V6", "S");
    lookups.SetVatCategory("V0", "E");
    lookups.SetEasScheme("BE", "0208");
    return lookups;
}

}  // namespace fnrk::einvoice

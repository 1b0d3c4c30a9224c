#include "einvoice/cls_ubl.hpp"
#include "einvoice/sales_document.hpp"
#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

// The monetary totals travel as text between the sales module and the writer.
std::string AmountText(double value) {
    return platform::FormatNumber(value, "#0.00");
}

void FillSubTotals(clsUBL& writer, const SalesDocument& document) {
    writer.InitTableSubTotal();
    for (const SalesVatRow& row : document.vatRows) {
        writer.AddTableSubtotal(row.rate, row.taxable, row.tax, row.vatCode, row.exemptionReason,
                                row.exemptionReasonCode);
    }
}

void StartLine(clsUBL& writer, const SalesLine& line) {
    writer.ResetDescriptionLine();
    for (const std::string& text : line.description) writer.AddLineDescription(text);
}

bool WriteBasic(clsUBL& writer, const SalesDocument& d) {
    if (!writer.InitXML(d.number, d.issueDate, d.isCreditNote, d.note, d.taxPointDate, d.currency,
                        static_cast<int>(d.lines.size()))) {
        return false;
    }
    if (!d.attachment.empty()) writer.AddAdditionalDocRef(d.attachment);
    writer.AccountingSupplierPart(d.supplier);
    writer.AccountingCustomerPart(d.customer);
    if (!writer.PaymentMeans(d.dueDate, d.structuredReference, d.communication, d.iban, d.bic)) {
        return false;
    }
    writer.PaymentTerms(d.paymentTermsNote, d.discountPercent);
    for (const SalesAllowance& allowance : d.allowances) {
        writer.AllowanceCharge(allowance.isCharge, allowance.percent, allowance.amount);
    }
    FillSubTotals(writer, d);
    writer.TaxTotal(d.taxTotal, d.cashDiscount);
    writer.LegalMonetaryTotal(AmountText(d.lineTotal), AmountText(d.totalWithoutTax),
                              AmountText(d.totalWithTax), AmountText(d.allowanceTotal),
                              AmountText(d.prepaidAmount), AmountText(d.payableAmount));
    for (const SalesLine& line : d.lines) {
        StartLine(writer, line);
        writer.InvoiceLine(line.values);
    }
    return true;
}

bool WriteEfffPeppol(clsUBL& writer, const SalesDocument& d) {
    if (!writer.InitEfffPEPPOL(d.number, d.issueDate, d.isCreditNote, d.note, d.taxPointDate,
                               d.currency, false, d.invoicePeriodStart, d.invoicePeriodEnd)) {
        return false;
    }
    // The references come before the attachment, as the UBL 2.1 schema orders them.
    writer.OrderReferenceEfffPEPPOL(d.orderReference);
    writer.BillingReferenceEfffPEPPOL(d.billingReference);
    if (!d.attachment.empty()) writer.AddAdditionalDocRefEfffPEPPOL(d.attachment);
    writer.AccountingSupplierPartEfffPEPPOL(d.supplier);
    if (!writer.AccountingCustomerPartEfffPEPPOL(d.customer, d.deliveryDate, d.deliverToCountry)) {
        return false;
    }
    if (!writer.PaymentMeansEfffPEPPOL(d.dueDate, d.structuredReference, d.iban, d.bic)) {
        return false;
    }
    const bool termsWritten =
        platform::Trim(d.discountEndDate).empty()
            ? writer.PaymentTermsEfffPEPPOL(d.paymentTermsNote, d.discountPercent)
            : writer.PaymentTermsEfffPEPPOLV2(d.paymentTermsNote, d.discountPercent,
                                              d.discountAmount, d.discountEndDate);
    if (!termsWritten) return false;
    for (const SalesAllowance& allowance : d.allowances) {
        writer.AllowanceChargeEfffPEPPOL(allowance.isCharge, allowance.amount);
    }
    FillSubTotals(writer, d);
    writer.TaxTotalEfffPEPPOL(d.taxTotal, d.cashDiscount);
    writer.LegalMonetaryTotalEfffPEPPOL(AmountText(d.lineTotal), AmountText(d.totalWithoutTax),
                                        AmountText(d.totalWithTax), AmountText(d.allowanceTotal),
                                        AmountText(d.prepaidAmount), AmountText(d.payableAmount));
    for (const SalesLine& line : d.lines) {
        StartLine(writer, line);
        writer.InvoiceLineEfffPEPPOL(line.values);
    }
    return true;
}

bool WritePeppolV3(clsUBL& writer, const SalesDocument& d) {
    if (!writer.InitPeppolFormat(d.number, d.issueDate, d.dueDate, d.isCreditNote, d.note,
                                 d.currency, d.invoicePeriodStart, d.invoicePeriodEnd)) {
        return false;
    }
    writer.OrderReferencePeppolFormat(d.orderReference);
    writer.BillingReferencePeppolFormat(d.billingReference);
    if (!d.attachment.empty()) writer.AddAdditionalDocRefPeppolFormat(d.attachment);
    writer.AccountingSupplierPartFormat(d.supplier);
    writer.SetCustomerPEPPOLID(d.customerPeppolId, d.customerPeppolScheme);
    if (!writer.AccountingCustomerFormat(d.customer, d.deliveryDate, d.deliverToCountry)) {
        return false;
    }
    if (!writer.PaymentMeansFormat(d.dueDate, d.structuredReference, d.iban, d.bic)) {
        return false;
    }
    writer.PaymentTermsFormat(d.discountDays, d.discountPercent, d.discountAmount,
                              d.payableAmount - d.discountAmount);
    for (const SalesAllowance& allowance : d.allowances) {
        if (allowance.onVatBase) {
            writer.AllowanceChargeFormatVATBase(allowance.isCashDiscount, allowance.amount,
                                                allowance.vatCode, allowance.vatRate,
                                                allowance.percent);
        } else {
            writer.AllowanceChargeFormat(allowance.isCharge, allowance.reason, allowance.amount,
                                         allowance.vatCode, allowance.vatRate);
        }
    }
    FillSubTotals(writer, d);
    writer.TaxTotalFormat(d.taxTotal, d.cashDiscount);
    writer.LegalMonetaryTotalFormat(AmountText(d.lineTotal), AmountText(d.totalWithoutTax),
                                    AmountText(d.totalWithTax), AmountText(d.allowanceTotal),
                                    AmountText(d.chargeTotal), AmountText(d.prepaidAmount),
                                    AmountText(d.payableAmount));
    for (const SalesLine& line : d.lines) {
        StartLine(writer, line);
        writer.InvoiceLineFormat(line.values);
    }
    return true;
}

bool HasRowNotSubjectToVat(const SalesDocument& document, const InvoiceLookups& lookups) {
    for (const SalesVatRow& row : document.vatRows) {
        const std::string code = platform::Trim(row.vatCode);
        if (!code.empty() &&
            platform::UpperCase(platform::Trim(lookups.UblVatCategory(code))) == "O") {
            return true;
        }
    }
    return false;
}

}  // namespace

std::optional<InvoiceProfile> ProfileFromFormatWord(std::string_view word) {
    const std::string upper = platform::UpperCase(platform::Trim(word));
    if (upper == "EFFFPEPPOL") return InvoiceProfile::EfffPeppol;
    if (upper == "PEPPOLV3") return InvoiceProfile::PeppolV3;
    if (upper == "UBL" || upper == "EFFF") return InvoiceProfile::Basic;
    return std::nullopt;
}

bool WriteSalesDocument(const SalesDocument& document, InvoiceProfile profile,
                        const InvoiceLookups& lookups, const std::string& path) {
    clsUBL writer(lookups);
    const bool notSubjectToVat = HasRowNotSubjectToVat(document, lookups);
    writer.SupplierWithoutVat(notSubjectToVat);
    writer.CustomerWithoutVat(document.customerWithoutVat || notSubjectToVat);
    writer.fileName(path);
    bool written = false;
    switch (profile) {
        case InvoiceProfile::Basic:
            written = WriteBasic(writer, document);
            break;
        case InvoiceProfile::EfffPeppol:
            written = WriteEfffPeppol(writer, document);
            break;
        case InvoiceProfile::PeppolV3:
            written = WritePeppolV3(writer, document);
            break;
    }
    if (!written) {
        writer.CloseUBL();
        return false;
    }
    return writer.SaveFile(path);
}

}  // namespace fnrk::einvoice

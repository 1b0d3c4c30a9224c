// The EFFF / PEPPOL 2.0 family: a UBL 2.1 "Invoice" or "CreditNote" of PEPPOL BIS 5a 2.0,
// extended by the Belgian convention (e-fff) 3.0 unless the plain identifier is asked for.

#include "einvoice/cls_ubl.hpp"
#include "einvoice/endpoint_schemes.hpp"
#include "einvoice/payment_texts.hpp"
#include "einvoice/ubl_sections.hpp"
#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

constexpr std::string_view kInvoiceNamespace =
    "urn:oasis:names:specification:ubl:schema:xsd:Invoice-2";
constexpr std::string_view kCreditNoteNamespace =
    "urn:oasis:names:specification:ubl:schema:xsd:CreditNote-2";
constexpr std::string_view kProfileBii05 = "urn:www.cenbii.eu:profile:bii05:ver2.0";

std::string Peppol5aTransaction(bool isCreditNote) {
    return std::string("urn:www.cenbii.eu:transaction:") +
           (isCreditNote ? "biitrns014" : "biitrns010") +
           ":ver2.0:extended:urn:www.peppol.eu:bis:peppol5a:ver2.0";
}

// The long form of the Belgian extension starts with the root's namespace and local name.
std::string EfffCustomizationId(bool isCreditNote) {
    return std::string(isCreditNote ? kCreditNoteNamespace : kInvoiceNamespace) +
           (isCreditNote ? "::CreditNote##" : "::Invoice##") + Peppol5aTransaction(isCreditNote) +
           ":extended:e-fff:ver3.0::2.1";
}

XmlDocument::Namespaces EfffNamespaces(bool isCreditNote) {
    const std::pair<std::string, std::string> qdt{
        "qdt", "urn:oasis:names:specification:ubl:schema:xsd:QualifiedDatatypes-2"};
    const std::pair<std::string, std::string> ccts{
        "ccts", "urn:oasis:names:specification:ubl:schema:xsd:CoreComponentParameters-2"};
    const std::pair<std::string, std::string> stat{
        "stat", "urn:oasis:names:specification:ubl:schema:xsd:DocumentStatusCode-1.0"};
    const std::pair<std::string, std::string> cbc{
        "cbc", "urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2"};
    const std::pair<std::string, std::string> cac{
        "cac", "urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2"};
    const std::pair<std::string, std::string> udt{
        "udt", "urn:un:unece:uncefact:data:draft:UnqualifiedDataTypesSchemaModule:2"};
    if (isCreditNote) {
        return {qdt, udt, cbc, cac, stat, ccts, {"", std::string(kCreditNoteNamespace)}};
    }
    return {qdt, ccts, stat, cbc, cac, udt, {"", std::string(kInvoiceNamespace)}};
}

}  // namespace

bool clsUBL::InitEfffPEPPOL(std::string_view invoiceNumber, std::string_view issueDate,
                            bool isCreditNote, std::string_view note, std::string_view taxPointDate,
                            std::string_view currency, bool plainPeppol,
                            std::string_view periodStart, std::string_view periodEnd) {
    const auto issued = IsoDate(issueDate);
    const auto taxPoint = IsoDate(taxPointDate);
    const auto period = IsoPeriodOf(periodStart, periodEnd);
    if (!issued || !taxPoint || !period) return false;
    StartDocument(isCreditNote ? "CreditNote" : "Invoice", EfffNamespaces(isCreditNote), currency,
                  isCreditNote);
    XmlElement root = Root();
    root.Add("cbc:UBLVersionID", "2.1");
    root.Add("cbc:CustomizationID",
             plainPeppol ? Peppol5aTransaction(isCreditNote) : EfffCustomizationId(isCreditNote));
    root.Add("cbc:ProfileID", kProfileBii05);
    root.Add("cbc:ID", invoiceNumber);
    root.AddIfNotEmpty("cbc:IssueDate", *issued);
    if (isCreditNote) {
        // The UBL 2.1 CreditNote schema orders the tax point date before the note (the Invoice
        // schema after it), so a credit note cannot put its note first.
        root.AddIfNotEmpty("cbc:TaxPointDate", *taxPoint);
        root.AddIfNotEmpty("cbc:Note", note);
    } else {
        root.Add("cbc:InvoiceTypeCode", "380").Attribute("listID", "UNCL1001");
        root.AddIfNotEmpty("cbc:Note", note);
        root.AddIfNotEmpty("cbc:TaxPointDate", *taxPoint);
    }
    root.Add("cbc:DocumentCurrencyCode", currency).Attribute("listID", "ISO4217");
    AddInvoicePeriod(*period);
    return true;
}

bool clsUBL::AddAdditionalDocRefEfffPEPPOL(std::string_view filePath) {
    return AddAttachment(filePath, true, false);
}

bool clsUBL::OrderReferenceEfffPEPPOL(std::string_view orderId) {
    if (!HasDocument() || platform::Trim(orderId).empty()) return false;
    Root().Add("cac:OrderReference").Add("cbc:ID", orderId);
    return true;
}

bool clsUBL::BillingReferenceEfffPEPPOL(std::string_view invoiceId) {
    if (!HasDocument() || platform::Trim(invoiceId).empty()) return false;
    Root().Add("cac:BillingReference").Add("cac:InvoiceDocumentReference").Add("cbc:ID", invoiceId);
    return true;
}

bool clsUBL::AddEfffParty(std::string_view sectionName, const UblParty& values, bool isCustomer) {
    if (!HasDocument()) return false;
    XmlElement party = Root().Add(sectionName).Add("cac:Party");
    const EfffEndpoint endpoint = EfffEndpointOf(values.vatNumber);
    party.Add("cbc:EndpointID", endpoint.id).Attribute("schemeID", endpoint.scheme);
    party.Add("cac:PartyName").Add("cbc:Name", values.name);
    XmlElement address = party.Add("cac:PostalAddress");
    address.AddIfNotEmpty("cbc:StreetName", values.street);
    address.AddIfNotEmpty("cbc:CityName", values.city);
    address.AddIfNotEmpty("cbc:PostalZone", values.postalCode);
    address.Add("cac:Country")
        .Add("cbc:IdentificationCode", values.countryCode)
        .Attribute("listID", "ISO3166-1:Alpha2");
    if (!(isCustomer ? customerWithoutVat_ : supplierWithoutVat_)) {
        XmlElement scheme = party.Add("cac:PartyTaxScheme");
        scheme.Add("cbc:CompanyID", values.vatNumber)
            .Attribute("schemeID", endpoint.taxSchemeOfVat);
        scheme.Add("cac:TaxScheme").Add("cbc:ID", "VAT");
    }
    party.Add("cac:PartyLegalEntity").Add("cbc:RegistrationName", values.name);
    if (isCustomer) {
        XmlElement contact = party.Add("cac:Contact");
        contact.AddIfNotEmpty("cbc:Telephone", values.telephone);
        contact.AddIfNotEmpty("cbc:Telefax", values.fax);
        contact.AddIfNotEmpty("cbc:ElectronicMail", values.email);
    }
    return true;
}

bool clsUBL::AccountingSupplierPartEfffPEPPOL(const UblParty& supplier) {
    return AddEfffParty("cac:AccountingSupplierParty", supplier, false);
}

bool clsUBL::AccountingCustomerPartEfffPEPPOL(const UblParty& customer,
                                              std::string_view deliveryDate,
                                              std::string_view deliverToCountry) {
    if (!IsoDate(deliveryDate)) return false;
    return AddEfffParty("cac:AccountingCustomerParty", customer, true) &&
           AddDelivery(deliveryDate, deliverToCountry);
}

bool clsUBL::PaymentMeansEfffPEPPOL(std::string_view dueDate, std::string_view structuredReference,
                                    std::string_view iban, std::string_view bic) {
    const auto due = IsoDate(dueDate);
    if (!HasDocument() || !due) return false;
    XmlElement means = AddPaymentMeans(*due, {{"listID", "UNCL4461"}});
    means.AddIfNotEmpty("cbc:PaymentID", PaymentReference(structuredReference));
    AddPayeeAccount(means, CompactIban(iban), bic, "schemeID", false);
    return true;
}

bool clsUBL::PaymentTermsEfffPEPPOL(std::string_view note, double discountPercent) {
    return PaymentTerms(note, discountPercent);
}

bool clsUBL::PaymentTermsEfffPEPPOLV2(std::string_view note, double discountPercent,
                                      double discountAmount, std::string_view discountEndDate) {
    const auto endDate = IsoDate(discountEndDate);
    if (!HasDocument() || !endDate) return false;
    XmlElement terms = AddPaymentTerms(note, discountPercent);
    AddAmount(terms, "cbc:Amount", discountAmount);
    if (!endDate->empty()) terms.Add("cac:SettlementPeriod").Add("cbc:EndDate", *endDate);
    return true;
}

bool clsUBL::AllowanceChargeEfffPEPPOL(bool isCharge, double amount) {
    if (!HasDocument()) return false;
    XmlElement allowance = Root().Add("cac:AllowanceCharge");
    allowance.Add("cbc:ChargeIndicator", isCharge ? "true" : "false");
    allowance.Add("cbc:AllowanceChargeReasonCode", isCharge ? "ZZZ" : "19")
        .Attribute("listID", "UNCL4465");
    allowance.Add("cbc:AllowanceChargeReason", "Trade Discount");
    AddAmount(allowance, "cbc:Amount", amount);
    XmlElement tax = allowance.Add("cac:TaxCategory");
    tax.Add("cbc:ID", "S").Attribute("schemeID", "UNCL5305");
    tax.Add("cac:TaxScheme").Add("cbc:ID", "VAT");
    return true;
}

bool clsUBL::TaxTotalEfffPEPPOL(double taxAmount, double cashDiscount) {
    if (!HasDocument()) return false;
    XmlElement total = Root().Add("cac:TaxTotal");
    AddAmount(total, "cbc:TaxAmount", taxAmount);
    for (const SubTotalRow& row : subTotals_) {
        XmlElement subtotal = AddTaxSubtotal(total, row.second, row.third);
        const std::string category = VatCategoryOrDefault(row.firstCode, row.first);
        const std::string reason = TaxExemptionReason(category, row.secondCode);
        const std::string reasonCode = TaxExemptionReasonCode(category, row.thirdCode);
        AddTaxCategory(subtotal, "cac:TaxCategory",
                       {category, "UNCL5305", row.firstCode, row.first, reason, reasonCode},
                       numbers_);
    }
    if (cashDiscount > 0.0) {
        XmlElement subtotal = AddTaxSubtotal(total, cashDiscount, 0.0);
        AddTaxCategory(subtotal, "cac:TaxCategory",
                       {"E", "UNCL5305", "NA", 0.0, "Cash Discount", {}}, numbers_);
    }
    return true;
}

bool clsUBL::LegalMonetaryTotalEfffPEPPOL(std::string_view lineTotal,
                                          std::string_view totalWithoutTax,
                                          std::string_view totalWithTax,
                                          std::string_view allowanceTotal,
                                          std::string_view prepaidAmount,
                                          std::string_view payableAmount) {
    return LegalMonetaryTotal(lineTotal, totalWithoutTax, totalWithTax, allowanceTotal,
                              prepaidAmount, payableAmount);
}

bool clsUBL::InvoiceLineEfffPEPPOL(const UblLine& line) {
    if (!HasDocument()) return false;
    XmlElement entry = Root().Add(creditNote_ ? "cac:CreditNoteLine" : "cac:InvoiceLine");
    entry.Add("cbc:ID", line.lineNumber);
    entry.AddIfNotEmpty("cbc:Note", line.note);
    entry
        .Add(creditNote_ ? "cbc:CreditedQuantity" : "cbc:InvoicedQuantity",
             numbers_.Amount(line.quantity))
        .Attribute("unitCode", "NAR")
        .Attribute("unitCodeListID", "UNECERec20");
    AddAmount(entry, "cbc:LineExtensionAmount", line.lineAmount);
    // The UBL 2.1 schemas order the line's allowance before its tax total in an invoice line
    // and after it in a credit-note line; each line follows its own schema.
    const auto addDiscount = [&] {
        if (line.discountAmount == 0.0) return;
        XmlElement discount = entry.Add("cac:AllowanceCharge");
        discount.Add("cbc:ChargeIndicator", "false");
        discount.Add("cbc:AllowanceChargeReasonCode", "19").Attribute("listID", "UNCL4465");
        AddAmount(discount, "cbc:Amount", line.discountAmount);
    };
    if (!creditNote_) addDiscount();
    const std::string category = VatCategoryOrDefault(line.vatCode, line.vatRate);
    XmlElement tax = entry.Add("cac:TaxTotal");
    AddAmount(tax, "cbc:TaxAmount", line.taxAmount);
    XmlElement subtotal = AddTaxSubtotal(tax, line.lineAmount, line.taxAmount);
    const std::string reason = TaxExemptionReason(category, line.exemptionReason);
    const std::string reasonCode = TaxExemptionReasonCode(category, line.exemptionReasonCode);
    AddTaxCategory(subtotal, "cac:TaxCategory",
                   {category, "UNCL5305", line.vatCode, line.vatRate, reason, reasonCode},
                   numbers_);
    if (creditNote_) addDiscount();
    XmlElement item = entry.Add("cac:Item");
    item.AddIfNotEmpty("cbc:Description", Description());
    item.Add("cac:SellersItemIdentification").Add("cbc:ID", line.itemCode);
    AddTaxCategory(item, "cac:ClassifiedTaxCategory",
                   {category, "UNCL5305", {}, line.vatRate, {}, {}}, numbers_);
    AddPrice(entry, line.unitPrice);
    return true;
}

}  // namespace fnrk::einvoice

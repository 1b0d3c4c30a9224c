// The basic family: a UBL 2.0 "Invoice" of the Belgian e-invoicing convention (e-fff) 1.0.

#include "einvoice/cls_ubl.hpp"
#include "einvoice/ubl_sections.hpp"
#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

constexpr std::string_view kInvoiceCodeList =
    "http://www.E-FFF.be/ubl/2.0/cl/gc/BE-InvoiceCode-1.0.gc";
constexpr std::string_view kCompanyRegisterScheme = "http://www.e-fff.be/KBO";
constexpr std::string_view kPaymentMeansCodeList =
    "http://docs.oasis-open.org/ubl/os-UBL-2.0-update/cl/gc/default/PaymentMeansCode-2.0.gc";
// The convention's short name followed by the producing application.
constexpr std::string_view kProfileLabel = "E-FFF.BE FennRick";

// The VAT number from its third character on, without dots.
std::string RegisterNumber(std::string_view vatNumber) {
    std::string number(vatNumber.size() > 2 ? vatNumber.substr(2) : std::string_view());
    std::erase(number, '.');
    return platform::Trim(number);
}

void AddPostalAddress(XmlElement party, const UblParty& values) {
    XmlElement address = party.Add("cac:PostalAddress");
    address.Add("cbc:StreetName", values.street);
    address.Add("cbc:CityName", values.city);
    address.Add("cbc:PostalZone", values.postalCode);
    XmlElement country = address.Add("cac:Country");
    country.Add("cbc:IdentificationCode", values.countryCode);
    country.Add("cbc:Name", values.countryName);
}

void AddPartyTaxScheme(XmlElement party, std::string_view vatNumber) {
    XmlElement scheme = party.Add("cac:PartyTaxScheme");
    scheme.Add("cbc:CompanyID", vatNumber);
    scheme.Add("cac:TaxScheme").Add("cbc:ID", "VAT");
}

void AddBasicTaxCategory(XmlElement parent, std::string_view category, std::string_view name,
                         const std::string* exemptionReason) {
    XmlElement tax = parent.Add("cac:TaxCategory");
    tax.Add("cbc:ID", category)
        .Attribute("schemeName", "Duty or tax of fee category")
        .Attribute("schemeID", "UN/EDIFACT 5305");
    tax.Add("cbc:Name", name);
    if (exemptionReason != nullptr) tax.Add("cbc:TaxExemptionReason", *exemptionReason);
    tax.Add("cac:TaxScheme").Add("cbc:ID", "VAT");
}

}  // namespace

bool clsUBL::InitXML(std::string_view invoiceNumber, std::string_view issueDate, bool isCreditNote,
                     std::string_view note, std::string_view taxPointDate,
                     std::string_view currency, int lineCount) {
    const auto issued = IsoDate(issueDate);
    const auto taxPoint = IsoDate(taxPointDate);
    // Both dates are always written and the schema takes no empty date: a document needs its
    // issue date, and without a tax point of its own the VAT falls due on the issue date.
    if (!issued || issued->empty() || !taxPoint) return false;
    StartDocument(
        "Invoice",
        {{"qdt", "urn:oasis:names:specification:ubl:schema:xsd:QualifiedDatatypes-2"},
         {"ccts", "urn:oasis:names:specification:ubl:schema:xsd:CoreComponentParameters-2"},
         {"stat", "urn:oasis:names:specification:ubl:schema:xsd:DocumentStatusCode-1.0"},
         {"cbc", "urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2"},
         {"cac", "urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2"},
         {"udt", "urn:un:unece:uncefact:data:draft:UnqualifiedDataTypesSchemaModule:2"},
         {"", "urn:oasis:names:specification:ubl:schema:xsd:Invoice-2"}},
        currency, isCreditNote);
    XmlElement root = Root();
    root.Add("cbc:UBLVersionID", "2.0");
    root.Add("cbc:CustomizationID", "1.0");
    root.Add("cbc:ProfileID", kProfileLabel);
    root.Add("cbc:ID", invoiceNumber);
    root.Add("cbc:CopyIndicator", "false");
    root.Add("cbc:IssueDate", *issued);
    // The root stays "Invoice" for a credit note: only the type code tells them apart.
    root.Add("cbc:InvoiceTypeCode", isCreditNote ? "381" : "380")
        .Attribute("listURI", kInvoiceCodeList);
    root.Add("cbc:Note", note);
    root.Add("cbc:TaxPointDate", taxPoint->empty() ? *issued : *taxPoint);
    root.Add("cbc:DocumentCurrencyCode", currency);
    root.Add("cbc:LineCountNumeric", std::to_string(lineCount));
    return true;
}

bool clsUBL::AddAdditionalDocRef(std::string_view filePath) {
    return AddAttachment(filePath, false, false);
}

bool clsUBL::AccountingSupplierPart(const UblParty& supplier) {
    if (!HasDocument()) return false;
    XmlElement party = Root().Add("cac:AccountingSupplierParty").Add("cac:Party");
    party.Add("cac:PartyIdentification")
        .Add("cbc:ID", RegisterNumber(supplier.vatNumber))
        .Attribute("schemeAgencyName", "KBO")
        .Attribute("schemeAgencyID",
                   platform::UpperCase(platform::LeftChars(supplier.vatNumber, 2)))
        .Attribute("schemeURI", kCompanyRegisterScheme);
    party.Add("cac:PartyName").Add("cbc:Name", supplier.name);
    AddPostalAddress(party, supplier);
    AddPartyTaxScheme(party, supplier.vatNumber);
    return true;
}

bool clsUBL::AccountingCustomerPart(const UblParty& customer) {
    if (!HasDocument()) return false;
    XmlElement section = Root().Add("cac:AccountingCustomerParty");
    // Kept empty on purpose: receivers of the convention expect the element.
    section.Add("cbc:CustomerAssignedAccountID");
    XmlElement party = section.Add("cac:Party");
    const bool withoutVatNumber = platform::Trim(customer.vatNumber) == "NA";
    party.Add("cac:PartyIdentification")
        .Add("cbc:ID", RegisterNumber(customer.vatNumber))
        .Attribute("schemeURI", kCompanyRegisterScheme)
        .Attribute("schemeAgencyName", "KBO")
        .Attribute("schemeAgencyID",
                   withoutVatNumber ? std::string() : platform::LeftChars(customer.vatNumber, 2));
    party.Add("cac:PartyName").Add("cbc:Name", customer.name);
    AddPostalAddress(party, customer);
    if (!customerWithoutVat_) AddPartyTaxScheme(party, customer.vatNumber);
    XmlElement contact = party.Add("cac:Contact");
    contact.Add("cbc:Telephone", customer.telephone);
    contact.Add("cbc:Telefax", customer.fax);
    contact.Add("cbc:ElectronicMail", customer.email);
    return true;
}

bool clsUBL::PaymentMeans(std::string_view dueDate, std::string_view structuredReference,
                          std::string_view communication, std::string_view iban,
                          std::string_view bic) {
    const auto due = IsoDate(dueDate);
    if (!HasDocument() || !due) return false;
    XmlElement means = AddPaymentMeans(*due, {{"listURI", kPaymentMeansCodeList},
                                              {"listName", "Payment Means"},
                                              {"listID", "UN/ECE4461"}});
    means.AddIfNotEmpty("cbc:InstructionID", structuredReference);
    means.Add("cbc:InstructionNote", communication);
    AddPayeeAccount(means, iban, bic, "schemeName", true);
    return true;
}

bool clsUBL::PaymentTerms(std::string_view note, double discountPercent) {
    if (!HasDocument()) return false;
    AddPaymentTerms(note, discountPercent);
    return true;
}

bool clsUBL::AllowanceCharge(bool isCharge, double multiplier, double amount) {
    if (!HasDocument()) return false;
    XmlElement allowance = Root().Add("cac:AllowanceCharge");
    allowance.Add("cbc:ChargeIndicator", isCharge ? "true" : "false");
    allowance.Add("cbc:AllowanceChargeReasonCode", isCharge ? "ZZZ" : "19");
    allowance.Add("cbc:MultiplierFactorNumeric", numbers_.Amount(multiplier));
    AddAmount(allowance, "cbc:Amount", amount);
    return true;
}

bool clsUBL::TaxTotal(double taxAmount, double cashDiscount) {
    if (!HasDocument()) return false;
    XmlElement total = Root().Add("cac:TaxTotal");
    AddAmount(total, "cbc:TaxAmount", taxAmount);
    for (const SubTotalRow& row : subTotals_) {
        XmlElement subtotal = AddTaxSubtotal(total, row.second, row.third);
        subtotal.Add("cbc:Percent", numbers_.Amount(row.first));
        AddBasicTaxCategory(subtotal, VatCategory(row.firstCode), row.firstCode, nullptr);
    }
    if (cashDiscount > 0.0) {
        XmlElement subtotal = AddTaxSubtotal(total, cashDiscount, 0.0);
        subtotal.Add("cbc:Percent", numbers_.Amount(0.0));
        const std::string reason = "Cash Discount";
        AddBasicTaxCategory(subtotal, "E", "NA", &reason);
    }
    return true;
}

bool clsUBL::LegalMonetaryTotal(std::string_view lineTotal, std::string_view totalWithoutTax,
                                std::string_view totalWithTax, std::string_view allowanceTotal,
                                std::string_view prepaidAmount, std::string_view payableAmount) {
    if (!HasDocument()) return false;
    XmlElement total = Root().Add("cac:LegalMonetaryTotal");
    AddAmount(total, "cbc:LineExtensionAmount", ParseNumber(lineTotal));
    AddAmount(total, "cbc:TaxExclusiveAmount", ParseNumber(totalWithoutTax));
    AddAmount(total, "cbc:TaxInclusiveAmount", ParseNumber(totalWithTax));
    if (ParseNumber(allowanceTotal) != 0.0) {
        AddAmount(total, "cbc:AllowanceTotalAmount", ParseNumber(allowanceTotal));
    }
    if (ParseNumber(prepaidAmount) != 0.0) {
        AddAmount(total, "cbc:PrepaidAmount", ParseNumber(prepaidAmount));
    }
    AddAmount(total, "cbc:PayableAmount", ParseNumber(payableAmount));
    return true;
}

bool clsUBL::InvoiceLine(const UblLine& line) {
    if (!HasDocument()) return false;
    XmlElement entry = Root().Add("cac:InvoiceLine");
    entry.Add("cbc:ID", line.lineNumber);
    entry.Add("cbc:Note", line.note);
    entry.Add("cbc:InvoicedQuantity", numbers_.Amount(line.quantity));
    AddAmount(entry, "cbc:LineExtensionAmount", line.lineAmount);
    if (line.discountAmount != 0.0) {
        XmlElement discount = entry.Add("cac:AllowanceCharge");
        discount.Add("cbc:ChargeIndicator", "false");
        discount.Add("cbc:AllowanceChargeReasonCode", "19");
        discount.Add("cbc:MultiplierFactorNumeric", numbers_.Amount(line.discountPercent));
        AddAmount(discount, "cbc:Amount", line.discountAmount);
    }
    XmlElement tax = entry.Add("cac:TaxTotal");
    AddAmount(tax, "cbc:TaxAmount", line.taxAmount);
    // The line's sub-total keeps its "cbc:TaxAmount" beside the taxable amount, percent and
    // category: the UBL 2.0 schema requires a tax amount in every "cac:TaxSubtotal".
    XmlElement subtotal = AddTaxSubtotal(tax, line.lineAmount, line.taxAmount);
    subtotal.Add("cbc:Percent", numbers_.Amount(line.vatRate));
    AddBasicTaxCategory(subtotal, VatCategory(line.vatCode), line.vatCode, &line.exemptionReason);
    XmlElement item = entry.Add("cac:Item");
    const std::string description = Description();
    if (!description.empty()) item.Add("cbc:Description", description);
    item.Add("cac:SellersItemIdentification").Add("cbc:ID", line.itemCode);
    AddPrice(entry, line.unitPrice);
    return true;
}

}  // namespace fnrk::einvoice

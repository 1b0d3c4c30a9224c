// The PEPPOL BIS 3 family: a UBL 2.1 "Invoice" or "CreditNote" of EN 16931 / PEPPOL BIS Billing
// 3.0. The profile rejects empty elements, so optional texts are left out when empty.

#include "einvoice/cls_ubl.hpp"
#include "einvoice/endpoint_schemes.hpp"
#include "einvoice/payment_texts.hpp"
#include "einvoice/ubl_sections.hpp"
#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

constexpr std::string_view kCustomizationId =
    "urn:cen.eu:en16931:2017#compliant#urn:fdc:peppol.eu:2017:poacc:billing:3.0";
constexpr std::string_view kProfileId = "urn:fdc:peppol.eu:2017:poacc:billing:01:1.0";

}  // namespace

bool clsUBL::InitPeppolFormat(std::string_view invoiceNumber, std::string_view issueDate,
                              std::string_view dueDate, bool isCreditNote, std::string_view note,
                              std::string_view currency, std::string_view periodStart,
                              std::string_view periodEnd) {
    const auto issued = IsoDate(issueDate);
    const auto due = IsoDate(dueDate);
    const auto period = IsoPeriodOf(periodStart, periodEnd);
    if (!issued || !due || !period) return false;
    const std::string rootName = isCreditNote ? "CreditNote" : "Invoice";
    StartDocument(
        rootName,
        {{"cac", "urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2"},
         {"cbc", "urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2"},
         {"", "urn:oasis:names:specification:ubl:schema:xsd:" + rootName + "-2"}},
        currency, isCreditNote);
    customerPeppolId_.clear();
    customerPeppolScheme_.clear();
    XmlElement root = Root();
    root.Add("cbc:CustomizationID", kCustomizationId);
    root.Add("cbc:ProfileID", kProfileId);
    root.Add("cbc:ID", invoiceNumber);
    root.AddIfNotEmpty("cbc:IssueDate", *issued);
    if (isCreditNote) {
        // The UBL 2.1 CreditNote schema has no header "cbc:DueDate": a credit note's due date
        // travels as the payment due date of its payment means.
        root.Add("cbc:CreditNoteTypeCode", "381");
    } else {
        root.AddIfNotEmpty("cbc:DueDate", *due);
        root.Add("cbc:InvoiceTypeCode", "380");
    }
    root.AddIfNotEmpty("cbc:Note", note);
    root.Add("cbc:DocumentCurrencyCode", currency);
    AddInvoicePeriod(*period);
    return true;
}

bool clsUBL::OrderReferencePeppolFormat(std::string_view orderId) {
    return OrderReferenceEfffPEPPOL(orderId);
}

bool clsUBL::BillingReferencePeppolFormat(std::string_view invoiceId) {
    return BillingReferenceEfffPEPPOL(invoiceId);
}

bool clsUBL::AddAdditionalDocRefPeppolFormat(std::string_view filePath) {
    return AddAttachment(filePath, false, true);
}

bool clsUBL::AddPeppolParty(std::string_view sectionName, const UblParty& values, bool isCustomer) {
    if (!HasDocument()) return false;
    XmlElement party = Root().Add(sectionName).Add("cac:Party");
    // An identifier set by SetCustomerPEPPOLID is the receiver's registered address: it is
    // written as given, country prefix included (scheme 9925, for one, keeps its "BE").
    const bool ownEndpoint = isCustomer && !platform::Trim(customerPeppolId_).empty();
    const std::string endpointId =
        ownEndpoint ? customerPeppolId_ : PeppolEndpointId(values.vatNumber, values.countryCode);
    const std::string scheme =
        ownEndpoint ? customerPeppolScheme_ : lookups_.EasScheme(values.countryCode);
    party.Add("cbc:EndpointID", endpointId).Attribute("schemeID", platform::Trim(scheme));
    party.Add("cac:PartyName").Add("cbc:Name", values.name);
    XmlElement address = party.Add("cac:PostalAddress");
    address.AddIfNotEmpty("cbc:StreetName", values.street);
    address.AddIfNotEmpty("cbc:CityName", values.city);
    address.AddIfNotEmpty("cbc:PostalZone", values.postalCode);
    address.Add("cac:Country").Add("cbc:IdentificationCode", values.countryCode);
    const bool withoutVat = isCustomer ? customerWithoutVat_ : supplierWithoutVat_;
    if (!withoutVat) {
        XmlElement taxScheme = party.Add("cac:PartyTaxScheme");
        taxScheme.Add("cbc:CompanyID", values.vatNumber);
        taxScheme.Add("cac:TaxScheme").Add("cbc:ID", "VAT");
    }
    XmlElement legalEntity = party.Add("cac:PartyLegalEntity");
    legalEntity.Add("cbc:RegistrationName", values.name);
    // A supplier must be identified (BR-CO-26): without its VAT number, by its registration
    // number, which is the endpoint derived from it.
    if (!isCustomer && withoutVat) {
        legalEntity.Add("cbc:CompanyID", endpointId).Attribute("schemeID", platform::Trim(scheme));
    }
    const std::string email =
        isCustomer ? values.email : platform::Trim(lookups_.ParamValue("PEPPOLEmailSender"));
    const std::string telephone = isCustomer ? platform::Trim(values.telephone) : std::string();
    if (!email.empty() || !telephone.empty()) {
        XmlElement contact = party.Add("cac:Contact");
        contact.AddIfNotEmpty("cbc:Telephone", telephone);
        contact.AddIfNotEmpty("cbc:ElectronicMail", email);
    }
    return true;
}

bool clsUBL::AccountingSupplierPartFormat(const UblParty& supplier) {
    return AddPeppolParty("cac:AccountingSupplierParty", supplier, false);
}

bool clsUBL::SetCustomerPEPPOLID(std::string_view endpointId, std::string_view scheme) {
    customerPeppolId_ = platform::Trim(endpointId);
    customerPeppolScheme_ = platform::Trim(scheme);
    return true;
}

bool clsUBL::AccountingCustomerFormat(const UblParty& customer, std::string_view deliveryDate,
                                      std::string_view deliverToCountry) {
    if (!IsoDate(deliveryDate)) return false;
    return AddPeppolParty("cac:AccountingCustomerParty", customer, true) &&
           AddDelivery(deliveryDate, deliverToCountry);
}

bool clsUBL::PaymentMeansFormat(std::string_view dueDate, std::string_view structuredReference,
                                std::string_view iban, std::string_view bic) {
    const auto due = IsoDate(dueDate);
    if (!HasDocument() || !due) return false;
    XmlElement means = AddPaymentMeans(*due, {});
    means.AddIfNotEmpty("cbc:PaymentID", PaymentReference(structuredReference));
    const std::string account = CompactIban(iban);
    if (!account.empty()) {
        XmlElement payee = means.Add("cac:PayeeFinancialAccount");
        payee.Add("cbc:ID", account);
        if (!platform::Trim(bic).empty()) {
            payee.Add("cac:FinancialInstitutionBranch").Add("cbc:ID", bic);
        }
    }
    return true;
}

bool clsUBL::PaymentTermsFormat(std::string_view discountDays, double discountPercent,
                                double discountAmount, double payableAmount) {
    if (!HasDocument() || platform::Trim(discountDays).empty()) return false;
    // The note ends with "€ " and is written whole, its final blank included.
    Root()
        .Add("cac:PaymentTerms")
        .AddVerbatim("cbc:Note", CashDiscountNote(discountDays, discountPercent, discountAmount,
                                                  payableAmount, numbers_));
    return true;
}

bool clsUBL::AllowanceChargeFormatVATBase(bool isCashDiscount, double amount,
                                          std::string_view vatCode, double vatRate,
                                          double discountPercent) {
    return AllowanceChargeFormat(false,
                                 VatBaseAllowanceReason(isCashDiscount, discountPercent, numbers_),
                                 amount, vatCode, vatRate);
}

bool clsUBL::AllowanceChargeFormat(bool isCharge, std::string_view reason, double amount,
                                   std::string_view vatCode, double vatRate) {
    if (!HasDocument()) return false;
    XmlElement allowance = Root().Add("cac:AllowanceCharge");
    allowance.Add("cbc:ChargeIndicator", isCharge ? "true" : "false");
    // "95" (discount) and "ZZZ" (mutually defined) are the codes of the two code lists the
    // profile takes for allowances and charges.
    allowance.Add("cbc:AllowanceChargeReasonCode", isCharge ? "ZZZ" : "95");
    allowance.AddIfNotEmpty("cbc:AllowanceChargeReason", reason);
    AddAmount(allowance, "cbc:Amount", amount);
    const std::string category = VatCategoryOrDefault(vatCode, vatRate);
    AddTaxCategory(allowance, "cac:TaxCategory", {category, {}, {}, vatRate, {}, {}}, numbers_);
    return true;
}

bool clsUBL::TaxTotalFormat(double taxAmount, double cashDiscount) {
    if (!HasDocument()) return false;
    XmlElement total = Root().Add("cac:TaxTotal");
    AddAmount(total, "cbc:TaxAmount", taxAmount);
    // The cash discount gets a "Cash Discount" row of its own only when the document has no
    // exempt row: the rules allow exactly one "E" breakdown (BR-E-01), whose taxable amount is
    // the sum over every exempt line, allowance and charge (BR-E-08), so a second "E" row is
    // refused. With an exempt row of its own, the document adds the cash discount to it.
    bool cashDiscountWritten = cashDiscount <= 0.0;
    for (const SubTotalRow& row : subTotals_) {
        const std::string category = VatCategoryOrDefault(row.firstCode, row.first);
        double taxable = row.second;
        if (!cashDiscountWritten && category == "E") {
            taxable += cashDiscount;
            cashDiscountWritten = true;
        }
        XmlElement subtotal = AddTaxSubtotal(total, taxable, row.third);
        const std::string reason = TaxExemptionReason(category, row.secondCode);
        const std::string reasonCode = TaxExemptionReasonCode(category, row.thirdCode);
        AddTaxCategory(subtotal, "cac:TaxCategory",
                       {category, {}, {}, row.first, reason, reasonCode}, numbers_);
    }
    if (!cashDiscountWritten) {
        XmlElement subtotal = AddTaxSubtotal(total, cashDiscount, 0.0);
        AddTaxCategory(subtotal, "cac:TaxCategory", {"E", {}, {}, 0.0, "Cash Discount", {}},
                       numbers_);
    }
    return true;
}

bool clsUBL::LegalMonetaryTotalFormat(std::string_view lineTotal, std::string_view totalWithoutTax,
                                      std::string_view totalWithTax,
                                      std::string_view allowanceTotal, std::string_view chargeTotal,
                                      std::string_view prepaidAmount,
                                      std::string_view payableAmount) {
    if (!HasDocument()) return false;
    XmlElement total = Root().Add("cac:LegalMonetaryTotal");
    AddAmount(total, "cbc:LineExtensionAmount", ParseNumber(lineTotal));
    AddAmount(total, "cbc:TaxExclusiveAmount", ParseNumber(totalWithoutTax));
    AddAmount(total, "cbc:TaxInclusiveAmount", ParseNumber(totalWithTax));
    for (const auto& [name, text] : {std::pair{"cbc:AllowanceTotalAmount", allowanceTotal},
                                     std::pair{"cbc:ChargeTotalAmount", chargeTotal},
                                     std::pair{"cbc:PrepaidAmount", prepaidAmount}}) {
        if (ParseNumber(text) != 0.0) AddAmount(total, name, ParseNumber(text));
    }
    AddAmount(total, "cbc:PayableAmount", ParseNumber(payableAmount));
    return true;
}

bool clsUBL::InvoiceLineFormat(const UblLine& line) {
    if (!HasDocument()) return false;
    XmlElement entry = Root().Add(creditNote_ ? "cac:CreditNoteLine" : "cac:InvoiceLine");
    entry.Add("cbc:ID", line.lineNumber);
    entry.AddIfNotEmpty("cbc:Note", line.note);
    entry
        .Add(creditNote_ ? "cbc:CreditedQuantity" : "cbc:InvoicedQuantity",
             numbers_.Pattern(line.quantity, QuantityPattern()))
        .Attribute("unitCode", "NAR");
    AddAmount(entry, "cbc:LineExtensionAmount", line.lineAmount);
    if (line.discountAmount != 0.0) {
        XmlElement discount = entry.Add("cac:AllowanceCharge");
        discount.Add("cbc:ChargeIndicator", "false");
        discount.Add("cbc:AllowanceChargeReasonCode", "95");
        AddAmount(discount, "cbc:Amount", line.discountAmount);
    }
    XmlElement item = entry.Add("cac:Item");
    const std::string description = Description();
    item.AddIfNotEmpty("cbc:Description", description);
    const std::string name = platform::Trim(line.itemName).empty()
                                 ? (descriptionLines_.size() > 1 ? descriptionLines_[1] : "")
                                 : line.itemName;
    item.AddIfNotEmpty("cbc:Name", name);
    if (!platform::Trim(line.itemCode).empty()) {
        item.Add("cac:SellersItemIdentification").Add("cbc:ID", line.itemCode);
    }
    const std::string category = VatCategoryOrDefault(line.vatCode, line.vatRate);
    AddTaxCategory(item, "cac:ClassifiedTaxCategory", {category, {}, {}, line.vatRate, {}, {}},
                   numbers_);
    AddPrice(entry, line.unitPrice);
    return true;
}

}  // namespace fnrk::einvoice

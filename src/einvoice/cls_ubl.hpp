#pragma once

// clsUBL writes one sales invoice or credit note as UBL XML, section by section in the order the
// sales module calls the methods: the basic family (UBL 2.0, Belgian e-invoicing convention 1.0),
// the EFFF / PEPPOL 2.0 family (methods ending in "EfffPEPPOL") and the PEPPOL BIS 3 family
// (InitPeppolFormat and the methods ending in "Format"). Each section method returns true when it
// wrote its section; it writes nothing and returns false before an Init method or on a date it
// cannot read.

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "einvoice/invoice_lookups.hpp"
#include "einvoice/ubl_records.hpp"
#include "einvoice/ubl_values.hpp"
#include "einvoice/xml_document.hpp"

namespace fnrk::einvoice {

class clsUBL {
  public:
    explicit clsUBL(const InvoiceLookups& lookups);
    ~clsUBL();

    // Properties.
    bool CustomerWithoutVat() const { return customerWithoutVat_; }
    void CustomerWithoutVat(bool value) { customerWithoutVat_ = value; }
    // The supplier's VAT number is not shown (a document not subject to VAT must not carry it):
    // the newer families then leave out its "cac:PartyTaxScheme" and identify the supplier by
    // its legal registration number instead.
    bool SupplierWithoutVat() const { return supplierWithoutVat_; }
    void SupplierWithoutVat(bool value) { supplierWithoutVat_ = value; }
    const std::string& language() const { return language_; }
    void language(std::string value) { language_ = std::move(value); }
    const std::string& fileName() const { return fileName_; }
    void fileName(std::string value) { fileName_ = std::move(value); }
    // Separator detected by the last Init method.
    char DecimalSeparator() const { return numbers_.separator(); }

    // Common to the three families.
    bool SaveFile(const std::string& path);
    bool CloseUBL();
    bool ResetDescriptionLine();
    bool AddLineDescription(std::string_view text);
    bool InitTableSubTotal();
    // `thirdCode` is the tax exemption reason code (such as "VATEX-EU-IC") of the row, if any.
    bool AddTableSubtotal(double first, double second, double third, std::string_view firstCode,
                          std::string_view secondCode, std::string_view thirdCode = {});

    // Basic family. Dates are "DD/MM/YYYY" (or already "YYYY-MM-DD").
    bool InitXML(std::string_view invoiceNumber, std::string_view issueDate, bool isCreditNote,
                 std::string_view note, std::string_view taxPointDate, std::string_view currency,
                 int lineCount);
    bool AddAdditionalDocRef(std::string_view filePath);
    bool AccountingSupplierPart(const UblParty& supplier);
    bool AccountingCustomerPart(const UblParty& customer);
    bool PaymentMeans(std::string_view dueDate, std::string_view structuredReference,
                      std::string_view communication, std::string_view iban, std::string_view bic);
    bool PaymentTerms(std::string_view note, double discountPercent);
    bool AllowanceCharge(bool isCharge, double multiplier, double amount);
    // `cashDiscount` above zero adds the exempt "Cash Discount" sub-total, so that the taxable
    // amounts add up to the amount without tax.
    bool TaxTotal(double taxAmount, double cashDiscount = 0.0);
    bool LegalMonetaryTotal(std::string_view lineTotal, std::string_view totalWithoutTax,
                            std::string_view totalWithTax, std::string_view allowanceTotal,
                            std::string_view prepaidAmount, std::string_view payableAmount);
    bool InvoiceLine(const UblLine& line);

    // EFFF / PEPPOL 2.0 family. `plainPeppol` chooses the plain PEPPOL BIS 5a 2.0
    // CustomizationID over the one extended by the Belgian convention 3.0. The invoicing period
    // (both dates or neither) is written when given.
    bool InitEfffPEPPOL(std::string_view invoiceNumber, std::string_view issueDate,
                        bool isCreditNote, std::string_view note, std::string_view taxPointDate,
                        std::string_view currency, bool plainPeppol,
                        std::string_view periodStart = {}, std::string_view periodEnd = {});
    bool AddAdditionalDocRefEfffPEPPOL(std::string_view filePath);
    bool OrderReferenceEfffPEPPOL(std::string_view orderId);
    bool BillingReferenceEfffPEPPOL(std::string_view invoiceId);
    bool AccountingSupplierPartEfffPEPPOL(const UblParty& supplier);
    // With a delivery date or a deliver-to country, "cac:Delivery" follows the customer.
    bool AccountingCustomerPartEfffPEPPOL(const UblParty& customer,
                                          std::string_view deliveryDate = {},
                                          std::string_view deliverToCountry = {});
    bool PaymentMeansEfffPEPPOL(std::string_view dueDate, std::string_view structuredReference,
                                std::string_view iban, std::string_view bic);
    bool PaymentTermsEfffPEPPOL(std::string_view note, double discountPercent);
    bool PaymentTermsEfffPEPPOLV2(std::string_view note, double discountPercent,
                                  double discountAmount, std::string_view discountEndDate);
    bool AllowanceChargeEfffPEPPOL(bool isCharge, double amount);
    // `cashDiscount` above zero adds the exempt "Cash Discount" sub-total.
    bool TaxTotalEfffPEPPOL(double taxAmount, double cashDiscount);
    bool LegalMonetaryTotalEfffPEPPOL(std::string_view lineTotal, std::string_view totalWithoutTax,
                                      std::string_view totalWithTax,
                                      std::string_view allowanceTotal,
                                      std::string_view prepaidAmount,
                                      std::string_view payableAmount);
    bool InvoiceLineEfffPEPPOL(const UblLine& line);

    // PEPPOL BIS 3 family. The invoicing period (both dates or neither) is written when given.
    bool InitPeppolFormat(std::string_view invoiceNumber, std::string_view issueDate,
                          std::string_view dueDate, bool isCreditNote, std::string_view note,
                          std::string_view currency, std::string_view periodStart = {},
                          std::string_view periodEnd = {});
    bool OrderReferencePeppolFormat(std::string_view orderId);
    bool BillingReferencePeppolFormat(std::string_view invoiceId);
    bool AddAdditionalDocRefPeppolFormat(std::string_view filePath);
    bool AccountingSupplierPartFormat(const UblParty& supplier);
    // The customer's electronic address and its scheme, used by AccountingCustomerFormat as given
    // instead of the VAT number and the scheme of the customer's country.
    bool SetCustomerPEPPOLID(std::string_view endpointId, std::string_view scheme);
    // With a delivery date or a deliver-to country, "cac:Delivery" follows the customer.
    bool AccountingCustomerFormat(const UblParty& customer, std::string_view deliveryDate = {},
                                  std::string_view deliverToCountry = {});
    bool PaymentMeansFormat(std::string_view dueDate, std::string_view structuredReference,
                            std::string_view iban, std::string_view bic);
    // Writes nothing (false) when `discountDays` is empty.
    bool PaymentTermsFormat(std::string_view discountDays, double discountPercent,
                            double discountAmount, double payableAmount);
    bool AllowanceChargeFormatVATBase(bool isCashDiscount, double amount, std::string_view vatCode,
                                      double vatRate, double discountPercent);
    bool AllowanceChargeFormat(bool isCharge, std::string_view reason, double amount,
                               std::string_view vatCode, double vatRate);
    bool TaxTotalFormat(double taxAmount, double cashDiscount);
    bool LegalMonetaryTotalFormat(std::string_view lineTotal, std::string_view totalWithoutTax,
                                  std::string_view totalWithTax, std::string_view allowanceTotal,
                                  std::string_view chargeTotal, std::string_view prepaidAmount,
                                  std::string_view payableAmount);
    bool InvoiceLineFormat(const UblLine& line);

  private:
    void StartDocument(std::string_view rootName, const XmlDocument::Namespaces& namespaces,
                       std::string_view currency, bool isCreditNote);
    bool HasDocument() const { return document_ != nullptr; }
    XmlElement Root() { return document_->Root(); }
    void AddAmount(XmlElement parent, std::string_view name, double value);
    // "cac:PaymentMeans" with the payment means code "1" (instrument not defined), carrying the
    // code-list attributes given, and the due date when there is one.
    XmlElement AddPaymentMeans(
        std::string_view isoDueDate,
        std::initializer_list<std::pair<std::string_view, std::string_view>> codeAttributes);
    // "cac:TaxSubtotal" with its taxable and tax amounts.
    XmlElement AddTaxSubtotal(XmlElement total, double taxableAmount, double taxAmount);
    // "cac:PaymentTerms" with the note (even empty) and the discount percentage.
    XmlElement AddPaymentTerms(std::string_view note, double discountPercent);
    // Description lines from index 1 on, joined by CR LF; empty when none was added.
    std::string Description() const;
    std::string VatCategory(std::string_view vatCode) const;
    // The category of the VAT code, or, for a code the table does not know, "S" for a positive
    // rate and "E" for none: the newer profiles reject a category without letter.
    std::string VatCategoryOrDefault(std::string_view vatCode, double rate) const;
    // "cac:Price" / "cbc:PriceAmount" with the decimals of the company's setting "INVNBDEC", so
    // that quantity times price gives the line amount.
    void AddPrice(XmlElement line, double unitPrice);
    std::string QuantityPattern() const;
    std::string PricePattern() const;
    bool AddAttachment(std::string_view filePath, bool withDocumentType, bool withFileName);
    bool AddEfffParty(std::string_view sectionName, const UblParty& party, bool isCustomer);
    bool AddPeppolParty(std::string_view sectionName, const UblParty& party, bool isCustomer);
    // "cac:InvoicePeriod" of an IsoPeriod, when it has its dates.
    void AddInvoicePeriod(const IsoPeriod& period);
    // "cac:Delivery" with the actual delivery date and the deliver-to country, when either is
    // given; false on a date it cannot read.
    bool AddDelivery(std::string_view deliveryDate, std::string_view deliverToCountry);

    const InvoiceLookups& lookups_;
    std::unique_ptr<XmlDocument> document_;
    NumberWriter numbers_;
    std::string currency_;
    bool creditNote_ = false;
    std::vector<std::string> descriptionLines_{std::string()};
    std::vector<SubTotalRow> subTotals_;
    bool customerWithoutVat_ = false;
    bool supplierWithoutVat_ = false;
    std::string language_;
    std::string fileName_;
    std::string customerPeppolId_;
    std::string customerPeppolScheme_;
};

}  // namespace fnrk::einvoice

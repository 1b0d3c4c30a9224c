#include "einvoice/cls_ubl.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/paths.hpp"
#include "platform/text.hpp"

namespace fnrk::einvoice {

clsUBL::clsUBL(const InvoiceLookups& lookups) : lookups_(lookups) {}

clsUBL::~clsUBL() = default;

void clsUBL::StartDocument(std::string_view rootName, const XmlDocument::Namespaces& namespaces,
                           std::string_view currency, bool isCreditNote) {
    numbers_ = NumberWriter(DetectDecimalSeparator());
    document_ = std::make_unique<XmlDocument>(rootName, namespaces);
    currency_ = platform::Trim(currency);
    creditNote_ = isCreditNote;
}

bool clsUBL::SaveFile(const std::string& path) {
    if (!HasDocument()) return false;
    const bool saved = document_->Save(platform::FileSystemPath(path));
    document_.reset();
    return saved;
}

bool clsUBL::CloseUBL() {
    document_.reset();
    return true;
}

bool clsUBL::ResetDescriptionLine() {
    descriptionLines_.assign(1, std::string());
    return true;
}

bool clsUBL::AddLineDescription(std::string_view text) {
    descriptionLines_.emplace_back(text);
    return true;
}

bool clsUBL::InitTableSubTotal() {
    subTotals_.clear();
    return true;
}

bool clsUBL::AddTableSubtotal(double first, double second, double third, std::string_view firstCode,
                              std::string_view secondCode, std::string_view thirdCode) {
    subTotals_.push_back({first, second, third, std::string(firstCode), std::string(secondCode),
                          std::string(thirdCode)});
    return true;
}

void clsUBL::AddAmount(XmlElement parent, std::string_view name, double value) {
    parent.Add(name, numbers_.Amount(value)).Attribute("currencyID", currency_);
}

XmlElement clsUBL::AddPaymentMeans(
    std::string_view isoDueDate,
    std::initializer_list<std::pair<std::string_view, std::string_view>> codeAttributes) {
    XmlElement means = Root().Add("cac:PaymentMeans");
    XmlElement code = means.Add("cbc:PaymentMeansCode", "1");
    for (const auto& [name, value] : codeAttributes) code.Attribute(name, value);
    means.AddIfNotEmpty("cbc:PaymentDueDate", isoDueDate);
    return means;
}

XmlElement clsUBL::AddTaxSubtotal(XmlElement total, double taxableAmount, double taxAmount) {
    XmlElement subtotal = total.Add("cac:TaxSubtotal");
    AddAmount(subtotal, "cbc:TaxableAmount", taxableAmount);
    AddAmount(subtotal, "cbc:TaxAmount", taxAmount);
    return subtotal;
}

XmlElement clsUBL::AddPaymentTerms(std::string_view note, double discountPercent) {
    XmlElement terms = Root().Add("cac:PaymentTerms");
    terms.Add("cbc:Note", note);
    terms.Add("cbc:SettlementDiscountPercent", numbers_.Amount(discountPercent));
    return terms;
}

void clsUBL::AddInvoicePeriod(const IsoPeriod& period) {
    if (period.start.empty()) return;
    XmlElement element = Root().Add("cac:InvoicePeriod");
    element.Add("cbc:StartDate", period.start);
    element.Add("cbc:EndDate", period.end);
}

bool clsUBL::AddDelivery(std::string_view deliveryDate, std::string_view deliverToCountry) {
    const auto date = IsoDate(deliveryDate);
    if (!date) return false;
    const std::string country = platform::UpperCase(platform::Trim(deliverToCountry));
    if (date->empty() && country.empty()) return true;
    XmlElement delivery = Root().Add("cac:Delivery");
    delivery.AddIfNotEmpty("cbc:ActualDeliveryDate", *date);
    if (!country.empty()) {
        delivery.Add("cac:DeliveryLocation")
            .Add("cac:Address")
            .Add("cac:Country")
            .Add("cbc:IdentificationCode", country);
    }
    return true;
}

std::string clsUBL::Description() const {
    std::string text;
    for (std::size_t i = 1; i < descriptionLines_.size(); ++i) {
        if (i > 1) text += "\r\n";
        text += descriptionLines_[i];
    }
    return text;
}

std::string clsUBL::VatCategory(std::string_view vatCode) const {
    const std::string code = platform::Trim(vatCode);
    return code.empty() ? std::string() : platform::Trim(lookups_.UblVatCategory(code));
}

std::string clsUBL::VatCategoryOrDefault(std::string_view vatCode, double rate) const {
    const std::string category = VatCategory(vatCode);
    if (!category.empty()) return category;
    return rate > 0.0 ? "S" : "E";
}

namespace {

int DecimalsParam(const InvoiceLookups& lookups, std::string_view key) {
    return static_cast<int>(ParseNumber(platform::Trim(lookups.ParamValue(key))));
}

}  // namespace

std::string clsUBL::QuantityPattern() const {
    return DecimalsPattern(DecimalsParam(lookups_, "INVNBDECQT"));
}

std::string clsUBL::PricePattern() const {
    return DecimalsPattern(DecimalsParam(lookups_, "INVNBDEC"));
}

void clsUBL::AddPrice(XmlElement line, double unitPrice) {
    line.Add("cac:Price")
        .Add("cbc:PriceAmount", numbers_.Pattern(unitPrice, PricePattern()))
        .Attribute("currencyID", currency_);
}

bool clsUBL::AddAttachment(std::string_view filePath, bool withDocumentType, bool withFileName) {
    if (!HasDocument()) return false;
    const std::filesystem::path path = platform::FileSystemPath(platform::Trim(filePath));
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return false;
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::string native = platform::NativePath(platform::Trim(filePath));
    const std::string name = native.substr(native.find_last_of(platform::kPathSep) + 1);

    XmlElement reference = Root().Add("cac:AdditionalDocumentReference");
    reference.Add("cbc:ID", name);
    if (withDocumentType) {
        reference.Add("cbc:DocumentType", creditNote_ ? "CreditNote" : "CommercialInvoice");
    }
    XmlElement content = reference.Add("cac:Attachment").Add("cbc:EmbeddedDocumentBinaryObject");
    content.Attribute("mimeCode", "application/pdf");
    if (withFileName) content.Attribute("filename", name);
    content.SetBase64(bytes);
    return true;
}

}  // namespace fnrk::einvoice

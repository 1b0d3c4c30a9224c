#include "cli/invoice_json.hpp"

#include <functional>

#include "cli/json_fields.hpp"
#include "einvoice/ubl_values.hpp"

namespace fnrk::cli {
namespace {

using nlohmann::json;
namespace ei = fnrk::einvoice;

std::string Date(JsonFields& fields, const std::string& key, bool required = false) {
    const std::string text = fields.Text(key, required);
    if (!ei::IsoDate(text)) {
        throw CommandFailure("field " + fields.PathOf(key) + ": \"" + text +
                             "\" is not a date DD/MM/YYYY");
    }
    return text;
}

ei::UblParty ReadParty(JsonFields& fields) {
    ei::UblParty party;
    party.vatNumber = fields.Text("vatNumber", true);
    party.name = fields.Text("name", true);
    party.street = fields.Text("street");
    party.city = fields.Text("city");
    party.postalCode = fields.Text("postalCode");
    party.countryCode = fields.Text("countryCode", true);
    party.countryName = fields.Text("countryName");
    party.telephone = fields.Text("telephone");
    party.fax = fields.Text("fax");
    party.email = fields.Text("email");
    return party;
}

void ReadPayment(const json& object, const std::string& path, ei::SalesDocument& d) {
    JsonFields fields(object, path);
    d.structuredReference = fields.Text("structuredReference");
    d.communication = fields.Text("communication");
    d.iban = fields.Text("iban");
    d.bic = fields.Text("bic");
    d.paymentTermsNote = fields.Text("terms");
    d.discountPercent = fields.Number("discountPercent");
    d.discountDays = fields.Text("discountDays");
    d.discountAmount = fields.Number("discountAmount");
    d.discountEndDate = Date(fields, "discountEndDate");
    fields.RejectUnknown();
}

void ReadInvoicePeriod(const json& object, const std::string& path, ei::SalesDocument& d) {
    JsonFields fields(object, path);
    d.invoicePeriodStart = Date(fields, "start", true);
    d.invoicePeriodEnd = Date(fields, "end", true);
    fields.RejectUnknown();
    if (!ei::IsoPeriodOf(d.invoicePeriodStart, d.invoicePeriodEnd)) {
        throw CommandFailure("field " + path + ": the period ends before it starts");
    }
}

ei::SalesAllowance ReadAllowance(const json& object, const std::string& path) {
    JsonFields fields(object, path);
    ei::SalesAllowance allowance;
    allowance.isCharge = fields.Flag("charge");
    allowance.onVatBase = fields.Flag("vatBase");
    allowance.isCashDiscount = fields.Flag("cashDiscount");
    allowance.reason = fields.Text("reason");
    allowance.amount = fields.Number("amount", true);
    allowance.percent = fields.Number("percent");
    allowance.vatCode = fields.Text("vatCode");
    allowance.vatRate = fields.Number("vatRate");
    fields.RejectUnknown();
    return allowance;
}

ei::SalesVatRow ReadVatRow(const json& object, const std::string& path) {
    JsonFields fields(object, path);
    ei::SalesVatRow row;
    row.rate = fields.Number("rate", true);
    row.taxable = fields.Number("taxable", true);
    row.tax = fields.Number("tax", true);
    row.vatCode = fields.Text("vatCode");
    row.exemptionReason = fields.Text("exemptionReason");
    row.exemptionReasonCode = fields.Text("exemptionReasonCode");
    fields.RejectUnknown();
    return row;
}

ei::SalesLine ReadLine(const json& object, const std::string& path) {
    JsonFields fields(object, path);
    ei::SalesLine line;
    ei::UblLine& v = line.values;
    v.lineNumber = fields.Text("number", true);
    v.note = fields.Text("note");
    v.quantity = fields.Number("quantity", true);
    v.unitPrice = fields.Number("unitPrice", true);
    v.lineAmount = fields.Number("amount", true);
    v.discountPercent = fields.Number("discountPercent");
    v.discountAmount = fields.Number("discountAmount");
    v.vatCode = fields.Text("vatCode");
    v.vatRate = fields.Number("vatRate");
    v.taxAmount = fields.Number("tax");
    v.exemptionReason = fields.Text("exemptionReason");
    v.exemptionReasonCode = fields.Text("exemptionReasonCode");
    v.itemCode = fields.Text("itemCode");
    v.itemName = fields.Text("name");
    if (const json* description = fields.Array("description")) {
        for (std::size_t i = 0; i < description->size(); ++i) {
            if (!(*description)[i].is_string()) {
                throw CommandFailure("field " + fields.PathOf("description", i) +
                                     ": must be a text");
            }
            line.description.push_back((*description)[i].get<std::string>());
        }
    }
    fields.RejectUnknown();
    return line;
}

void ReadTotals(const json& object, const std::string& path, ei::SalesDocument& d) {
    JsonFields fields(object, path);
    d.taxTotal = fields.Number("tax", true);
    d.cashDiscount = fields.Number("cashDiscount");
    d.lineTotal = fields.Number("lines", true);
    d.totalWithoutTax = fields.Number("withoutVat", true);
    d.totalWithTax = fields.Number("withVat", true);
    d.allowanceTotal = fields.Number("allowances");
    d.chargeTotal = fields.Number("charges");
    d.prepaidAmount = fields.Number("prepaid");
    d.payableAmount = fields.Number("payable", true);
    fields.RejectUnknown();
}

// Runs `read` on each item of an array member, with the item's own path.
template <typename Item, typename Reader>
std::vector<Item> ReadItems(JsonFields& fields, const std::string& key, bool required,
                            Reader read) {
    std::vector<Item> items;
    if (const json* array = fields.Array(key, required)) {
        for (std::size_t i = 0; i < array->size(); ++i) {
            items.push_back(read((*array)[i], fields.PathOf(key, i)));
        }
    }
    return items;
}

void ReadTexts(const json* object, const std::string& path,
               const std::function<void(const std::string&, const std::string&)>& store) {
    if (object == nullptr) return;
    for (const auto& [key, value] : object->items()) {
        if (!value.is_string()) {
            throw CommandFailure("field " + path + "." + key + ": must be a text");
        }
        store(key, value.get<std::string>());
    }
}

void ReadLookups(JsonFields& document, ei::FixedInvoiceLookups& lookups) {
    ReadTexts(
        document.Object("parameters"), document.PathOf("parameters"),
        [&](const std::string& key, const std::string& value) { lookups.SetParam(key, value); });
    const json* tables = document.Object("lookups");
    if (tables == nullptr) return;
    JsonFields fields(*tables, document.PathOf("lookups"));
    ReadTexts(fields.Object("vatCategories"), fields.PathOf("vatCategories"),
              [&](const std::string& code, const std::string& category) {
                  lookups.SetVatCategory(code, category);
              });
    ReadTexts(fields.Object("easSchemes"), fields.PathOf("easSchemes"),
              [&](const std::string& country, const std::string& scheme) {
                  lookups.SetEasScheme(country, scheme);
              });
    fields.RejectUnknown();
}

}  // namespace

ei::SalesDocument ReadSalesDocument(const json& description,
                                    const std::filesystem::path& baseFolder,
                                    ei::FixedInvoiceLookups& lookups) {
    JsonFields fields(description, "");
    ei::SalesDocument d;
    d.number = fields.Text("number", true);
    d.isCreditNote = fields.Flag("creditNote");
    d.issueDate = Date(fields, "issueDate", true);
    d.dueDate = Date(fields, "dueDate");
    d.taxPointDate = Date(fields, "taxPointDate");
    if (const std::string currency = fields.Text("currency"); !currency.empty()) {
        d.currency = currency;
    }
    d.note = fields.Text("note");
    d.orderReference = fields.Text("orderReference");
    d.billingReference = fields.Text("billingReference");
    if (const std::string attachment = fields.Text("attachment"); !attachment.empty()) {
        d.attachment = (baseFolder / attachment).string();
    }
    d.deliveryDate = Date(fields, "deliveryDate");
    d.deliverToCountry = fields.Text("deliverToCountry");
    if (const json* period = fields.Object("invoicePeriod")) {
        ReadInvoicePeriod(*period, fields.PathOf("invoicePeriod"), d);
    }

    JsonFields supplier(*fields.Object("supplier", true), fields.PathOf("supplier"));
    d.supplier = ReadParty(supplier);
    supplier.RejectUnknown();
    JsonFields customer(*fields.Object("customer", true), fields.PathOf("customer"));
    d.customer = ReadParty(customer);
    d.customerWithoutVat = customer.Flag("withoutVat");
    d.customerPeppolId = customer.Text("peppolId");
    d.customerPeppolScheme = customer.Text("peppolScheme");
    customer.RejectUnknown();

    if (const json* payment = fields.Object("payment")) {
        ReadPayment(*payment, fields.PathOf("payment"), d);
    }
    d.allowances = ReadItems<ei::SalesAllowance>(fields, "allowances", false, ReadAllowance);
    d.vatRows = ReadItems<ei::SalesVatRow>(fields, "vat", true, ReadVatRow);
    ReadTotals(*fields.Object("totals", true), fields.PathOf("totals"), d);
    d.lines = ReadItems<ei::SalesLine>(fields, "lines", true, ReadLine);
    ReadLookups(fields, lookups);
    fields.RejectUnknown();
    return d;
}

}  // namespace fnrk::cli

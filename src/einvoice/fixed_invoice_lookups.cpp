#include "einvoice/fixed_invoice_lookups.hpp"

#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

std::string UpperKey(std::string_view key) {
    return platform::UpperCase(platform::Trim(key));
}

std::string Find(const std::map<std::string, std::string>& values, const std::string& key) {
    const auto found = values.find(key);
    return found == values.end() ? std::string() : found->second;
}

}  // namespace

void FixedInvoiceLookups::SetParam(std::string_view key, std::string_view value) {
    params_[UpperKey(key)] = std::string(value);
}

void FixedInvoiceLookups::SetVatCategory(std::string_view vatCode, std::string_view category) {
    vatCategories_[platform::Trim(vatCode)] = platform::Trim(category);
}

void FixedInvoiceLookups::SetEasScheme(std::string_view countryCode, std::string_view scheme) {
    easSchemes_[UpperKey(countryCode)] = platform::Trim(scheme);
}

std::string FixedInvoiceLookups::ParamValue(std::string_view key) const {
    return Find(params_, UpperKey(key));
}

std::string FixedInvoiceLookups::UblVatCategory(std::string_view vatCode) const {
    const std::string code = platform::Trim(vatCode);
    return code.empty() ? std::string() : Find(vatCategories_, code);
}

std::string FixedInvoiceLookups::EasScheme(std::string_view countryCode) const {
    return Find(easSchemes_, UpperKey(countryCode));
}

}  // namespace fnrk::einvoice

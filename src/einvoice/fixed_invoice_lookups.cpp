#include "einvoice/fixed_invoice_lookups.hpp"

#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

std::string UpperKey(std::string_view key) {
    return platform::UpperCase(platform::Trim(key));
}

}  // namespace

template <typename Ask>
std::string FixedInvoiceLookups::Find(const std::map<std::string, std::string>& values,
                                      const std::string& key, Ask askFallback) const {
    if (const auto found = values.find(key); found != values.end()) return found->second;
    return fallback_ != nullptr ? askFallback(*fallback_) : std::string();
}

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
    return Find(params_, UpperKey(key),
                [&](const InvoiceLookups& other) { return other.ParamValue(key); });
}

std::string FixedInvoiceLookups::UblVatCategory(std::string_view vatCode) const {
    const std::string code = platform::Trim(vatCode);
    if (code.empty()) return {};
    return Find(vatCategories_, code,
                [&](const InvoiceLookups& other) { return other.UblVatCategory(code); });
}

std::string FixedInvoiceLookups::EasScheme(std::string_view countryCode) const {
    return Find(easSchemes_, UpperKey(countryCode),
                [&](const InvoiceLookups& other) { return other.EasScheme(countryCode); });
}

}  // namespace fnrk::einvoice

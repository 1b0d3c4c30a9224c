#include "einvoice/table_invoice_lookups.hpp"

#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::einvoice {

std::string TableInvoiceLookups::ParamValue(std::string_view key) const {
    return params_.GetParamValue(key);
}

std::string TableInvoiceLookups::UblVatCategory(std::string_view vatCode) const {
    const std::string code = platform::Trim(vatCode);
    if (code.empty()) return {};
    return SeekField("CODEVAT", "SEEKUBLVAT", code, "TAXCODE");
}

std::string TableInvoiceLookups::EasScheme(std::string_view countryCode) const {
    const std::string country = platform::UpperCase(platform::Trim(countryCode));
    if (country.empty()) return {};
    return SeekField("COUNTRY", "SEEKEAS", country, "XMLCODE");
}

std::string TableInvoiceLookups::SeekField(std::string_view alias, std::string_view tag,
                                           std::string_view key, std::string_view field) const {
    // Opening a table makes it current: the caller's is remembered first.
    const tables::CurrentAliasGuard caller(tables_);
    if (!tables_.IsAlias(alias)) {
        const std::string path = tables_.StandardTablePath(alias);
        if (path.empty() || tables_.OpenFile(alias, path, tables_.StandardIndexPath(alias),
                                             "SHARED", tables::AdsClass::kOpenQuiet) != 0)
            return {};
    }
    std::string value;
    if (tables_.ActivateAlias(alias) == 0) {
        const std::string order = tables_.GetIndexTagName();
        if (tables_.SetIndex(tag) && tables_.seekKey(key))
            value = platform::Trim(tables_.GetStringValue(field));
        tables_.SetIndex(order);
    }
    return value;
}

}  // namespace fnrk::einvoice

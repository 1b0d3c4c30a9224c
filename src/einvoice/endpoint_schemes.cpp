#include "einvoice/endpoint_schemes.hpp"

#include <algorithm>
#include <array>

#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

// Countries whose VAT number is itself the PEPPOL 2.0 endpoint, under "<prefix>:VAT".
constexpr std::array<std::string_view, 36> kVatSchemeCountries = {
    "AD", "AL", "AT", "BG", "CH", "CY", "CZ", "DE", "EE", "ES", "EU", "GB",
    "GR", "HR", "HU", "IE", "IT", "LI", "LT", "LU", "LV", "MC", "ME", "MK",
    "NL", "NO", "PL", "PT", "RO", "RS", "SE", "SI", "SK", "SM", "TR", "VA"};

}  // namespace

EfffEndpoint EfffEndpointOf(std::string_view vatNumber) {
    const std::string vat = platform::Trim(vatNumber);
    const std::string prefix = platform::UpperCase(platform::LeftChars(vat, 2));
    if (prefix == "DK") return {"DK:SE", vat, "DK:SE"};
    if (prefix == "FR") return {"FR:SIRENE", vat, "FR:VAT"};
    if (prefix == "BE") return {"BE:CBE", vat.substr(2), "BE:VAT"};
    if (std::find(kVatSchemeCountries.begin(), kVatSchemeCountries.end(), prefix) !=
        kVatSchemeCountries.end()) {
        return {prefix + ":VAT", vat, prefix + ":VAT"};
    }
    // Bosnia and Malta have VAT schemes of their own in the 2.0 list; any other prefix has no
    // registered scheme and is marked mutually defined.
    if (prefix == "BA" || prefix == "MT") return {prefix + ":VAT", vat, prefix + ":VAT"};
    return {"ZZZ", vat, "ZZZ"};
}

std::string PeppolEndpointId(std::string_view number, std::string_view countryCode) {
    std::string id;
    for (char c : number) {
        if (c != '-' && c != '.' && c != ' ') id += c;
    }
    const std::string country = platform::UpperCase(platform::Trim(countryCode));
    if (country.size() == 2 && platform::UpperCase(id.substr(0, 2)) == country) id.erase(0, 2);
    return id;
}

}  // namespace fnrk::einvoice

#pragma once

// Electronic addresses of the parties: the EFFF / PEPPOL 2.0 schemes chosen by the VAT number's
// country prefix, and the endpoint number of PEPPOL BIS 3.

#include <string>
#include <string_view>

namespace fnrk::einvoice {

struct EfffEndpoint {
    std::string scheme;          // "schemeID" of "cbc:EndpointID"
    std::string id;              // its text
    std::string taxSchemeOfVat;  // "schemeID" of the party's "cbc:CompanyID"
};

EfffEndpoint EfffEndpointOf(std::string_view vatNumber);

// The number without "-", "." and blanks, and without the country prefix when it starts with it.
std::string PeppolEndpointId(std::string_view number, std::string_view countryCode);

}  // namespace fnrk::einvoice

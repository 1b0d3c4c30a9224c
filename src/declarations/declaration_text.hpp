#pragma once

// How the caller's texts are written into the OSS and MOSS documents.

#include <string>
#include <string_view>

namespace fnrk::declarations {

// An amount or rate with every "," turned into ".", the only decimal separator XML knows.
std::string AmountText(std::string_view amount);

// A country code: trimmed, cut to its first two characters, upper case.
std::string CountryCodeText(std::string_view country);

// The representative's postal code: trimmed, and without its country prefix ("BE-1000",
// "LU 1234") when it carries one.
std::string PostCodeText(std::string_view postCode);

// A street as stored, where "~" stands for a comma: commas back, trimmed, upper case.
std::string StreetText(std::string_view street);

}  // namespace fnrk::declarations

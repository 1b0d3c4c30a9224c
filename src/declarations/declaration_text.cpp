#include "declarations/declaration_text.hpp"

#include <algorithm>
#include <cctype>

#include "platform/text.hpp"

namespace fnrk::declarations {
namespace {

bool IsAsciiLetter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

}  // namespace

std::string AmountText(std::string_view amount) {
    std::string text(amount);
    std::ranges::replace(text, ',', '.');
    return text;
}

std::string CountryCodeText(std::string_view country) {
    return platform::UpperCase(platform::LeftChars(platform::Trim(country), 2));
}

std::string PostCodeText(std::string_view postCode) {
    std::string code = platform::Trim(postCode);
    // A country prefix is taken to be two letters and a "-" or blank before the code proper:
    // "BE-1000" and "BE 1000" lose it, while "1000", "L-1234" and "BE1000" stay whole, since
    // cutting three characters from them would eat into the code itself.
    const bool prefixed = code.size() > 3 && IsAsciiLetter(code[0]) && IsAsciiLetter(code[1]) &&
                          (code[2] == '-' || code[2] == ' ');
    return prefixed ? platform::Trim(std::string_view(code).substr(3)) : code;
}

std::string StreetText(std::string_view street) {
    std::string text(street);
    std::ranges::replace(text, '~', ',');
    return platform::UpperCase(platform::Trim(text));
}

}  // namespace fnrk::declarations

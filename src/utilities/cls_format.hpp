#pragma once

// clsFormat: amounts and dates formatted for display with the separators the calling application
// hands over (the user's regional settings, not the process locale).

#include <string>
#include <string_view>

namespace fnrk::utilities {

class clsFormat {
  public:
    // The amount with two decimals (rounded half away from zero), `thousandSeparator` between
    // groups of three digits of the integer part (none when empty) and `decimalSeparator` before
    // the decimals: 1234567.891 with "," and "." gives "1.234.567,89"; -0.004 gives "0,00".
    // An empty decimal separator is taken as ",", the Belgian default.
    std::string Currency(double amount, std::string_view decimalSeparator,
                         std::string_view thousandSeparator) const;

    // A date as "DD/MM/YYYY" from any of the forms the applications hold: "D/M/YYYY" or
    // "DD/MM/YY" (also with "-" or "." between the parts; two-digit years of 80 and below are
    // 20xx, above 80 19xx), "YYYYMMDD" as stored in tables, or "YYYY-MM-DD". Empty text for blank
    // input, the empty date or anything that is not a real date.
    std::string DateDDMMYYYYWithSlash(std::string_view date) const;
};

}  // namespace fnrk::utilities

#pragma once

// How values are written into UBL: numbers by a "#0.00"-style pattern with "." as the decimal
// separator whatever the machine's regional settings, dates as "YYYY-MM-DD".

#include <optional>
#include <string>
#include <string_view>

namespace fnrk::einvoice {

// The decimal separator the process's number formatting produces: "1.1" formatted "#.#" under
// the global locale, second character ("." or ",").
char DetectDecimalSeparator();

class NumberWriter {
  public:
    explicit NumberWriter(char decimalSeparator = '.') : separator_(decimalSeparator) {}

    char separator() const { return separator_; }
    // "#0.00": 1234.5 -> "1234.50".
    std::string Amount(double value) const;
    // With a pattern such as "#0.0000".
    std::string Pattern(double value, std::string_view pattern) const;

  private:
    char separator_;
};

// "#0." followed by `decimals` zeros when more than two decimals are asked, else "#0.00": never
// fewer than two decimals.
std::string DecimalsPattern(int decimals);

// A number written as text by the sales module ("1234.5", "1234,50", " 12 "); empty or
// unreadable text is 0.
double ParseNumber(std::string_view text);

// "DD/MM/YYYY" (the interface form of dates) or "YYYY-MM-DD" -> "YYYY-MM-DD"; the empty date
// (blank, or "  /  /    ") -> ""; anything else -> nothing.
std::optional<std::string> IsoDate(std::string_view date);

// An invoicing period as two "YYYY-MM-DD" dates, both empty when there is none.
struct IsoPeriod {
    std::string start;
    std::string end;
};

// Both dates read by IsoDate; nothing when either cannot be read, when only one is given or
// when the period ends before it starts.
std::optional<IsoPeriod> IsoPeriodOf(std::string_view start, std::string_view end);

}  // namespace fnrk::einvoice

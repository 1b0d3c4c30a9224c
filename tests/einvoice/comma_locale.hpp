#pragma once

// Makes the process's number formatting write "," as decimal separator (and "." between
// thousands), as a Belgian or French machine does, for the lifetime of the object.

#include <locale>

namespace fnrk::testing {

class CommaDecimalLocale {
  public:
    CommaDecimalLocale()
        : previous_(std::locale::global(std::locale(std::locale::classic(), new Punctuation))) {}
    ~CommaDecimalLocale() { std::locale::global(previous_); }
    CommaDecimalLocale(const CommaDecimalLocale&) = delete;
    CommaDecimalLocale& operator=(const CommaDecimalLocale&) = delete;

  private:
    struct Punctuation : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale previous_;
};

}  // namespace fnrk::testing

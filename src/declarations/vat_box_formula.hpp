#pragma once

// The formulas of the VAT return's total boxes: a run of terms without blanks, each an operator
// ("+", "-", "*", "/") and an operand, either a three-digit box number, signed or not ("+033",
// "*+403"), or "#" and a signed constant ("/#+100"). Terms apply strictly from left to right
// from zero, with no precedence.

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace fnrk::declarations {

// A formula that cannot be read or computed; the message names the formula or the box.
class FormulaError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct FormulaTerm {
    char operation = '+';
    std::string box;       // three-digit box number, empty for a constant
    bool negated = false;  // "*-403": the box's value with its sign turned
    double constant = 0;   // the operand when `box` is empty
};

// The terms of a formula; FormulaError when it does not follow the grammar.
std::vector<FormulaTerm> ParseFormula(std::string_view formula);

// The formula's value, asking `boxValue` for the value of each box operand.
double EvaluateFormula(std::string_view formula,
                       const std::function<double(const std::string& box)>& boxValue);

}  // namespace fnrk::declarations

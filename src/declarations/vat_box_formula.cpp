#include "declarations/vat_box_formula.hpp"

#include <cctype>
#include <charconv>

namespace fnrk::declarations {
namespace {

bool IsDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

bool IsOperation(char c) {
    return c == '+' || c == '-' || c == '*' || c == '/';
}

FormulaError Malformed(std::string_view formula, std::size_t position, std::string_view what) {
    return FormulaError("formula \"" + std::string(formula) + "\": " + std::string(what) +
                        " at position " + std::to_string(position + 1));
}

}  // namespace

std::vector<FormulaTerm> ParseFormula(std::string_view formula) {
    std::vector<FormulaTerm> terms;
    std::size_t at = 0;
    while (at < formula.size()) {
        FormulaTerm term;
        term.operation = formula[at];
        if (!IsOperation(term.operation)) throw Malformed(formula, at, "operator expected");
        ++at;
        if (at < formula.size() && formula[at] == '#') {
            ++at;
            if (at >= formula.size() || (formula[at] != '+' && formula[at] != '-'))
                throw Malformed(formula, at, "signed constant expected");
            const bool negative = formula[at] == '-';
            std::size_t end = ++at;
            while (end < formula.size() && (IsDigit(formula[end]) || formula[end] == '.')) ++end;
            auto [stop, error] =
                std::from_chars(formula.data() + at, formula.data() + end, term.constant);
            if (error != std::errc() || stop != formula.data() + end)
                throw Malformed(formula, at, "number expected");
            if (negative) term.constant = -term.constant;
            at = end;
        } else {
            // "+033" adds box 033; after "*" or "/" the box carries its own sign ("*+403").
            if (at < formula.size() && (formula[at] == '+' || formula[at] == '-')) {
                term.negated = formula[at] == '-';
                ++at;
            }
            if (at + 3 > formula.size() || !IsDigit(formula[at]) || !IsDigit(formula[at + 1]) ||
                !IsDigit(formula[at + 2]))
                throw Malformed(formula, at, "three-digit box number expected");
            term.box = std::string(formula.substr(at, 3));
            at += 3;
        }
        terms.push_back(std::move(term));
    }
    return terms;
}

double EvaluateFormula(std::string_view formula,
                       const std::function<double(const std::string& box)>& boxValue) {
    double result = 0;
    for (const FormulaTerm& term : ParseFormula(formula)) {
        double operand = term.constant;
        if (!term.box.empty()) operand = term.negated ? -boxValue(term.box) : boxValue(term.box);
        switch (term.operation) {
            case '+':
                result += operand;
                break;
            case '-':
                result -= operand;
                break;
            case '*':
                result *= operand;
                break;
            default:
                if (operand == 0)
                    throw FormulaError("formula \"" + std::string(formula) + "\" divides by zero");
                result /= operand;
                break;
        }
    }
    return result;
}

}  // namespace fnrk::declarations

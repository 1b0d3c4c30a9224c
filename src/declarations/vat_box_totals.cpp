#include "declarations/vat_box_totals.hpp"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <vector>

#include "platform/text.hpp"

namespace fnrk::declarations {
namespace {

// Depth-first evaluation; `path` holds the totals being computed, to name a loop when one
// comes back.
class TotalsComputation {
  public:
    explicit TotalsComputation(const VatBoxDictionary& boxes) : boxes_(boxes) {}

    double Total(const DeclarationTvaCase& box) {
        if (auto done = results_.find(box.Number); done != results_.end()) return done->second;
        if (std::ranges::find(path_, box.Number) != path_.end()) throw LoopError(box.Number);
        path_.push_back(box.Number);
        const double value = EvaluateFormula(
            box.Total, [&](const std::string& operand) { return Operand(box, operand); });
        path_.pop_back();
        results_.emplace(box.Number, value);
        return value;
    }

  private:
    double Operand(const DeclarationTvaCase& box, const std::string& operand) {
        const DeclarationTvaCase* found = boxes_.Find(operand);
        if (found == nullptr)
            throw FormulaError("formula of box " + box.Number + " refers to box " + operand +
                               ", which is not on the form");
        return found->Total.empty() ? EnteredValue(*found) : Total(*found);
    }

    FormulaError LoopError(const std::string& number) const {
        std::string loop;
        for (auto at = std::ranges::find(path_, number); at != path_.end(); ++at)
            loop += *at + " -> ";
        return FormulaError("formula of box " + number + " refers to itself through " + loop +
                            number);
    }

    const VatBoxDictionary& boxes_;
    std::vector<std::string> path_;
    std::unordered_map<std::string, double> results_;
};

}  // namespace

double EnteredValue(const DeclarationTvaCase& box) {
    std::string text =
        platform::Trim(box.ValueModified.empty() ? box.ValueOriginal : box.ValueModified);
    if (text.empty()) return 0;
    std::ranges::replace(text, ',', '.');
    double value = 0;
    const char* first = text.data();
    if (*first == '+') ++first;
    auto [stop, error] = std::from_chars(first, text.data() + text.size(), value);
    if (error != std::errc() || stop != text.data() + text.size())
        throw FormulaError("box " + box.Number + " holds \"" + text + "\", which is not a number");
    return value;
}

OrderedDictionary<double> ComputeTotals(const VatBoxDictionary& boxes) {
    TotalsComputation computation(boxes);
    OrderedDictionary<double> totals;
    for (const auto& [number, box] : boxes)
        if (!box.Total.empty()) totals.Add(number, computation.Total(box));
    return totals;
}

}  // namespace fnrk::declarations

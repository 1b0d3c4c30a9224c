// Functions that give numbers.

#include <algorithm>
#include <cmath>

#include "engine/expr/compile_scope.hpp"
#include "engine/expr/number_text.hpp"

namespace fnrk::engine::expr {
namespace {

using Arguments = std::vector<Operand>;

template <class Function>
Operand OfNumber(const Node& call, const Arguments& arguments, Program& program, Function apply) {
    RequireArgument(call, arguments, 0, ValueType::Numeric);
    NumberEvaluator* a = arguments[0].number;
    return program.Number([=](const EvaluationContext& c) { return apply(a->Eval(c)); });
}

template <class Function>
Operand OfTwoNumbers(const Node& call, const Arguments& arguments, Program& program,
                     Function apply) {
    RequireArgument(call, arguments, 0, ValueType::Numeric);
    RequireArgument(call, arguments, 1, ValueType::Numeric);
    NumberEvaluator* a = arguments[0].number;
    NumberEvaluator* b = arguments[1].number;
    return program.Number(
        [=](const EvaluationContext& c) { return apply(a->Eval(c), b->Eval(c)); });
}

template <class Function>
Operand OfText(const Node& call, const Arguments& arguments, Program& program, Function apply) {
    RequireArgument(call, arguments, 0, ValueType::Character);
    TextEvaluator* a = arguments[0].text;
    return program.Number([=](const EvaluationContext& c) { return apply(a->Eval(c)); });
}

double Round(double value, double decimals) {
    if (!std::isfinite(decimals)) return value;
    return RoundHalfAway(value, static_cast<int>(std::clamp(decimals, -18.0, 18.0)));
}

}  // namespace

std::optional<Operand> CompileNumberFunction(const Node& call, const Arguments& arguments,
                                             CompileScope& scope) {
    Program& program = scope.program;
    const std::string& name = call.name;
    if (name == "RECNO") {
        return program.Number(
            [](const EvaluationContext& c) { return static_cast<double>(c.recordNumber); });
    }
    if (name == "VAL") return OfText(call, arguments, program, ReadNumber);
    if (name == "LEN") {
        return OfText(call, arguments, program,
                      [](std::string_view text) { return static_cast<double>(text.size()); });
    }
    if (name == "ASC") {
        return OfText(call, arguments, program, [](std::string_view text) {
            return text.empty() ? 0.0 : static_cast<double>(static_cast<unsigned char>(text[0]));
        });
    }
    if (name == "AT") {
        RequireArgument(call, arguments, 0, ValueType::Character);
        RequireArgument(call, arguments, 1, ValueType::Character);
        TextEvaluator* needle = arguments[0].text;
        TextEvaluator* haystack = arguments[1].text;
        return program.Number([=](const EvaluationContext& c) {
            const std::string_view sought = needle->Eval(c);
            if (sought.empty()) return 0.0;
            const std::size_t found = haystack->Eval(c).find(sought);
            return found == std::string_view::npos ? 0.0 : static_cast<double>(found + 1);
        });
    }
    if (name == "ABS")
        return OfNumber(call, arguments, program, [](double v) { return std::abs(v); });
    if (name == "INT")
        return OfNumber(call, arguments, program, [](double v) { return std::trunc(v); });
    if (name == "SIGN") {
        return OfNumber(call, arguments, program,
                        [](double v) { return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0); });
    }
    if (name == "ROUND") return OfTwoNumbers(call, arguments, program, Round);
    if (name == "MOD") return OfTwoNumbers(call, arguments, program, Modulo);
    return std::nullopt;
}

}  // namespace fnrk::engine::expr

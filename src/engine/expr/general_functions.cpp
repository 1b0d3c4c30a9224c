// Functions that take values of any type: IIF, EMPTY, MIN, MAX, and DELETED.

#include <algorithm>

#include "engine/expr/compile_scope.hpp"
#include "engine/expr/expression_error.hpp"
#include "engine/expr/text_compare.hpp"

namespace fnrk::engine::expr {
namespace {

using Arguments = std::vector<Operand>;

void RequireSameType(const Node& call, const Arguments& arguments, std::size_t first) {
    if (arguments[first].type == arguments[first + 1].type) return;
    throw ExpressionError(call.operands[first + 1].position,
                          call.name + " needs arguments of one type, not " +
                              std::string(TypeName(arguments[first].type)) + " and " +
                              std::string(TypeName(arguments[first + 1].type)));
}

// A text result keeps the longer static length of the two: an index key built from it is
// padded to that.
Operand IfThenElse(const Node& call, const Arguments& arguments, Program& program) {
    RequireArgument(call, arguments, 0, ValueType::Logical);
    RequireSameType(call, arguments, 1);
    LogicalEvaluator* condition = arguments[0].logical;
    const Operand& yes = arguments[1];
    const Operand& no = arguments[2];
    switch (yes.type) {
        case ValueType::Character:
            return program.Text(std::max(yes.length, no.length), [=](const EvaluationContext& c) {
                return condition->Eval(c) ? yes.text->Eval(c) : no.text->Eval(c);
            });
        case ValueType::Numeric:
            return program.Number([=](const EvaluationContext& c) {
                return condition->Eval(c) ? yes.number->Eval(c) : no.number->Eval(c);
            });
        case ValueType::Date:
            return program.Date([=](const EvaluationContext& c) {
                return condition->Eval(c) ? yes.date->Eval(c) : no.date->Eval(c);
            });
        case ValueType::Logical:
            return program.Logical([=](const EvaluationContext& c) {
                return condition->Eval(c) ? yes.logical->Eval(c) : no.logical->Eval(c);
            });
    }
    return {};
}

Operand Empty(const Operand& value, Program& program) {
    switch (value.type) {
        case ValueType::Character:
            return program.Logical([text = value.text](const EvaluationContext& c) {
                return text->Eval(c).find_first_not_of(' ') == std::string_view::npos;
            });
        case ValueType::Numeric:
            return program.Logical([number = value.number](const EvaluationContext& c) {
                return number->Eval(c) == 0;
            });
        case ValueType::Date:
            return program.Logical(
                [date = value.date](const EvaluationContext& c) { return date->Eval(c) == 0; });
        case ValueType::Logical:
            return program.Logical([logical = value.logical](const EvaluationContext& c) {
                return !logical->Eval(c);
            });
    }
    return {};
}

Operand Extreme(const Node& call, const Arguments& arguments, Program& program) {
    RequireSameType(call, arguments, 0);
    const bool wantMax = call.name == "MAX";
    const Operand& a = arguments[0];
    const Operand& b = arguments[1];
    switch (a.type) {
        case ValueType::Character:
            return program.Text(std::max(a.length, b.length), [=](const EvaluationContext& c) {
                const std::string_view x = a.text->Eval(c);
                const std::string_view y = b.text->Eval(c);
                const int order = ComparePadded(x, y);
                return (wantMax ? order >= 0 : order <= 0) ? x : y;
            });
        case ValueType::Numeric:
            return program.Number([=](const EvaluationContext& c) {
                const double x = a.number->Eval(c);
                const double y = b.number->Eval(c);
                return (wantMax ? x >= y : x <= y) ? x : y;
            });
        case ValueType::Date:
            return program.Date([=](const EvaluationContext& c) {
                const std::int32_t x = a.date->Eval(c);
                const std::int32_t y = b.date->Eval(c);
                return (wantMax ? x >= y : x <= y) ? x : y;
            });
        case ValueType::Logical:
            break;
    }
    throw ExpressionError(call.position, call.name + " cannot take logical values");
}

}  // namespace

std::optional<Operand> CompileGeneralFunction(const Node& call, const Arguments& arguments,
                                              CompileScope& scope) {
    Program& program = scope.program;
    if (call.name == "IIF") return IfThenElse(call, arguments, program);
    if (call.name == "EMPTY") return Empty(arguments[0], program);
    if (call.name == "MIN" || call.name == "MAX") return Extreme(call, arguments, program);
    if (call.name == "DELETED") {
        // The deletion flag of the expression's own table is the first byte of its record.
        return program.Logical([](const EvaluationContext& c) {
            const char* flag = FieldBytes(c, 0, 0, 1);
            return flag != nullptr && *flag == '*';
        });
    }
    return std::nullopt;
}

}  // namespace fnrk::engine::expr

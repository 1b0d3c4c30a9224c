// The operators: arithmetic, joining of text, date arithmetic, comparisons and logic.

#include <cmath>
#include <cstring>

#include "engine/expr/compile_scope.hpp"
#include "engine/expr/expression_error.hpp"
#include "engine/expr/number_text.hpp"
#include "engine/expr/text_compare.hpp"

namespace fnrk::engine::expr {
namespace {

constexpr double kFirstJulian = 1721426;  // 0001-01-01
constexpr double kLastJulian = 5373484;   // 9999-12-31

[[noreturn]] void Mismatch(const Node& node, const std::vector<Operand>& operands) {
    std::string reason = std::string("operator ") + OperatorSymbol(node.op) + " cannot take " +
                         std::string(TypeName(operands[0].type));
    if (operands.size() > 1) reason += " and " + std::string(TypeName(operands[1].type));
    throw ExpressionError(node.position, reason);
}

// Days added to a date; the empty date stays empty, and leaving the calendar gives empty.
std::int32_t ShiftDate(std::int32_t julian, double days) {
    if (julian == 0) return 0;
    const double shifted = std::floor(static_cast<double>(julian) + days);
    if (!(shifted >= kFirstJulian && shifted <= kLastJulian)) return 0;
    return static_cast<std::int32_t>(shifted);
}

template <class Value>
Operand CompareValues(Program& program, Evaluator<Value>* left, Evaluator<Value>* right,
                      Operator op) {
    switch (op) {
        case Operator::Equal:
        case Operator::ExactEqual:
            return program.Logical(
                [=](const EvaluationContext& c) { return left->Eval(c) == right->Eval(c); });
        case Operator::NotEqual:
            return program.Logical(
                [=](const EvaluationContext& c) { return left->Eval(c) != right->Eval(c); });
        case Operator::Less:
            return program.Logical(
                [=](const EvaluationContext& c) { return left->Eval(c) < right->Eval(c); });
        case Operator::LessOrEqual:
            return program.Logical(
                [=](const EvaluationContext& c) { return left->Eval(c) <= right->Eval(c); });
        case Operator::Greater:
            return program.Logical(
                [=](const EvaluationContext& c) { return left->Eval(c) > right->Eval(c); });
        default:
            return program.Logical(
                [=](const EvaluationContext& c) { return left->Eval(c) >= right->Eval(c); });
    }
}

Operand CompareTexts(Program& program, TextEvaluator* left, TextEvaluator* right, Operator op) {
    switch (op) {
        case Operator::ExactEqual:
            return program.Logical(
                [=](const EvaluationContext& c) { return left->Eval(c) == right->Eval(c); });
        case Operator::Contains:
            return program.Logical([=](const EvaluationContext& c) {
                const std::string_view needle = left->Eval(c);
                return !needle.empty() && right->Eval(c).find(needle) != std::string_view::npos;
            });
        case Operator::Equal:
            return program.Logical([=](const EvaluationContext& c) {
                return CompareToRightLength(left->Eval(c), right->Eval(c)) == 0;
            });
        case Operator::NotEqual:
            return program.Logical([=](const EvaluationContext& c) {
                return CompareToRightLength(left->Eval(c), right->Eval(c)) != 0;
            });
        case Operator::Less:
            return program.Logical([=](const EvaluationContext& c) {
                return CompareToRightLength(left->Eval(c), right->Eval(c)) < 0;
            });
        case Operator::LessOrEqual:
            return program.Logical([=](const EvaluationContext& c) {
                return CompareToRightLength(left->Eval(c), right->Eval(c)) <= 0;
            });
        case Operator::Greater:
            return program.Logical([=](const EvaluationContext& c) {
                return CompareToRightLength(left->Eval(c), right->Eval(c)) > 0;
            });
        default:
            return program.Logical([=](const EvaluationContext& c) {
                return CompareToRightLength(left->Eval(c), right->Eval(c)) >= 0;
            });
    }
}

Operand Comparison(const Node& node, const std::vector<Operand>& operands, Program& program) {
    const Operand& left = operands[0];
    const Operand& right = operands[1];
    if (left.type != right.type) Mismatch(node, operands);
    switch (left.type) {
        case ValueType::Character:
            return CompareTexts(program, left.text, right.text, node.op);
        case ValueType::Numeric:
            if (node.op == Operator::Contains) Mismatch(node, operands);
            return CompareValues(program, left.number, right.number, node.op);
        case ValueType::Date:
            if (node.op == Operator::Contains) Mismatch(node, operands);
            return CompareValues(program, left.date, right.date, node.op);
        case ValueType::Logical:
            if (node.op != Operator::Equal && node.op != Operator::ExactEqual &&
                node.op != Operator::NotEqual) {
                Mismatch(node, operands);
            }
            return CompareValues(program, left.logical, right.logical, node.op);
    }
    Mismatch(node, operands);
}

Operand JoinTexts(const Node& node, const Operand& left, const Operand& right, Program& program) {
    const std::uint32_t length = CheckedLength(node, std::uint64_t{left.length} + right.length);
    char* buffer = program.Buffer(length);
    TextEvaluator* first = left.text;
    TextEvaluator* second = right.text;
    if (node.op == Operator::Add) {
        return program.Text(length, [=](const EvaluationContext& c) {
            const std::string_view a = first->Eval(c);
            const std::string_view b = second->Eval(c);
            CopyText(buffer, a);
            CopyText(buffer + a.size(), b);
            return std::string_view(buffer, a.size() + b.size());
        });
    }
    // "-" moves the trailing blanks of the left side behind the right side.
    return program.Text(length, [=](const EvaluationContext& c) {
        const std::string_view a = first->Eval(c);
        const std::string_view b = second->Eval(c);
        std::size_t kept = a.size();
        while (kept > 0 && a[kept - 1] == ' ') --kept;
        CopyText(buffer, a.substr(0, kept));
        CopyText(buffer + kept, b);
        std::memset(buffer + kept + b.size(), ' ', a.size() - kept);
        return std::string_view(buffer, a.size() + b.size());
    });
}

Operand Arithmetic(const Node& node, NumberEvaluator* a, NumberEvaluator* b, Program& program) {
    switch (node.op) {
        case Operator::Add:
            return program.Number(
                [=](const EvaluationContext& c) { return a->Eval(c) + b->Eval(c); });
        case Operator::Subtract:
            return program.Number(
                [=](const EvaluationContext& c) { return a->Eval(c) - b->Eval(c); });
        case Operator::Multiply:
            return program.Number(
                [=](const EvaluationContext& c) { return a->Eval(c) * b->Eval(c); });
        case Operator::Divide:
            return program.Number(
                [=](const EvaluationContext& c) { return a->Eval(c) / b->Eval(c); });
        case Operator::Modulo:
            return program.Number(
                [=](const EvaluationContext& c) { return Modulo(a->Eval(c), b->Eval(c)); });
        default:
            return program.Number(
                [=](const EvaluationContext& c) { return std::pow(a->Eval(c), b->Eval(c)); });
    }
}

Operand AddOrSubtract(const Node& node, const std::vector<Operand>& operands, Program& program) {
    const Operand& left = operands[0];
    const Operand& right = operands[1];
    const bool add = node.op == Operator::Add;
    using enum ValueType;
    if (left.type == Numeric && right.type == Numeric) {
        return Arithmetic(node, left.number, right.number, program);
    }
    if (left.type == Character && right.type == Character) {
        return JoinTexts(node, left, right, program);
    }
    if (left.type == Date && right.type == Numeric) {
        DateEvaluator* date = left.date;
        NumberEvaluator* days = right.number;
        const double sign = add ? 1 : -1;
        return program.Date([=](const EvaluationContext& c) {
            return ShiftDate(date->Eval(c), sign * days->Eval(c));
        });
    }
    if (add && left.type == Numeric && right.type == Date) {
        NumberEvaluator* days = left.number;
        DateEvaluator* date = right.date;
        return program.Date(
            [=](const EvaluationContext& c) { return ShiftDate(date->Eval(c), days->Eval(c)); });
    }
    if (!add && left.type == Date && right.type == Date) {
        DateEvaluator* a = left.date;
        DateEvaluator* b = right.date;
        return program.Number([=](const EvaluationContext& c) {
            return static_cast<double>(a->Eval(c)) - static_cast<double>(b->Eval(c));
        });
    }
    Mismatch(node, operands);
}

}  // namespace

Operand CompileOperator(const Node& node, const std::vector<Operand>& operands,
                        CompileScope& scope) {
    Program& program = scope.program;
    using enum ValueType;
    switch (node.op) {
        case Operator::Negate: {
            if (operands[0].type != Numeric) Mismatch(node, operands);
            NumberEvaluator* a = operands[0].number;
            return program.Number([=](const EvaluationContext& c) { return -a->Eval(c); });
        }
        case Operator::Not: {
            if (operands[0].type != Logical) Mismatch(node, operands);
            LogicalEvaluator* a = operands[0].logical;
            return program.Logical([=](const EvaluationContext& c) { return !a->Eval(c); });
        }
        case Operator::Add:
        case Operator::Subtract:
            return AddOrSubtract(node, operands, program);
        case Operator::Multiply:
        case Operator::Divide:
        case Operator::Modulo:
        case Operator::Power:
            if (operands[0].type != Numeric || operands[1].type != Numeric) {
                Mismatch(node, operands);
            }
            return Arithmetic(node, operands[0].number, operands[1].number, program);
        case Operator::And:
        case Operator::Or: {
            if (operands[0].type != Logical || operands[1].type != Logical) {
                Mismatch(node, operands);
            }
            LogicalEvaluator* a = operands[0].logical;
            LogicalEvaluator* b = operands[1].logical;
            if (node.op == Operator::And) {
                return program.Logical(
                    [=](const EvaluationContext& c) { return a->Eval(c) && b->Eval(c); });
            }
            return program.Logical(
                [=](const EvaluationContext& c) { return a->Eval(c) || b->Eval(c); });
        }
        default:
            return Comparison(node, operands, program);
    }
}

}  // namespace fnrk::engine::expr

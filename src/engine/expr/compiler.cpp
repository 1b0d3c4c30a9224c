#include "engine/expr/compile_scope.hpp"
#include "engine/expr/expression_error.hpp"

namespace fnrk::engine::expr {
namespace {

Operand CompileConstant(const Node& node, CompileScope& scope) {
    const Constant& constant = node.constant;
    switch (constant.type) {
        case ValueType::Character: {
            const std::uint32_t length = CheckedLength(node, constant.text.size());
            char* buffer = scope.program.Buffer(length);
            std::copy(constant.text.begin(), constant.text.end(), buffer);
            const std::string_view text(buffer, length);
            return scope.program.Text(length, [text](const EvaluationContext&) { return text; });
        }
        case ValueType::Numeric: {
            const double number = constant.number;
            return scope.program.Number([number](const EvaluationContext&) { return number; });
        }
        case ValueType::Date: {
            const std::int32_t julian = constant.julian;
            return scope.program.Date([julian](const EvaluationContext&) { return julian; });
        }
        case ValueType::Logical: {
            const bool logical = constant.logical;
            return scope.program.Logical([logical](const EvaluationContext&) { return logical; });
        }
    }
    return {};
}

}  // namespace

Operand CompileNode(Node& node, CompileScope& scope) {
    Operand result;
    switch (node.kind) {
        case NodeKind::Field:
            result = CompileField(node, scope);
            break;
        case NodeKind::Constant:
            result = CompileConstant(node, scope);
            break;
        case NodeKind::Call:
            if (node.name == "EMPTY") {
                if (auto memo = CompileEmptyMemo(node, scope)) {
                    result = *memo;
                    break;
                }
            }
            [[fallthrough]];
        case NodeKind::Unary:
        case NodeKind::Binary: {
            std::vector<Operand> operands;
            operands.reserve(node.operands.size());
            for (Node& operand : node.operands) operands.push_back(CompileNode(operand, scope));
            result = node.kind == NodeKind::Call ? CompileCall(node, operands, scope)
                                                 : CompileOperator(node, operands, scope);
            break;
        }
    }
    node.type = result.type;
    node.length = result.type == ValueType::Character ? result.length : 0;
    return result;
}

Operand CompileCall(const Node& call, const std::vector<Operand>& arguments, CompileScope& scope) {
    if (auto general = CompileGeneralFunction(call, arguments, scope)) return *general;
    if (auto text = CompileTextFunction(call, arguments, scope)) return *text;
    if (auto number = CompileNumberFunction(call, arguments, scope)) return *number;
    if (auto date = CompileDateFunction(call, arguments, scope)) return *date;
    throw ExpressionError(call.position, "unknown function " + call.name);
}

std::optional<double> ConstantNumber(const Node& node) {
    if (node.kind == NodeKind::Constant && node.constant.type == ValueType::Numeric) {
        return node.constant.number;
    }
    if (node.kind == NodeKind::Unary && node.op == Operator::Negate) {
        if (auto inner = ConstantNumber(node.operands[0])) return -*inner;
    }
    return std::nullopt;
}

void RequireArgument(const Node& call, const std::vector<Operand>& arguments, std::size_t index,
                     ValueType type) {
    if (arguments[index].type == type) return;
    throw ExpressionError(call.operands[index].position, "argument " + std::to_string(index + 1) +
                                                             " of " + call.name + " must be " +
                                                             std::string(TypeName(type)));
}

std::uint32_t RequireLength(const Node& call, std::size_t index, std::uint32_t minimum) {
    const Node& argument = call.operands[index];
    const std::optional<double> value = ConstantNumber(argument);
    if (!value) {
        throw ExpressionError(argument.position, "argument " + std::to_string(index + 1) + " of " +
                                                     call.name + " must be a number literal");
    }
    if (!(*value >= minimum && *value <= kMaxTextLength)) {
        throw ExpressionError(argument.position, "invalid length for " + call.name);
    }
    return static_cast<std::uint32_t>(*value);
}

std::uint32_t CheckedLength(const Node& node, std::uint64_t length) {
    if (length > kMaxTextLength) throw ExpressionError(node.position, "character value too long");
    return static_cast<std::uint32_t>(length);
}

}  // namespace fnrk::engine::expr

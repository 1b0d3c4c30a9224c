#include "engine/expr/syntax_tree.hpp"

#include <charconv>

#include "engine/expr/dates.hpp"

namespace fnrk::engine::expr {
namespace {

std::string QuotedText(const std::string& text) {
    if (text.find('\'') == std::string::npos) return "'" + text + "'";
    if (text.find('"') == std::string::npos) return "\"" + text + "\"";
    return "[" + text + "]";
}

std::string ConstantText(const Constant& constant) {
    switch (constant.type) {
        case ValueType::Character:
            return QuotedText(constant.text);
        case ValueType::Numeric: {
            char buffer[64];
            const auto result = std::to_chars(buffer, buffer + sizeof buffer, constant.number);
            return std::string(buffer, result.ptr);
        }
        case ValueType::Date: {
            if (constant.julian == 0) return "{}";
            const std::string dtos = Dtos(constant.julian);
            return "{^" + dtos.substr(0, 4) + "-" + dtos.substr(4, 2) + "-" + dtos.substr(6, 2) +
                   "}";
        }
        case ValueType::Logical:
            return constant.logical ? ".T." : ".F.";
    }
    return {};
}

bool NeedsParentheses(const Node& operand) {
    return operand.kind == NodeKind::Binary || operand.kind == NodeKind::Unary;
}

std::string OperandText(const Node& operand) {
    const std::string text = CanonicalText(operand);
    return NeedsParentheses(operand) ? "(" + text + ")" : text;
}

}  // namespace

const char* OperatorSymbol(Operator op) {
    switch (op) {
        case Operator::Negate:
            return "-";
        case Operator::Not:
            return ".NOT.";
        case Operator::Add:
            return "+";
        case Operator::Subtract:
            return "-";
        case Operator::Multiply:
            return "*";
        case Operator::Divide:
            return "/";
        case Operator::Modulo:
            return "%";
        case Operator::Power:
            return "^";
        case Operator::Equal:
            return "=";
        case Operator::ExactEqual:
            return "==";
        case Operator::NotEqual:
            return "<>";
        case Operator::Less:
            return "<";
        case Operator::LessOrEqual:
            return "<=";
        case Operator::Greater:
            return ">";
        case Operator::GreaterOrEqual:
            return ">=";
        case Operator::Contains:
            return "$";
        case Operator::And:
            return ".AND.";
        case Operator::Or:
            return ".OR.";
    }
    return "?";
}

bool IsComparison(Operator op) {
    return op >= Operator::Equal && op <= Operator::Contains;
}

std::string CanonicalText(const Node& node) {
    switch (node.kind) {
        case NodeKind::Field:
            return node.alias.empty() ? node.name : node.alias + "->" + node.name;
        case NodeKind::Constant:
            return ConstantText(node.constant);
        case NodeKind::Unary:
            return OperatorSymbol(node.op) + OperandText(node.operands[0]);
        case NodeKind::Binary:
            return OperandText(node.operands[0]) + OperatorSymbol(node.op) +
                   OperandText(node.operands[1]);
        case NodeKind::Call: {
            std::string text = node.name + "(";
            for (std::size_t i = 0; i < node.operands.size(); ++i) {
                if (i > 0) text += ",";
                text += CanonicalText(node.operands[i]);
            }
            return text + ")";
        }
    }
    return {};
}

}  // namespace fnrk::engine::expr

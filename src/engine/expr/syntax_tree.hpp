#pragma once

// The parse tree of an expression. It stays inspectable after compiling, so that the index
// layer can look for conditions on a tag's key (equality and ranges under .AND. / .OR. /
// .NOT.).

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/expr/field_resolver.hpp"
#include "engine/expr/value_type.hpp"

namespace fnrk::engine::expr {

enum class NodeKind : std::uint8_t { Field, Constant, Unary, Binary, Call };

enum class Operator : std::uint8_t {
    // unary
    Negate,
    Not,
    // arithmetic and string joining
    Add,
    Subtract,
    Multiply,
    Divide,
    Modulo,
    Power,
    // comparisons
    Equal,           // =  (character: up to the length of the right side)
    ExactEqual,      // ==
    NotEqual,        // != <> #
    Less,            // <
    LessOrEqual,     // <=
    Greater,         // >
    GreaterOrEqual,  // >=
    Contains,        // $  (left is a substring of right)
    // logic
    And,
    Or,
};

// Canonical spelling: "-", ".NOT.", "+", ..., "==", "$", ".AND.", ".OR.".
const char* OperatorSymbol(Operator op);
bool IsComparison(Operator op);

// A literal value. Character text is Windows-1252.
struct Constant {
    ValueType type = ValueType::Logical;
    std::string text;
    double number = 0;
    std::int32_t julian = 0;
    bool logical = false;
};

struct Node {
    NodeKind kind = NodeKind::Constant;
    // 0-based byte offset of the node in the expression text.
    std::size_t position = 0;
    // Unary and Binary.
    Operator op = Operator::Add;
    // Field: upper-case alias (empty when none) and name. Call: the function's full upper-case
    // name, whatever abbreviation was written ("SUBS" -> "SUBSTR"; "IF" -> "IIF").
    std::string alias;
    std::string name;
    // Constant.
    Constant constant;
    // Unary: 1 operand; Binary: left, right; Call: the arguments.
    std::vector<Node> operands;

    // Filled in by compiling: the result type, the static length of a character result (the
    // longest it can be), and for Field the binding the resolver gave.
    ValueType type = ValueType::Logical;
    std::uint32_t length = 0;
    FieldBinding binding;
};

// Canonical text of a tree: upper-case names, no blanks, operators as OperatorSymbol,
// parentheses where needed, strings in quotes (Windows-1252 as is). Two expressions that
// differ only in case, spacing, abbreviations or quotes give the same text, so it serves to
// compare a condition's operand with an index key expression.
std::string CanonicalText(const Node& node);

}  // namespace fnrk::engine::expr

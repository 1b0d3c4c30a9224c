#pragma once

// What the compiling of one expression shares between its parts. Internal.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/expr/program.hpp"

namespace fnrk::engine::expr {

struct CompileScope {
    Program& program;
    const FieldResolver& resolver;
    const DateSettings& dates;
};

// The longest character value an expression may produce.
inline constexpr std::uint32_t kMaxTextLength = 65535;

// Compiles a node and everything under it, filling in its type, length and binding.
Operand CompileNode(Node& node, CompileScope& scope);

Operand CompileField(Node& field, CompileScope& scope);
// EMPTY(memo field): the one use of a memo field, answered from the record's block pointer.
// No value when the argument is not a memo field.
std::optional<Operand> CompileEmptyMemo(Node& call, CompileScope& scope);
Operand CompileOperator(const Node& node, const std::vector<Operand>& operands,
                        CompileScope& scope);
Operand CompileCall(const Node& call, const std::vector<Operand>& arguments, CompileScope& scope);

// Each returns no value when the function is not one of its own.
std::optional<Operand> CompileTextFunction(const Node& call, const std::vector<Operand>& arguments,
                                           CompileScope& scope);
std::optional<Operand> CompileNumberFunction(const Node& call,
                                             const std::vector<Operand>& arguments,
                                             CompileScope& scope);
std::optional<Operand> CompileGeneralFunction(const Node& call,
                                              const std::vector<Operand>& arguments,
                                              CompileScope& scope);
std::optional<Operand> CompileDateFunction(const Node& call, const std::vector<Operand>& arguments,
                                           CompileScope& scope);

// The value of a numeric literal (or a negated one), for arguments that fix a length.
std::optional<double> ConstantNumber(const Node& node);
// Throws ExpressionError unless argument `index` of `call` has type `type`.
void RequireArgument(const Node& call, const std::vector<Operand>& arguments, std::size_t index,
                     ValueType type);
// A length argument: a numeric literal from `minimum` to kMaxTextLength.
std::uint32_t RequireLength(const Node& call, std::size_t index, std::uint32_t minimum);
// Throws ExpressionError when a character result would exceed kMaxTextLength.
std::uint32_t CheckedLength(const Node& node, std::uint64_t length);

}  // namespace fnrk::engine::expr

#pragma once

// A compiled expression: parsed once, type-checked, bound to record layouts, then evaluated
// per record without allocating. Its results live in buffers of its own, so one expression
// serves one evaluation at a time.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "engine/expr/dates.hpp"
#include "engine/expr/expression_error.hpp"
#include "engine/expr/field_resolver.hpp"
#include "engine/expr/syntax_tree.hpp"
#include "engine/expr/value_type.hpp"

namespace fnrk::engine::expr {

// What one evaluation sees.
struct EvaluationContext {
    // The current record of each source (FieldBinding::source), deletion flag byte included.
    // A missing source or a record too short for a field reads as an empty value.
    std::span<const std::string_view> records;
    std::uint32_t recordNumber = 0;  // RECNO()
    // For DTOC and CTOD; null means the defaults of DateSettings.
    const DateSettings* dates = nullptr;
};

// One result of any type (Evaluate). `text` stays valid until the next evaluation.
struct Value {
    ValueType type = ValueType::Logical;
    std::string_view text;
    double number = 0;
    std::int32_t julian = 0;
    bool logical = false;
};

class Program;

class Expression {
  public:
    // Throw ExpressionError for syntax, unknown names and type faults. `dates` is the setting
    // in force when compiling: it reads date literals in display form and gives DTOC its
    // static length.
    static Expression Compile(std::string_view text, const FieldResolver& resolver,
                              const DateSettings& dates = {});
    static Expression Compile(Node tree, const FieldResolver& resolver,
                              const DateSettings& dates = {});

    Expression(Expression&&) noexcept;
    Expression& operator=(Expression&&) noexcept;
    ~Expression();

    // The tree with types, lengths and field bindings filled in.
    const Node& tree() const { return tree_; }
    ValueType type() const { return tree_.type; }
    // For a character result, the longest it can be: an index key's length.
    std::uint32_t length() const { return tree_.length; }

    // Typed evaluation; each throws std::logic_error when the expression has another type.
    bool EvaluateLogical(const EvaluationContext& context);
    double EvaluateNumber(const EvaluationContext& context);
    std::int32_t EvaluateDate(const EvaluationContext& context);
    // The text as computed (TRIM may shorten it); valid until the next evaluation.
    std::string_view EvaluateText(const EvaluationContext& context);
    // The text blank-padded to length(): the form an index key takes.
    std::string_view EvaluateKey(const EvaluationContext& context);

    Value Evaluate(const EvaluationContext& context);

  private:
    Expression(Node tree, std::unique_ptr<Program> program);

    Node tree_;
    std::unique_ptr<Program> program_;
};

}  // namespace fnrk::engine::expr

#include "engine/expr/expression.hpp"

#include <cstring>
#include <stdexcept>

#include "engine/expr/compile_scope.hpp"
#include "engine/expr/parser.hpp"

namespace fnrk::engine::expr {
namespace {

void RequireType(ValueType actual, ValueType wanted) {
    if (actual != wanted) {
        throw std::logic_error("expression is " + std::string(TypeName(actual)) + ", not " +
                               std::string(TypeName(wanted)));
    }
}

}  // namespace

Expression Expression::Compile(std::string_view text, const FieldResolver& resolver,
                               const DateSettings& dates) {
    return Compile(Parse(text, dates), resolver, dates);
}

Expression Expression::Compile(Node tree, const FieldResolver& resolver,
                               const DateSettings& dates) {
    auto program = std::make_unique<Program>();
    CompileScope scope{*program, resolver, dates};
    program->root = CompileNode(tree, scope);
    if (program->root.type == ValueType::Character) {
        program->keyBuffer = program->Buffer(program->root.length);
    }
    return Expression(std::move(tree), std::move(program));
}

Expression::Expression(Node tree, std::unique_ptr<Program> program)
    : tree_(std::move(tree)), program_(std::move(program)) {}
Expression::Expression(Expression&&) noexcept = default;
Expression& Expression::operator=(Expression&&) noexcept = default;
Expression::~Expression() = default;

bool Expression::EvaluateLogical(const EvaluationContext& context) {
    RequireType(type(), ValueType::Logical);
    return program_->root.logical->Eval(context);
}

double Expression::EvaluateNumber(const EvaluationContext& context) {
    RequireType(type(), ValueType::Numeric);
    return program_->root.number->Eval(context);
}

std::int32_t Expression::EvaluateDate(const EvaluationContext& context) {
    RequireType(type(), ValueType::Date);
    return program_->root.date->Eval(context);
}

std::string_view Expression::EvaluateText(const EvaluationContext& context) {
    RequireType(type(), ValueType::Character);
    return program_->root.text->Eval(context);
}

std::string_view Expression::EvaluateKey(const EvaluationContext& context) {
    const std::string_view text = EvaluateText(context);
    const std::size_t length = program_->root.length;
    char* key = program_->keyBuffer;
    const std::size_t kept = std::min(text.size(), length);
    CopyText(key, text.substr(0, kept));
    std::memset(key + kept, ' ', length - kept);
    return std::string_view(key, length);
}

Value Expression::Evaluate(const EvaluationContext& context) {
    Value value;
    value.type = type();
    switch (value.type) {
        case ValueType::Character:
            value.text = program_->root.text->Eval(context);
            break;
        case ValueType::Numeric:
            value.number = program_->root.number->Eval(context);
            break;
        case ValueType::Date:
            value.julian = program_->root.date->Eval(context);
            break;
        case ValueType::Logical:
            value.logical = program_->root.logical->Eval(context);
            break;
    }
    return value;
}

}  // namespace fnrk::engine::expr

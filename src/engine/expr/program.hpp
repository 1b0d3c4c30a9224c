#pragma once

// The compiled form of an expression: a tree of small closures, each bound to its operands and
// to buffers sized at compile time, so that evaluating a record allocates nothing. Internal to
// the expression library.

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/expr/expression.hpp"

namespace fnrk::engine::expr {

class EvalNode {
  public:
    virtual ~EvalNode() = default;
};

template <class Result>
class Evaluator : public EvalNode {
  public:
    virtual Result Eval(const EvaluationContext& context) = 0;
};

using TextEvaluator = Evaluator<std::string_view>;
using NumberEvaluator = Evaluator<double>;
using DateEvaluator = Evaluator<std::int32_t>;
using LogicalEvaluator = Evaluator<bool>;

template <class Result, class Function>
class Closure final : public Evaluator<Result> {
  public:
    explicit Closure(Function function) : function_(std::move(function)) {}
    Result Eval(const EvaluationContext& context) override { return function_(context); }

  private:
    Function function_;
};

// One compiled sub-expression: its type, its static length when character, and the evaluator
// of that type.
struct Operand {
    ValueType type = ValueType::Logical;
    std::uint32_t length = 0;
    TextEvaluator* text = nullptr;
    NumberEvaluator* number = nullptr;
    DateEvaluator* date = nullptr;
    LogicalEvaluator* logical = nullptr;
};

class Program {
  public:
    template <class Function>
    Operand Text(std::uint32_t length, Function function) {
        Operand operand{ValueType::Character, length};
        operand.text = Add<std::string_view>(std::move(function));
        return operand;
    }
    template <class Function>
    Operand Number(Function function) {
        Operand operand{ValueType::Numeric};
        operand.number = Add<double>(std::move(function));
        return operand;
    }
    template <class Function>
    Operand Date(Function function) {
        Operand operand{ValueType::Date};
        operand.date = Add<std::int32_t>(std::move(function));
        return operand;
    }
    template <class Function>
    Operand Logical(Function function) {
        Operand operand{ValueType::Logical};
        operand.logical = Add<bool>(std::move(function));
        return operand;
    }

    // Storage that lives as long as the program, for the results of text operations.
    char* Buffer(std::size_t size) {
        buffers_.push_back(std::make_unique<char[]>(size == 0 ? 1 : size));
        return buffers_.back().get();
    }

    Operand root;
    char* keyBuffer = nullptr;  // root.length bytes, for keys padded with blanks

  private:
    template <class Result, class Function>
    Evaluator<Result>* Add(Function function) {
        auto node = std::make_unique<Closure<Result, Function>>(std::move(function));
        Evaluator<Result>* raw = node.get();
        nodes_.push_back(std::move(node));
        return raw;
    }

    std::vector<std::unique_ptr<EvalNode>> nodes_;
    std::vector<std::unique_ptr<char[]>> buffers_;
};

// The bytes of a field in the current record of its source, or null when the source is
// missing or its record too short.
inline const char* FieldBytes(const EvaluationContext& context, int source, std::uint32_t offset,
                              std::uint32_t length) {
    if (static_cast<std::size_t>(source) >= context.records.size()) return nullptr;
    const std::string_view record = context.records[static_cast<std::size_t>(source)];
    if (record.size() < static_cast<std::size_t>(offset) + length) return nullptr;
    return record.data() + offset;
}

// Copies text into a result buffer; an empty view may have no data pointer at all.
inline void CopyText(char* to, std::string_view from) {
    if (!from.empty()) std::memcpy(to, from.data(), from.size());
}

}  // namespace fnrk::engine::expr

// Functions that give character values.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "engine/expr/ascii.hpp"
#include "engine/expr/compile_scope.hpp"
#include "engine/expr/number_text.hpp"

namespace fnrk::engine::expr {
namespace {

using Arguments = std::vector<Operand>;

std::string_view TrimRight(std::string_view text) {
    std::size_t end = text.size();
    while (end > 0 && text[end - 1] == ' ') --end;
    return text.substr(0, end);
}

std::string_view TrimLeft(std::string_view text) {
    std::size_t start = 0;
    while (start < text.size() && text[start] == ' ') ++start;
    return text.substr(start);
}

// A count or position read at run time, kept within [0, limit].
std::size_t Clamp(double value, std::size_t limit) {
    if (!(value > 0)) return 0;
    return value >= static_cast<double>(limit) ? limit : static_cast<std::size_t>(value);
}

template <char (*Convert)(char)>
Operand ChangeCase(const Operand& text, Program& program) {
    char* buffer = program.Buffer(text.length);
    TextEvaluator* source = text.text;
    return program.Text(text.length, [=](const EvaluationContext& c) {
        const std::string_view value = source->Eval(c);
        for (std::size_t i = 0; i < value.size(); ++i) buffer[i] = Convert(value[i]);
        return std::string_view(buffer, value.size());
    });
}

template <std::string_view (*Cut)(std::string_view)>
Operand Trimmed(const Operand& text, Program& program) {
    TextEvaluator* source = text.text;
    return program.Text(text.length,
                        [=](const EvaluationContext& c) { return Cut(source->Eval(c)); });
}

std::string_view TrimBoth(std::string_view text) {
    return TrimLeft(TrimRight(text));
}

Operand Replicate(const Node& call, const Arguments& arguments, Program& program) {
    RequireArgument(call, arguments, 0, ValueType::Character);
    const std::uint32_t times = RequireLength(call, 1, 0);
    const std::uint32_t length = CheckedLength(call, std::uint64_t{arguments[0].length} * times);
    char* buffer = program.Buffer(length);
    TextEvaluator* source = arguments[0].text;
    return program.Text(length, [=](const EvaluationContext& c) {
        const std::string_view value = source->Eval(c);
        for (std::uint32_t i = 0; i < times; ++i) {
            CopyText(buffer + i * value.size(), value);
        }
        return std::string_view(buffer, value.size() * times);
    });
}

// STR and STRZERO: the length (default 10) and decimals (default 0) must be literals, since
// they fix the length of the result.
Operand NumberToText(const Node& call, const Arguments& arguments, Program& program,
                     bool zeroFilled) {
    RequireArgument(call, arguments, 0, ValueType::Numeric);
    const std::uint32_t length = arguments.size() > 1 ? RequireLength(call, 1, 1) : 10;
    const int decimals = arguments.size() > 2 ? static_cast<int>(RequireLength(call, 2, 0)) : 0;
    char* buffer = program.Buffer(length);
    NumberEvaluator* number = arguments[0].number;
    return program.Text(length, [=](const EvaluationContext& c) {
        WriteStr(number->Eval(c), length, decimals, buffer);
        if (zeroFilled) {
            std::size_t blanks = 0;
            while (blanks < length && buffer[blanks] == ' ') ++blanks;
            const bool negative = blanks < length && buffer[blanks] == '-';
            std::memset(buffer, '0', negative ? blanks + 1 : blanks);
            if (negative) buffer[0] = '-';
        }
        return std::string_view(buffer, length);
    });
}

// LEFT, RIGHT and SUBSTR give part of the text; with a literal count the result is no longer
// than that.
std::uint32_t PartLength(const Node& call, std::size_t countIndex, std::uint32_t whole) {
    if (call.operands.size() <= countIndex) return whole;
    const std::optional<double> count = ConstantNumber(call.operands[countIndex]);
    if (!count) return whole;
    return static_cast<std::uint32_t>(Clamp(*count, whole));
}

Operand Part(const Node& call, const Arguments& arguments, Program& program) {
    RequireArgument(call, arguments, 0, ValueType::Character);
    RequireArgument(call, arguments, 1, ValueType::Numeric);
    TextEvaluator* source = arguments[0].text;
    NumberEvaluator* second = arguments[1].number;
    if (call.name == "LEFT") {
        return program.Text(PartLength(call, 1, arguments[0].length),
                            [=](const EvaluationContext& c) {
                                const std::string_view value = source->Eval(c);
                                return value.substr(0, Clamp(second->Eval(c), value.size()));
                            });
    }
    if (call.name == "RIGHT") {
        return program.Text(PartLength(call, 1, arguments[0].length),
                            [=](const EvaluationContext& c) {
                                const std::string_view value = source->Eval(c);
                                const std::size_t count = Clamp(second->Eval(c), value.size());
                                return value.substr(value.size() - count);
                            });
    }
    // SUBSTR(text, start [, count]), start counted from 1.
    NumberEvaluator* count = arguments.size() > 2 ? arguments[2].number : nullptr;
    if (count != nullptr) RequireArgument(call, arguments, 2, ValueType::Numeric);
    return program.Text(PartLength(call, 2, arguments[0].length), [=](const EvaluationContext& c) {
        const std::string_view value = source->Eval(c);
        const double start = std::floor(second->Eval(c));
        const std::size_t from = start <= 1 ? 0 : Clamp(start - 1, value.size());
        const std::string_view rest = value.substr(from);
        return count ? rest.substr(0, Clamp(count->Eval(c), rest.size())) : rest;
    });
}

// PADL / PADR(text, length [, fill]): blank- (or fill-) padded on the left / right to exactly
// `length`; a longer text keeps its first characters.
Operand Pad(const Node& call, const Arguments& arguments, Program& program) {
    RequireArgument(call, arguments, 0, ValueType::Character);
    const std::uint32_t length = RequireLength(call, 1, 0);
    TextEvaluator* fill = nullptr;
    if (arguments.size() > 2) {
        RequireArgument(call, arguments, 2, ValueType::Character);
        fill = arguments[2].text;
    }
    const bool left = call.name == "PADL";
    char* buffer = program.Buffer(length);
    TextEvaluator* source = arguments[0].text;
    return program.Text(length, [=](const EvaluationContext& c) {
        const std::string_view value = source->Eval(c);
        char filler = ' ';
        if (fill) {
            const std::string_view chosen = fill->Eval(c);
            if (!chosen.empty()) filler = chosen[0];
        }
        const std::size_t kept = std::min<std::size_t>(value.size(), length);
        const std::size_t padding = length - kept;
        std::memset(left ? buffer : buffer + kept, filler, padding);
        CopyText(left ? buffer + padding : buffer, value.substr(0, kept));
        return std::string_view(buffer, length);
    });
}

}  // namespace

std::optional<Operand> CompileTextFunction(const Node& call, const Arguments& arguments,
                                           CompileScope& scope) {
    Program& program = scope.program;
    const std::string& name = call.name;
    if (name == "UPPER" || name == "LOWER" || name == "TRIM" || name == "RTRIM" ||
        name == "LTRIM" || name == "ALLTRIM") {
        RequireArgument(call, arguments, 0, ValueType::Character);
        if (name == "UPPER") return ChangeCase<AsciiUpper>(arguments[0], program);
        if (name == "LOWER") return ChangeCase<AsciiLower>(arguments[0], program);
        if (name == "LTRIM") return Trimmed<TrimLeft>(arguments[0], program);
        if (name == "ALLTRIM") return Trimmed<TrimBoth>(arguments[0], program);
        return Trimmed<TrimRight>(arguments[0], program);
    }
    if (name == "SPACE") {
        const std::uint32_t length = RequireLength(call, 0, 0);
        char* buffer = program.Buffer(length);
        std::memset(buffer, ' ', length);
        const std::string_view blanks(buffer, length);
        return program.Text(length, [blanks](const EvaluationContext&) { return blanks; });
    }
    if (name == "REPLICATE") return Replicate(call, arguments, program);
    if (name == "STR") return NumberToText(call, arguments, program, false);
    if (name == "STRZERO") return NumberToText(call, arguments, program, true);
    if (name == "LEFT" || name == "RIGHT" || name == "SUBSTR")
        return Part(call, arguments, program);
    if (name == "PADL" || name == "PADR") return Pad(call, arguments, program);
    if (name == "CHR") {
        RequireArgument(call, arguments, 0, ValueType::Numeric);
        char* buffer = program.Buffer(1);
        NumberEvaluator* code = arguments[0].number;
        return program.Text(1, [=](const EvaluationContext& c) {
            buffer[0] = static_cast<char>(Clamp(code->Eval(c), 255));
            return std::string_view(buffer, 1);
        });
    }
    return std::nullopt;
}

}  // namespace fnrk::engine::expr

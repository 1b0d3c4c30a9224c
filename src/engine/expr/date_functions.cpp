// Functions over dates, and the conversions between dates and text.

#include "engine/expr/compile_scope.hpp"

namespace fnrk::engine::expr {
namespace {

using Arguments = std::vector<Operand>;

const DateSettings& SettingsOf(const EvaluationContext& context) {
    static const DateSettings kDefaults;
    return context.dates ? *context.dates : kDefaults;
}

Operand DatePart(const Node& call, const Arguments& arguments, Program& program) {
    RequireArgument(call, arguments, 0, ValueType::Date);
    DateEvaluator* date = arguments[0].date;
    const int part = call.name == "YEAR" ? 0 : (call.name == "MONTH" ? 1 : 2);
    return program.Number([=](const EvaluationContext& c) {
        const CivilDate civil = CivilFromJulian(date->Eval(c));
        return static_cast<double>(part == 0 ? civil.year : (part == 1 ? civil.month : civil.day));
    });
}

}  // namespace

std::optional<Operand> CompileDateFunction(const Node& call, const Arguments& arguments,
                                           CompileScope& scope) {
    Program& program = scope.program;
    const std::string& name = call.name;
    if (name == "DATE") return program.Date([](const EvaluationContext&) { return Today(); });
    if (name == "YEAR" || name == "MONTH" || name == "DAY") {
        return DatePart(call, arguments, program);
    }
    if (name == "DTOS") {
        RequireArgument(call, arguments, 0, ValueType::Date);
        DateEvaluator* date = arguments[0].date;
        char* buffer = program.Buffer(8);
        return program.Text(8, [=](const EvaluationContext& c) {
            WriteDtos(date->Eval(c), buffer);
            return std::string_view(buffer, 8);
        });
    }
    if (name == "DTOC") {
        RequireArgument(call, arguments, 0, ValueType::Date);
        DateEvaluator* date = arguments[0].date;
        // Sized by the format in force when compiling; a longer format set later is cut.
        const auto length = static_cast<std::uint32_t>(
            std::min<std::size_t>(FormattedDateLength(scope.dates), kMaxTextLength));
        char* buffer = program.Buffer(length);
        return program.Text(length, [=](const EvaluationContext& c) {
            return std::string_view(
                buffer, WriteFormattedDate(date->Eval(c), SettingsOf(c), buffer, length));
        });
    }
    if (name == "CTOD" || name == "STOD") {
        RequireArgument(call, arguments, 0, ValueType::Character);
        TextEvaluator* text = arguments[0].text;
        if (name == "STOD") {
            return program.Date(
                [=](const EvaluationContext& c) { return Stod(text->Eval(c)).value_or(0); });
        }
        return program.Date([=](const EvaluationContext& c) {
            return ParseDate(text->Eval(c), SettingsOf(c)).value_or(0);
        });
    }
    return std::nullopt;
}

}  // namespace fnrk::engine::expr

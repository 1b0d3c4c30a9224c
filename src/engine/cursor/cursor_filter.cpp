#include "engine/cursor/table_cursor.hpp"
#include "engine/cursor/table_resolver.hpp"

namespace fnrk::engine::cursor {

std::optional<expr::Expression> TableCursor::CompileCondition(std::string_view text,
                                                              std::string& message) {
    try {
        expr::Expression expression =
            expr::Expression::Compile(text, TableResolver(header(), alias_), settings_.dates);
        if (expression.type() != expr::ValueType::Logical) {
            message = "the expression is not logical";
            return std::nullopt;
        }
        return expression;
    } catch (const expr::ExpressionError& error) {
        message = error.what();
        return std::nullopt;
    }
}

Status TableCursor::SetFilter(std::string_view expression, std::string& message) {
    auto compiled = CompileCondition(expression, message);
    if (!compiled) return AE_INVALID_EXPRESSION;
    filter_ = std::move(compiled);
    filterText_ = expression;
    return AE_SUCCESS;
}

Status TableCursor::Locate(std::string_view expression, bool forward, bool& found,
                           std::string& message) {
    found = false;
    auto compiled = CompileCondition(expression, message);
    if (!compiled) return AE_INVALID_EXPRESSION;
    locate_ = std::move(compiled);
    locateForward_ = forward;
    if (Status status = forward ? GotoTop() : GotoBottom(); status != AE_SUCCESS) return status;
    if (atEof_) return AE_SUCCESS;
    const std::string_view records[] = {CurrentRecordBytes()};
    if (locate_->EvaluateLogical({records, record_, &settings_.dates})) {
        found = true;
        return AE_SUCCESS;
    }
    return Continue(found);
}

Status TableCursor::Continue(bool& found) {
    found = false;
    if (!locate_) return AE_INVALID_CONTINUE;
    for (;;) {
        if (Status status = Skip(locateForward_ ? 1 : -1); status != AE_SUCCESS) return status;
        if (atEof_ || (atBof_ && !locateForward_)) break;
        const std::string_view records[] = {CurrentRecordBytes()};
        if (locate_->EvaluateLogical({records, record_, &settings_.dates})) {
            found = true;
            return AE_SUCCESS;
        }
    }
    MoveToEof();
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::cursor

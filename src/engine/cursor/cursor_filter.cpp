#include "engine/cursor/table_cursor.hpp"
#include "engine/cursor/table_resolver.hpp"

namespace fnrk::engine::cursor {

std::unique_ptr<expr::FieldResolver> TableCursor::FieldNames() const {
    return std::make_unique<TableResolver>(header(), alias_);
}

Status TableCursor::SetFilter(std::string_view expression, std::string& message) {
    auto compiled = CompileCondition(expression, message);
    if (!compiled) return AE_INVALID_EXPRESSION;
    filter_ = std::move(compiled);
    filterText_ = expression;
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::cursor

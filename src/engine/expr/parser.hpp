#pragma once

// Expression text -> parse tree.

#include <string_view>

#include "engine/expr/dates.hpp"
#include "engine/expr/syntax_tree.hpp"

namespace fnrk::engine::expr {

// Parses UTF-8 expression text; string literals become Windows-1252. Date literals are
// {^YYYY-MM-DD} or the display form of `dates` ({31/01/2024} with "DD/MM/YYYY"); {} is the
// empty date. Names are resolved later, by the compiler; the function names are checked here.
// Throws ExpressionError.
Node Parse(std::string_view text, const DateSettings& dates = {});

}  // namespace fnrk::engine::expr

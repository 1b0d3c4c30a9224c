#include "engine/expr/expression_error.hpp"

namespace fnrk::engine::expr {

ExpressionError::ExpressionError(std::size_t position, const std::string& reason)
    : std::runtime_error(reason + " at " + std::to_string(position)),
      position_(position),
      reason_(reason) {}

}  // namespace fnrk::engine::expr

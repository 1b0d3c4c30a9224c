#pragma once

// A syntax or type fault in an expression text, with where it was found.

#include <cstddef>
#include <stdexcept>
#include <string>

namespace fnrk::engine::expr {

class ExpressionError : public std::runtime_error {
  public:
    // `position` is the 0-based byte offset in the expression text (UTF-8).
    // what() reads reason + " at " + position, e.g. "unknown function FOO at 5".
    ExpressionError(std::size_t position, const std::string& reason);

    std::size_t position() const { return position_; }
    const std::string& reason() const { return reason_; }

  private:
    std::size_t position_;
    std::string reason_;
};

}  // namespace fnrk::engine::expr

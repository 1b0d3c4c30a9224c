#pragma once

#include <string>

#include "engine/errors.hpp"

namespace fnrk::engine {

// A short English description of a status number; empty for numbers without one.
std::string ErrorText(Status status);

}  // namespace fnrk::engine

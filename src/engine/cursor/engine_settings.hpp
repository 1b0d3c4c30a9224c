#pragma once

#include <cstdint>
#include <string_view>

#include "engine/errors.hpp"
#include "engine/expr/dates.hpp"

namespace fnrk::engine::cursor {

// Settings of the engine that every open table follows (SetDateFormat, SetEpoch, ShowDeleted).
// The engine's defaults: dates "MM/DD/CCYY" with epoch 1900, deleted records shown.
struct EngineSettings {
    expr::DateSettings dates;
    bool showDeleted = true;

    // The checks of the operations of the same names, for the engine and the SQL backend alike.
    // A format needs "DD", "MM" and "YY" in any letter case (AE_INVALID_DATEFORMAT).
    Status SetDateFormat(std::string_view format);
    // A century from 100 to 9899 (AE_INVALID_CENTURY).
    Status SetEpoch(std::uint16_t century);
};

}  // namespace fnrk::engine::cursor

#pragma once

#include "engine/expr/dates.hpp"

namespace fnrk::engine::cursor {

// Settings of the engine that every open table follows (SetDateFormat, SetEpoch, ShowDeleted).
// The engine's defaults: dates "MM/DD/CCYY" with epoch 1900, deleted records shown.
struct EngineSettings {
    expr::DateSettings dates;
    bool showDeleted = true;
};

}  // namespace fnrk::engine::cursor

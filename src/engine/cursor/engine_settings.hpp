#pragma once

#include <cstdint>
#include <string_view>

#include "engine/constants.hpp"
#include "engine/errors.hpp"
#include "engine/expr/dates.hpp"

namespace fnrk::engine::cursor {

// Settings of the engine that every open table follows (SetDateFormat, SetEpoch, ShowDeleted,
// SetServerType). The engine's defaults: dates "MM/DD/CCYY" with epoch 1900, deleted records
// shown, local server.
struct EngineSettings {
    expr::DateSettings dates;
    bool showDeleted = true;
    std::uint16_t serverTypes = ADS_LOCAL_SERVER;

    // The checks of the operations of the same names, for the engine and the SQL backend alike.
    // A format needs "DD", "MM" and "YY" in any letter case (AE_INVALID_DATEFORMAT).
    [[nodiscard]] Status SetDateFormat(std::string_view format);
    // A century from 100 to 9899 (AE_INVALID_CENTURY).
    [[nodiscard]] Status SetEpoch(std::uint16_t century);
    // Local, remote and Internet server in any combination, and nothing else: an unknown bit
    // is refused even beside a known one (AE_INVALID_OPTION).
    [[nodiscard]] Status SetServerType(std::uint16_t types);
};

}  // namespace fnrk::engine::cursor

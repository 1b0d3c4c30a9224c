#pragma once

// The local calendar time of a moment, safe to call from several threads at once.

#include <ctime>

namespace fnrk::platform {

std::tm LocalTime(std::time_t moment);

}  // namespace fnrk::platform

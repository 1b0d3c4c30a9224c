#pragma once

// Commands that drive the table layer end with its own words when an operation fails.

#include <string>

#include "engine/operations.hpp"

namespace fnrk::cli {

// Throws CommandFailure with `doing`, the engine's last error text and the status, unless the
// status is success.
void CheckEngineStatus(engine::Operations& engine, engine::Status status, const std::string& doing);
// The same for a step below the operation set, which has no last-error text: `doing` and the
// status.
void CheckStatus(engine::Status status, const std::string& doing);

}  // namespace fnrk::cli

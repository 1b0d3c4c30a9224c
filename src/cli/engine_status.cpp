#include "cli/engine_status.hpp"

#include "cli/command_registry.hpp"

namespace fnrk::cli {

void CheckEngineStatus(engine::Operations& engine, engine::Status status,
                       const std::string& doing) {
    if (status == engine::AE_SUCCESS) return;
    engine::Status code = status;
    std::string text;
    // The failure is told with whatever text there is; without one, its number says enough.
    engine::IgnoreStatus(engine.GetLastError(code, text));
    throw CommandFailure(doing + ": " + text + " (" + std::to_string(status) + ")");
}

void CheckStatus(engine::Status status, const std::string& doing) {
    if (status == engine::AE_SUCCESS) return;
    throw CommandFailure(doing + ": status " + std::to_string(status));
}

}  // namespace fnrk::cli

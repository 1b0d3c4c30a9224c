#pragma once

// The configuration record as an object of named properties, as late-bound callers read it.
// Properties keep the order in which they were set.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "engine/mgmt_config.hpp"

namespace fnrk::backend {

class MGMT_CONFIG_MEMORY {
  public:
    using Value = std::variant<std::int64_t, std::string>;

    void Set(std::string_view name, Value value);
    std::optional<Value> Get(std::string_view name) const;
    const std::vector<std::pair<std::string, Value>>& Properties() const { return properties_; }

    // The three text members are read through these getters (spelling as callers use them).
    std::string GetaucErLog() const { return Text("aucErLog"); }
    std::string GetaucSempho() const { return Text("aucSempho"); }
    std::string getauctrans() const { return Text("aucTrans"); }

  private:
    std::string Text(std::string_view name) const;
    std::vector<std::pair<std::string, Value>> properties_;
};

// Copies every member of the engine's record into `memory`, by member name, in record order.
void CopyConfigInto(const engine::MgmtConfig& config, MGMT_CONFIG_MEMORY& memory);

}  // namespace fnrk::backend

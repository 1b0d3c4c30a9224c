#pragma once

#include <optional>
#include <string>

namespace fnrk::testing {

// Sets (or, with nullopt, removes) one environment variable and puts the old value back on
// destruction.
class ScopedEnvironment {
  public:
    ScopedEnvironment(std::string name, const std::optional<std::string>& value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    std::string name_;
    std::optional<std::string> previous_;
};

}  // namespace fnrk::testing

#include "support/scoped_environment.hpp"

#include <cstdlib>

#include "platform/environment.hpp"

namespace fnrk::testing {
namespace {

void Apply(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
        platform::SetEnvironmentValue(name.c_str(), *value);
    } else {
        platform::UnsetEnvironmentValue(name.c_str());
    }
}

}  // namespace

ScopedEnvironment::ScopedEnvironment(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)) {
    if (const char* old = std::getenv(name_.c_str())) previous_ = old;
    Apply(name_, value);
}

ScopedEnvironment::~ScopedEnvironment() {
    Apply(name_, previous_);
}

}  // namespace fnrk::testing

#include "support/scoped_environment.hpp"

#include <cstdlib>

namespace fnrk::testing {
namespace {

void Apply(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
        ::setenv(name.c_str(), value->c_str(), 1);
    } else {
        ::unsetenv(name.c_str());
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

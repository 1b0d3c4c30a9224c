#include "platform/environment.hpp"

#include <cstdlib>

namespace fnrk::platform {

std::string EnvironmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

}  // namespace fnrk::platform

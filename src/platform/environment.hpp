#pragma once

#include <string>

namespace fnrk::platform {

// The value of an environment variable, empty when it is not set.
std::string EnvironmentValue(const char* name);

}  // namespace fnrk::platform

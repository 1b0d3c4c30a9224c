#pragma once

#include <string>

namespace fnrk::platform {

// The value of an environment variable, empty when it is not set.
std::string EnvironmentValue(const char* name);

// Sets a variable of this process's environment (and of the programs it starts); false when the
// environment refuses it.
bool SetEnvironmentValue(const char* name, const std::string& value);
void UnsetEnvironmentValue(const char* name);

}  // namespace fnrk::platform

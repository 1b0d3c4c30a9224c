#include <cstdlib>

#include "platform/environment.hpp"

namespace fnrk::platform {

bool SetEnvironmentValue(const char* name, const std::string& value) {
    return ::setenv(name, value.c_str(), 1) == 0;
}

void UnsetEnvironmentValue(const char* name) {
    ::unsetenv(name);
}

}  // namespace fnrk::platform

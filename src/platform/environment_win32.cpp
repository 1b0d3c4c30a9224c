#include <cstdlib>

#include "platform/environment.hpp"

namespace fnrk::platform {

bool SetEnvironmentValue(const char* name, const std::string& value) {
    return _putenv_s(name, value.c_str()) == 0;
}

void UnsetEnvironmentValue(const char* name) {
    _putenv_s(name, "");  // an empty value removes the variable
}

}  // namespace fnrk::platform

#pragma once

// Expected paths written with "/" in tests, in the separators of the host the test runs on.

#include <string>

#include "platform/paths.hpp"

namespace fnrk::testing {

inline std::string HostSeparators(std::string path) {
    for (char& c : path) {
        if (c == '/') c = platform::kPathSep;
    }
    return path;
}

}  // namespace fnrk::testing

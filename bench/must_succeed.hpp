#pragma once

// A step of a benchmark that must succeed: what follows a failed step would measure nothing,
// so the program stops and says where.

#include <cstdio>
#include <cstdlib>
#include <source_location>

#include "engine/errors.hpp"

inline void Must(fnrk::engine::Status status,
                 std::source_location where = std::source_location::current()) {
    if (status == fnrk::engine::AE_SUCCESS) return;
    std::fprintf(stderr, "%s:%u: status %d\n", where.file_name(),
                 static_cast<unsigned>(where.line()), static_cast<int>(status));
    std::abort();
}

#include <time.h>

#include "support/cpu_time.hpp"

namespace fnrk::testing {

double ProcessCpuSeconds() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

}  // namespace fnrk::testing

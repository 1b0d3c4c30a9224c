#include <windows.h>

#include "support/cpu_time.hpp"

namespace fnrk::testing {

namespace {

double Seconds(const FILETIME& time) {
    const auto ticks =
        (static_cast<unsigned long long>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    return static_cast<double>(ticks) / 1e7;  // 100 ns ticks
}

}  // namespace

double ProcessCpuSeconds() {
    FILETIME created, exited, kernel, user;
    if (!GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user)) return 0;
    return Seconds(kernel) + Seconds(user);
}

}  // namespace fnrk::testing

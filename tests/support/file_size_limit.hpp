#pragma once

#include <cstdint>
#include <functional>

namespace fnrk::testing {

// Runs `work` in a child process that cannot write past `bytes` into any file, as on a full
// disk (the write fails, no signal), and returns the child's exit code: what `work` returned,
// or -1 when it did not end normally.
int RunWithFileSizeLimit(std::uint64_t bytes, const std::function<int()>& work);

}  // namespace fnrk::testing

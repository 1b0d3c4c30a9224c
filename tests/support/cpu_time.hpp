#pragma once

namespace fnrk::testing {

// Processor time the whole process has used so far, in seconds, all threads together. Not
// std::clock(): on Windows that counts wall time.
double ProcessCpuSeconds();

}  // namespace fnrk::testing

#pragma once

#include "engine/lock/file_locks.hpp"

namespace fnrk::engine::lock {

// Holds the header lock of a file for one short update (an append, a new memo block). Other
// writers hold it only for a few system calls, so it is retried for a bounded time instead of
// failing at the first conflict; `acquired()` says whether it was obtained.
class HeaderGuard {
  public:
    explicit HeaderGuard(FileLocks locks);
    ~HeaderGuard();
    HeaderGuard(const HeaderGuard&) = delete;
    HeaderGuard& operator=(const HeaderGuard&) = delete;
    bool acquired() const { return acquired_; }

  private:
    FileLocks locks_;
    bool acquired_ = false;
};

}  // namespace fnrk::engine::lock

#include "engine/lock/header_guard.hpp"

#include <chrono>
#include <thread>

namespace fnrk::engine::lock {

namespace {
constexpr auto kHeaderWaitLimit = std::chrono::seconds(5);
}

HeaderGuard::HeaderGuard(FileLocks locks) : locks_(locks) {
    const auto deadline = std::chrono::steady_clock::now() + kHeaderWaitLimit;
    while (!(acquired_ = locks_.LockHeader())) {
        if (std::chrono::steady_clock::now() > deadline) return;
        std::this_thread::yield();
    }
}

HeaderGuard::~HeaderGuard() {
    if (acquired_) locks_.UnlockHeader();
}

}  // namespace fnrk::engine::lock

#include "com/server_counts.hpp"

#include <atomic>

namespace fnrk::com {
namespace {

// Atomic although the objects live in apartments: DllCanUnloadNow may be asked from any thread.
std::atomic<long> liveObjects{0};
std::atomic<long> serverLocks{0};

}  // namespace

void CountObjectCreated() {
    ++liveObjects;
}

void CountObjectDestroyed() {
    --liveObjects;
}

void CountLock(bool lock) {
    if (lock) {
        ++serverLocks;
    } else {
        --serverLocks;
    }
}

bool ServerInUse() {
    return liveObjects.load() != 0 || serverLocks.load() != 0;
}

}  // namespace fnrk::com

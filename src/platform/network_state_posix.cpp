#include "platform/network_state.hpp"

#include <ifaddrs.h>
#include <net/if.h>
#include <sys/socket.h>

namespace fnrk::platform {

bool NetworkConnectionPresent() {
    ifaddrs* interfaces = nullptr;
    if (getifaddrs(&interfaces) != 0) return false;
    bool present = false;
    for (const ifaddrs* entry = interfaces; entry != nullptr && !present; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr) continue;
        const int family = entry->ifa_addr->sa_family;
        const unsigned flags = entry->ifa_flags;
        present = (family == AF_INET || family == AF_INET6) && (flags & IFF_UP) &&
                  (flags & IFF_RUNNING) && !(flags & IFF_LOOPBACK);
    }
    freeifaddrs(interfaces);
    return present;
}

}  // namespace fnrk::platform

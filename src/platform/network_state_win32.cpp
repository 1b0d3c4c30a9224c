#include <windows.h>

#include <wininet.h>

#include "platform/network_state.hpp"

namespace fnrk::platform {

bool NetworkConnectionPresent() {
    DWORD flags = 0;
    return InternetGetConnectedState(&flags, 0) != FALSE;
}

}  // namespace fnrk::platform

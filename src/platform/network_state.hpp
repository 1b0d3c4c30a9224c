#pragma once

// Whether the host has a network connection: an interface other than the loopback that is up,
// running and holds an IPv4 or IPv6 address.

namespace fnrk::platform {

bool NetworkConnectionPresent();

}  // namespace fnrk::platform

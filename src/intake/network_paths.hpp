#pragma once

// The network form of the folders handed to other programs on the network: a path on a mapped
// drive becomes the drive's remote name followed by the rest of the path. Drives and their
// remote names come from the platform's drive map (on Linux the "Drives" section of the
// settings store); the rest of the path then takes the native separator.

#include <string>
#include <string_view>

namespace fnrk::intake {

// The remote name of a two-character drive ("K:"); the drive itself when it is not mapped.
std::string RemoteNameOfDrive(std::string_view drive);

// Empty for a blank path; a drive-letter path on a mapped drive in its network form; any other
// path (local drive, network or relative path) unchanged.
std::string NetworkFormOfPath(std::string_view path);

}  // namespace fnrk::intake

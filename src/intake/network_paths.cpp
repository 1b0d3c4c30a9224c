#include "intake/network_paths.hpp"

#include "platform/paths.hpp"
#include "platform/text.hpp"

namespace fnrk::intake {

std::string RemoteNameOfDrive(std::string_view drive) {
    const std::string remote = platform::DriveNetworkName(drive);
    return remote.empty() ? std::string(drive) : remote;
}

std::string NetworkFormOfPath(std::string_view path) {
    const std::string trimmed = platform::Trim(path);
    if (trimmed.empty()) return {};
    if (path.size() < 2 || path[1] != ':') return std::string(path);
    const std::string drive = trimmed.substr(0, 2);
    const std::string remote = platform::Trim(RemoteNameOfDrive(drive));
    std::string rest(path.substr(2));
    if (remote == drive) return remote + rest;
    for (char& c : rest) {
        if (c == '\\' || c == '/') c = platform::kPathSep;
    }
    return remote + rest;
}

}  // namespace fnrk::intake

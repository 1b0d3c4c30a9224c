#include <windows.h>

#include <winnetwk.h>

#include <cwctype>
#include <vector>

#include "platform/paths.hpp"
#include "platform/utf8.hpp"

namespace fnrk::platform {

std::string DriveNetworkName(std::string_view drive) {
    if (drive.size() < 2 || drive[1] != ':') return {};
    const wchar_t letter =
        static_cast<wchar_t>(std::towupper(static_cast<unsigned char>(drive[0])));
    // The connected disk resources of the network, each with its local drive and remote name.
    HANDLE enumeration = nullptr;
    if (WNetOpenEnumW(RESOURCE_CONNECTED, RESOURCETYPE_DISK, 0, nullptr, &enumeration) != NO_ERROR)
        return {};
    std::string remote;
    std::vector<unsigned char> buffer(16 * 1024);
    for (bool more = true; more && remote.empty();) {
        DWORD count = static_cast<DWORD>(-1);  // as many as fit
        DWORD size = static_cast<DWORD>(buffer.size());
        const DWORD result = WNetEnumResourceW(enumeration, &count, buffer.data(), &size);
        if (result == ERROR_MORE_DATA) {
            buffer.resize(size);
            continue;
        }
        more = result == NO_ERROR;
        if (!more) break;
        const auto* resources = reinterpret_cast<const NETRESOURCEW*>(buffer.data());
        for (DWORD i = 0; i < count; ++i) {
            const wchar_t* local = resources[i].lpLocalName;
            if (local != nullptr && std::towupper(local[0]) == letter && local[1] == L':' &&
                resources[i].lpRemoteName != nullptr) {
                remote = Utf16ToUtf8(resources[i].lpRemoteName);
                break;
            }
        }
    }
    WNetCloseEnum(enumeration);
    return remote;
}

}  // namespace fnrk::platform

#include "platform/registry_settings.hpp"

#include <windows.h>

#include "platform/utf8.hpp"

namespace fnrk::platform {
namespace {

std::wstring SectionKey(std::string_view section) {
    return L"Software\\VB and VBA Program Settings\\Fennrick\\" + Utf8ToUtf16(section);
}

}  // namespace

std::optional<std::string> ReadRegistrySetting(std::string_view section, std::string_view key) {
    const std::wstring path = SectionKey(section);
    const std::wstring name = Utf8ToUtf16(key);
    DWORD size = 0;
    if (RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, nullptr,
                     &size) != ERROR_SUCCESS)
        return std::nullopt;
    std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
    size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    if (RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr,
                     value.data(), &size) != ERROR_SUCCESS)
        return std::nullopt;
    value.resize(wcsnlen(value.c_str(), value.size()));
    return Utf16ToUtf8(value);
}

bool WriteRegistrySetting(std::string_view section, std::string_view key, std::string_view value) {
    HKEY handle = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, SectionKey(section).c_str(), 0, nullptr, 0,
                        KEY_SET_VALUE, nullptr, &handle, nullptr) != ERROR_SUCCESS)
        return false;
    const std::wstring text = Utf8ToUtf16(value);
    const LONG result = RegSetValueExW(handle, Utf8ToUtf16(key).c_str(), 0, REG_SZ,
                                       reinterpret_cast<const BYTE*>(text.c_str()),
                                       static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(handle);
    return result == ERROR_SUCCESS;
}

}  // namespace fnrk::platform

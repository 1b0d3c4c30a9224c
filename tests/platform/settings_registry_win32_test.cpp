// Windows: without a named settings file the store is the registry, where the desktop
// applications keep their settings.

#include <windows.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/settings_store.hpp"
#include "support/scoped_environment.hpp"

namespace fnrk::platform {
namespace {

using fnrk::testing::ScopedEnvironment;

TEST(SettingsStore, WithoutANamedFileTheRegistryKeepsTheValues) {
    ScopedEnvironment noFile("FNRK_SETTINGS_FILE", std::nullopt);
    ScopedEnvironment userCode("FNRK_USER_CODE", std::nullopt);
    const wchar_t* section = L"Software\\VB and VBA Program Settings\\Fennrick\\Accounting";
    RegDeleteTreeW(HKEY_CURRENT_USER, section);
    EXPECT_EQ(SettingsUserCode(), "Fennrick");  // the default

    ASSERT_TRUE(SaveSetting("Accounting", "UserCode", "DESK \u00e9"));
    EXPECT_EQ(SettingsUserCode(), "DESK \u00e9");
    // Where the desktop applications read it, as UTF-16.
    wchar_t value[32] = {};
    DWORD size = sizeof value;
    ASSERT_EQ(
        RegGetValueW(HKEY_CURRENT_USER, section, L"UserCode", RRF_RT_REG_SZ, nullptr, value, &size),
        ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(value), L"DESK \u00e9");
    EXPECT_FALSE(std::filesystem::exists(SettingsFilePath()));
    RegDeleteTreeW(HKEY_CURRENT_USER, section);
}

}  // namespace
}  // namespace fnrk::platform

#include "platform/settings_store.hpp"

#include <gtest/gtest.h>

#include "platform/ini_file.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::platform {
namespace {

using fnrk::testing::ScopedEnvironment;
using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

#ifndef _WIN32  // Windows keeps them in the registry (settings_registry_win32_test.cpp)
TEST(SettingsStore, FileFollowsTheEnvironment) {
    ScopedEnvironment noFile("FNRK_SETTINGS_FILE", std::nullopt);
    {
        ScopedEnvironment config("XDG_CONFIG_HOME", "/cfg");
        EXPECT_EQ(SettingsFilePath(), "/cfg/fennrick/settings.ini");
    }
    {
        ScopedEnvironment config("XDG_CONFIG_HOME", std::nullopt);
        ScopedEnvironment home("HOME", "/home/ann");
        EXPECT_EQ(SettingsFilePath(), "/home/ann/.config/fennrick/settings.ini");
    }
    ScopedEnvironment file("FNRK_SETTINGS_FILE", "/x/s.ini");
    EXPECT_EQ(SettingsFilePath(), "/x/s.ini");
}
#endif

TEST(SettingsStore, ValuesComeFromTheEnvironmentThenTheFileThenTheDefault) {
    TempDir dir;
    ScopedEnvironment file("FNRK_SETTINGS_FILE", (dir / "nested" / "settings.ini").string());
    ScopedEnvironment mainPath("FNRK_MAIN_PATH", std::nullopt);
    ScopedEnvironment userCode("FNRK_USER_CODE", std::nullopt);

    EXPECT_EQ(SettingsMainPath(), "");
    EXPECT_EQ(SettingsUserCode(), "Fennrick");
    ASSERT_TRUE(SaveSetting("Installation", "MainPath", "/opt/fennrick"));  // creates the folder
    ASSERT_TRUE(SaveSetting("Accounting", "UserCode", "ANN"));
    EXPECT_EQ(SettingsMainPath(), "/opt/fennrick");
    EXPECT_EQ(SettingsUserCode(), "ANN");
    EXPECT_EQ(GetSetting("accounting", "usercode"), "ANN");
    EXPECT_EQ(GetSetting("Other", "Key", "fallback"), "fallback");

    ScopedEnvironment mainOverride("FNRK_MAIN_PATH", "/srv/main");
    ScopedEnvironment userOverride("FNRK_USER_CODE", "BOB");
    EXPECT_EQ(SettingsMainPath(), "/srv/main");
    EXPECT_EQ(SettingsUserCode(), "BOB");
    EXPECT_EQ(GetPrivateProfileString("Installation", "MainPath", "", 255,
                                      (dir / "nested" / "settings.ini").string()),
              "/opt/fennrick");  // the override never reaches the file
}

TEST(SettingsStore, DriveMapIsTheDrivesSection) {
    TempDir dir;
    const auto file = dir / "settings.ini";
    ScopedEnvironment env("FNRK_SETTINGS_FILE", file.string());
    EXPECT_TRUE(SettingsDriveMap().empty());
    WriteFileBytes(file, "[Drives]\r\nK:=/srv/bank\r\nd:=/mnt/data\r\n");
    const auto drives = SettingsDriveMap();
    ASSERT_EQ(drives.size(), 2u);
    EXPECT_EQ(drives[0], std::make_pair(std::string("K:"), std::string("/srv/bank")));
    EXPECT_EQ(drives[1], std::make_pair(std::string("d:"), std::string("/mnt/data")));
}

}  // namespace
}  // namespace fnrk::platform

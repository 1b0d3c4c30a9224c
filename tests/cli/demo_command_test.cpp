#include <filesystem>

#include <gtest/gtest.h>

#include "platform/ini_file.hpp"
#include "support/run_command.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"

namespace {

using fnrk::testing::ReadFileBytes;
using fnrk::testing::RunFennrick;
using fnrk::testing::ScopedEnvironment;
using fnrk::testing::TempDir;

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(DemoCommand, BuildsASampleInstallationAndShowsTheFileChoice) {
    TempDir dir;
    const auto root = dir / "install";
    // Settings that must stay untouched: the demo points the store at its own folder.
    ScopedEnvironment settings("FNRK_SETTINGS_FILE", (dir / "mine.ini").string());
    ScopedEnvironment mainPath("FNRK_MAIN_PATH", "/nowhere");

    const auto result = RunFennrick({"demo", "--dir", root.string()});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_FALSE(std::filesystem::exists(dir / "mine.ini"));

    EXPECT_TRUE(Contains(result.out, "[10-configuration]")) << result.out;
    EXPECT_TRUE(Contains(result.out, "ReadINI [General] Language = N")) << result.out;
    EXPECT_TRUE(Contains(result.out, "ReadINI [General] Currency = EUR")) << result.out;
    EXPECT_TRUE(Contains(result.out, "ReadINI [Connection] Mode = LOCAL")) << result.out;
    EXPECT_TRUE(Contains(result.out, "root folder       " + root.string() + "\n")) << result.out;

    const std::string shared = (root / "FennRick.ini").string();
    EXPECT_EQ(fnrk::platform::GetPrivateProfileString("Connection", "Mode", "", 255, shared),
              "LOCAL");
    EXPECT_EQ(fnrk::platform::GetPrivateProfileString("Install", "UserPath", "", 255, shared),
              (root / "USERS").string());
    const std::string preferences = (root / "USERS" / "UsersPrefs" / "DEMO.ini").string();
    EXPECT_EQ(fnrk::platform::GetPrivateProfileString("General", "Language", "", 255, preferences),
              "N");
    EXPECT_EQ(fnrk::platform::GetPrivateProfileString("Installation", "MainPath", "", 255,
                                                      (root / "settings.ini").string()),
              root.string());
    EXPECT_TRUE(std::filesystem::is_directory(root / "Import"));
    EXPECT_TRUE(std::filesystem::is_directory(root / "DATA" / "DEMO"));
    EXPECT_EQ(ReadFileBytes(root / "USERS" / "UsersPrefs" / "DEMO.ini"),
              "[General]\r\nLanguage=N\r\n[Connection]\r\nMode=REMOTE\r\n");
}

TEST(DemoCommand, WithoutDirUsesAFreshTemporaryFolder) {
    const auto result = RunFennrick({"demo"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::string marker = "Sample installation in ";
    const auto start = result.out.find(marker);
    ASSERT_NE(start, std::string::npos) << result.out;
    const auto end = result.out.find('\n', start);
    const std::filesystem::path root =
        result.out.substr(start + marker.size(), end - start - marker.size());
    EXPECT_TRUE(std::filesystem::exists(root / "FennRick.ini"));
    EXPECT_TRUE(std::filesystem::exists(root / "settings.ini"));
    std::filesystem::remove_all(root);
}

}  // namespace

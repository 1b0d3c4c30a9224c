#include "session/app_class.hpp"

#include <filesystem>

#include <gtest/gtest.h>

#include "installation_fixture.hpp"
#include "platform/special_folders.hpp"
#include "session/session_user.hpp"

namespace fnrk::session {
namespace {

using AppClassTest = InstallationTest;

TEST_F(AppClassTest, FoldersAreBuiltOnTheRootFolder) {
    AppClass app;
    EXPECT_EQ(app.RootPath(), Root());
    EXPECT_EQ(app.ResourcePath(), Path("RESOURCES"));
    EXPECT_EQ(app.OrgPath(), Path("RESOURCES/ORG"));
    EXPECT_EQ(app.UserPrivatePath(), "");

    platform::SetProgramFolder(Path("bin/git/Fennrick"));
    EXPECT_EQ(app.RootPath(), Root());
    platform::SetProgramFolder(Path(""));
    EXPECT_EQ(app.RootPath(), Root());
}

TEST_F(AppClassTest, TransferFoldersAreCreatedOnDemand) {
    AppClass app;
    EXPECT_EQ(app.TransfertInPath(), Path("Import"));
    EXPECT_TRUE(std::filesystem::is_directory(dir_ / "Import"));
    EXPECT_EQ(app.TransfertOutPath(), Path("Export"));
    EXPECT_TRUE(std::filesystem::is_directory(dir_ / "Export"));
    EXPECT_EQ(app.TransfertInPath(), Path("Import"));  // again, harmlessly
}

TEST_F(AppClassTest, MakeAnyDirCreatesEveryMissingFolder) {
    AppClass app;
    EXPECT_TRUE(app.MakeAnyDir("  " + Path("a/b/c") + "  "));
    EXPECT_TRUE(std::filesystem::is_directory(dir_ / "a" / "b" / "c"));
    EXPECT_TRUE(app.MakeAnyDir(Path("a/b/c/")));  // attempts made, all failing quietly
    EXPECT_FALSE(app.MakeAnyDir(""));
    EXPECT_FALSE(app.MakeAnyDir("relative"));
    EXPECT_FALSE(std::filesystem::exists("relative"));
}

#ifndef _WIN32  // on Windows the drive letters are the system's own
TEST_F(AppClassTest, MakeAnyDirOnAnExistingDriveRootCreatesNothing) {
    Write("settings.ini", "[Drives]\r\nK:=" + Path("k") + "\r\n");
    AppClass app;
    EXPECT_FALSE(app.MakeAnyDir("K:/"));  // the drive's folder is missing
    std::filesystem::create_directories(dir_ / "k");
    EXPECT_TRUE(app.MakeAnyDir("K:/"));
    EXPECT_TRUE(std::filesystem::is_empty(dir_ / "k"));
    EXPECT_TRUE(app.MakeAnyDir("K:/x/y"));
    EXPECT_TRUE(std::filesystem::is_directory(dir_ / "k" / "x" / "y"));
}
#endif

#ifndef _WIN32  // on Windows the drive letters are the system's own
TEST_F(AppClassTest, MakeAnyDirTakesWindowsPathsThroughTheDriveMap) {
    Write("settings.ini", "[Drives]\r\nK:=" + Path("k") + "\r\n");
    AppClass app;
    std::filesystem::create_directories(dir_ / "k");
    EXPECT_TRUE(app.MakeAnyDir("K:\\"));  // the bare root of a drive that answers
    EXPECT_TRUE(std::filesystem::is_empty(dir_ / "k"));
    EXPECT_TRUE(app.MakeAnyDir(" K:\\DATA\\SOC1 "));
    EXPECT_TRUE(std::filesystem::is_directory(dir_ / "k" / "DATA" / "SOC1"));
    EXPECT_FALSE(std::filesystem::exists("K:\\DATA\\SOC1"));
    EXPECT_FALSE(std::filesystem::exists("K:"));
}
#endif

TEST_F(AppClassTest, SessionValuesPassThrough) {
    AppClass app;
    app.ComputerName("DESK-01");
    EXPECT_EQ(app.ComputerName(), "DESK-01");
    const std::string savedTemp = SharedFacade().TempPath;
    SharedFacade().TempPath = "/tmp/fnrk";
    EXPECT_EQ(app.TempPath(), "/tmp/fnrk");
    SharedFacade().TempPath = savedTemp;
    const std::string commonAppData =
        platform::SpecialFolderPath(platform::special_folder::kCommonAppData);
    EXPECT_FALSE(commonAppData.empty());
    EXPECT_EQ(app.GetSpecialFolder(platform::special_folder::kCommonAppData), commonAppData);
    EXPECT_EQ(app.GetSpecialFolder(-1), "");
    EXPECT_EQ(app.StrSwap("a.b", ".", ".."), "a..b");
    EXPECT_EQ(&SharedAppClass(), &SharedAppClass());
}

TEST(MessageLanguage, OneLetterChoosesTheLanguage) {
    SetMessageLanguage("N");
    EXPECT_EQ(CurrentMessageLanguage(), MessageLanguage::Dutch);
    SetMessageLanguage("E");
    EXPECT_EQ(CurrentMessageLanguage(), MessageLanguage::English);
    SetMessageLanguage("D");
    EXPECT_EQ(CurrentMessageLanguage(), MessageLanguage::French);
    SetMessageLanguage("n");
    EXPECT_EQ(CurrentMessageLanguage(), MessageLanguage::French);
    SetMessageLanguage("F");
}

}  // namespace
}  // namespace fnrk::session

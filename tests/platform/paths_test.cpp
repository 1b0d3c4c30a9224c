#include "platform/paths.hpp"

#include <gtest/gtest.h>

#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::platform {
namespace {

using fnrk::testing::ScopedEnvironment;
using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

class PathsTest : public ::testing::Test {
  protected:
    void SetUp() override {
        WriteFileBytes(dir_ / "settings.ini",
                       "[Drives]\nK:=/srv/bank/\nd:=" + (dir_ / "data").string() + "\n");
    }

    TempDir dir_;
    ScopedEnvironment settings_{"FNRK_SETTINGS_FILE", (dir_ / "settings.ini").string()};
};

#ifndef _WIN32  // on Windows the drive letters and the names' case are the system's own
TEST_F(PathsTest, WindowsFormPathsGoThroughTheDriveMap) {
    EXPECT_EQ(NativePath("K:\\CODA\\in"), "/srv/bank/CODA/in");
    EXPECT_EQ(NativePath("k:/CODA"), "/srv/bank/CODA");
    EXPECT_EQ(NativePath("K:"), "/srv/bank");
    EXPECT_EQ(NativePath("D:\\x"), (dir_ / "data").string() + "/x");  // map keys ignore case
    EXPECT_EQ(NativePath("Q:\\unmapped"), "Q:/unmapped");
    EXPECT_EQ(NativePath("..\\rel\\file.dbf"), "../rel/file.dbf");
    EXPECT_EQ(NativePath("/already/native"), "/already/native");
    EXPECT_EQ(NativePath("KK:\\x"), "KK:/x");  // not a drive
}
#endif

#ifdef _WIN32
TEST_F(PathsTest, NetworkNamesAreThoseOfConnectedNetworkDrives) {
    // The drive map plays no part on Windows, and this machine connects no network drive.
    EXPECT_EQ(DriveNetworkName("K:"), "");
    EXPECT_EQ(DriveNetworkName("C:\\DATA"), "");
    EXPECT_EQ(DriveNetworkName("\\\\server\\share"), "");
}
#else
TEST_F(PathsTest, NetworkNamesComeFromTheDriveMap) {
    EXPECT_EQ(DriveNetworkName("K:"), "/srv/bank/");
    EXPECT_EQ(DriveNetworkName("k:\\CODA"), "/srv/bank/");
    EXPECT_EQ(DriveNetworkName("Z:"), "");
    EXPECT_EQ(DriveNetworkName("/srv"), "");
}
#endif

#ifndef _WIN32  // on Windows the drive letters and the names' case are the system's own
TEST_F(PathsTest, FileSystemPathFindsNamesWhateverTheirCase) {
    std::filesystem::create_directories(dir_ / "data" / "USERS");
    WriteFileBytes(dir_ / "data" / "USERS" / "FennRick.ini", "");
    EXPECT_EQ(FileSystemPath("D:\\USERS\\Fennrick.ini"), dir_ / "data" / "USERS" / "FennRick.ini");
    EXPECT_EQ(FileSystemPath("D:\\USERS\\FennRick.ini"), dir_ / "data" / "USERS" / "FennRick.ini");
    EXPECT_EQ(FileSystemPath("D:\\USERS\\new.ini"), dir_ / "data" / "USERS" / "new.ini");
}
#endif

TEST(Paths, ProgramFolderIsSettable) {
    const std::string real = ProgramFolder();
    EXPECT_TRUE(std::filesystem::is_directory(real)) << real;
    EXPECT_NE(real.back(), kPathSep);
    SetProgramFolder("/opt/app/PRG");
    EXPECT_EQ(ProgramFolder(), "/opt/app/PRG");
    SetProgramFolder(real);
    EXPECT_EQ(ProgramFolder(), real);
}

}  // namespace
}  // namespace fnrk::platform

#include "platform/file_system.hpp"

#include <gtest/gtest.h>

#include "platform/special_folders.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::platform {
namespace {

using fnrk::testing::ReadFileBytes;
using fnrk::testing::ScopedEnvironment;
using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

TEST(FileSystem, HelpersTellFilesFromFoldersAndNeverThrow) {
    TempDir dir;
    const std::string folder = (dir / "sub").string();
    const std::string file = (dir / "a.txt").string();
    WriteFileBytes(file, "abc");

    EXPECT_TRUE(FileExists(file));
    EXPECT_FALSE(FolderExists(file));
    EXPECT_FALSE(FileExists(dir.path().string()));
    EXPECT_TRUE(FolderExists(dir.path().string()));

    EXPECT_TRUE(CreateFolder(folder));
    EXPECT_FALSE(CreateFolder(folder));  // exists already
    EXPECT_FALSE(CreateFolder((dir / "x" / "y").string()));

    EXPECT_TRUE(CopyFile(file, (dir / "sub" / "b.txt").string()));
    EXPECT_FALSE(CopyFile(file, (dir / "sub" / "b.txt").string(), false));
    EXPECT_FALSE(CopyFile((dir / "none").string(), (dir / "c.txt").string()));
    EXPECT_EQ(ReadFileBytes(dir / "sub" / "b.txt"), "abc");

    EXPECT_FALSE(MoveFile(file, (dir / "sub" / "b.txt").string()));  // target exists
    EXPECT_TRUE(MoveFile(file, (dir / "sub" / "c.txt").string()));
    EXPECT_FALSE(FileExists(file));
    EXPECT_FALSE(MoveFile(file, (dir / "d.txt").string()));

    EXPECT_TRUE(CreateFolder((dir / "sub" / "inner").string()));
    EXPECT_EQ(FileNames(folder), (std::vector<std::string>{"b.txt", "c.txt"}));
    EXPECT_EQ(SubFolderNames(folder), std::vector<std::string>{"inner"});
    EXPECT_TRUE(FileNames((dir / "none").string()).empty());

    EXPECT_TRUE(DeleteFile((dir / "sub" / "b.txt").string()));
    EXPECT_FALSE(DeleteFile((dir / "sub" / "b.txt").string()));
    EXPECT_FALSE(DeleteFile((dir / "sub" / "inner").string()));  // a folder is not a file
}

#ifndef _WIN32  // on Windows the drive letters are the system's own
TEST(FileSystem, HelpersTranslateWindowsFormPaths) {
    TempDir dir;
    ScopedEnvironment settings("FNRK_SETTINGS_FILE", (dir / "settings.ini").string());
    WriteFileBytes(dir / "settings.ini", "[Drives]\r\nK:=" + dir.path().string() + "\r\n");
    EXPECT_TRUE(CreateFolder("K:\\BANK"));
    WriteFileBytes(dir / "BANK" / "CODA.TXT", "x");
    EXPECT_TRUE(FolderExists("k:\\bank"));  // the last name is matched whatever its case
    EXPECT_TRUE(FileExists("K:\\BANK\\coda.txt"));
    EXPECT_EQ(FileNames("K:\\BANK"), std::vector<std::string>{"CODA.TXT"});
}
#endif

TEST(FileSystem, TempNamesHaveTheClassicShape) {
    const std::string first = GetTempName();
    ASSERT_EQ(first.size(), 12u) << first;
    EXPECT_EQ(first.substr(0, 3), "rad");
    EXPECT_EQ(first.substr(8), ".tmp");
    EXPECT_EQ(first.find_first_not_of("0123456789ABCDEF", 3), 8u) << first;
    bool differs = false;
    for (int i = 0; i < 20 && !differs; ++i) differs = GetTempName() != first;
    EXPECT_TRUE(differs);
}

#ifdef _WIN32
TEST(SpecialFolders, AreTheShellsOwn) {
    // Wine's shell answers as Windows does: real folders of the profile, none for an unknown id.
    const std::string appData = SpecialFolderPath(special_folder::kAppData);
    const std::string profile = SpecialFolderPath(special_folder::kProfile);
    ASSERT_FALSE(profile.empty());
    EXPECT_TRUE(std::filesystem::is_directory(profile)) << profile;
    EXPECT_EQ(appData.rfind(profile + "\\", 0), 0u) << appData << " is not in " << profile;
    EXPECT_TRUE(std::filesystem::is_directory(appData)) << appData;
    EXPECT_NE(SpecialFolderPath(special_folder::kCommonAppData), appData);
    EXPECT_EQ(SpecialFolderPath(9999), "");

    const std::string windows = SystemFolder();
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(windows) / "system32"))
        << windows;
}
#else
TEST(SpecialFolders, FollowTheXdgVariables) {
    TempDir dir;
    ScopedEnvironment home("HOME", dir.path().string());
    ScopedEnvironment config("XDG_CONFIG_HOME", std::nullopt);
    ScopedEnvironment data("XDG_DATA_HOME", "/data/home");
    ScopedEnvironment documents("XDG_DOCUMENTS_DIR", std::nullopt);
    ScopedEnvironment desktop("XDG_DESKTOP_DIR", "/desk");

    EXPECT_EQ(SpecialFolderPath(special_folder::kPersonal), dir.path().string() + "/Documents");
    EXPECT_EQ(SpecialFolderPath(special_folder::kDesktopDirectory), "/desk");
    EXPECT_EQ(SpecialFolderPath(special_folder::kAppData), dir.path().string() + "/.config");
    EXPECT_EQ(SpecialFolderPath(special_folder::kLocalAppData), "/data/home");
    EXPECT_EQ(SpecialFolderPath(special_folder::kCommonAppData), "/var/lib");
    EXPECT_EQ(SpecialFolderPath(special_folder::kProfile), dir.path().string());
    EXPECT_EQ(SpecialFolderPath(9999), "");

    std::filesystem::create_directories(dir / ".config");
    WriteFileBytes(dir / ".config" / "user-dirs.dirs",
                   "# comment\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    EXPECT_EQ(SpecialFolderPath(special_folder::kPersonal), dir.path().string() + "/Dokumente");
}
#endif

}  // namespace
}  // namespace fnrk::platform

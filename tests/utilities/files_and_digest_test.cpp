#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "platform/processes.hpp"
#include "utilities/cls_log.hpp"
#include "utilities/cls_small_controls.hpp"
#include "utilities/file_names.hpp"
#include "utilities/md5_digest.hpp"

namespace fnrk::utilities {
namespace {

namespace fs = std::filesystem;

class UtilityFilesTest : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() /
                  ("fnrk_utilities_" + std::to_string(::getpid()) + "_" +
                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    static std::string Contents(const fs::path& file) {
        std::ifstream in(file, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    fs::path folder_;
};

TEST(DigestTest, Md5OfKnownVectorsAndOfWindows1252Text) {
    EXPECT_EQ(ConvertToMD5(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(ConvertToMD5("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(ConvertToMD5("The quick brown fox jumps over the lazy dog"),
              "9e107d9d372bb6826bd81d3542a419d6");
    // "é" is hashed as the one byte 0xE9, not as its two UTF-8 bytes.
    EXPECT_EQ(ConvertToMD5("é"), ConvertTabOfByteToMD5({0xE9}));
    EXPECT_NE(ConvertToMD5("é"), ConvertTabOfByteToMD5({0xC3, 0xA9}));
    EXPECT_EQ(ConvertTabOfByteToMD5({'a', 'b', 'c'}), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(ConvertTabOfByteToMD5({}), "d41d8cd98f00b204e9800998ecf8427e");
}

TEST_F(UtilityFilesTest, FoldersAreCreatedWithTheirParents) {
    const clsIO io;
    EXPECT_TRUE(io.IsDirectoryCreated((folder_ / "a" / "b" / "c").string()));
    EXPECT_TRUE(fs::is_directory(folder_ / "a" / "b" / "c"));
    EXPECT_TRUE(io.IsDirectoryCreated((folder_ / "a").string()));  // already there
    std::ofstream(folder_ / "file").put('x');
    EXPECT_FALSE(io.IsDirectoryCreated((folder_ / "file").string()));
    EXPECT_FALSE(io.IsDirectoryCreated((folder_ / "file" / "sub").string()));
    EXPECT_FALSE(io.IsDirectoryCreated(""));
    EXPECT_TRUE(CreateFolderRecursive((folder_ / "x" / "y").string()));
    EXPECT_TRUE(fs::is_directory(folder_ / "x" / "y"));
}

TEST(FileNamesTest, ReminderNamesLoseOnlyWhatWindowsRefuses) {
    EXPECT_EQ(ReplaceCharactersReminderFileName(R"(A/B\C:D*E?F"G<H>I|J)"), "A_B_C_D_E_F_G_H_I_J");
    EXPECT_EQ(ReplaceCharactersReminderFileName("Société Générale. "), "Société Générale");
    EXPECT_EQ(ReplaceCharactersReminderFileName("tab\there"), "tab_here");
    EXPECT_EQ(ReplaceCharactersReminderFileName("..."), "");
    EXPECT_EQ(getScreenDPI(), 96);
}

TEST_F(UtilityFilesTest, LogFilesAreResetAndGrowByStampedLines) {
    const clsLog log;
    const fs::path file = folder_ / "logs" / "import.log";
    ASSERT_TRUE(log.FileInfoAdd(file.string(), "first\nline"));
    ASSERT_TRUE(log.FileInfoAdd(file.string(), "second"));
    const std::string text = Contents(file);
    EXPECT_NE(text.find(" first line\r\n"), std::string::npos);
    EXPECT_NE(text.find(" second\r\n"), std::string::npos);
    EXPECT_EQ(text[2], '/');
    EXPECT_EQ(text[5], '/');
    EXPECT_EQ(text[13], ':');
    ASSERT_TRUE(log.FileReset(file.string()));
    EXPECT_EQ(Contents(file), "");
    std::ofstream(folder_ / "blocker").put('x');
    EXPECT_FALSE(log.FileInfoAdd((folder_ / "blocker" / "x.log").string(), "no"));
}

TEST_F(UtilityFilesTest, ProcessLogForgetsProcessesThatEnded) {
#ifdef _WIN32
    GTEST_SKIP() << "the ended process is a fork(), which Windows does not have";
#else
    const clsLog log;
    const std::string file = (folder_ / "processes.log").string();
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ASSERT_GT(child, 0);
    ::waitpid(child, nullptr, 0);  // ended and reaped: its id is free
    const std::int64_t self = platform::CurrentProcessId();
    ASSERT_TRUE(log.ExcelAndFennrickProcessCreated(file, self));
    ASSERT_TRUE(log.ExcelAndFennrickProcessCreated(file, self));  // recorded once
    ASSERT_TRUE(log.ExcelAndFennrickProcessCreated(file, child));
    EXPECT_EQ(Contents(file), std::to_string(self) + "\n" + std::to_string(child) + "\n");
    EXPECT_EQ(log.ExcelAndFennrickProcessManage(file), std::vector<std::int64_t>{self});
    EXPECT_EQ(Contents(file), std::to_string(self) + "\n");
    ASSERT_TRUE(log.ExcelAndFennrickProcessDeleted(file, self));
    EXPECT_EQ(Contents(file), "");
    EXPECT_TRUE(log.ExcelAndFennrickProcessManage((folder_ / "none.log").string()).empty());
#endif
}

}  // namespace
}  // namespace fnrk::utilities

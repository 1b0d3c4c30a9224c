#include "platform/ini_file.hpp"

#include <chrono>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "support/temp_dir.hpp"

namespace fnrk::platform {
namespace {

using fnrk::testing::ReadFileBytes;
using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

constexpr std::size_t kBuffer = 255;

// A file in the shapes seen in installations: comments, a repeated section and key, quotes,
// blanks around names, a line without "=", CRLF line ends.
const std::string kSample =
    "; shared configuration\r\n"
    "[Connection]\r\n"
    "  Mode = REMOTE  \r\n"
    "mode=LOCAL\r\n"
    "TS=\"ON\"\r\n"
    "Quoted='it''s'\r\n"
    "Half=\"open\r\n"
    "Note=a;b ; c\r\n"
    ";Hidden=yes\r\n"
    "NoEqualsHere\r\n"
    "\r\n"
    "[ install ]\r\n"
    "UserPath=D:\\DATA\\USERS.DBF\r\n"
    "[CONNECTION]\r\n"
    "Extra=invisible\r\n";

std::string Read(const std::string& file, const std::string& section, const std::string& key,
                 std::size_t buffer = kBuffer) {
    return GetPrivateProfileString(section, key, "<none>", buffer, file);
}

TEST(IniFile, ReadsWithThePrivateProfileRules) {
    TempDir dir;
    const std::string file = (dir / "FennRick.ini").string();
    WriteFileBytes(file, kSample);

    EXPECT_EQ(Read(file, "connection", "MODE"), "REMOTE");  // names in any case, first key wins
    EXPECT_EQ(Read(file, " Connection ", " Mode "), "REMOTE");
    EXPECT_EQ(Read(file, "Connection", "TS"), "ON");  // one pair of quotes removed
    EXPECT_EQ(Read(file, "Connection", "Quoted"), "it''s");
    EXPECT_EQ(Read(file, "Connection", "Half"), "\"open");    // unmatched quote stays
    EXPECT_EQ(Read(file, "Connection", "Note"), "a;b ; c");   // ";" inside a value is text
    EXPECT_EQ(Read(file, "Connection", "Hidden"), "<none>");  // commented out
    EXPECT_EQ(Read(file, "Connection", ";Hidden"), "<none>");
    EXPECT_EQ(Read(file, "Connection", "NoEqualsHere"), "<none>");
    EXPECT_EQ(Read(file, "Connection", "Extra"), "<none>");  // repeated section is invisible
    EXPECT_EQ(Read(file, "INSTALL", "userpath"), "D:\\DATA\\USERS.DBF");
    EXPECT_EQ(Read(file, "Install", "Missing"), "<none>");
    EXPECT_EQ(Read(file, "Nowhere", "Mode"), "<none>");
}

TEST(IniFile, ReadCutsToTheBufferAndTrimsTheDefault) {
    TempDir dir;
    const std::string file = (dir / "a.ini").string();
    WriteFileBytes(file, "[S]\nLong=" + std::string(300, 'x') + "\nAccent=\xE9t\xE9\n");

    EXPECT_EQ(Read(file, "S", "Long").size(), 254u);
    EXPECT_EQ(Read(file, "S", "Long", 4), "xxx");
    EXPECT_EQ(Read(file, "S", "Long", 1), "");
    EXPECT_EQ(Read(file, "S", "Long", 0), "");
    EXPECT_EQ(Read(file, "S", "Accent"), "\u00e9t\u00e9");  // Windows-1252 on disk
    EXPECT_EQ(Read(file, "S", "Accent", 3), "\u00e9t");     // cut in characters, not bytes
    EXPECT_EQ(GetPrivateProfileString("S", "None", "dflt  ", kBuffer, file), "dflt");
    EXPECT_EQ(GetPrivateProfileString("S", "None", "default", 4, file), "def");
    EXPECT_EQ(GetPrivateProfileString("S", "Long", "d", kBuffer, (dir / "missing.ini").string()),
              "d");
}

TEST(IniFile, WriteReplacesInPlaceAndKeepsEveryOtherByte) {
    TempDir dir;
    const std::string file = (dir / "FennRick.ini").string();
    WriteFileBytes(file, kSample);

    ASSERT_TRUE(WritePrivateProfileString("CONNECTION", "mode", "SERVER", file));
    std::string expected = kSample;
    expected.replace(expected.find("  Mode = REMOTE  "), 17, "  Mode =SERVER");
    EXPECT_EQ(ReadFileBytes(file), expected);
    EXPECT_EQ(Read(file, "Connection", "Mode"), "SERVER");

    ASSERT_TRUE(WritePrivateProfileString("install", "Language", "\u00e9", file));
    expected.insert(expected.find("[CONNECTION]"), "Language=\xE9\r\n");
    EXPECT_EQ(ReadFileBytes(file), expected);

    ASSERT_TRUE(WritePrivateProfileString("Param", "Test", "TRUE", file));
    expected += "[Param]\r\nTest=TRUE\r\n";
    EXPECT_EQ(ReadFileBytes(file), expected);
}

TEST(IniFile, NewKeysGoAfterTheSectionsLastLineBeforeBlankLines) {
    TempDir dir;
    const std::string file = (dir / "lf.ini").string();
    WriteFileBytes(file, "[A]\nx=1\n\n\n[B]\ny=2");  // LF line ends, no final line end

    ASSERT_TRUE(WritePrivateProfileString("A", "z", "3", file));
    ASSERT_TRUE(WritePrivateProfileString("B", "w", "4", file));
    ASSERT_TRUE(WritePrivateProfileString("C", "v", "5", file));
    EXPECT_EQ(ReadFileBytes(file), "[A]\nx=1\nz=3\n\n\n[B]\ny=2\nw=4\n[C]\nv=5\n");
}

TEST(IniFile, WriteCreatesTheFileWithCrlfAndRefusesBadInput) {
    TempDir dir;
    const std::string file = (dir / "new.ini").string();
    ASSERT_TRUE(WritePrivateProfileString("General", "Key", "value", file));
    EXPECT_EQ(ReadFileBytes(file), "[General]\r\nKey=value\r\n");

    EXPECT_FALSE(WritePrivateProfileString("", "Key", "v", file));
    EXPECT_FALSE(WritePrivateProfileString("General", " ", "v", file));
    EXPECT_FALSE(WritePrivateProfileString("General", "Key", "two\r\nlines", file));
    EXPECT_FALSE(WritePrivateProfileString("General", "Key", "v",
                                           (dir / "no-such-folder" / "x.ini").string()));
    EXPECT_EQ(ReadFileBytes(file), "[General]\r\nKey=value\r\n");
}

TEST(IniFile, SectionListingGivesEachKeyOnceInFileOrder) {
    TempDir dir;
    const std::string file = (dir / "s.ini").string();
    WriteFileBytes(file, "[Drives]\nK: = /srv/bank\n;L:=/x\nk:=/other\nM:=\"/srv/m\"\n[Z]\nq=1\n");
    const auto entries = GetPrivateProfileSection("drives", file);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].first, "K:");
    EXPECT_EQ(entries[0].second, "/srv/bank");
    EXPECT_EQ(entries[1].first, "M:");
    EXPECT_EQ(entries[1].second, "/srv/m");
    EXPECT_TRUE(GetPrivateProfileSection("Nothing", file).empty());
}

// A file is read again when its write time or size changes, and only then: another process
// that rewrites it is seen at once, a file left alone is not read twice.
TEST(IniFile, AFileIsReadAgainOnceItChanges) {
    TempDir dir;
    const auto path = dir / "cached.ini";
    WriteFileBytes(path, "[Connection]\r\nMode=LOCAL\r\n");
    EXPECT_EQ(ReadIniString("Connection", "Mode", "", kBuffer, path), "LOCAL");

    const auto written = std::filesystem::last_write_time(path);
#ifndef _WIN32
    // The same size and write time, other bytes: the text read before still answers. (The MinGW
    // runtime sets write times in whole seconds, so there the file cannot get its time back.)
    WriteFileBytes(path, "[Connection]\r\nMode=OTHER\r\n");
    std::filesystem::last_write_time(path, written);
    EXPECT_EQ(ReadIniString("Connection", "Mode", "", kBuffer, path), "LOCAL");
#endif

    // A change of size or of write time is a change.
    WriteFileBytes(path, "[Connection]\r\nMode=REMOTE\r\n");
    EXPECT_EQ(ReadIniString("Connection", "Mode", "", kBuffer, path), "REMOTE");
    std::filesystem::last_write_time(path, written + std::chrono::seconds(5));
    WriteFileBytes(path, "[Connection]\r\nMode=SERVER\r\n");
    std::filesystem::last_write_time(path, written + std::chrono::seconds(9));
    EXPECT_EQ(ReadIniString("Connection", "Mode", "", kBuffer, path), "SERVER");

    // Our own writes are always seen, and a file that goes is no longer answered from memory.
    ASSERT_TRUE(WriteIniString("Connection", "Mode", "LOCAL", path));
    EXPECT_EQ(ReadIniString("Connection", "Mode", "", kBuffer, path), "LOCAL");
    std::filesystem::remove(path);
    EXPECT_EQ(ReadIniString("Connection", "Mode", "none", kBuffer, path), "none");
}

}  // namespace
}  // namespace fnrk::platform

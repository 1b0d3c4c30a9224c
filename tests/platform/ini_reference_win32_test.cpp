// Windows: the INI rules of platform/ini_file give what the system's own private-profile
// functions give, on the same files, for the cases the library relies on.

#include "platform/ini_file.hpp"

#include <windows.h>

#include <string>

#include <gtest/gtest.h>

#include "support/temp_dir.hpp"

namespace fnrk::platform {
namespace {

std::string SystemValue(const std::string& section, const std::string& key,
                        const std::string& defaultValue, DWORD bufferSize,
                        const std::filesystem::path& file) {
    std::string buffer(bufferSize, '\0');
    const DWORD length =
        GetPrivateProfileStringA(section.c_str(), key.c_str(), defaultValue.c_str(), buffer.data(),
                                 bufferSize, file.string().c_str());
    buffer.resize(length);
    return buffer;
}

TEST(IniReference, ReadsAsTheSystemsPrivateProfileFunctions) {
    fnrk::testing::TempDir dir;
    const std::filesystem::path file = dir / "FennRick.ini";
    fnrk::testing::WriteFileBytes(file,
                                  "; a comment\r\n"
                                  "[General]\r\n"
                                  "Language = N  \r\n"
                                  "Quoted=\"  spaced  \"\r\n"
                                  "Twice=first\r\n"
                                  "twice=second\r\n"
                                  "Empty=\r\n"
                                  "Long=ABCDEFGHIJ\r\n"
                                  "Semi=value ; kept\r\n"
                                  "[general]\r\n"
                                  "Language=X\r\n"
                                  "Other=only here\r\n"
                                  "[Install]\r\n"
                                  "UserPath=C:\\DATA\\USERS\\USERS.DBF\r\n");
    struct Case {
        const char* section;
        const char* key;
        const char* defaultValue;
        DWORD bufferSize;
    };
    const Case cases[] = {
        {"General", "Language", "", 255},      {"GENERAL", "language", "", 255},
        {"General", "Quoted", "", 255},        {"General", "Twice", "", 255},
        {"General", "Empty", "dflt", 255},     {"General", "Long", "", 5},
        {"General", "Semi", "", 255},          {"General", "Other", "none", 255},
        {"General", "Missing", "dflt  ", 255}, {"Missing", "Key", "dflt", 3},
        {"Install", "UserPath", "", 255},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ReadIniString(c.section, c.key, c.defaultValue, c.bufferSize, file),
                  SystemValue(c.section, c.key, c.defaultValue, c.bufferSize, file))
            << c.section << "/" << c.key;
    }
}

TEST(IniReference, WritesThatTheSystemReadsBack) {
    fnrk::testing::TempDir dir;
    const std::filesystem::path file = dir / "new.ini";
    ASSERT_TRUE(WriteIniString("Connection", "Mode", "REMOTE", file));
    ASSERT_TRUE(WriteIniString("Connection", "TS", "on", file));
    ASSERT_TRUE(WriteIniString("Connection", "mode", "LOCAL", file));  // the same key
    EXPECT_EQ(SystemValue("Connection", "Mode", "", 255, file), "LOCAL");
    EXPECT_EQ(SystemValue("Connection", "TS", "", 255, file), "on");
}

}  // namespace
}  // namespace fnrk::platform

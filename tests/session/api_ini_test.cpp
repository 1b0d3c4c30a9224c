#include "session/api_ini.hpp"

#include <gtest/gtest.h>

#include "installation_fixture.hpp"
#include "session/users_table_locator.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::session {
namespace {

using fnrk::testing::ReadFileBytes;
using fnrk::testing::ScopedEnvironment;

class ApiIniTest : public InstallationTest {
  protected:
    ApiIniTest() {
        Write("FennRick.ini", "[Install]\r\nUserPath=" + Path("USERS/USERS.DBF") +
                                  "\r\n"
                                  "[General]\r\nLanguage=F\r\nColour=blue\r\n"
                                  "[Connection]\r\nMode=LOCAL\r\n"
                                  "[FIDUC]\r\nOffice=shared\r\n"
                                  "[TERMINAL_SERVICES]\r\nProfile=shared\r\n");
        Write("USERS/UsersPrefs/ANN.ini",
              "[General]\r\nLanguage=N\r\n"
              "[Connection]\r\nMode=REMOTE\r\n"
              "[Fiduc]\r\nOffice=mine\r\n"
              "[Terminal_Services]\r\nProfile=mine\r\n");
        ini_.INIfile(SharedIni());
    }

    ApiIni ini_;
};

TEST_F(ApiIniTest, PreferenceFileOverridesTheSharedFileExceptMachineWideSections) {
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "N");
    EXPECT_EQ(ini_.ReadINI("general", "colour"), "blue");  // missing from the preferences
    EXPECT_EQ(ini_.ReadINI("Connection", "Mode"), "LOCAL");
    EXPECT_EQ(ini_.ReadINI("fiduc", "Office"), "shared");  // sections compared in upper case
    EXPECT_EQ(ini_.ReadINI("Terminal_Services", "Profile"), "shared");
    EXPECT_EQ(ini_.ReadINI("General", "Missing"), "");

    CurrentUser().Name = "BOB";  // no preference file for him
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "F");
    CurrentUser().Name = "ANN            ";  // padded as in the users table
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "N");
}

TEST_F(ApiIniTest, BlankUserFallsBackToTheSettingsUserCode) {
    Write("USERS/UsersPrefs/Fennrick.ini", "[General]\r\nLanguage=E\r\n");
    Write("USERS/UsersPrefs/DESK1.ini", "[General]\r\nLanguage=D\r\n");
    CurrentUser().Name = "   ";
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "E");  // the default code "Fennrick"
    ScopedEnvironment code("FNRK_USER_CODE", "DESK1");
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "D");
}

TEST_F(ApiIniTest, OtherFilesAreReadAsTheyAre) {
    Write("local.ini",
          "[General]\r\nLanguage=X\r\n[Install]\r\nUserPath=" + Path("a/b/USERS.DBF") + "\r\n");
    ini_.INIfile(Path("local.ini"));
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "X");
    EXPECT_EQ(ini_.ReadINI("Install", "UserPath"), Path("a/b"));

    Write("cfg/fennrick.INI", "[General]\r\nLanguage=Y\r\n");
    ini_.INIfile(Path("cfg/fennrick.INI"));  // the shared name in any case
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "N");

    ini_.INIfile("   ");
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "");
}

TEST_F(ApiIniTest, WorkstationSectionsComeFromTheCallersFileOffTerminalServices) {
    Write("cfg/FennRick.ini", "[Connection]\r\nMode=CALLER\r\n[General]\r\nColour=caller\r\n");
    Write("USERS/Fennrick.ini", "[Connection]\r\nMode=USERS\r\n[General]\r\nColour=users\r\n");
    ini_.INIfile(Path("cfg/FennRick.ini"));

    EXPECT_EQ(ini_.ReadINI("Connection", "Mode"), "CALLER");
    EXPECT_EQ(ini_.ReadINI("General", "Colour"), "users");  // the file beside the users table
    EXPECT_FALSE(IsTerminalServices());

    Write("FennRick.ini", "[Install]\r\nUserPath=" + Users() + "\r\n[Connection]\r\nTS=on\r\n");
    EXPECT_TRUE(IsTerminalServices());
    EXPECT_EQ(ini_.ReadINI("Connection", "Mode"), "USERS");
}

TEST_F(ApiIniTest, UserPathComesFromTheSettingsStoreInstallation) {
    ini_.INIfile(Path("cfg/FennRick.ini"));  // not consulted for Install/UserPath
    EXPECT_EQ(ini_.ReadINI("INSTALL", "userpath"), Users());
    EXPECT_EQ(ini_.GetUserDbfPath(), Path("USERS/"));

    Write("FennRick.ini", "[Install]\r\nUserPath=" + Path("USERS/users.dbf") + "\r\n");
    EXPECT_EQ(ini_.GetUserDbfPath(), Path("USERS/"));
    Write("FennRick.ini", "[Install]\r\nUserPath=" + Path("USERS/") + "\r\n");
    EXPECT_EQ(ini_.ReadINI("Install", "UserPath"), Users());
}

#ifndef _WIN32  // on Windows the drive letters are the system's own
TEST_F(ApiIniTest, WindowsFormUserPathGoesThroughTheDriveMap) {
    Write("settings.ini", "[Drives]\r\nD:=" + Root() + "\r\n");
    Write("FennRick.ini", "[Install]\r\nUserPath=D:\\USERS\\USERS.DBF\r\n");
    EXPECT_EQ(ini_.ReadINI("Install", "UserPath"), Users());
    EXPECT_EQ(ini_.GetUserDbfPath(), Path("USERS/"));
    EXPECT_EQ(ini_.ReadINI("General", "Language"), "N");  // the preference file is found there
}
#endif

class FixedUsersTable : public UsersTableLocator {
  public:
    std::optional<std::string> OpenUsersTableFolder() const override { return "/open/users"; }
};

TEST_F(ApiIniTest, WithoutUserPathTheOpenUsersTableOrTheMainPathDecides) {
    Write("FennRick.ini", "[Install]\r\nUserPath=   \r\n");
    EXPECT_EQ(ini_.GetUserDbfPath(), Path(""));

    FixedUsersTable table;
    ini_.UsersTableFrom(&table);
    EXPECT_EQ(ini_.GetUserDbfPath(), "/open/users");  // as the table layer reports it
    ini_.UsersTableFrom(nullptr);
    EXPECT_EQ(ini_.GetUserDbfPath(), Path(""));
}

TEST_F(ApiIniTest, PreferenceFolderOnlyWhenItExists) {
    EXPECT_EQ(ini_.GetUsersPrefDirectory(), Path("USERS/UsersPrefs"));
    Write("FennRick.ini", "[Install]\r\nUserPath=" + Path("ELSEWHERE") + "\r\n");
    EXPECT_EQ(ini_.GetUsersPrefDirectory(), "");
}

TEST_F(ApiIniTest, KeyExistenceAndWrites) {
    const std::string preferences = PreferenceIni("ANN");
    EXPECT_TRUE(ini_.IsSpecifiedKeyExist("general", "LANGUAGE", preferences));
    EXPECT_FALSE(ini_.IsSpecifiedKeyExist("General", "Colour", preferences));
    Write("USERS/UsersPrefs/ANN.ini", "[General]\r\nLanguage=KEY_NO_EXIST\r\n");
    EXPECT_FALSE(ini_.IsSpecifiedKeyExist("General", "Language", preferences));

    const std::string before = ReadFileBytes(preferences);
    ini_.WriteINI("General", "Language", "E");  // to INIfile, never to the preferences
    EXPECT_EQ(ReadFileBytes(preferences), before);
    EXPECT_NE(ReadFileBytes(SharedIni()).find("Language=E\r\n"), std::string::npos);

    ApiIni fresh;
    fresh.WriteINI("General", "Language", "E");  // no file: nothing happens
    EXPECT_EQ(fresh.ReadINI("General", "Language"), "");
}

}  // namespace
}  // namespace fnrk::session

#pragma once

// An installation for the users tests, in either keeping: the temporary folder is the
// installation and the users folder (FNRK_MAIN_PATH), holding the user register "USERS.DBF";
// its "USERS" subfolder holds the log-on table. Kept in SQL, both folders carry the markers of
// a SQL-kept folder.

#include <string>

#include "session/session_user.hpp"
#include "tables/ads_fixture.hpp"
#include "users/user.hpp"
#include "users/user_password.hpp"

namespace fnrk::users::testing {

using tables::ads_testing::Keeping;
using tables::ads_testing::KeepingName;

inline constexpr const char* kUsersFields =
    "NAME,C,15,0;PASSWORD,C,15,0;LANGUAGE,C,1,0;CODESOC,C,15,0;PATH,C,60,0";

class UsersTest : public tables::ads_testing::AdsTest {
  protected:
    void SetUp() override {
        if (GetParam() == Keeping::Sql) {
            MarkSqlFolder(folder.path(), "users.sqlite");
            MarkSqlFolder(folder / "USERS", "log.sqlite");
        }
        AdsTest::SetUp();
    }
    void TearDown() override {
        session::SetMessageLanguage("F");
        AdsTest::TearDown();
    }
    static void MarkSqlFolder(const std::filesystem::path& where, const std::string& database) {
        std::filesystem::create_directories(where);
        fnrk::testing::WriteFileBytes(where / "FRSQL.DBF", "");
        fnrk::testing::WriteFileBytes(where / "folder.data",
                                      "<connection><Driver>SQLite</Driver><Database>" + database +
                                          "</Database></connection>\n");
    }
    std::string UsersTablePath() const { return (folder / "USERS.DBF").string(); }

    // The user register with its rows, open as "USERS".
    void CreateUsers() {
        const std::string path = UsersTablePath();
        engine::Handle table = 0;
        ASSERT_EQ(db.CreateTable(ads.ConnectionOfTableFile("USERS", path), path, "USERS",
                                 engine::ADS_CDX, engine::ADS_ANSI, engine::ADS_COMPATIBLE_LOCKING,
                                 engine::ADS_IGNORERIGHTS, 0, kUsersFields, table),
                  engine::AE_SUCCESS);
        ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);
        ASSERT_EQ(ads.FileOpenExternal("USERS", path), engine::AE_SUCCESS);
    }
    void AddUser(const std::string& name, const std::string& password,
                 const std::string& language = "F", const std::string& company = "",
                 const std::string& path = "") {
        AddRecord("USERS", {{"NAME", name},
                            {"PASSWORD", password},
                            {"LANGUAGE", language},
                            {"CODESOC", company},
                            {"PATH", path}});
    }
    // A user object with the password typed.
    user Typed(const std::string& name, const std::string& password) {
        user person(ads);
        person.Register("", name, "F", password, "0");
        return person;
    }
};

}  // namespace fnrk::users::testing

// The combined login and password text of "FENNRICKID" entries.

#include <gtest/gtest.h>

#include "users/password_in_string.hpp"

namespace fnrk::users {
namespace {

TEST(PasswordInStringTest, ValuesWithSeparatorsComeBackExactly) {
    const std::vector<std::pair<std::string, std::string>> pairs = {
        {"martin@example.be", "s3cret"}, {"a,b=c", "Pwd=x,Login=y"},
        {"back\\slash\\", "\\,="},       {"", ""},
        {"désiré", " spaces "},
    };
    for (const auto& [login, password] : pairs) {
        const std::string text = GetPasswordInString("FENNRICKID", login, password);
        std::string readLogin;
        std::string readPassword;
        ASSERT_TRUE(ReadPasswordInString("fennrickid", text, readLogin, readPassword)) << text;
        EXPECT_EQ(readLogin, login) << text;
        EXPECT_EQ(readPassword, password) << text;
    }
    EXPECT_EQ(GetPasswordInString(" FennrickId ", "a,b", "c=d"), "Login=a\\,b,Pwd=c\\=d");
}

TEST(PasswordInStringTest, OtherTypesPassUnchangedAndBadTextIsRefused) {
    EXPECT_EQ(GetPasswordInString("CODABOX", "token,=", "ignored"), "token,=");
    std::string login = "old";
    std::string password = "old";
    ASSERT_TRUE(ReadPasswordInString("CODABOX", "Login=a,Pwd=b", login, password));
    EXPECT_EQ(login, "Login=a,Pwd=b");
    EXPECT_EQ(password, "");

    ASSERT_TRUE(ReadPasswordInString("FENNRICKID", "login=m,PWD=a,b=c", login, password));
    EXPECT_EQ(login, "m");
    EXPECT_EQ(password, "a,b=c") << "the password runs to the end";
    for (const char* bad : {"", "m,Pwd=x", "Login=m", "Login=m,Password=x", "Login=m\\,Pwd=x"}) {
        EXPECT_FALSE(ReadPasswordInString("FENNRICKID", bad, login, password)) << bad;
        EXPECT_EQ(login, "");
        EXPECT_EQ(password, "");
    }
}

}  // namespace
}  // namespace fnrk::users

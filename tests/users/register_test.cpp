// user: passwords, companies and languages read from the user register.

#include <gtest/gtest.h>

#include "users_fixture.hpp"

namespace fnrk::users::testing {
namespace {

class RegisterTest : public UsersTest {
  protected:
    void SetUp() override {
        UsersTest::SetUp();
        CreateUsers();
        AddUser("SYSTEM", "ALPHA", "F", "SOC1", "11/data/SOC1");
        AddUser("SYSTEM", "", "F", "SOC2", "02/data/SOC2");
        AddUser("MARTIN", "Secret", "N", "", "");
        AddUser("MARTIN", "", "N", "SOC1", "11/data/SOC1");
        AddUser("MARTIN", "", "N", "ARCH", "02/data/ARCH");
        AddUser("LEA", "", "E", "", "");
        AddUser("ABCDEFGHIJKLMNO", "long", "F", "", "");
        AddUser("GONE", "gone", "F", "", "");
        AddUser("O'BRIEN", "", "E", "SOC1", "11/data/SOC1");
        ASSERT_TRUE(ads.RecLock("USERS", 8));
        ASSERT_EQ(ads.RecordDelete(), engine::AE_SUCCESS);
        ASSERT_EQ(ads.FlushAndUnlock("USERS"), engine::AE_SUCCESS);
    }
};

TEST_P(RegisterTest, PasswordsCompareInUpperCaseOnFifteenCharacters) {
    EXPECT_TRUE(Typed("martin", "SECRET").CheckPasswordOfUser("martin", ""));
    EXPECT_TRUE(Typed("martin", "secret").CheckPasswordOfUser(" MARTIN ", "ANY"))
        << "another user than SYSTEM is found by name alone";
    EXPECT_FALSE(Typed("martin", "secrets").CheckPasswordOfUser("MARTIN", ""));
    EXPECT_FALSE(Typed("martin", "").CheckPasswordOfUser("MARTIN", ""));
    EXPECT_TRUE(Typed("lea", "anything at all").CheckPasswordOfUser("LEA", ""))
        << "a blank stored password admits any";
    EXPECT_TRUE(Typed("x", "LONG").CheckPasswordOfUser("ABCDEFGHIJKLMNOPQRS", ""))
        << "names are compared on their first 15 characters";
    EXPECT_FALSE(Typed("x", "gone").CheckPasswordOfUser("GONE", "")) << "a deleted row";
    EXPECT_FALSE(Typed("x", "").CheckPasswordOfUser("NOBODY", ""));
    EXPECT_FALSE(Typed("x", "").CheckPasswordOfUser("x' .OR. .T. .OR. 'y", ""));
}

TEST_P(RegisterTest, TheSystemUserIsFoundPerCompanyInAnyCase) {
    EXPECT_TRUE(Typed("system", "alpha").CheckPasswordOfUser("SYSTEM", "soc1"));
    EXPECT_TRUE(Typed("system", "alpha").CheckPasswordOfUser("system", "SOC1"))
        << "\"system\" in lower case is the system user";
    EXPECT_FALSE(Typed("system", "beta").CheckPasswordOfUser("SYSTEM", "SOC1"));
    EXPECT_TRUE(Typed("system", "beta").CheckPasswordOfUser("SYSTEM", "SOC2"))
        << "that company's row has no password";
    EXPECT_FALSE(Typed("system", "alpha").CheckPasswordOfUser("SYSTEM", "SOC9"));

    user reader = Typed("x", "");
    EXPECT_TRUE(reader.IsUserAccessInDossier("martin", "soc1"));
    EXPECT_FALSE(reader.IsUserAccessInDossier("LEA", "SOC1"));
    EXPECT_TRUE(reader.IsUserAccessInDossier("O'Brien", "SOC1"));
}

TEST_P(RegisterTest, TheCurrentUsersLanguageComesFromTheRegisterWhenItIsOpen) {
    ASSERT_EQ(ads.ActivateAlias("USERS"), engine::AE_SUCCESS);
    CreateStandard("ACF", tables::ads_testing::kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS);
    EXPECT_EQ(Typed("lea", "").GetLanguageOfCurrentUser(), "E");
    EXPECT_EQ(Typed("Martin", "").GetLanguageOfCurrentUser(), "N");
    EXPECT_EQ(Typed("nobody", "").GetLanguageOfCurrentUser(), "");
    EXPECT_EQ(ads.GetCurrentAlias(), "ACF") << "the caller's alias is kept";
    ASSERT_EQ(ads.CloseAlias("USERS"), engine::AE_SUCCESS);
    EXPECT_EQ(Typed("lea", "").GetLanguageOfCurrentUser(), "") << "the register is not open";
    EXPECT_EQ(Shown(), "");
}

TEST_P(RegisterTest, AlternateDossierIsTheFirstCompanyMarkedElevenOrTwo) {
    EXPECT_EQ(AlternateDossierStatement("o'brien"),
              "select codesoc,path from [USERS] where (NAME ='O''BRIEN' AND "
              "(LEFT(PATH,2)='11' OR LEFT(PATH,2)='02')) ORDER BY CODESOC");
    user reader = Typed("x", "");
    std::string company;
    std::string folder;
    ASSERT_TRUE(reader.GetAlternateUsernameAndDossier("martin", company, folder)) << Shown();
    EXPECT_EQ(company, "ARCH") << "the first by company code";
    EXPECT_EQ(folder, "02/data/ARCH");
    ASSERT_TRUE(reader.GetAlternateUsernameAndDossier("O'Brien", company, folder)) << Shown();
    EXPECT_EQ(company, "SOC1");
    company.clear();
    EXPECT_FALSE(reader.GetAlternateUsernameAndDossier("LEA", company, folder));
    EXPECT_FALSE(reader.GetAlternateUsernameAndDossier("system", company, folder));
    EXPECT_FALSE(reader.GetAlternateUsernameAndDossier("x') OR (1=1) OR ('", company, folder));
    EXPECT_EQ(company, "");
}

INSTANTIATE_TEST_SUITE_P(Keepings, RegisterTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);

}  // namespace
}  // namespace fnrk::users::testing

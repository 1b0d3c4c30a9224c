// user: log-ons in "USERSLOG.DBF", seen from two workstations of this process, and the user's
// private folder.

#include <gtest/gtest.h>

#include "platform/file_system.hpp"
#include "users_fixture.hpp"

namespace fnrk::users::testing {
namespace {

// A second workstation in this process: its own engine and dispatch over the same folders.
struct OtherWorkstation {
    OtherWorkstation() {
        ads.SetInteractive(false);
        ads.Initialize();
    }
    engine::Engine engine;
    tables::SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    tables::AdsClass ads{db};
};

class LogonTest : public UsersTest {
  protected:
    void SetUp() override {
        UsersTest::SetUp();
        CreateStandard("PARAM", "ID,C,25,0;VALUE,C,100,0;VALUEEXT,C,150,0", {{"ID", "ID"}});
    }
};

TEST_P(LogonTest, TwoWorkstationsSeeEachOthersLogOns) {
    OtherWorkstation other;
    other.ads.SetDossierPrefix((dossier / "SOC1").string());
    user here(ads);
    user there(other.ads);

    ASSERT_TRUE(here.CheckAccess("martin"));
    EXPECT_TRUE(platform::FolderExists((folder / "USERS").string()));
    EXPECT_TRUE(there.IsUserLoggedInDossier("MARTIN"));
    EXPECT_TRUE(here.IsUserLoggedInDossier("Martin")) << "logged on here counts too";
    EXPECT_FALSE(there.IsUserLoggedInDossier("LEA"));
    EXPECT_FALSE(there.CheckAccess("MARTIN")) << "already logged on at the other workstation";
    ASSERT_TRUE(there.CheckAccess("LEA"));
    EXPECT_TRUE(here.IsUserLoggedInDossier("lea"));

    here.LogOff();
    EXPECT_FALSE(there.IsUserLoggedInDossier("MARTIN"));
    EXPECT_TRUE(there.CheckAccess("MARTIN")) << "the other ends its log-on of LEA first";
    EXPECT_FALSE(here.IsUserLoggedInDossier("LEA"));
    EXPECT_TRUE(here.IsUserLoggedInDossier("MARTIN"));
    there.UnRegister();
    EXPECT_FALSE(here.IsUserLoggedInDossier("MARTIN")) << "UnRegister ends the log-on";
    EXPECT_EQ(Shown(), "");
}

TEST_P(LogonTest, ALoggedFlagWithoutItsLockIsNotALogOn) {
    {
        user crashed(ads);
        ASSERT_TRUE(crashed.CheckAccess("MARTIN"));
        // What a workstation that died leaves: LOGGED true, no lock.
        ASSERT_TRUE(ads.IsAlias("LOGUSERS"));
        ASSERT_EQ(ads.FlushAndUnlock("LOGUSERS"), engine::AE_SUCCESS);
        OtherWorkstation other;
        user there(other.ads);
        EXPECT_FALSE(there.IsUserLoggedInDossier("MARTIN"));
        EXPECT_TRUE(there.CheckAccess("MARTIN")) << "the stale flag does not keep anyone out";
        EXPECT_TRUE(crashed.IsUserLoggedInDossier("MARTIN"));
    }
}

TEST_P(LogonTest, RefusalsAndTheLogFileMessage) {
    user here(ads);
    EXPECT_FALSE(here.CheckAccess("   ")) << "no name";
    session::SetMessageLanguage("E");
    EXPECT_FALSE(here.IsUserLoggedInDossier("MARTIN")) << "nobody ever logged on";
    const std::string table = (folder / "USERS" / "USERSLOG.DBF").string();
    EXPECT_EQ(Shown(), "An error has been occured when opening the LOG file (" + table + ")");

    EXPECT_EQ(LogFileMessage(10), "An error has been occured when opening the LOG file (");
    session::SetMessageLanguage("N");
    EXPECT_EQ(LogFileMessage(10), "Een fout is ontstaan bij het openen van het bestand LOG (");
    session::SetMessageLanguage("F");
    EXPECT_EQ(LogFileMessage(10), "Une erreur est survenue à l'ouverture du fichier LOG (");
    EXPECT_EQ(LogFileMessage(11), "");

    ads.SetDossierPrefix((dossier / "SOC9").string());
    EXPECT_FALSE(here.CheckAccess("MARTIN")) << "a company without parameter table";
}

TEST_P(LogonTest, ThePrivateFolderIsMadeUnderUsers) {
    user person = Typed("martin", "");
    const std::string path = person.PrefsPath();
    EXPECT_EQ(path, (folder / "USERS" / "martin").string());
    EXPECT_TRUE(platform::FolderExists(path));
    EXPECT_EQ(person.PrefsPath(), path) << "an existing folder is kept";
}

INSTANTIATE_TEST_SUITE_P(Keepings, LogonTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);

TEST(PrefsPathTest, NoUsersFolderIsReported) {
    fnrk::testing::ScopedEnvironment noMain("FNRK_MAIN_PATH", "");
    fnrk::testing::TempDir home;
    fnrk::testing::ScopedEnvironment settings("FNRK_SETTINGS_FILE",
                                              (home / "settings.ini").string());
    platform::RecordingMessageSink messages;
    platform::MessageSink* previous = platform::SetMessageSink(&messages);
    engine::Engine engine;
    tables::SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    tables::AdsClass ads{db};
    user person(ads);
    person.Name("martin");
    EXPECT_EQ(person.PrefsPath(), "");
    platform::SetMessageSink(previous);
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_EQ(messages.shown()[0].text, "Error getting user private path");
}

}  // namespace
}  // namespace fnrk::users::testing

// fennrick users: rights strings, passwords and log-ons.

#include <gtest/gtest.h>

#include <memory>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "platform/messages.hpp"
#include "support/run_command.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"
#include "tables/ads_class.hpp"
#include "users/user.hpp"

namespace {

using fnrk::testing::RunFennrick;
namespace platform = fnrk::platform;

TEST(UsersCommand, RightsGrantOrWithdrawEachCode) {
    auto result =
        RunFennrick({"users", "--rights", "0001000", "MNUPRINT", "mnuparam", "MNURECIPCODA", "X"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out,
              "MNUPRINT withdrawn\nmnuparam granted\nMNURECIPCODA granted\nX granted\n");
    EXPECT_EQ(RunFennrick({"users", "--rights", "1001", "MNUPRINT"}).out, "MNUPRINT granted\n");
}

// A users folder with its register, and this process as one workstation.
class UsersFolderCommand : public ::testing::Test {
  protected:
    void SetUp() override {
        platform::SetMessageSink(&messages);
        ads.SetInteractive(false);
        ASSERT_EQ(ads.Initialize(), fnrk::engine::AE_SUCCESS);
        const std::string path = (dir / "USERS.DBF").string();
        ASSERT_EQ(ads.CreateTableFile("USERS", path,
                                      "NAME,C,15,0;PASSWORD,C,15,0;LANGUAGE,C,1,0;CODESOC,C,15,0;"
                                      "PATH,C,60,0"),
                  fnrk::engine::AE_SUCCESS);
        ASSERT_EQ(ads.FileOpenExternal("USERS", path), fnrk::engine::AE_SUCCESS);
        AddUser("MARTIN", "Secret", "");
        AddUser("SYSTEM", "alpha", "SOC1");
        AddUser("LEA", "", "");
    }
    void TearDown() override { platform::SetMessageSink(nullptr); }
    void AddUser(const std::string& name, const std::string& password, const std::string& code) {
        ASSERT_EQ(ads.RecordAdd(), fnrk::engine::AE_SUCCESS);
        EXPECT_TRUE(ads.PutFieldValue("NAME", name));
        EXPECT_TRUE(ads.PutFieldValue("PASSWORD", password));
        EXPECT_TRUE(ads.PutFieldValue("CODESOC", code));
        ASSERT_EQ(ads.FlushAndUnlock("USERS"), fnrk::engine::AE_SUCCESS);
    }

    fnrk::testing::TempDir dir;
    fnrk::testing::ScopedEnvironment mainPath{"FNRK_MAIN_PATH", dir.path().string()};
    fnrk::platform::RecordingMessageSink messages;
    fnrk::engine::Engine engine;
    fnrk::tables::SqlDatabase db{engine,
                                 [] { return std::make_unique<fnrk::backend::FRCDatabase>(); }};
    fnrk::tables::AdsClass ads{db};
};

TEST_F(UsersFolderCommand, PasswordsAreCheckedByExitStatus) {
    const std::string folder = dir.path().string();
    EXPECT_EQ(RunFennrick({"users", folder, "--check-password", "martin", "SECRET"}).exitCode, 0);
    EXPECT_EQ(RunFennrick({"users", folder, "--check-password", "MARTIN", "wrong"}).exitCode, 1);
    EXPECT_EQ(RunFennrick({"users", folder, "--check-password", "lea", "anything"}).exitCode, 0);
    EXPECT_EQ(
        RunFennrick({"users", folder, "--check-password", "system", "ALPHA", "soc1"}).exitCode, 0);
    EXPECT_EQ(
        RunFennrick({"users", folder, "--check-password", "SYSTEM", "ALPHA", "SOC2"}).exitCode, 1);
    EXPECT_EQ(RunFennrick({"users", folder, "--check-password", "NOBODY", ""}).exitCode, 1);
    EXPECT_NE(RunFennrick({"users", folder, "--check-password", "MARTIN"}).exitCode, 0)
        << "the password is needed";
    EXPECT_EQ(RunFennrick({"users", (dir / "none").string(), "--logged-in", "X"}).exitCode, 1);
}

TEST_F(UsersFolderCommand, LoggedInSeesThisProcesssLogOn) {
    const std::string folder = dir.path().string();
    fnrk::users::user here(ads);
    ASSERT_TRUE(here.CheckAccess("MARTIN"));
    auto result = RunFennrick({"users", folder, "--logged-in", "martin"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "yes\n");
    EXPECT_EQ(RunFennrick({"users", folder, "--logged-in", "LEA"}).out, "no\n");
    here.LogOff();
    EXPECT_EQ(RunFennrick({"users", folder, "--logged-in", "MARTIN"}).out, "no\n");
}

}  // namespace

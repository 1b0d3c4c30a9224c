// Log-ons between processes: another process logs a user on; while it lives the user is seen
// logged on, and once it has ended (or was killed) no longer.

#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include "users_fixture.hpp"

extern char** environ;

namespace fnrk::users::testing {
namespace {

class LogonHolder {
  public:
    LogonHolder(const std::string& name, const std::filesystem::path& folder)
        : ready_((folder / "ready.flag").string()), release_((folder / "release.flag").string()) {
        std::vector<std::string> args = {FNRK_LOGON_HOLDER, name, ready_, release_};
        std::vector<char*> argv;
        for (auto& arg : args) argv.push_back(arg.data());
        argv.push_back(nullptr);
        started_ =
            posix_spawn(&pid_, FNRK_LOGON_HOLDER, nullptr, nullptr, argv.data(), environ) == 0;
    }
    ~LogonHolder() {
        if (pid_ != 0) Kill();
    }
    bool WaitUntilLoggedOn() const {
        return started_ && tables::AdsClass::waitFileExist(ready_, true, 20);
    }
    // Lets the holder end; its exit code.
    int Release() {
        fnrk::testing::WriteFileBytes(release_, "");
        return Wait();
    }
    int Kill() {
        kill(pid_, SIGKILL);
        return Wait();
    }

  private:
    int Wait() {
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    std::string ready_;
    std::string release_;
    pid_t pid_ = 0;
    bool started_ = false;
};

class LogonProcessesTest : public UsersTest {
  protected:
    void SetUp() override {
        UsersTest::SetUp();
        CreateStandard("PARAM", "ID,C,25,0;VALUE,C,100,0;VALUEEXT,C,150,0", {{"ID", "ID"}});
    }
};

TEST_P(LogonProcessesTest, AnEndedWorkstationNoLongerHoldsItsUser) {
    user here(ads);
    {
        LogonHolder holder("MARTIN", folder.path());
        ASSERT_TRUE(holder.WaitUntilLoggedOn());
        EXPECT_TRUE(here.IsUserLoggedInDossier("martin"));
        EXPECT_FALSE(here.CheckAccess("MARTIN"));
        EXPECT_EQ(holder.Release(), 0);
    }
    EXPECT_FALSE(here.IsUserLoggedInDossier("MARTIN")) << "ended without logging off";
    std::filesystem::remove(folder / "ready.flag");
    std::filesystem::remove(folder / "release.flag");
    {
        LogonHolder holder("MARTIN", folder.path());
        ASSERT_TRUE(holder.WaitUntilLoggedOn());
        EXPECT_TRUE(here.IsUserLoggedInDossier("MARTIN"));
        EXPECT_EQ(holder.Kill(), -SIGKILL);
    }
    EXPECT_FALSE(here.IsUserLoggedInDossier("MARTIN")) << "killed";
    EXPECT_TRUE(here.CheckAccess("MARTIN"));
    EXPECT_EQ(Shown(), "");
}

INSTANTIATE_TEST_SUITE_P(Keepings, LogonProcessesTest,
                         ::testing::Values(Keeping::Files, Keeping::Sql), KeepingName);

}  // namespace
}  // namespace fnrk::users::testing

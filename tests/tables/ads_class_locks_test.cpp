// AdsClass: record and table locks between workstations, with the user's Retry / Cancel, and
// flushing.

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include "session/session_user.hpp"
#include "tables/ads_fixture.hpp"

extern char** environ;

namespace fnrk::tables::ads_testing {
namespace {

using namespace engine;  // status and option numbers

constexpr platform::MessageStyle kRetryCancelStyle = 309;

// A second workstation in this process: its own engine and dispatch over the same dossier.
struct OtherWorkstation {
    explicit OtherWorkstation(const std::string& prefix) {
        ads.SetInteractive(false);
        ads.SetDossierPrefix(prefix);
        ads.Initialize();
    }
    engine::Engine engine;
    SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    AdsClass ads{db};
};

class AdsLocksTest : public AdsTest {
  protected:
    void SetUp() override {
        AdsTest::SetUp();
        session::SetMessageLanguage("E");
        OpenEntries();
    }
    void TearDown() override {
        session::SetMessageLanguage("F");
        AdsTest::TearDown();
    }
    std::string Prefix() const { return (dossier / "SOC1").string(); }
};

TEST_P(AdsLocksTest, ALockedRecordOffersRetryOrCancel) {
    OtherWorkstation other(Prefix());
    ASSERT_EQ(other.ads.FileOpen("ACT"), AE_SUCCESS);
    ASSERT_TRUE(other.ads.RecLock("ACT", 2));

    messages.QueueAnswer(platform::MessageAnswer::Retry);
    messages.QueueAnswer(platform::MessageAnswer::Cancel);
    EXPECT_FALSE(ads.RecLock("ACT", 2));
    ASSERT_EQ(messages.shown().size(), 2u);
    for (const auto& shown : messages.shown()) {
        EXPECT_EQ(shown.text, "It is blocked by another user.\r\nVEN 1 700000,rn=2");
        EXPECT_EQ(shown.style, kRetryCancelStyle);
    }
    // Another record is free.
    EXPECT_TRUE(ads.RecLock("ACT", 3));
    EXPECT_EQ(ads.GetLockNumberOnServer(), 1u);

    // Without interaction the first failure is the answer.
    ads.SetInteractive(false);
    EXPECT_FALSE(ads.RecLock("ACT", 2));
    EXPECT_EQ(messages.shown().size(), 2u);

    ASSERT_EQ(other.ads.FlushAndUnlock("ACT"), AE_SUCCESS);
    EXPECT_TRUE(ads.RecLock("ACT", 2));
}

TEST_P(AdsLocksTest, TableLocksOfferRetryOrCancel) {
    OtherWorkstation other(Prefix());
    ASSERT_EQ(other.ads.FileOpen("ACT"), AE_SUCCESS);
    ASSERT_TRUE(other.ads.RecLock("ACT", 1));
    EXPECT_FALSE(ads.LockTable("ACT"));
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_EQ(messages.shown()[0].text, "The file is blocked by another user");
    EXPECT_EQ(messages.shown()[0].style, kRetryCancelStyle);
    ASSERT_EQ(other.ads.FlushAndUnlock("ACT"), AE_SUCCESS);
    EXPECT_TRUE(ads.LockTable("ACT"));
    EXPECT_TRUE(ads.IsFileLocked("ACT"));
    EXPECT_FALSE(other.ads.RecLock("ACT", 1));
}

TEST_P(AdsLocksTest, FlushAndUnlockReleasesFlushButDontUnlockKeeps) {
    ASSERT_TRUE(ads.RecLock("ACT", 1));
    ASSERT_TRUE(ads.RecLock("ACT", 2));
    EXPECT_TRUE(ads.IsLocked());
    EXPECT_EQ(ads.GetLockNumberOnServer(), 2u);
    ASSERT_EQ(ads.FlushButDontUnlock("ACT"), AE_SUCCESS);
    EXPECT_EQ(ads.GetLockNumberOnServer(), 2u);
    ASSERT_EQ(ads.FlushAndUnlock("ACT"), AE_SUCCESS);
    EXPECT_EQ(ads.GetLockNumberOnServer(), 0u);
    EXPECT_FALSE(ads.IsLocked());
    EXPECT_EQ(ads.FlushAndUnlock("GHOST"), AE_TABLE_NOT_FOUND);
}

TEST_P(AdsLocksTest, AReadOnlyTableRefusesRecordLocks) {
    ASSERT_EQ(ads.FileOpen("ACT", "READONLY"), AE_SUCCESS);
    EXPECT_FALSE(ads.RecLock("ACT", 1));
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_EQ(messages.shown()[0].text, "Impossible to update the reference !");
    EXPECT_EQ(messages.shown()[0].title, "Fennrick error");
}

TEST_P(AdsLocksTest, ADocumentsEntriesAreLockedTogether) {
    EXPECT_TRUE(ads.SetAllLocksInExistingDocument("ven", "1"));
    EXPECT_EQ(ads.GetLockNumberOnServer(), 3u);
    OtherWorkstation other(Prefix());
    ASSERT_EQ(other.ads.FileOpen("ACT"), AE_SUCCESS);
    EXPECT_FALSE(other.ads.RecLock("ACT", 3));
    EXPECT_TRUE(other.ads.RecLock("ACT", 4));
    // The other document is held elsewhere now; a document that does not exist locks nothing.
    EXPECT_FALSE(ads.SetAllLocksInExistingDocument("ACH", "1"));
    EXPECT_FALSE(ads.SetAllLocksInExistingDocument("XXX", "9"));
    EXPECT_FALSE(ads.SetAllLocksInExistingDocument("VEN\"", "1"));
}

TEST_P(AdsLocksTest, ADocumentsAccountsAreLockedThroughTheLockAliases) {
    // The accounts the documents post to: general ledger in ACF, the customer in CSF.
    CreateStandard("ACF", kAccountFields);
    CreateStandard("CSF", kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF"), AE_SUCCESS);
    ASSERT_EQ(ads.FileOpen("CSF"), AE_SUCCESS);
    for (const char* number : {"604000", "700000", "451000"})
        AddRecord("ACF", {{"NUMBER", number}});
    AddRecord("CSF", {{"NUMBER", "999999"}});
    AddRecord("CSF", {{"NUMBER", "400000"}});

    ASSERT_TRUE(ads.SetAllLocksInExistingDocument("VEN", "1"));
    for (const char* alias : {"ACTLOCKS", "ACFLOCKS", "CSFLOCKS"}) EXPECT_TRUE(ads.IsAlias(alias));
    // Flushing and unlocking the tables' own aliases leaves the document locked.
    for (const char* alias : {"ACT", "ACF", "CSF"}) ads.FlushAndUnlock(alias);

    OtherWorkstation other(Prefix());
    for (const char* alias : {"ACT", "ACF", "CSF"})
        ASSERT_EQ(other.ads.FileOpen(alias), AE_SUCCESS);
    EXPECT_FALSE(other.ads.RecLock("ACT", 1));
    EXPECT_FALSE(other.ads.RecLock("ACF", 2));  // 700000
    EXPECT_FALSE(other.ads.RecLock("ACF", 3));  // 451000
    EXPECT_FALSE(other.ads.RecLock("CSF", 2));  // 400000
    EXPECT_TRUE(other.ads.RecLock("CSF", 1));
    EXPECT_TRUE(other.ads.RecLock("ACT", 4));  // the other document

    // A document one of whose accounts is held elsewhere is not locked at all.
    ASSERT_TRUE(other.ads.RecLock("ACF", 1));  // 604000
    ASSERT_EQ(other.ads.FlushAndUnlock("ACT"), AE_SUCCESS);
    messages.QueueAnswer(platform::MessageAnswer::Cancel);
    EXPECT_FALSE(ads.SetAllLocksInExistingDocument("ACH", "1"));
    EXPECT_NE(Shown().find("604000, rn:1"), std::string::npos) << Shown();
    EXPECT_TRUE(other.ads.RecLock("ACT", 4));

    // Unlocking the lock aliases frees the document.
    for (const char* alias : {"ACTLOCKS", "ACFLOCKS", "CSFLOCKS"}) {
        EXPECT_EQ(ads.FlushAndUnlock(alias), AE_SUCCESS);
    }
    EXPECT_TRUE(other.ads.RecLock("ACT", 1));
    EXPECT_TRUE(other.ads.RecLock("CSF", 2));
}

// The holder of a lock in another process, released by creating a file.
class LockHolder {
  public:
    LockHolder(const std::string& prefix, const std::string& what, std::uint32_t record,
               const std::filesystem::path& folder)
        : ready_((folder / "ready.flag").string()), release_((folder / "release.flag").string()) {
        std::vector<std::string> args = {FNRK_LOCK_HOLDER,       prefix, what,
                                         std::to_string(record), ready_, release_};
        std::vector<char*> argv;
        for (auto& arg : args) argv.push_back(arg.data());
        argv.push_back(nullptr);
        started_ =
            posix_spawn(&pid_, FNRK_LOCK_HOLDER, nullptr, nullptr, argv.data(), environ) == 0;
    }
    ~LockHolder() { Release(); }
    bool WaitUntilLocked() const { return started_ && AdsClass::waitFileExist(ready_, true, 20); }
    // Lets the holder unlock and waits for it to end; its exit code.
    int Release() {
        if (!started_ || pid_ == 0) return exitCode_;
        fnrk::testing::WriteFileBytes(release_, "");
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = 0;
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return exitCode_;
    }

  private:
    std::string ready_;
    std::string release_;
    pid_t pid_ = 0;
    bool started_ = false;
    int exitCode_ = -1;
};

// Answers Cancel to the first box; at the second it lets the other process unlock, then
// answers Retry.
class ReleasingSink : public platform::MessageSink {
  public:
    explicit ReleasingSink(LockHolder& holder) : holder_(holder) {}
    platform::MessageAnswer Show(const std::string&, const std::string& text,
                                 platform::MessageStyle style) override {
        shown.push_back({text, style});
        if (shown.size() == 1) return platform::MessageAnswer::Cancel;
        holderExit = holder_.Release();
        return platform::MessageAnswer::Retry;
    }
    std::vector<std::pair<std::string, platform::MessageStyle>> shown;
    int holderExit = -1;

  private:
    LockHolder& holder_;
};

TEST_P(AdsLocksTest, TwoProcessesLockTheSameRecord) {
    LockHolder holder(Prefix(), "record", 1, folder.path());
    ASSERT_TRUE(holder.WaitUntilLocked());
    ReleasingSink sink(holder);
    platform::SetMessageSink(&sink);
    const bool cancelled = ads.RecLock("ACT", 1);
    const bool retried = ads.RecLock("ACT", 1);
    platform::SetMessageSink(&messages);

    EXPECT_FALSE(cancelled);
    EXPECT_TRUE(retried);
    ASSERT_EQ(sink.shown.size(), 2u);
    EXPECT_EQ(sink.shown[0].first, "It is blocked by another user.\r\nVEN 1 400000,rn=1");
    EXPECT_EQ(sink.shown[0].second, kRetryCancelStyle);
    EXPECT_EQ(sink.holderExit, 0);
    EXPECT_EQ(ads.GetLockNumberOnServer(), 1u);
}

INSTANTIATE_TEST_SUITE_P(Keepings, AdsLocksTest, AllKeepings(), KeepingName);

}  // namespace
}  // namespace fnrk::tables::ads_testing

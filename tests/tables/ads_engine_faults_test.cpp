// AdsClass facing engine failures it cannot be shown with real files: a local server that does
// not answer, and an open that the server answers with "file not found" (7016).

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/messages.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"
#include "tables/ads_class.hpp"
#include "tables/recording_backend.hpp"

namespace fnrk::tables {
namespace {

using namespace engine;  // status and option numbers

class AdsEngineFaultsTest : public ::testing::Test {
  protected:
    void SetUp() override { previousSink = platform::SetMessageSink(&messages); }
    void TearDown() override { platform::SetMessageSink(previousSink); }
    long Calls(const std::string& call) const { return std::count(log.begin(), log.end(), call); }

    std::vector<std::string> log;
    testing::RecordingBackend engine{"engine", log};
    SqlDatabase db{engine, [this] { return std::make_unique<testing::RecordingBackend>("", log); }};
    AdsClass ads{db};
    platform::RecordingMessageSink messages;
    platform::MessageSink* previousSink = nullptr;
};

TEST_F(AdsEngineFaultsTest, AFailedConnectionToTheLocalServerIsShown) {
    engine.answer = AE_NO_CONNECTION;
    engine.lastErrorText = "server down";
    EXPECT_EQ(ads.Initialize(), AE_NO_CONNECTION);
    ASSERT_EQ(messages.shown().size(), 1u);
    const auto& shown = messages.shown()[0];
    EXPECT_EQ(shown.text.rfind("Code error ADS: 5036\r\nDescription error: Ads : server down\r\n"
                               "Path local server: ",
                               0),
              0u)
        << shown.text;
    EXPECT_EQ(shown.style, platform::message_style::kCritical);
    EXPECT_EQ(shown.title, "Fennrick error");
    // The settings came first, then the connection; a second call does nothing at all.
    EXPECT_EQ(Calls("engine.SetDateFormat"), 1);
    EXPECT_EQ(Calls("engine.CloseAllTables"), 1);
    log.clear();
    ads.Initialize();
    EXPECT_TRUE(log.empty());
}

TEST_F(AdsEngineFaultsTest, AnOpenAnsweredWithServerFileNotFoundIsDiagnosedAndTriedOnce) {
    fnrk::testing::TempDir folder;
    engine.answer = AE_SERVER_FILE_NOT_FOUND;
    engine.nextConnection = kEngineHandleStart;
    const std::string missing = (folder / "SOC1_act.dbf").string();
    EXPECT_EQ(ads.OpenFile("ACT", missing, "", "SHARED"), AE_SERVER_FILE_NOT_FOUND);
    EXPECT_EQ(Calls("engine.OpenTable"), 2);
    ASSERT_EQ(messages.shown().size(), 2u);
    EXPECT_EQ(messages.shown()[0].text, "File not found: " + missing);
    EXPECT_EQ(messages.shown()[1].text.rfind("File open error:\r\nCode error ADS: 7016", 0), 0u);

    // A folder that does not exist is named as such; a quiet open shows nothing.
    const std::string lost = (folder / "GONE" / "SOC1_act.dbf").string();
    EXPECT_EQ(ads.OpenFile("ACT", lost, "", "SHARED"), AE_SERVER_FILE_NOT_FOUND);
    ASSERT_EQ(messages.shown().size(), 4u);
    EXPECT_EQ(messages.shown()[2].text, "Folder not found: " + (folder / "GONE").string());
    EXPECT_EQ(ads.OpenFile("ACT", lost, "", "SHARED", AdsClass::kOpenQuiet),
              AE_SERVER_FILE_NOT_FOUND);
    EXPECT_EQ(Calls("engine.OpenTable"), 6);
    EXPECT_EQ(messages.shown().size(), 4u);
}

TEST_F(AdsEngineFaultsTest, OpenFileConnectsAndCachesAsTheConfigurationSays) {
    fnrk::testing::TempDir folder;
    fnrk::testing::ScopedEnvironment mainPath{"FNRK_MAIN_PATH", folder.path().string()};
    engine.findsConnections = false;
    engine.nextConnection = kEngineHandleStart;
    int opened = 0;
    const auto open = [&](const std::string& mode, const std::string& cached) {
        fnrk::testing::WriteFileBytes(
            folder / "FennRick.ini",
            "[Connection]\r\nMode=" + mode + "\r\nCachedRecords=" + cached + "\r\n");
        engine.lastServerTypes = 0;
        engine.lastCachedRecords = 0;
        // A folder of its own, so that each open connects again.
        const std::string path =
            (folder / ("D" + std::to_string(++opened)) / "SOC1_act.dbf").string();
        EXPECT_EQ(ads.OpenFile("ACT", path, "", "SHARED"), AE_SUCCESS) << mode;
    };
    open("clientserver", "40");
    EXPECT_EQ(engine.lastServerTypes, ADS_REMOTE_SERVER);
    EXPECT_EQ(engine.lastCachedRecords, 40);
    open("Internet", "99999");
    EXPECT_EQ(engine.lastServerTypes, ADS_AIS_SERVER);
    EXPECT_EQ(engine.lastCachedRecords, 65535);
    open("AUTOMATIC", "");
    EXPECT_EQ(engine.lastServerTypes, ADS_LOCAL_SERVER | ADS_REMOTE_SERVER | ADS_AIS_SERVER);
    EXPECT_EQ(engine.lastCachedRecords, 0);
    const long cachedBefore = Calls("engine.CacheRecords");
    open("LOCAL", "12x");
    EXPECT_EQ(engine.lastServerTypes, ADS_LOCAL_SERVER);
    EXPECT_EQ(Calls("engine.CacheRecords"), cachedBefore);
}

}  // namespace
}  // namespace fnrk::tables

#include <gtest/gtest.h>

#include "tables/dispatch_fixture.hpp"

namespace fnrk::tables::testing {
namespace {

using engine::AE_SUCCESS;

class BroadcastTest : public DispatchTest {
  protected:
    void SetUp() override {
        // Made in another order than the broadcast's, so that the order is the dispatch's own.
        ConnectSlot(900'000);
        ConnectSlot(0);
        ConnectSlot(600'000);
        ConnectSlot(300'000);
        db.CreateArchiveBackend(4, "/arch4", "/tmp");
        db.CreateArchiveBackend(0, "/arch0", "/tmp");
        Calls();
    }
};

TEST_F(BroadcastTest, GoesToEngineThenOrgUserFolderOriginAndArchivesReportingFirstFailure) {
    Recorder(BackendSlot::User).answer = engine::AE_INVALID_CENTURY;
    Recorder(BackendSlot::Origin).answer = engine::AE_INVALID_VALUE;
    EXPECT_EQ(db.SetEpoch(1900), engine::AE_INVALID_CENTURY);
    EXPECT_EQ(Calls(), (std::vector<std::string>{"engine.SetEpoch", "600000.SetEpoch",
                                                 "300000.SetEpoch", "0.SetEpoch", "900000.SetEpoch",
                                                 "1200000.SetEpoch", "2400000.SetEpoch"}));
    engine.answer = engine::AE_INVALID_DATEFORMAT;
    EXPECT_EQ(db.SetDateFormat("XX"), engine::AE_INVALID_DATEFORMAT);
    EXPECT_EQ(Calls().size(), 7u);
}

TEST_F(BroadcastTest, VersionIsTheEnginesWhateverTheBackendsAnswer) {
    Recorder(BackendSlot::Folder).answer = engine::AE_INVALID_VALUE;
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::string letter;
    std::string description;
    EXPECT_EQ(db.GetVersion(major, minor, letter, description), engine::AE_INVALID_VALUE);
    EXPECT_EQ(description, "engine");
    EXPECT_EQ(Calls().size(), 7u);
}

TEST_F(BroadcastTest, AllTablesCollectsEveryBackendThroughGetAllTable) {
    engine.openTables = {2'400'010};
    Recorder(BackendSlot::Org).openTables = {600'005};
    db.Archive(0)->FRDataBase->handleStart(1'200'000);
    static_cast<RecordingBackend&>(*db.Archive(0)->FRDataBase).openTables = {1'200'009};
    std::vector<Handle> tables;
    EXPECT_EQ(db.GetAllTables(tables), AE_SUCCESS);
    EXPECT_EQ(tables, (std::vector<Handle>{2'400'010, 600'005, 1'200'009}));
    auto calls = Calls();
    EXPECT_EQ(calls.front(), "engine.GetAllTables");
    EXPECT_EQ(calls.at(1), "600000.GetAllTable");

    std::uint16_t count = 0;
    EXPECT_EQ(db.GetNumOpenTables(count), AE_SUCCESS);
    EXPECT_EQ(Calls(), std::vector<std::string>{"engine.GetNumOpenTables"});
}

TEST_F(DispatchTest, ErrorTextWithOnlyTheEnginePartHasNoMarkers) {
    engine.lastErrorText = "5004 file not found";
    engine.lastErrorCode = engine::AE_FILE_NOT_FOUND;
    ConnectSlot(0);  // connected but without text
    Status code = 0;
    std::string text;
    EXPECT_EQ(db.GetLastError(code, text), AE_SUCCESS);
    EXPECT_EQ(text, "Ads : 5004 file not found");
    EXPECT_EQ(code, engine::AE_FILE_NOT_FOUND);
}

TEST_F(BroadcastTest, ErrorTextJoinsConnectedBackendsThenArchives) {
    engine.lastErrorText = "E";
    Recorder(BackendSlot::Org).lastErrorText = "O";
    Recorder(BackendSlot::Origin).lastErrorText = "R";
    Recorder(BackendSlot::Origin).lastErrorCode = 7200;
    static_cast<RecordingBackend&>(*db.Archive(4)->FRDataBase).lastErrorText = "A4";
    // A backend that exists but is not connected is not asked.
    db.CreateArchiveBackend(1, "/arch1", "/tmp");
    Status code = 0;
    std::string text;
    EXPECT_EQ(db.GetLastError(code, text), AE_SUCCESS);
    EXPECT_EQ(text, "Ads : E Org : O Origin : R Archive 4 : A4");
    EXPECT_EQ(code, 7200);

    engine.lastErrorText.clear();
    EXPECT_EQ(db.GetLastError(code, text), AE_SUCCESS);
    EXPECT_EQ(text, " Org : O Origin : R Archive 4 : A4");
}

TEST_F(DispatchTest, ConfigurationRecordIsCopiedByMemberNameInOrder) {
    engine.config.ulConnectionMem = 11;
    engine.config.aucErLog = "/var/log";
    engine.config.aucSempho = "sem";
    engine.config.aucTrans = "trans";
    engine.config.ucReserved3 = 3;
    engine.config.lNumTables = -2;
    engine.config.usSortBuffSize = 512;
    backend::MGMT_CONFIG_MEMORY memory;
    ASSERT_EQ(db.MgGetConfigInfo(2'400'001, memory), AE_SUCCESS);
    const auto& properties = memory.Properties();
    ASSERT_EQ(properties.size(), 50u);
    EXPECT_EQ(properties.front().first, "ulConnectionMem");
    EXPECT_EQ(properties[13].first, "aucErLog");
    EXPECT_EQ(properties[20].first, "ucReserved3");
    EXPECT_EQ(properties[26].first, "lErrorLogMax");
    EXPECT_EQ(properties.back().first, "usSortBuffSize");
    EXPECT_EQ(std::get<std::int64_t>(*memory.Get("ulConnectionMem")), 11);
    EXPECT_EQ(std::get<std::int64_t>(*memory.Get("ucReserved3")), 3);
    EXPECT_EQ(std::get<std::int64_t>(*memory.Get("lNumTables")), -2);
    EXPECT_EQ(std::get<std::int64_t>(*memory.Get("usSortBuffSize")), 512);
    EXPECT_EQ(memory.GetaucErLog(), "/var/log");
    EXPECT_EQ(memory.GetaucSempho(), "sem");
    EXPECT_EQ(memory.getauctrans(), "trans");

    engine.answer = engine::AE_NO_CONNECTION;
    backend::MGMT_CONFIG_MEMORY untouched;
    EXPECT_EQ(db.MgGetConfigInfo(2'400'001, untouched), engine::AE_NO_CONNECTION);
    EXPECT_TRUE(untouched.Properties().empty());
}

}  // namespace
}  // namespace fnrk::tables::testing

namespace fnrk::tables::testing {
namespace {

TEST_F(DispatchTest, BackendMadeLaterFollowsTheSettingsBroadcastBefore) {
    ASSERT_EQ(db.SetDateFormat("DD/MM/YYYY"), engine::AE_SUCCESS);
    ASSERT_EQ(db.ShowDeleted(false), engine::AE_SUCCESS);
    Calls();
    ConnectSlot(900'000);
    EXPECT_EQ(Calls(), (std::vector<std::string>{"900000.SetDateFormat", "900000.ShowDeleted",
                                                 "900000.Connect26"}));
}

}  // namespace
}  // namespace fnrk::tables::testing

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/paths.hpp"
#include "support/temp_dir.hpp"
#include "tables/dispatch_fixture.hpp"

namespace fnrk::tables::testing {
namespace {

using engine::AE_INVALID_CONNECTION_HANDLE;
using engine::AE_INVALID_HANDLE;
using engine::AE_SUCCESS;

TEST_F(DispatchTest, HandleRangesPickTheOwnerAtTheirEdges) {
    ConnectSlot(0);
    ConnectSlot(300'000);
    db.CreateArchiveBackend(3, "/archive3", "/tmp");
    Calls();

    const std::pair<Handle, std::string> cases[] = {{0, "engine"},         {1, "0"},
                                                    {299'999, "0"},        {300'000, "300000"},
                                                    {599'999, "300000"},   {2'399'999, "2100000"},
                                                    {2'400'000, "engine"}, {9'000'000, "engine"},
                                                    {-4, "engine"}};
    for (const auto& [handle, owner] : cases) {
        EXPECT_EQ(db.GotoTop(handle), AE_SUCCESS) << handle;
        EXPECT_EQ(Calls(), std::vector<std::string>{owner + ".GotoTop"}) << handle;
    }
    // A range whose backend does not exist answers an invalid handle and calls nobody.
    EXPECT_EQ(db.GotoTop(600'000), AE_INVALID_HANDLE);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(DispatchTest, StatusesAndArgumentsTravelUnchanged) {
    auto& folder = ConnectSlot(0);
    folder.answer = engine::AE_LOCK_FAILED;
    EXPECT_EQ(db.LockRecord(7, 3), engine::AE_LOCK_FAILED);
    engine.answer = engine::AE_NO_CURRENT_RECORD;
    bool deleted = false;
    EXPECT_EQ(db.IsRecordDeleted(2'400'001, deleted), engine::AE_NO_CURRENT_RECORD);
}

TEST_F(DispatchTest, PathTestsRunInOrderAndAnUnconnectedMatchGoesToTheEngine) {
    fnrk::testing::TempDir sqlKept;
    fnrk::testing::WriteFileBytes(sqlKept / "FRSQL.DBF", "");
    const std::string paramTable = (sqlKept / "SOC1_param.dbf").string();
    // An organisation folder that is SQL-kept too, so that its parameter table passes both tests.
    fnrk::testing::TempDir top;
    std::filesystem::create_directories(top / "org");
    fnrk::testing::WriteFileBytes(top / "org" / "FRSQL.DBF", "");
    const std::string sep(1, platform::kPathSep);
    const std::string inOrgAndArchive = (top / "org" / "arch0" / "a.dbf").string();

    db.SetSqlRootPath(sep + "sqlroot");
    db.SetOrgPath((top / "org").string());
    db.SetDossierFolder(sqlKept.path().string());
    db.CreateArchiveBackend(0, sep + "arch0", "/tmp");

    // Nothing connected: every match leaves the call to the engine.
    EXPECT_EQ(OpenedBy(sep + "sqlroot" + sep + "a.dbf"), "engine");
    EXPECT_EQ(OpenedBy(sep + "arch0" + sep + "a.dbf"), "engine");
    EXPECT_EQ(OpenedBy("   "), "engine");

    // Folder connected: a dossier table is the Folder backend's; a path that matches an earlier,
    // unconnected test still goes to the engine.
    ConnectSlot(0);
    EXPECT_EQ(OpenedBy(sqlKept.path().string() + "/SOC1_act.dbf"), "0");
    EXPECT_EQ(OpenedBy(paramTable), "engine");

    // The parameter table of a folder marked SQL-kept, also behind a "<DIR>" marker.
    ConnectSlot(300'000);
    EXPECT_EQ(OpenedBy(paramTable), "300000");
    EXPECT_EQ(OpenedBy("<SQL>x<DIR>" + paramTable), "300000");
    EXPECT_EQ(OpenedBy("/elsewhere/SOC1_param.dbf"), "engine");

    // The organisation folder comes before the parameter test.
    ConnectSlot(600'000);
    EXPECT_EQ(OpenedBy((top / "org" / "SOC1_param.dbf").string()), "600000");

    // Archive slots come before the organisation folder, the SQL root before everything.
    Handle archive = 1'200'000;
    ASSERT_EQ(db.Connect26("<SQL>x", 1, archive), AE_SUCCESS);
    EXPECT_EQ(OpenedBy(inOrgAndArchive), "1200000");
    EXPECT_EQ(OpenedBy(sep + "sqlroot" + sep + inOrgAndArchive), "engine");
    ConnectSlot(900'000);
    EXPECT_EQ(OpenedBy(sep + "sqlroot" + sep + inOrgAndArchive), "900000");

    EXPECT_EQ(OpenedBy("/unrelated/a.dbf"), "engine");
}

// A folder is in a path as whole components: "/data/SOC1" holds "/data/SOC1/a.dbf", also
// behind a marker, but not "/data/SOC10/a.dbf" nor "/olddata/SOC1/a.dbf".
TEST_F(DispatchTest, FoldersMatchPathsOnWholeComponents) {
    db.SetSqlRootPath("/sql/root");
    db.SetOrgPath("data/ORG");
    db.SetDossierFolder("/data/SOC1");
    db.CreateArchiveBackend(0, "/arch/A1", "/tmp");
    ConnectSlot(0);
    ConnectSlot(600'000);
    ConnectSlot(900'000);
    Handle archive = 1'200'000;
    ASSERT_EQ(db.Connect26("<SQL>x", 1, archive), AE_SUCCESS);

    const std::pair<std::string, std::string> cases[] = {{"/data/SOC1/a.dbf", "0"},
                                                         {"/data/SOC1", "0"},
                                                         {"<SQL>x<DIR>/data/SOC1/a.dbf", "0"},
                                                         {"/data/SOC10/a.dbf", "engine"},
                                                         {"/data/SOC1x.dbf", "engine"},
                                                         {"/sql/root/a.dbf", "900000"},
                                                         {"/sql/rootless/a.dbf", "engine"},
                                                         {"/arch/A1/a.dbf", "1200000"},
                                                         {"/arch/A10/a.dbf", "engine"},
                                                         {"/srv/data/ORG/a.dbf", "600000"},
                                                         {"<DIR>data/ORG/a.dbf", "600000"},
                                                         {"/srv/olddata/ORG/a.dbf", "engine"},
                                                         {"/srv/data/ORGS/a.dbf", "engine"}};
    for (const auto& [path, owner] : cases) EXPECT_EQ(OpenedBy(path), owner) << path;
}

TEST_F(DispatchTest, ArchiveFolderFourIsNeverSearchedByPath) {
    db.CreateArchiveBackend(4, "/arch4", "/tmp");
    EXPECT_EQ(OpenedBy("/arch4/a.dbf"), "engine");
}

TEST_F(DispatchTest, ConnectKeepsSqlMarkerOnlyWhenADirMarkerFollows) {
    auto& folder = ConnectSlot(0);
    Handle connection = 0;
    ASSERT_EQ(db.Connect26("<SQL>Driver=SQLite<DIR>/data/", 1, connection), AE_SUCCESS);
    EXPECT_EQ(folder.lastPath, "<SQL>Driver=SQLite<DIR>/data/");
    ASSERT_EQ(db.Connect26("<SQL>  Driver=SQLite ", 1, connection), AE_SUCCESS);
    EXPECT_EQ(folder.lastPath, "Driver=SQLite");
    EXPECT_EQ(folder.TypeOfConnection(), "SQL");

    // A plain folder that no backend serves is the engine's.
    Calls();
    connection = 0;
    ASSERT_EQ(db.Connect60("/data", 1, "u", "p", 0, connection), AE_SUCCESS);
    EXPECT_EQ(Calls(), std::vector<std::string>{"engine.Connect60"});
}

TEST_F(DispatchTest, ConnectedHandleSetsTheFlagOfItsRange) {
    const std::pair<Handle, BackendSlot> cases[] = {
        {5, BackendSlot::Folder},           {300'000, BackendSlot::User},
        {600'001, BackendSlot::Org},        {1'199'999, BackendSlot::Origin},
        {1'200'000, BackendSlot::Archive0}, {1'499'999, BackendSlot::Archive0},
        {1'500'000, BackendSlot::Archive1}, {1'800'000, BackendSlot::Archive2},
        {2'100'000, BackendSlot::Archive3}, {2'399'999, BackendSlot::Archive3}};
    for (const auto& [handle, slot] : cases) {
        std::vector<std::string> ownLog;
        RecordingBackend ownEngine{"engine", ownLog};
        SqlDatabase fresh{ownEngine, [&] {
                              auto backend = std::make_unique<RecordingBackend>("", ownLog);
                              backend->nextConnection = handle;
                              return backend;
                          }};
        Handle connection = 0;
        ASSERT_EQ(fresh.FindConnection25("<SQL>x", connection), AE_SUCCESS);
        EXPECT_EQ(connection, handle);
        for (int other = 0; other < 8; ++other) {
            EXPECT_EQ(fresh.IsConnected(static_cast<BackendSlot>(other)),
                      other == static_cast<int>(slot))
                << handle << " slot " << other;
        }
    }
}

TEST_F(DispatchTest, FailedConnectSetsNoFlag) {
    auto& folder = ConnectSlot(0);
    folder.answer = engine::AE_NO_CONNECTION;
    Handle connection = 300'000;
    EXPECT_EQ(db.Connect26("<SQL>x", 1, connection), engine::AE_SUCCESS);  // the User backend
    folder.nextConnection = 600'000;
    connection = 0;
    EXPECT_EQ(db.Connect26("<SQL>x", 1, connection), engine::AE_NO_CONNECTION);
    EXPECT_FALSE(db.IsConnected(BackendSlot::Org));
}

TEST_F(DispatchTest, UserDatabaseIsDescribedByUsersData) {
    fnrk::testing::TempDir app;
    db.SetApplicationFolder(app.path().string());
    Handle connection = 300'000;
    ASSERT_EQ(db.Connect26("/data", 1, connection), AE_SUCCESS);
    EXPECT_EQ(Calls(), std::vector<std::string>{"engine.Connect26"});  // no users.data yet

    fnrk::testing::WriteFileBytes(
        app / "users.data",
        "<connection><Driver>SQLite</Driver><Database>users.sqlite</Database></connection>");
    connection = 300'000;
    ASSERT_EQ(db.Connect26("/data", 1, connection), AE_SUCCESS);
    EXPECT_EQ(
        Recorder(BackendSlot::User).lastPath,
        "<SQL>Driver=SQLite;Database=users.sqlite<DIR>" + app.path().string() + platform::kPathSep);
    EXPECT_EQ(connection, 300'001);
    EXPECT_TRUE(db.IsConnected(BackendSlot::User));
}

TEST_F(DispatchTest, ArchiveSlotsOutsideZeroToFourAreRefused) {
    EXPECT_THROW(db.CreateArchiveBackend(5, "/a", "/tmp"), std::out_of_range);
    EXPECT_THROW(db.CreateArchiveBackend(-1, "/a", "/tmp"), std::out_of_range);
    for (int index = 0; index < kArchiveSlots; ++index) EXPECT_EQ(db.Archive(index), nullptr);

    const std::string sep(1, platform::kPathSep);
    auto& slot = db.CreateArchiveBackend(2, sep + "arch" + sep + sep, "/tmp");
    EXPECT_EQ(slot.Path, sep + "arch" + sep);
    EXPECT_EQ(slot.TempPath, "/tmp");
    EXPECT_EQ(slot.FRDataBase->handleStart(), 1'800'000);
    EXPECT_EQ(Calls(), (std::vector<std::string>{"1800000.ShowDeleted", "1800000.SetDateFormat",
                                                 "1800000.SetEpoch"}));
    EXPECT_EQ(db.CreateArchiveBackend(0, sep + "a", "").Path, sep + "a" + sep);
    EXPECT_EQ(db.CreateArchiveBackend(1, sep + "b" + sep, "").Path, sep + "b" + sep);
}

TEST_F(DispatchTest, BackendOnlyOperationsRefuseEngineHandles) {
    bool exists = true;
    EXPECT_EQ(db.TableExists(2'400'001, "ACT", exists), AE_INVALID_CONNECTION_HANDLE);
    EXPECT_EQ(db.DropTable(0, "/data/a.dbf"), AE_INVALID_CONNECTION_HANDLE);
    EXPECT_TRUE(Calls().empty());
    ConnectSlot(0);
    Calls();
    EXPECT_EQ(db.TableCopy(1, "A", "B"), AE_SUCCESS);
    EXPECT_EQ(Calls(), std::vector<std::string>{"0.TableCopy"});
}

}  // namespace
}  // namespace fnrk::tables::testing

// SQL-kept folders other than the current dossier are served by Archive slots, one per folder
// and the same one each time; a connection is dropped through DataBaseConnection whoever owns it.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "platform/paths.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"
#include "tables/ads_class.hpp"
#include "tables/database_connection.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables {
namespace {

using namespace engine;  // option and status numbers

class SqlFolderSlots : public ::testing::Test {
  protected:
    // A folder marked SQL-kept whose "folder.data" names a SQLite database of its own.
    std::string SqlFolder(const std::string& name) {
        const auto path = folder / name;
        std::filesystem::create_directories(path);
        fnrk::testing::WriteFileBytes(path / "FRSQL.DBF", "");
        fnrk::testing::WriteFileBytes(path / "folder.data",
                                      "<connection><Driver>SQLite</Driver><Database>" + name +
                                          ".sqlite</Database></connection>\n");
        return path.string();
    }
    // Creates NAME.dbf in `where` with one record holding `value`, and leaves it open as NAME.
    Handle TableWith(AdsClass& ads, const std::string& where, const std::string& name,
                     const std::string& value) {
        const std::string path = where + "/" + name + ".dbf";
        EXPECT_EQ(ads.CreateTableFile(name, path, "CODE,C,10,0"), AE_SUCCESS) << name;
        EXPECT_EQ(ads.OpenFile(name, path, "", "SHARED"), AE_SUCCESS) << ads.GetAdsLastError();
        const Handle table = TableHandle(name);
        EXPECT_EQ(db.AppendRecord(table), AE_SUCCESS);
        EXPECT_EQ(db.SetString(table, "CODE", value), AE_SUCCESS);
        EXPECT_EQ(db.FlushFileBuffers(table), AE_SUCCESS);
        return table;
    }
    // The handle of the table open under `alias`; 0 when none is.
    Handle TableHandle(const std::string& alias) {
        std::vector<Handle> tables;
        EXPECT_EQ(db.GetAllTables(tables), AE_SUCCESS);
        for (const Handle table : tables) {
            std::string name;
            if (db.GetTableAlias(table, name) == AE_SUCCESS && name == alias) return table;
        }
        return 0;
    }
    std::string Code(Handle table) {
        std::string code;
        EXPECT_EQ(db.GotoTop(table), AE_SUCCESS);
        EXPECT_EQ(db.GetString(table, "CODE", code, ADS_RTRIM), AE_SUCCESS);
        return code;
    }

    fnrk::testing::TempDir folder;
    fnrk::testing::ScopedEnvironment mainPath{"FNRK_MAIN_PATH", folder.path().string()};
    Engine engine;
    SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
};

TEST_F(SqlFolderSlots, EachOtherFolderHasItsArchiveSlotAndKeepsIt) {
    const std::string first = SqlFolder("first");
    const std::string second = SqlFolder("second");
    AdsClass ads{db};
    ads.SetDossierPrefix((folder / "SOC1" / "SOC1").string());
    ASSERT_EQ(ads.Initialize(), AE_SUCCESS);

    const Handle one = TableWith(ads, first, "ONE", "in first");
    const Handle two = TableWith(ads, second, "TWO", "in second");
    EXPECT_GE(one, SqlDatabase::ArchiveHandleBase(0));
    EXPECT_LT(one, SqlDatabase::ArchiveHandleBase(1));
    EXPECT_GE(two, SqlDatabase::ArchiveHandleBase(1));
    EXPECT_LT(two, SqlDatabase::ArchiveHandleBase(2));
    EXPECT_TRUE(db.IsConnected(BackendSlot::Archive0));
    EXPECT_TRUE(db.IsConnected(BackendSlot::Archive1));
    EXPECT_FALSE(db.IsConnected(BackendSlot::Folder));
    EXPECT_TRUE(std::filesystem::exists(folder / "first" / "first.sqlite"));
    EXPECT_FALSE(std::filesystem::exists(folder / "first" / "ONE.dbf"));
    EXPECT_EQ(Code(one), "in first");
    EXPECT_EQ(Code(two), "in second");

    // Another table-access object finds the first folder's slot again, and its table.
    AdsClass other{db};
    ASSERT_EQ(other.OpenFile("AGAIN", first + "/ONE.dbf", "", "SHARED"), AE_SUCCESS)
        << other.GetAdsLastError();
    const Handle again = TableHandle("AGAIN");
    EXPECT_LT(again, SqlDatabase::ArchiveHandleBase(1));
    EXPECT_EQ(Code(again), "in first");
    EXPECT_EQ(db.Archive(2), nullptr);

    // Four slots own handle ranges; a fifth folder finds none and opens nothing.
    const std::string third = SqlFolder("third");
    const std::string fourth = SqlFolder("fourth");
    TableWith(ads, third, "THREE", "3");
    TableWith(ads, fourth, "FOUR", "4");
    const std::string fifth = SqlFolder("fifth");
    EXPECT_NE(ads.CreateTableFile("FIVE", fifth + "/FIVE.dbf", "CODE,C,10,0"), AE_SUCCESS);
    EXPECT_FALSE(std::filesystem::exists(folder / "fifth" / "fifth.sqlite"));
    EXPECT_EQ(db.Archive(4), nullptr);
}

// Archive slot 4 takes the settings and reports its errors as the others do, but owns no handle
// range (its handles would be the engine's): a connection through it is refused before anything
// is made.
TEST_F(SqlFolderSlots, ArchiveSlotFourHandsOutNoHandles) {
    const std::string fifth = SqlFolder("fifth");
    ArchiveBackend& slot = db.CreateArchiveBackend(4, fifth, "/tmp");
    EXPECT_EQ(db.SetEpoch(1990), AE_SUCCESS);
    Handle connection = 0;
    EXPECT_EQ(slot.FRDataBase->Connect26("<SQL>Driver=SQLite;Database=fifth.sqlite<DIR>" + fifth,
                                         ADS_LOCAL_SERVER, connection),
              AE_ALLOCATION_FAILED);
    EXPECT_EQ(connection, 0);
    EXPECT_FALSE(std::filesystem::exists(folder / "fifth" / "fifth.sqlite"));
    Status code = 0;
    std::string text;
    ASSERT_EQ(db.GetLastError(code, text), AE_SUCCESS);
    EXPECT_EQ(code, AE_ALLOCATION_FAILED);
    EXPECT_NE(text.find("owns no handle range"), std::string::npos) << text;

    // Slot 3, the last with a range, connects within it.
    ArchiveBackend& last = db.CreateArchiveBackend(3, fifth, "/tmp");
    ASSERT_EQ(last.FRDataBase->Connect26("<SQL>Driver=SQLite;Database=fifth.sqlite<DIR>" + fifth,
                                         ADS_LOCAL_SERVER, connection),
              AE_SUCCESS);
    EXPECT_GE(connection, SqlDatabase::ArchiveHandleBase(3));
    EXPECT_LT(connection, kEngineHandleStart);
}

TEST_F(SqlFolderSlots, ADataBaseConnectionDisconnectsOnceWhoeverOwnsIt) {
    const std::string sql = SqlFolder("kept");
    Handle backendHandle = 0, engineHandle = 0;
    ASSERT_EQ(db.Connect26("<SQL>Driver=SQLite;Database=kept.sqlite<DIR>" + sql, ADS_LOCAL_SERVER,
                           backendHandle),
              AE_SUCCESS);
    ASSERT_EQ(db.Connect26(folder.path().string(), ADS_LOCAL_SERVER, engineHandle), AE_SUCCESS);
    ASSERT_LT(backendHandle, kEngineHandleStart);
    ASSERT_GE(engineHandle, kEngineHandleStart);
    for (const Handle handle : {backendHandle, engineHandle}) {
        DataBaseConnection connection(db, handle);
        EXPECT_EQ(connection.disconnect(), AE_SUCCESS) << handle;
        EXPECT_EQ(connection.handle(), 0);
        EXPECT_EQ(connection.disconnect(), AE_INVALID_CONNECTION_HANDLE);
        // The handle serves nothing any more.
        Handle table = 0;
        EXPECT_NE(db.CreateTable(handle, "late.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                 ADS_IGNORERIGHTS, 0, "CODE,C,4,0", table),
                  AE_SUCCESS)
            << handle;
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "late.dbf"));
}

// The order of a SQL-kept table is kept with the table: another table-access object that takes
// the table up by its handle walks it in that order, and in natural order once it is cleared.
TEST_F(SqlFolderSlots, ASqlTablesOrderGoesWithTheTable) {
    const std::string kept = SqlFolder("kept");
    AdsClass setter{db};
    ASSERT_EQ(setter.Initialize(), AE_SUCCESS);
    const Handle table = TableWith(setter, kept, "NAMES", "C");
    for (const char* code : {"A", "B"}) {
        ASSERT_EQ(db.AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(db.SetString(table, "CODE", code), AE_SUCCESS);
    }
    ASSERT_EQ(db.FlushFileBuffers(table), AE_SUCCESS);
    ASSERT_EQ(setter.CreateIndexTag("NAMES", "CODE", "CODE"), AE_SUCCESS);
    ASSERT_TRUE(setter.SetIndex("CODE"));

    AdsClass reader{db};
    auto firstCode = [&] {
        EXPECT_EQ(reader.ActivateAlias(std::to_string(table)), AE_SUCCESS);
        EXPECT_EQ(reader.MoveTop(), AE_SUCCESS);
        return reader.GetStringValue("CODE");
    };
    EXPECT_EQ(firstCode().substr(0, 1), "A");
    ASSERT_TRUE(setter.SetIndex(""));
    EXPECT_EQ(firstCode().substr(0, 1), "C");
    // An index of another table is no order of this one.
    Handle other = 0;
    EXPECT_EQ(db.SetActiveIndexHandle(table, 12'345), AE_INVALID_INDEX_HANDLE);
    EXPECT_EQ(db.GetActiveIndexHandle(table, other), AE_SUCCESS);
    EXPECT_EQ(other, 0);
}

// Initialize hands the dispatch the installation's folders: a path in the organisation folder
// routes to the Org backend, and the user database is the one "users.data" describes.
TEST_F(SqlFolderSlots, TheInstallationsFoldersRouteTheOrganisationAndUserDatabases) {
    const auto root = folder / "install";
    std::filesystem::create_directories(root / "PRG");
    const std::string programFolder = platform::ProgramFolder();
    platform::SetProgramFolder((root / "PRG").string());
    fnrk::testing::WriteFileBytes(
        root / "users.data",
        "<connection><Driver>SQLite</Driver><Database>users.sqlite</Database></connection>\n");
    AdsClass ads{db};
    ads.SetDossierPrefix((folder / "SOC1" / "SOC1").string());
    ASSERT_EQ(ads.Initialize(), AE_SUCCESS);
    platform::SetProgramFolder(programFolder);

    BackendSlot slot = BackendSlot::Folder;
    EXPECT_TRUE(db.RoutesToSlot((root / "RESOURCES" / "ORG" / "ORGPARAM.DBF").string(), slot));
    EXPECT_EQ(slot, BackendSlot::Org);
    EXPECT_FALSE(db.RoutesToSlot((root / "RESOURCES" / "OTHER.DBF").string(), slot));

    Handle users = 300'000;  // the user database is asked for by its range base
    ASSERT_EQ(db.Connect26(root.string(), ADS_LOCAL_SERVER, users), AE_SUCCESS)
        << ads.GetAdsLastError();
    EXPECT_GE(users, 300'000);
    EXPECT_LT(users, 600'000);
    EXPECT_TRUE(db.IsConnected(BackendSlot::User));
    EXPECT_TRUE(std::filesystem::exists(root / "users.sqlite"));
}

}  // namespace
}  // namespace fnrk::tables

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "backend/frc_database.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::backend {
namespace {

using namespace engine;  // option and status numbers
using fnrk::testing::TempDir;

class FRCDatabaseTest : public ::testing::Test {
  protected:
    // A backend of the Org range, connected to the folder's database.
    std::unique_ptr<FRCDatabase> Connected(Handle& connection) {
        auto backend = std::make_unique<FRCDatabase>();
        backend->handleStart(600'000);
        EXPECT_EQ(backend->Connect26(
                      "<SQL>Driver=SQLite;Database=org.sqlite<DIR>" + folder.path().string(),
                      ADS_LOCAL_SERVER, connection),
                  AE_SUCCESS);
        return backend;
    }
    Handle Open(FRCDatabase& backend, Handle connection, std::uint32_t options = ADS_SHARED) {
        Handle table = 0;
        EXPECT_EQ(
            backend.OpenTable(connection, "C:\\DATA\\SOC1\\SOC1_ACF.DBF", "", ADS_CDX, ADS_ANSI,
                              ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, options, table),
            AE_SUCCESS);
        return table;
    }
    TempDir folder;
};

TEST_F(FRCDatabaseTest, HandlesComeFromTheBackendsRange) {
    Handle connection = 0;
    auto backend = Connected(connection);
    Handle table = 0;
    ASSERT_EQ(
        backend->CreateTable(connection, "acf.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                             ADS_IGNORERIGHTS, 0, "NUMBER,C,10", table),
        AE_SUCCESS);
    Handle index = 0;
    ASSERT_EQ(backend->CreateIndex(table, "", "NUMBER", "NUMBER", "", "", 0, index), AE_SUCCESS);
    for (Handle handle : {connection, table, index}) {
        EXPECT_GT(handle, 600'000);
        EXPECT_LT(handle, 900'000);
    }
    std::uint16_t type = 0;
    ASSERT_EQ(backend->GetHandleType(index, type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_INDEX_ORDER);
    ASSERT_EQ(backend->GetHandleType(connection, type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_CONNECTION);
    EXPECT_EQ(backend->GetHandleType(2'400'001, type), AE_INVALID_HANDLE);
    std::vector<Handle> tables;
    ASSERT_EQ(backend->GetAllTable(tables), AE_SUCCESS);
    EXPECT_EQ(tables, std::vector<Handle>{table});
}

TEST_F(FRCDatabaseTest, TablesTagsAndRecordsOutliveTheConnection) {
    {
        Handle connection = 0;
        auto backend = Connected(connection);
        Handle table = 0;
        // The table is known by the upper-case stem of its file name, whatever the path form.
        ASSERT_EQ(backend->CreateTable(connection, "/elsewhere/soc1_acf.dbf", "", ADS_CDX, ADS_ANSI,
                                       ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                                       "NUMBER,C,10;NAME,C,30;NOTE,M", table),
                  AE_SUCCESS);
        Handle index = 0;
        ASSERT_EQ(backend->CreateIndex(table, "", "NAME", "UPPER(NAME)", "", "", 0, index),
                  AE_SUCCESS);
        for (const char* name : {"zeta", "Alpha", "mid"}) {
            ASSERT_EQ(backend->AppendRecord(table), AE_SUCCESS);
            ASSERT_EQ(backend->SetString(table, "NAME", name), AE_SUCCESS);
            ASSERT_EQ(backend->SetString(table, "NOTE", std::string(name) + " note"), AE_SUCCESS);
        }
        ASSERT_EQ(backend->Disconnect(connection), AE_SUCCESS);
        std::uint16_t open = 9;
        ASSERT_EQ(backend->GetNumOpenTables(open), AE_SUCCESS);
        EXPECT_EQ(open, 0);
    }
    Handle connection = 0;
    auto backend = Connected(connection);
    Handle table = Open(*backend, connection);
    Handle index = 0;
    ASSERT_EQ(backend->GetIndexHandle(table, "NAME", index), AE_SUCCESS);
    bool found = false;
    ASSERT_EQ(backend->Seek(index, "MID", ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    EXPECT_TRUE(found);
    std::string note;
    ASSERT_EQ(backend->GetString(table, "NOTE", note, ADS_NONE), AE_SUCCESS);
    EXPECT_EQ(note, "mid note");
    ASSERT_EQ(backend->GotoTop(index), AE_SUCCESS);
    std::string name;
    ASSERT_EQ(backend->GetString(table, "NAME", name, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(name, "Alpha");

    bool exists = false;
    ASSERT_EQ(backend->TableExists(connection, "SOC1_ACF.DBF", exists), AE_SUCCESS);
    EXPECT_TRUE(exists);
    ASSERT_EQ(backend->TableCopy(connection, "soc1_acf", "soc1_acf_2023"), AE_SUCCESS);
    EXPECT_EQ(backend->TableCopy(connection, "soc1_acf", "soc1_acf_2023"), AE_INVALID_OBJECT_NAME);
    EXPECT_EQ(backend->DropTable(connection, "soc1_acf"), AE_TABLE_NOT_EXCLUSIVE);  // open
    Handle copy = 0;
    ASSERT_EQ(backend->OpenTable(connection, "soc1_acf_2023.dbf", "", ADS_CDX, ADS_ANSI,
                                 ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, copy),
              AE_SUCCESS);
    ASSERT_EQ(backend->GetIndexHandle(copy, "NAME", index), AE_SUCCESS);
    ASSERT_EQ(backend->GotoBottom(index), AE_SUCCESS);
    ASSERT_EQ(backend->GetString(copy, "NAME", name, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(name, "zeta");
    ASSERT_EQ(backend->CloseTable(copy), AE_SUCCESS);
    ASSERT_EQ(backend->DropTable(connection, "soc1_acf_2023"), AE_SUCCESS);
    ASSERT_EQ(backend->TableExists(connection, "soc1_acf_2023", exists), AE_SUCCESS);
    EXPECT_FALSE(exists);
    EXPECT_EQ(backend->DropTable(connection, "soc1_acf_2023"), AE_TABLE_NOT_FOUND);
}

TEST_F(FRCDatabaseTest, LocksOfAnEndedProcessAreTakenOver) {
#ifdef _WIN32
    GTEST_SKIP() << "its other workstation is a fork(), which Windows does not have";
#else
    Handle connection = 0;
    auto backend = Connected(connection);
    Handle table = 0;
    ASSERT_EQ(
        backend->CreateTable(connection, "soc1_acf.dbf", "", ADS_CDX, ADS_ANSI,
                             ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, "NUMBER,C,10", table),
        AE_SUCCESS);
    ASSERT_EQ(backend->AppendRecord(table), AE_SUCCESS);
    ASSERT_EQ(backend->CloseTable(table), AE_SUCCESS);

    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // Another workstation that locks and dies without unlocking.
        Handle own = 0;
        auto other = Connected(own);
        Handle held = Open(*other, own);
        _exit(other->LockRecord(held, 1) == AE_SUCCESS && other->LockTable(held) == AE_SUCCESS ? 0
                                                                                               : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), 0);

    table = Open(*backend, connection);
    EXPECT_EQ(backend->LockRecord(table, 1), AE_SUCCESS);
    EXPECT_EQ(backend->LockTable(table), AE_SUCCESS);
#endif
}

TEST_F(FRCDatabaseTest, RefusalsCarryAStatusAndAText) {
    FRCDatabase backend;
    Handle connection = 0;
    EXPECT_EQ(backend.Connect26("Driver=Oracle;Database=x", ADS_LOCAL_SERVER, connection),
              AE_INVALID_PATH);
    Status code = 0;
    std::string text;
    ASSERT_EQ(backend.GetLastError(code, text), AE_SUCCESS);
    EXPECT_EQ(code, AE_INVALID_PATH);
    EXPECT_NE(text.find("Oracle"), std::string::npos);
    EXPECT_EQ(backend.Connect26("Driver=SQLite;Colour=red<DIR>/tmp", ADS_LOCAL_SERVER, connection),
              AE_INVALID_PATH);
    EXPECT_EQ(backend.Connect26("Database=/no/such/folder/x.sqlite", ADS_LOCAL_SERVER, connection),
              AE_SQL_ERROR);

    auto connected = Connected(connection);
    Handle table = 0;
    EXPECT_EQ(connected->OpenTable(connection, "missing.dbf", "", ADS_CDX, ADS_ANSI,
                                   ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, table),
              AE_FILE_NOT_FOUND);
    EXPECT_EQ(
        connected->CreateTable(connection, "bad.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                               ADS_IGNORERIGHTS, 0, "NAME,Q,10", table),
        AE_INVALID_FIELDDEF);
    ASSERT_EQ(
        connected->CreateTable(connection, "good.dbf", "", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, "NAME,C,10", table),
        AE_SUCCESS);
    Handle index = 0;
    EXPECT_EQ(connected->CreateIndex(table, "", "BAD", "NAME +", "", "", 0, index),
              AE_INVALID_EXPRESSION);
    EXPECT_EQ(connected->CreateIndex(table, "", "BAD", "NAME", "NAME", "", 0, index),
              AE_INVALID_EXPRESSION);
    EXPECT_EQ(connected->EncryptTable(table), AE_ENCRYPTION_NOT_ENABLED);
    ASSERT_EQ(connected->GetLastError(code, text), AE_SUCCESS);
    EXPECT_EQ(text, "no password given for good.dbf");
    bool encrypted = true;
    ASSERT_EQ(connected->IsTableEncrypted(table, encrypted), AE_SUCCESS);
    EXPECT_FALSE(encrypted);
    // The refused tags left nothing behind: a good one of the same name is made.
    ASSERT_EQ(connected->CreateIndex(table, "", "BAD", "NAME", "", "", 0, index), AE_SUCCESS);
    std::vector<Handle> indexes;
    ASSERT_EQ(connected->GetAllIndexes(table, indexes), AE_SUCCESS);
    EXPECT_EQ(indexes.size(), 1u);
}

}  // namespace
}  // namespace fnrk::backend

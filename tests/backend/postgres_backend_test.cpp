#include <gtest/gtest.h>

#include "backend/frc_database.hpp"
#include "support/postgres_server.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::backend {
namespace {

using namespace engine;  // option and status numbers
using fnrk::testing::PostgresServer;
using fnrk::testing::RunCommand;
using fnrk::testing::TempDir;

// Each test in a schema of its own of the program's throwaway server.
class PostgresBackendTest : public ::testing::Test {
  protected:
    std::unique_ptr<FRCDatabase> Connected(Handle& connection) {
        auto backend = std::make_unique<FRCDatabase>();
        backend->handleStart(900'000);
        EXPECT_EQ(backend->Connect26("<SQL>" + Path() + "<DIR>" + folder.path().string(),
                                     ADS_LOCAL_SERVER, connection),
                  AE_SUCCESS);
        return backend;
    }
    std::string Path() { return PostgresServer::Shared().ConnectionPath(Schema()); }
    std::string Schema() { return folder.path().filename().string(); }
    Handle Open(FRCDatabase& backend, Handle connection, std::uint32_t options = ADS_SHARED,
                const std::string& alias = "") {
        Handle table = 0;
        EXPECT_EQ(backend.OpenTable(connection, "items.dbf", alias, ADS_CDX, ADS_ANSI,
                                    ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, options, table),
                  AE_SUCCESS);
        return table;
    }
    void CreateItems(FRCDatabase& backend, Handle connection, int records) {
        Handle table = 0;
        ASSERT_EQ(backend.CreateTable(connection, "items.dbf", "", ADS_CDX, ADS_ANSI,
                                      ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                                      "CODE,C,6,0;COUNTER,N,10,0", table),
                  AE_SUCCESS);
        for (int i = 0; i < records; ++i) {
            ASSERT_EQ(backend.AppendRecord(table), AE_SUCCESS);
            ASSERT_EQ(backend.SetDouble(table, "COUNTER", 0), AE_SUCCESS);
        }
        ASSERT_EQ(backend.CloseTable(table), AE_SUCCESS);
    }
    // What the server lists of the test's schema and of its locks, through psql.
    std::string Psql(const std::string& sql) {
        auto& server = PostgresServer::Shared();
        auto result = RunCommand({"psql", "-X", "-A", "-t", "-h", server.socketFolder().string(),
                                  "-U", "postgres", "-d", server.database(), "-c", sql});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return result.out;
    }
    TempDir folder;
};

TEST_F(PostgresBackendTest, RecordLocksAreTheServersOwnAndEndWithTheirConnection) {
    Handle connection = 0;
    auto backend = Connected(connection);
    CreateItems(*backend, connection, 3);
    Handle a = Open(*backend, connection);
    Handle b = Open(*backend, connection, ADS_SHARED, "SECOND");

    // Two opens on one connection hold their locks apart, as two workstations do.
    ASSERT_EQ(backend->LockRecord(a, 1), AE_SUCCESS);
    EXPECT_EQ(backend->LockRecord(b, 1), AE_LOCK_FAILED);
    EXPECT_EQ(backend->LockTable(b), AE_LOCK_FAILED);
    ASSERT_EQ(backend->LockRecord(b, 2), AE_SUCCESS);
    EXPECT_EQ(backend->LockTable(a), AE_LOCK_FAILED);
    ASSERT_EQ(backend->UnlockRecord(b, 2), AE_SUCCESS);
    ASSERT_EQ(backend->LockTable(a), AE_SUCCESS);  // its own record lock does not stand in the way
    EXPECT_EQ(backend->LockRecord(b, 3), AE_LOCK_FAILED);

    // The server holds them as advisory locks of this connection; the schema has no lock table.
    EXPECT_EQ(Psql("SELECT count(*) > 0 FROM pg_locks WHERE locktype = 'advisory'"), "t\n");
    EXPECT_EQ(Psql("SELECT string_agg(table_name, ',' ORDER BY table_name) FROM "
                   "information_schema.tables WHERE table_schema = '" +
                   Schema() + "'"),
              "fnrk_crypt,fnrk_table,fnrk_tag,t_ITEMS\n");

    ASSERT_EQ(backend->UnlockTable(a), AE_SUCCESS);
    ASSERT_EQ(backend->LockRecord(b, 3), AE_SUCCESS);
    ASSERT_EQ(backend->LockRecord(b, 1), AE_SUCCESS);

    // Another workstation finds them held until the connection ends, then free.
    Handle otherConnection = 0;
    auto other = Connected(otherConnection);
    Handle c = Open(*other, otherConnection);
    EXPECT_EQ(other->LockRecord(c, 1), AE_LOCK_FAILED);
    EXPECT_EQ(other->LockRecord(c, 2), AE_SUCCESS);
    ASSERT_EQ(backend->Disconnect(connection), AE_SUCCESS);
    EXPECT_EQ(other->LockRecord(c, 1), AE_SUCCESS);
    EXPECT_EQ(other->LockTable(c), AE_SUCCESS);
}

TEST_F(PostgresBackendTest, RecordsAndTagsLiveInTheServer) {
    Handle connection = 0;
    auto backend = Connected(connection);
    CreateItems(*backend, connection, 0);
    Handle table = Open(*backend, connection, ADS_EXCLUSIVE);
    Handle index = 0;
    ASSERT_EQ(backend->CreateIndex(table, "", "CODE", "CODE", "", "", 0, index), AE_SUCCESS);
    for (const char* code : {"é-b", "a", "Ç"}) {
        ASSERT_EQ(backend->AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(backend->SetString(table, "CODE", code), AE_SUCCESS);
        ASSERT_EQ(backend->SetDouble(table, "COUNTER", 12345678), AE_SUCCESS);
    }
    ASSERT_EQ(backend->Disconnect(connection), AE_SUCCESS);

    // Text arrives as UTF-8; numbers as numbers; the tag as a key column with its SQL index.
    EXPECT_EQ(Psql("SELECT string_agg(\"f_CODE\" || '=' || \"f_COUNTER\", ',' ORDER BY recno) "
                   "FROM \"" +
                   Schema() + "\".\"t_ITEMS\""),
              "é-b=12345678,a=12345678,Ç=12345678\n");
    EXPECT_EQ(Psql("SELECT count(*) FROM pg_indexes WHERE schemaname = '" + Schema() +
                   "' AND indexdef LIKE '%k_CODE%'"),
              "1\n");

    auto again = Connected(connection);
    table = Open(*again, connection);
    ASSERT_EQ(again->GetIndexHandle(table, "CODE", index), AE_SUCCESS);
    ASSERT_EQ(again->GotoTop(index), AE_SUCCESS);
    std::string first;
    ASSERT_EQ(again->GetString(table, "CODE", first, ADS_RTRIM), AE_SUCCESS);
    EXPECT_EQ(first, "a");
}

TEST_F(PostgresBackendTest, ATableMadeAnewWithOtherFieldTypesReadsAtOnce) {
    Handle connection = 0;
    auto backend = Connected(connection);
    for (const char* fields : {"CODE,C,6,0", "CODE,N,6,0", "CODE,D"}) {
        Handle table = 0;
        ASSERT_EQ(backend->CreateTable(connection, "shape.dbf", "", ADS_CDX, ADS_ANSI,
                                       ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, fields, table),
                  AE_SUCCESS)
            << fields;
        ASSERT_EQ(backend->AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(backend->GotoRecord(table, 1), AE_SUCCESS) << fields;
        std::string value;
        EXPECT_EQ(backend->GetString(table, "CODE", value, ADS_RTRIM), AE_SUCCESS) << fields;
        ASSERT_EQ(backend->CloseTable(table), AE_SUCCESS);
    }
}

TEST_F(PostgresBackendTest, ConnectionFaultsNeverShowThePassword) {
    auto& server = PostgresServer::Shared();
    FRCDatabase backend;
    backend.handleStart(900'000);
    Handle connection = 0;
    const std::string secret = "Sesame-4711";
    for (const std::string& path :
         {"Driver=PostgreSQL;Server=" + server.socketFolder().string() +
              ";User=nobody;Database=none;Password=" + secret,
          "Driver=PostgreSQL;Server=/nonexistent;Database=x;Password=" + secret,
          "Driver=PostgreSQL;Pasword=" + secret, "Driver=PostgreSQL;Password=" + secret}) {
        EXPECT_NE(backend.Connect26(path, ADS_LOCAL_SERVER, connection), AE_SUCCESS) << path;
        Status code = 0;
        std::string text;
        ASSERT_EQ(backend.GetLastError(code, text), AE_SUCCESS);
        EXPECT_FALSE(text.empty()) << path;
        EXPECT_EQ(text.find(secret), std::string::npos) << text;
        EXPECT_EQ(backend.FindConnection25(path, connection), AE_NO_CONNECTION);
        ASSERT_EQ(backend.GetLastError(code, text), AE_SUCCESS);
        EXPECT_EQ(text.find(secret), std::string::npos) << text;
    }
    EXPECT_EQ(WithoutPassword("<SQL>Driver=PostgreSQL;password = a;Schema=b;Pass=c<DIR>/d"),
              "<SQL>Driver=PostgreSQL;password =***;Schema=b;Pass=***<DIR>/d");
}

}  // namespace
}  // namespace fnrk::backend

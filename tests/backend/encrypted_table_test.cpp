// Encrypted SQL-kept tables as the database sees them: no field value, memo or key readable in
// its rows or catalog, on SQLite (the file's bytes) and on PostgreSQL (the rows as the server
// shows them); a copy made in the database stays encrypted, a unique tag keeps its keys once.

#include <gtest/gtest.h>

#include <filesystem>

#include "backend/frc_database.hpp"
#include "support/postgres_server.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::backend {
namespace {

using namespace engine;  // option and status numbers
using fnrk::testing::PostgresServer;
using fnrk::testing::TempDir;

const char* const kSecrets[] = {"Charlemagne", "Bartholomew", "kept in the memo", "SECRETCODE"};

class EncryptedSqlTableTest : public ::testing::Test {
  protected:
    std::unique_ptr<FRCDatabase> Connected(const std::string& path, Handle& connection) {
        auto backend = std::make_unique<FRCDatabase>();
        backend->handleStart(600'000);
        EXPECT_EQ(backend->Connect26(path, ADS_LOCAL_SERVER, connection), AE_SUCCESS);
        return backend;
    }
    Handle Open(FRCDatabase& backend, Handle connection, const std::string& name,
                std::uint32_t options = ADS_EXCLUSIVE) {
        Handle table = 0;
        EXPECT_EQ(backend.OpenTable(connection, name, "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                    ADS_IGNORERIGHTS, options, table),
                  AE_SUCCESS);
        return table;
    }
    std::string Text(FRCDatabase& backend, Handle table, const std::string& field) {
        std::string value;
        EXPECT_EQ(backend.GetString(table, field, value, ADS_RTRIM), AE_SUCCESS);
        return value;
    }
    // A table of people with a tag on NAME and a unique tag on CODE, encrypted, left open.
    Handle MakeEncrypted(FRCDatabase& backend, Handle connection) {
        Handle table = 0;
        EXPECT_EQ(backend.CreateTable(connection, "people.dbf", "", ADS_CDX, ADS_ANSI,
                                      ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                                      "CODE,C,10;NAME,C,20;NOTE,M", table),
                  AE_SUCCESS);
        Handle index = 0;
        EXPECT_EQ(backend.CreateIndex(table, "", "NAME", "NAME", "", "", 0, index), AE_SUCCESS);
        EXPECT_EQ(backend.CreateIndex(table, "", "CODE", "CODE", "", "", ADS_UNIQUE, index),
                  AE_SUCCESS);
        EXPECT_EQ(backend.EnableEncryption(table, "open sesame"), AE_SUCCESS);
        EXPECT_EQ(backend.EncryptTable(table), AE_SUCCESS);
        const char* const rows[][3] = {{"SECRETCODE", "Charlemagne", "kept in the memo"},
                                       {"SECRETCODE", "Bartholomew", ""},
                                       {"OTHER", "Aaron", ""}};
        for (const auto& row : rows) {
            EXPECT_EQ(backend.AppendRecord(table), AE_SUCCESS);
            EXPECT_EQ(backend.SetString(table, "CODE", row[0]), AE_SUCCESS);
            EXPECT_EQ(backend.SetString(table, "NAME", row[1]), AE_SUCCESS);
            EXPECT_EQ(backend.SetString(table, "NOTE", row[2]), AE_SUCCESS);
        }
        EXPECT_EQ(backend.GotoTop(table), AE_SUCCESS);
        return table;
    }
    // The records walked in the tag's order, as "CODE NAME".
    std::vector<std::string> InOrder(FRCDatabase& backend, Handle table, const std::string& tag) {
        Handle index = 0;
        EXPECT_EQ(backend.GetIndexHandle(table, tag, index), AE_SUCCESS);
        std::vector<std::string> seen;
        EXPECT_EQ(backend.GotoTop(index), AE_SUCCESS);
        bool atEof = false;
        while (backend.AtEOF(table, atEof) == AE_SUCCESS && !atEof && seen.size() < 10) {
            seen.push_back(Text(backend, table, "CODE") + " " + Text(backend, table, "NAME"));
            EXPECT_EQ(backend.Skip(index, 1), AE_SUCCESS);
        }
        return seen;
    }
    // Secrets found as they are or in hexadecimal (how the server shows bytes).
    static int PlaintextHits(const std::string& bytes) {
        int hits = 0;
        for (const std::string secret : kSecrets) {
            std::string hex;
            for (const unsigned char c : secret) {
                hex += "0123456789abcdef"[c >> 4];
                hex += "0123456789abcdef"[c & 0x0F];
            }
            hits += bytes.find(secret) != std::string::npos;
            hits += bytes.find(hex) != std::string::npos;
        }
        return hits;
    }
    TempDir folder;
};

TEST_F(EncryptedSqlTableTest, ASQLiteFileHoldsNoPlaintextAndACopyStaysEncrypted) {
    const std::string path =
        "<SQL>Driver=SQLite;Database=dossier.sqlite<DIR>" + folder.path().string();
    Handle connection = 0;
    auto backend = Connected(path, connection);
    Handle table = MakeEncrypted(*backend, connection);
    // The unique tag holds SECRETCODE once: for the record that had it first.
    EXPECT_EQ(InOrder(*backend, table, "CODE"),
              (std::vector<std::string>{"OTHER Aaron", "SECRETCODE Charlemagne"}));
    EXPECT_EQ(InOrder(*backend, table, "NAME"),
              (std::vector<std::string>{"OTHER Aaron", "SECRETCODE Bartholomew",
                                        "SECRETCODE Charlemagne"}));
    ASSERT_EQ(backend->CloseTable(table), AE_SUCCESS);
    ASSERT_EQ(backend->TableCopy(connection, "people.dbf", "copied.dbf"), AE_SUCCESS);
    ASSERT_EQ(backend->Disconnect(connection), AE_SUCCESS);

    std::string bytes;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        bytes += fnrk::testing::ReadFileBytes(entry.path());
    ASSERT_NE(bytes.find("t_COPIED"), std::string::npos) << "the database file was read";
    EXPECT_EQ(PlaintextHits(bytes), 0);

    auto again = Connected(path, connection);
    Handle copy = Open(*again, connection, "copied.dbf");
    bool encrypted = false;
    ASSERT_EQ(again->IsTableEncrypted(copy, encrypted), AE_SUCCESS);
    EXPECT_TRUE(encrypted);
    EXPECT_EQ(again->EnableEncryption(copy, "open"), AE_INVALID_PASSWORD);
    ASSERT_EQ(again->EnableEncryption(copy, "open sesame"), AE_SUCCESS);
    EXPECT_EQ(InOrder(*again, copy, "CODE"),
              (std::vector<std::string>{"OTHER Aaron", "SECRETCODE Charlemagne"}));
    ASSERT_EQ(again->GotoRecord(copy, 1), AE_SUCCESS);
    EXPECT_EQ(Text(*again, copy, "NOTE"), "kept in the memo");
    // Decrypted, the values are the database's plain columns again.
    ASSERT_EQ(again->DecryptTable(copy), AE_SUCCESS);
    ASSERT_EQ(again->Disconnect(connection), AE_SUCCESS);
    bytes = fnrk::testing::ReadFileBytes(folder.path() / "dossier.sqlite");
    EXPECT_NE(bytes.find("Charlemagne"), std::string::npos);
}

// Each workstation orders an encrypted table's rows itself: what another one wrote shows in its
// next walk, in tag order and in counts.
TEST_F(EncryptedSqlTableTest, AWorkstationSeesWhatAnotherWroteInAnEncryptedTable) {
    const std::string path =
        "<SQL>Driver=SQLite;Database=dossier.sqlite<DIR>" + folder.path().string();
    Handle first = 0, second = 0;
    auto one = Connected(path, first);
    ASSERT_EQ(one->CloseTable(MakeEncrypted(*one, first)), AE_SUCCESS);
    auto other = Connected(path, second);
    const Handle mine = Open(*one, first, "people.dbf", ADS_SHARED);
    const Handle theirs = Open(*other, second, "people.dbf", ADS_SHARED);
    ASSERT_EQ(one->EnableEncryption(mine, "open sesame"), AE_SUCCESS);
    ASSERT_EQ(other->EnableEncryption(theirs, "open sesame"), AE_SUCCESS);
    ASSERT_EQ(InOrder(*one, mine, "NAME"),
              (std::vector<std::string>{"OTHER Aaron", "SECRETCODE Bartholomew",
                                        "SECRETCODE Charlemagne"}));

    ASSERT_EQ(other->GotoRecord(theirs, 3), AE_SUCCESS);
    ASSERT_EQ(other->SetString(theirs, "NAME", "Zacharias"), AE_SUCCESS);
    ASSERT_EQ(other->AppendRecord(theirs), AE_SUCCESS);
    ASSERT_EQ(other->SetString(theirs, "CODE", "NEW"), AE_SUCCESS);
    ASSERT_EQ(other->SetString(theirs, "NAME", "Abel"), AE_SUCCESS);
    ASSERT_EQ(other->GotoTop(theirs), AE_SUCCESS);  // writes the record

    EXPECT_EQ(InOrder(*one, mine, "NAME"),
              (std::vector<std::string>{"NEW Abel", "SECRETCODE Bartholomew",
                                        "SECRETCODE Charlemagne", "OTHER Zacharias"}));
    Handle index = 0;
    ASSERT_EQ(one->GetIndexHandle(mine, "NAME", index), AE_SUCCESS);
    std::uint32_t keys = 0;
    ASSERT_EQ(one->GetKeyCount(index, ADS_RESPECTFILTERS, keys), AE_SUCCESS);
    EXPECT_EQ(keys, 4u);
}

#if FNRK_TEST_POSTGRESQL  // libpq is not in every build (Windows)
TEST_F(EncryptedSqlTableTest, APostgreSQLServerShowsNoPlaintext) {
    const std::string schema = folder.path().filename().string();
    auto& server = PostgresServer::Shared();
    Handle connection = 0;
    auto backend = Connected(
        "<SQL>" + server.ConnectionPath(schema) + "<DIR>" + folder.path().string(), connection);
    EXPECT_EQ(backend->CloseTable(MakeEncrypted(*backend, connection)), AE_SUCCESS);
    ASSERT_EQ(backend->Disconnect(connection), AE_SUCCESS);

    // Every row of every table of the schema, as text, with byte values also shown as text.
    const std::string sql =
        "SELECT string_agg(row_to_json(t)::text, '|') FROM \"" + schema +
        "\".\"t_PEOPLE\" t UNION ALL SELECT string_agg(encode(sealed, 'escape'), '|') "
        "FROM \"" +
        schema + "\".\"t_PEOPLE\" UNION ALL SELECT string_agg(row_to_json(c)::text, '|') FROM \"" +
        schema + "\".fnrk_crypt c";
    auto result =
        fnrk::testing::RunCommand({"psql", "-X", "-A", "-t", "-h", server.socketFolder().string(),
                                   "-U", "postgres", "-d", server.database(), "-c", sql});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find("PEOPLE"), std::string::npos) << result.out;
    EXPECT_EQ(PlaintextHits(result.out), 0) << result.out;
}
#endif

}  // namespace
}  // namespace fnrk::backend

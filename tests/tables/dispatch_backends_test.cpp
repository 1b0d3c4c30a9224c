// The dispatch over the real engine and the real SQL backend: one dossier kept as files, one
// kept in SQL, the same calls, the same answers.

#include <gtest/gtest.h>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "support/temp_dir.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables {
namespace {

using namespace engine;  // option and status numbers

class DispatchOverBackends : public ::testing::Test {
  protected:
    void SetUp() override {
        fnrk::testing::WriteFileBytes(sqlKept / "FRSQL.DBF", "");
        db.SetDossierFolder(sqlKept.path().string());
    }
    // Creates the entries table in the connection's folder, fills it, and answers what a
    // dossier's reader asks.
    std::string Answers(Handle connection, const std::string& folder) {
        Handle table = 0;
        EXPECT_EQ(db.CreateTable(connection, folder + "/DEMO_act.dbf", "ACT", ADS_CDX, ADS_ANSI,
                                 ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                                 "ACCOUNT,C,10,0;AMOUNT,N,12,2;BOOKED,D", table),
                  AE_SUCCESS);
        const std::pair<const char*, double> entries[] = {
            {"700000", 1200.5}, {"400000", -300}, {"700000", 99.5}};
        for (const auto& [account, amount] : entries) {
            EXPECT_EQ(db.AppendRecord(table), AE_SUCCESS);
            EXPECT_EQ(db.SetString(table, "ACCOUNT", account), AE_SUCCESS);
            EXPECT_EQ(db.SetDouble(table, "AMOUNT", amount), AE_SUCCESS);
            EXPECT_EQ(db.SetDate(table, "BOOKED", "31/12/2024"), AE_SUCCESS);
        }
        Handle byAccount = 0;
        EXPECT_EQ(db.CreateIndex(table, "", "ACCOUNT", "ACCOUNT", "", "", ADS_COMPOUND, byAccount),
                  AE_SUCCESS);
        std::string answers;
        bool found = false;
        EXPECT_EQ(db.Seek(byAccount, "7", ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
        double total = 0;
        bool atEof = false;
        while (found && db.AtEOF(table, atEof) == AE_SUCCESS && !atEof) {
            std::string account;
            EXPECT_EQ(db.GetString(table, "ACCOUNT", account, ADS_RTRIM), AE_SUCCESS);
            if (account.rfind('7', 0) != 0) break;
            double amount = 0;
            EXPECT_EQ(db.GetDouble(table, "AMOUNT", amount), AE_SUCCESS);
            total += amount;
            EXPECT_EQ(db.Skip(byAccount, 1), AE_SUCCESS);
        }
        answers += "sales " + std::to_string(total);
        std::uint32_t count = 0;
        EXPECT_EQ(db.GetRecordCount(table, ADS_IGNOREFILTERS, count), AE_SUCCESS);
        answers += ", records " + std::to_string(count);
        EXPECT_EQ(db.GotoBottom(byAccount), AE_SUCCESS);
        std::string date;
        EXPECT_EQ(db.GetDate(table, "BOOKED", date), AE_SUCCESS);
        answers += ", last booked " + date;
        tables.push_back(table);
        return answers;
    }

    fnrk::testing::TempDir files;
    fnrk::testing::TempDir sqlKept;
    Engine engine;
    SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    std::vector<Handle> tables;
};

TEST_F(DispatchOverBackends, FilesAndSqlGiveTheSameAnswers) {
    ASSERT_EQ(db.SetDateFormat("DD/MM/YYYY"), AE_SUCCESS);
    Handle local = 0;
    ASSERT_EQ(db.Connect26(files.path().string(), ADS_LOCAL_SERVER, local), AE_SUCCESS);
    EXPECT_GE(local, kEngineHandleStart);
    Handle sql = 0;
    const std::string sqlPath =
        "<SQL>Driver=SQLite;Database=demo.sqlite<DIR>" + sqlKept.path().string();
    ASSERT_EQ(db.Connect26(sqlPath, ADS_LOCAL_SERVER, sql), AE_SUCCESS);
    EXPECT_GT(sql, 0);
    EXPECT_LT(sql, 300'000);
    EXPECT_TRUE(db.IsConnected(BackendSlot::Folder));

    const std::string fromFiles = Answers(local, files.path().string());
    const std::string fromSql = Answers(sql, sqlKept.path().string());
    EXPECT_EQ(fromFiles, "sales 1300.000000, records 3, last booked 31/12/2024");
    EXPECT_EQ(fromSql, fromFiles);
    EXPECT_TRUE(std::filesystem::exists(files / "DEMO_act.dbf"));
    EXPECT_TRUE(std::filesystem::exists(sqlKept / "demo.sqlite"));
    EXPECT_FALSE(std::filesystem::exists(sqlKept / "DEMO_act.dbf"));

    // Both tables are found through the broadcast, each where it lives.
    std::vector<Handle> open;
    ASSERT_EQ(db.GetAllTables(open), AE_SUCCESS);
    EXPECT_EQ(open.size(), 2u);
    EXPECT_GE(tables.at(0), kEngineHandleStart);
    EXPECT_LT(tables.at(1), 300'000);

    // Opened again by name (handle 0): the path alone picks the backend.
    ASSERT_EQ(db.CloseTable(tables.at(1)), AE_SUCCESS);
    Handle reopened = 0;
    ASSERT_EQ(db.OpenTable(0, sqlKept.path().string() + "/DEMO_act.dbf", "ACT", ADS_CDX, ADS_ANSI,
                           ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, reopened),
              AE_SUCCESS);
    EXPECT_LT(reopened, 300'000);
    std::uint32_t count = 0;
    ASSERT_EQ(db.GetRecordCount(reopened, ADS_IGNOREFILTERS, count), AE_SUCCESS);
    EXPECT_EQ(count, 3u);

    // A failure in the SQL dossier shows in the joined error text under its slot.
    EXPECT_EQ(db.SetString(reopened, "NOSUCHFIELD", "x"), AE_INVALID_FIELDNAME);
    Status code = 0;
    std::string text;
    ASSERT_EQ(db.GetLastError(code, text), AE_SUCCESS);
    EXPECT_NE(text.find(" Folder : "), std::string::npos) << text;
    EXPECT_NE(text.find("NOSUCHFIELD"), std::string::npos) << text;
}

}  // namespace
}  // namespace fnrk::tables

#pragma once

// AdsClass over a temporary dossier "SOC1" kept as files (the engine) or in SQL (the SQLite
// backend), with a recording message sink and settings of its own. Suites parameterized on the
// keeping run the same calls against both.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "platform/messages.hpp"
#include "support/postgres_server.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"
#include "tables/ads_class.hpp"

namespace fnrk::tables::ads_testing {

// Files, a SQLite database, or a PostgreSQL database (the test program's throwaway server).
enum class Keeping { Files, Sql, Postgres };

inline std::string KeepingName(const ::testing::TestParamInfo<Keeping>& info) {
    switch (info.param) {
        case Keeping::Files:
            return "Files";
        case Keeping::Sql:
            return "Sql";
        case Keeping::Postgres:
            break;
    }
    return "Postgres";
}

inline auto AllKeepings() {
#if FNRK_TEST_POSTGRESQL
    return ::testing::Values(Keeping::Files, Keeping::Sql, Keeping::Postgres);
#else
    // A build without PostgreSQL (the Windows build) has no server to keep a dossier in.
    return ::testing::Values(Keeping::Files, Keeping::Sql);
#endif
}

// Index tags as (name, expression).
using Tags = std::vector<std::pair<std::string, std::string>>;

inline constexpr const char* kEntryFields =
    "DBKCODE,C,4,0;DOCNUMBER,C,10,0;ACCOUNTGL,C,10,0;AMOUNT,N,12,2;DOCDATE,D,8,0;ISTEMP,L,1,0;"
    "REMARK,M,10,0";
inline constexpr const char* kAccountFields = "NUMBER,C,10,0;NAME1,C,40,0;SECRET,L,1,0";
inline constexpr const char* kParamFields = "KEY,C,25,0;VALUE,C,60,0";

class AdsTest : public ::testing::TestWithParam<Keeping> {
  protected:
    void SetUp() override {
        previousSink = platform::SetMessageSink(&messages);
        std::filesystem::create_directories(dossier);
        if (GetParam() == Keeping::Sql) {
            fnrk::testing::WriteFileBytes(dossier / "FRSQL.DBF", "");
            fnrk::testing::WriteFileBytes(dossier / "folder.data",
                                          "<connection><Driver>SQLite</Driver>"
                                          "<Database>dossier.sqlite</Database></connection>\n");
        }
#if FNRK_TEST_POSTGRESQL
        else if (GetParam() == Keeping::Postgres) {
            // A schema of its own per test: named after the test's folder.
            auto& server = fnrk::testing::PostgresServer::Shared();
            fnrk::testing::WriteFileBytes(dossier / "FRSQL.DBF", "");
            fnrk::testing::WriteFileBytes(
                dossier / "folder.data",
                "<connection><Driver>PostgreSQL</Driver><Server>" + server.socketFolder().string() +
                    "</Server><User>postgres</User><Database>" + server.database() +
                    "</Database><Schema>" + folder.path().filename().string() +
                    "</Schema></connection>\n");
        }
#endif
        ads.SetDossierPrefix((dossier / "SOC1").string());
        ASSERT_EQ(ads.Initialize(), engine::AE_SUCCESS);
    }
    void TearDown() override {
        EXPECT_EQ(db.CloseAllTables(), engine::AE_SUCCESS);
        platform::SetMessageSink(previousSink);
    }

    // Creates a standard table of the dossier with its tags, and closes it again.
    void CreateStandard(const std::string& alias, const std::string& fields,
                        const Tags& tags = {}) {
        engine::Handle table = 0;
        ASSERT_EQ(db.CreateTable(ads.DossierConnection(), ads.StandardTablePath(alias), alias,
                                 engine::ADS_CDX, engine::ADS_ANSI, engine::ADS_COMPATIBLE_LOCKING,
                                 engine::ADS_IGNORERIGHTS, 0, fields, table),
                  engine::AE_SUCCESS)
            << alias << ": " << ads.GetAdsLastError();
        for (const auto& [tag, expression] : tags) {
            engine::Handle index = 0;
            ASSERT_EQ(
                db.CreateIndex(table, "", tag, expression, "", "", engine::ADS_COMPOUND, index),
                engine::AE_SUCCESS);
        }
        ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);
    }

    // The entries table with a few entries of two documents, open as "ACT" and current.
    void OpenEntries() {
        CreateStandard("ACT", kEntryFields, {{"DOC", "DBKCODE+DOCNUMBER"}});
        ASSERT_EQ(ads.FileOpen("ACT"), engine::AE_SUCCESS);
        AddEntry("VEN", "1", "400000", 121);
        AddEntry("VEN", "1", "700000", -100);
        AddEntry("VEN", "1", "451000", -21);
        AddEntry("ACH", "1", "604000", 50);
    }
    // Adds a record of text values to the table open under `alias`, and writes it.
    void AddRecord(const std::string& alias,
                   const std::vector<std::pair<std::string, std::string>>& values) {
        ASSERT_EQ(ads.ActivateAlias(alias), engine::AE_SUCCESS);
        ASSERT_EQ(ads.RecordAdd(), engine::AE_SUCCESS);
        for (const auto& [field, value] : values) EXPECT_TRUE(ads.PutFieldValue(field, value));
        ASSERT_EQ(ads.FlushAndUnlock(alias), engine::AE_SUCCESS);
    }
    void AddEntry(const std::string& journal, const std::string& document,
                  const std::string& account, double amount) {
        ASSERT_EQ(ads.RecordAdd(), engine::AE_SUCCESS);
        EXPECT_TRUE(ads.PutFieldValue("DBKCODE", journal));
        EXPECT_TRUE(ads.PutFieldValue("DOCNUMBER", document));
        EXPECT_TRUE(ads.PutFieldValue("ACCOUNTGL", account));
        EXPECT_TRUE(ads.PutFieldValue("AMOUNT", amount));
        ASSERT_EQ(ads.FlushAndUnlock("ACT"), engine::AE_SUCCESS);
    }

    // The handle of the table open under `alias` in the dispatch; 0 when none is.
    engine::Handle TableHandle(const std::string& alias) {
        std::vector<engine::Handle> tables;
        EXPECT_EQ(db.GetAllTables(tables), engine::AE_SUCCESS);
        for (engine::Handle table : tables) {
            std::string name;
            if (db.GetTableAlias(table, name) == engine::AE_SUCCESS && name == alias) return table;
        }
        return 0;
    }

    // The texts shown so far, joined with " | ".
    std::string Shown() const {
        std::string joined;
        for (const auto& shown : messages.shown()) {
            joined += (joined.empty() ? "" : " | ") + shown.text;
        }
        return joined;
    }

    fnrk::testing::TempDir folder;
    // The installation (and its "FennRick.ini") is the temporary folder.
    fnrk::testing::ScopedEnvironment mainPath{"FNRK_MAIN_PATH", folder.path().string()};
    std::filesystem::path dossier = folder / "SOC1";
    engine::Engine engine;
    SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    AdsClass ads{db};
    platform::RecordingMessageSink messages;
    platform::MessageSink* previousSink = nullptr;
};

// The same, for behaviour that only files have (other processes' opens of a file).
class AdsFilesTest : public AdsTest {};

}  // namespace fnrk::tables::ads_testing

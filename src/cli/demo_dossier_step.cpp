// Demo step: the sample dossier's entries written and read through the dispatch, once kept as
// files (the embedded engine) and once kept in SQL (the SQL backend), with the same answers.

#include <fstream>
#include <string>

#include "backend/connection_xml.hpp"
#include "backend/frc_database.hpp"
#include "cli/command_registry.hpp"
#include "cli/demo_steps.hpp"
#include "engine/engine.hpp"
#include "platform/text.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::cli {
namespace {

using namespace engine;  // option and status numbers

void Check(Status status, const char* what) {
    if (status != AE_SUCCESS) {
        throw CommandFailure(std::string(what) + " failed with status " + std::to_string(status));
    }
}

struct Entry {
    const char* account;
    double amount;
    const char* booked;
};

constexpr Entry kEntries[] = {{"700000", 1200.50, "15/01/2024"},
                              {"400000", -300.00, "20/02/2024"},
                              {"700100", 99.50, "31/12/2024"},
                              {"604000", -45.25, "02/03/2024"}};

// Writes the entries table of the dossier in `folder` on `connection`, then answers: sales
// (accounts 7...) in account order, the number of entries, the last booking date.
std::string WriteAndRead(tables::SqlDatabase& db, Handle connection, const std::string& folder) {
    Handle table = 0;
    Check(db.CreateTable(connection, folder + "/DEMO_act.dbf", "ACT", ADS_CDX, ADS_ANSI,
                         ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                         "ACCOUNT,C,10,0;AMOUNT,N,12,2;BOOKED,D", table),
          "CreateTable");
    for (const Entry& entry : kEntries) {
        Check(db.AppendRecord(table), "AppendRecord");
        Check(db.SetString(table, "ACCOUNT", entry.account), "SetString");
        Check(db.SetDouble(table, "AMOUNT", entry.amount), "SetDouble");
        Check(db.SetDate(table, "BOOKED", entry.booked), "SetDate");
    }
    Handle byAccount = 0;
    Check(db.CreateIndex(table, "", "ACCOUNT", "ACCOUNT", "", "", ADS_COMPOUND, byAccount),
          "CreateIndex");
    Handle byDate = 0;
    Check(db.CreateIndex(table, "", "BOOKED", "DTOS(BOOKED)", "", "", ADS_COMPOUND, byDate),
          "CreateIndex");

    Check(db.SetScope(byAccount, ADS_TOP, "7", ADS_STRINGKEY), "SetScope");
    Check(db.SetScope(byAccount, ADS_BOTTOM, "7", ADS_STRINGKEY), "SetScope");
    std::string sales;
    double total = 0;
    bool atEof = false;
    for (Check(db.GotoTop(byAccount), "GotoTop"); db.AtEOF(table, atEof) == AE_SUCCESS && !atEof;
         Check(db.Skip(byAccount, 1), "Skip")) {
        std::string account;
        double amount = 0;
        Check(db.GetString(table, "ACCOUNT", account, ADS_RTRIM), "GetString");
        Check(db.GetDouble(table, "AMOUNT", amount), "GetDouble");
        sales += account + " ";
        total += amount;
    }
    std::uint32_t count = 0;
    Check(db.GetRecordCount(table, ADS_IGNOREFILTERS, count), "GetRecordCount");
    std::string last;
    Check(db.GotoBottom(byDate), "GotoBottom");
    Check(db.GetDate(table, "BOOKED", last), "GetDate");
    Check(db.CloseTable(table), "CloseTable");
    return "sales accounts " + sales + "total " + platform::FormatNumber(total, "#0.00") +
           ", entries " + std::to_string(count) + ", last booked " + last;
}

void RunDossierTablesStep(DemoContext& context) {
    Engine engine;
    tables::SqlDatabase db(engine, [] { return std::make_unique<backend::FRCDatabase>(); });
    Check(db.SetDateFormat("DD/MM/YYYY"), "SetDateFormat");
    Check(db.SetEpoch(2000), "SetEpoch");
    Check(db.ShowDeleted(false), "ShowDeleted");

    const std::string files = context.dossierFolder.string();
    Handle local = 0;
    Check(db.Connect26(files, ADS_LOCAL_SERVER, local), "Connect26");
    const std::string fromFiles = WriteAndRead(db, local, files);
    context.out << "  kept as files (connection " << local << "): " << fromFiles << "\n";

    // The same dossier kept in SQL: a folder marked by FRSQL.DBF whose "folder.data" names
    // the database.
    const auto sqlFolder = context.dossierFolder.parent_path() / "DEMOSQL";
    std::filesystem::create_directories(sqlFolder);
    std::ofstream(sqlFolder / "FRSQL.DBF").flush();
    std::ofstream(sqlFolder / "folder.data")
        << "<connection><Driver>SQLite</Driver><Database>demo.sqlite</Database></connection>\n";
    backend::FolderXml description;
    if (!description.Load((sqlFolder / "folder.data").string())) {
        throw CommandFailure(description.LoadError());
    }
    db.SetDossierFolder(sqlFolder.string());
    Handle sql = 0;
    Check(db.Connect26("<SQL>" + description.GetConnectionString() + "<DIR>" + sqlFolder.string(),
                       ADS_LOCAL_SERVER, sql),
          "Connect26");
    const std::string fromSql = WriteAndRead(db, sql, sqlFolder.string());
    context.out << "  kept in SQL   (connection " << sql << "): " << fromSql << "\n"
                << "  same answers: " << (fromSql == fromFiles ? "yes" : "NO") << "\n";
    if (fromSql != fromFiles) throw CommandFailure("the two dossiers answer differently");
    db.Disconnect(local);
    db.Disconnect(sql);
}

const DemoStepRegistration kDossierTablesStep("20-dossier-tables", RunDossierTablesStep);

}  // namespace
}  // namespace fnrk::cli

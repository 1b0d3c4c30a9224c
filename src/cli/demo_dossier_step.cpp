// Demo step: the sample company "SOC1" built through the table-access class (a parameter table,
// accounts and a few entries), then opened and read back through it, once kept as files (the
// embedded engine) and once kept in SQL (the SQL backend), with the same answers.

#include <fstream>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/demo_steps.hpp"
#include "company/soc_param_col_class_api.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/shared_tables.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::cli {
namespace {

using namespace engine;  // option and status numbers

void Check(bool done, tables::AdsClass& ads, const char* what) {
    if (!done) throw CommandFailure(std::string(what) + " failed: " + ads.GetAdsLastError());
}

struct Table {
    const char* alias;
    const char* fields;
    const char* tag;
    const char* key;  // the tag's expression
};

// The VAT-code and country tables answer the invoice writer's look-ups (tax category, scheme of
// the electronic address).
constexpr Table kTables[] = {
    {"PARAM", "ID,C,25,0;VALUE,C,60,0;VALUEEXT,C,60,0", "ID", "ID"},
    {"ACF", "NUMBER,C,10,0;NAME1,C,40,0", "NUMBER", "NUMBER"},
    {"ACT", "DBKCODE,C,4,0;DOCNUMBER,C,10,0;ACCOUNTGL,C,10,0;AMOUNT,N,12,2;DOCDATE,D,8,0",
     "ACCOUNTGL", "ACCOUNTGL"},
    {"CODEVAT", "CODE,C,6,0;TAXCODE,C,3,0", "SEEKUBLVAT", "CODE"},
    {"COUNTRY", "CODE,C,3,0;XMLCODE,C,4,0", "SEEKEAS", "CODE"},
};

struct Lookup {
    const char* alias;
    const char* code;
    const char* field;
    const char* value;
};

constexpr Lookup kLookups[] = {{"CODEVAT", "V21", "TAXCODE", "S"},
                               {"CODEVAT", "V6", "TAXCODE", "S"},
                               {"CODEVAT", "V0", "TAXCODE", "E"},
                               {"COUNTRY", "BE", "XMLCODE", "0208"},
                               {"COUNTRY", "LU", "XMLCODE", "9938"}};

struct Entry {
    const char* journal;
    const char* document;
    const char* account;
    double amount;
    const char* date;
};

constexpr Entry kEntries[] = {{"VEN", "1", "400000", 1210.00, "15/01/2024"},
                              {"VEN", "1", "700000", -1210.00, "15/01/2024"},
                              {"ACH", "1", "604000", 99.50, "31/12/2024"},
                              {"ACH", "1", "400000", -99.50, "31/12/2024"}};

// Adds one record to the current table with the given field values.
void AddRecord(tables::AdsClass& ads, const char* alias,
               std::initializer_list<std::pair<const char*, tables::FieldValue>> values) {
    Check(ads.ActivateAlias(alias) == AE_SUCCESS, ads, "ActivateAlias");
    Check(ads.RecordAdd() == AE_SUCCESS, ads, "RecordAdd");
    for (const auto& [field, value] : values) {
        Check(ads.PutFieldValue(field, value), ads, "PutFieldValue");
    }
    Check(ads.FlushAndUnlock(alias) == AE_SUCCESS, ads, "FlushAndUnlock");
}

void BuildDossier(tables::AdsClass& ads) {
    for (const Table& table : kTables) {
        Handle created = 0;
        Check(
            ads.Database().CreateTable(ads.DossierConnection(), ads.StandardTablePath(table.alias),
                                       table.alias, ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                       ADS_IGNORERIGHTS, 0, table.fields, created) == AE_SUCCESS,
            ads, "CreateTable");
        Handle index = 0;
        Check(ads.Database().CreateIndex(created, "", table.tag, table.key, "", "", ADS_COMPOUND,
                                         index) == AE_SUCCESS,
              ads, "CreateIndex");
        Check(ads.Database().CloseTable(created) == AE_SUCCESS, ads, "CloseTable");
    }
    Check(ads.FileOpenParam() == AE_SUCCESS, ads, "FileOpenParam");
    AddRecord(ads, "PARAM", {{"ID", std::string("SOCNAME")}, {"VALUE", std::string("SOC1 sprl")}});
    AddRecord(ads, "PARAM",
              {{"ID", std::string("BOOKYEAR1.LONGLABEL")},
               {"VALUE", std::string("Exercice 2024")},
               {"VALUEEXT", std::string(" (01/01 - 31/12)")}});
    Check(ads.FileOpen("ACF") == AE_SUCCESS, ads, "FileOpen ACF");
    AddRecord(ads, "ACF", {{"NUMBER", std::string("700000")}, {"NAME1", std::string("Ventes")}});
    AddRecord(ads, "ACF", {{"NUMBER", std::string("400000")}, {"NAME1", std::string("Clients")}});
    AddRecord(ads, "ACF", {{"NUMBER", std::string("604000")}, {"NAME1", std::string("Achats")}});
    Check(ads.FileOpen("ACT") == AE_SUCCESS, ads, "FileOpen ACT");
    for (const Entry& entry : kEntries) {
        AddRecord(ads, "ACT",
                  {{"DBKCODE", std::string(entry.journal)},
                   {"DOCNUMBER", std::string(entry.document)},
                   {"ACCOUNTGL", std::string(entry.account)},
                   {"AMOUNT", entry.amount},
                   {"DOCDATE", std::string(entry.date)}});
    }
    AddRecord(ads, "PARAM",
              {{"ID", std::string("PEPPOLEMAILSENDER")},
               {"VALUE", std::string("invoices@soc1.example")}});
    for (const Lookup& lookup : kLookups) {
        Check(ads.IsAlias(lookup.alias) || ads.FileOpen(lookup.alias) == AE_SUCCESS, ads,
              "FileOpen");
        AddRecord(ads, lookup.alias,
                  {{"CODE", std::string(lookup.code)}, {lookup.field, std::string(lookup.value)}});
    }
    Check(ads.FileCloseAll(false) == AE_SUCCESS, ads, "FileCloseAll");
}

// Opens the dossier again and answers: company name and book-year label (parameters read by
// key), the accounts in record order, the number of entries, their balance and the last booking
// date.
std::string ReadDossier(tables::AdsClass& ads) {
    Check(ads.FileOpenParam() == AE_SUCCESS, ads, "FileOpenParam");
    std::string answer;
    company::SocParamColClassApi params(ads);
    for (const char* key : {"SocName", "BOOKYEAR1.LongLabel"}) {
        answer += params.GetParamValue(key) + ", ";
    }
    Check(ads.FileOpen("ACF") == AE_SUCCESS, ads, "FileOpen ACF");
    answer += "accounts";
    for (ads.MoveTop(); !ads.SelectionEof(); ads.moveNext()) {
        answer += " " + ads.GetStringValue("NUMBER") + " " + ads.GetStringValue("NAME1");
    }
    Check(ads.FileOpen("ACT") == AE_SUCCESS, ads, "FileOpen ACT");
    double balance = 0;
    std::string last;
    for (ads.MoveTop(); !ads.SelectionEof(); ads.moveNext()) {
        balance += ads.GetDoubleValue("AMOUNT");
        last = ads.GetDateValue("DOCDATE");
    }
    answer += ", entries " + std::to_string(ads.SelectionRecCount()) + ", balance " +
              platform::FormatNumber(balance, "#0.00") + ", last booked " + last;
    ads.FileCloseAll(false);
    return answer;
}

std::string BuildAndRead(tables::SqlDatabase& db, const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    tables::AdsClass ads(db);
    ads.SetInteractive(false);
    ads.SetDossierPrefix((folder / "SOC1").string());
    // Date format, epoch and hidden deleted records for the engine and every backend.
    Check(ads.Initialize() == AE_SUCCESS, ads, "Initialize");
    BuildDossier(ads);
    const std::string answer = ReadDossier(ads);
    ads.disconnect();
    return answer;
}

void RunDossierTablesStep(DemoContext& context) {
    tables::SqlDatabase& db = tables::SharedSqlDatabase();

    const auto data = context.dossierFolder.parent_path();
    const std::string fromFiles = BuildAndRead(db, data / "SOC1");
    context.out << "  SOC1 kept as files: " << fromFiles << "\n";

    // The same company kept in SQL: a folder marked by FRSQL.DBF whose "folder.data" names the
    // database.
    const auto sqlFolder = data / "SOC1SQL";
    std::filesystem::create_directories(sqlFolder);
    std::ofstream(sqlFolder / "FRSQL.DBF").flush();
    std::ofstream(sqlFolder / "folder.data")
        << "<connection><Driver>SQLite</Driver><Database>soc1.sqlite</Database></connection>\n";
    const std::string fromSql = BuildAndRead(db, sqlFolder);
    context.out << "  SOC1 kept in SQL:   " << fromSql << "\n"
                << "  same answers: " << (fromSql == fromFiles ? "yes" : "NO") << "\n";
    if (fromSql != fromFiles) throw CommandFailure("the two dossiers answer differently");
}

const DemoStepRegistration kDossierTablesStep("20-dossier-tables", RunDossierTablesStep);

}  // namespace
}  // namespace fnrk::cli

#include "einvoice/table_invoice_lookups.hpp"

#include <gtest/gtest.h>

#include "einvoice/fixed_invoice_lookups.hpp"
#include "support/run_command.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::einvoice {
namespace {

using tables::ads_testing::AdsTest;
using tables::ads_testing::Keeping;

class TableLookupsTest : public AdsTest {
  protected:
    // Creates a standard table, opens it and adds one record per row of field values.
    void Fill(const std::string& alias, const std::string& fields, const std::string& tag,
              const std::string& key,
              const std::vector<std::vector<std::pair<std::string, std::string>>>& rows) {
        CreateStandard(alias, fields, {{tag, key}});
        ASSERT_EQ(ads.FileOpen(alias), engine::AE_SUCCESS);
        for (const auto& row : rows) AddRecord(alias, row);
    }
};

TEST_P(TableLookupsTest, VatCategoriesAndSchemesComeFromTheCompanyTables) {
    Fill("CODEVAT", "CODE,C,6,0;TAXCODE,C,3,0;RATE,N,5,2", "SEEKUBLVAT", "CODE",
         {{{"CODE", "21"}, {"TAXCODE", "S"}},
          {{"CODE", "0"}, {"TAXCODE", " E "}},
          {{"CODE", "ICL"}, {"TAXCODE", "K"}}});
    Fill("COUNTRY", "CODE,C,3,0;NAME,C,20,0;XMLCODE,C,4,0", "SEEKEAS", "CODE",
         {{{"CODE", "BE"}, {"XMLCODE", "0208"}}, {{"CODE", "NL"}, {"XMLCODE", "0106"}}});
    CreateStandard("ACF", tables::ads_testing::kAccountFields, {{"NUMBER", "NUMBER"}});
    ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS);
    ASSERT_TRUE(ads.SetIndex("NUMBER"));

    TableInvoiceLookups lookups(ads);
    EXPECT_EQ(lookups.UblVatCategory(" 21 "), "S");
    EXPECT_EQ(lookups.UblVatCategory("0"), "E");
    EXPECT_EQ(lookups.UblVatCategory("ICL"), "K");
    EXPECT_EQ(lookups.UblVatCategory("6"), "");
    EXPECT_EQ(lookups.UblVatCategory("  "), "");
    EXPECT_EQ(lookups.EasScheme(" be"), "0208");
    EXPECT_EQ(lookups.EasScheme("NL"), "0106");
    EXPECT_EQ(lookups.EasScheme("LU"), "");
    // The caller's table and its order are as they were.
    EXPECT_EQ(ads.GetCurrentAlias(), "ACF");
    EXPECT_EQ(ads.GetIndexTagName(), "NUMBER");
    ASSERT_EQ(ads.ActivateAlias("CODEVAT"), engine::AE_SUCCESS);
    EXPECT_EQ(ads.GetIndexTagName(), "") << "the VAT-code table keeps its natural order";
    EXPECT_EQ(Shown(), "");
}

TEST_P(TableLookupsTest, ClosedTablesAreOpenedAndMissingOnesAnswerEmpty) {
    Fill("CODEVAT", "CODE,C,6,0;TAXCODE,C,3,0", "SEEKUBLVAT", "CODE",
         {{{"CODE", "21"}, {"TAXCODE", "S"}}});
    ASSERT_EQ(ads.FileClose("CODEVAT"), engine::AE_SUCCESS);
    CreateStandard("ACF", tables::ads_testing::kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS);
    TableInvoiceLookups lookups(ads);
    EXPECT_EQ(lookups.UblVatCategory("21"), "S");
    EXPECT_TRUE(ads.IsAlias("CODEVAT"));
    EXPECT_EQ(ads.GetCurrentAlias(), "ACF") << "opening the VAT-code table leaves the caller's";
    EXPECT_EQ(lookups.EasScheme("BE"), "") << "the dossier has no country table";
    EXPECT_EQ(lookups.ParamValue("INVNBDEC"), "") << "the parameter table is not open";
    EXPECT_EQ(Shown(), "") << "a missing table is no error for a look-up";

    // Values given with the invoice come first; the tables answer the rest.
    FixedInvoiceLookups given;
    given.SetVatCategory("21", "AE");
    given.SetFallback(&lookups);
    EXPECT_EQ(given.UblVatCategory("21"), "AE");
    given.SetVatCategory("6", "Z");
    EXPECT_EQ(given.UblVatCategory("6"), "Z");
    FixedInvoiceLookups empty;
    empty.SetFallback(&lookups);
    EXPECT_EQ(empty.UblVatCategory(" 21"), "S");
}

using InvoiceDossierTest = TableLookupsTest;

TEST_P(InvoiceDossierTest, CommandReadsWhatTheDescriptionLeavesOutFromTheDossier) {
    Fill("PARAM", "ID,C,25,0;VALUE,C,20,0;VALUEEXT,C,40,0", "ID", "ID",
         {{{"ID", "PEPPOLEMAILSENDER"}, {"VALUE", "invoices@atelier"}, {"VALUEEXT", ".example"}}});
    Fill("CODEVAT", "CODE,C,6,0;TAXCODE,C,3,0", "SEEKUBLVAT", "CODE",
         {{{"CODE", "V0"}, {"TAXCODE", "Z"}}});
    Fill("COUNTRY", "CODE,C,3,0;XMLCODE,C,4,0", "SEEKEAS", "CODE",
         {{{"CODE", "BE"}, {"XMLCODE", "0208"}}});
    ASSERT_EQ(db.CloseAllTables(), engine::AE_SUCCESS);
    const std::filesystem::path in = folder / "invoice.json";
    const std::filesystem::path out = folder / "invoice.xml";
    fnrk::testing::WriteFileBytes(in, R"({
      "number": "F-7", "issueDate": "14/03/2025", "orderReference": "PO-7",
      "supplier": {"vatNumber": "BE0477472701", "name": "Atelier", "countryCode": "BE"},
      "customer": {"vatNumber": "BE0812345603", "name": "Client", "countryCode": "BE"},
      "vat": [{"rate": 0, "taxable": 100, "tax": 0, "vatCode": "V0"}],
      "totals": {"tax": 0, "lines": 100, "withoutVat": 100, "withVat": 100, "payable": 100},
      "lines": [{"number": "1", "quantity": 1, "unitPrice": 100, "amount": 100,
                 "vatCode": "V0", "vatRate": 0, "tax": 0, "name": "Shelf"}]})");
    const auto result =
        fnrk::testing::RunFennrick({"invoice", "--profile", "peppol3", "--in", in.string(), "--out",
                                    out.string(), "--dossier", dossier.string()});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const std::string xml = fnrk::testing::ReadFileBytes(out);
    // "Z" comes from the VAT-code table only: without it a zero rate would be written "E".
    for (const char* expected :
         {"<cbc:ElectronicMail>invoices@atelier.example</cbc:ElectronicMail>",
          "<cbc:EndpointID schemeID=\"0208\">0477472701</cbc:EndpointID>", "<cbc:ID>Z</cbc:ID>"})
        EXPECT_NE(xml.find(expected), std::string::npos) << expected << "\n" << xml;

    // A folder that is no dossier is named, and no file is left behind.
    std::filesystem::remove(out);
    const auto refused =
        fnrk::testing::RunFennrick({"invoice", "--profile", "peppol3", "--in", in.string(), "--out",
                                    out.string(), "--dossier", (folder / "NONE").string()});
    EXPECT_NE(refused.exitCode, 0);
    EXPECT_NE(refused.err.find("NONE"), std::string::npos) << refused.err;
    EXPECT_FALSE(std::filesystem::exists(out));
}

INSTANTIATE_TEST_SUITE_P(Keeping, InvoiceDossierTest, ::testing::Values(Keeping::Files),
                         tables::ads_testing::KeepingName);

INSTANTIATE_TEST_SUITE_P(Keeping, TableLookupsTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::einvoice

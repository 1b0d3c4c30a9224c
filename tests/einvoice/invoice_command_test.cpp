#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"
#include "xml_probe.hpp"

namespace fnrk::einvoice {
namespace {

using nlohmann::json;

// One line at 21% and one exempt line, with a PDF next to the JSON file.
json SmallInvoice() {
    return json::parse(R"({
      "number": "F-12", "issueDate": "14/03/2025", "dueDate": "13/04/2025",
      "taxPointDate": "14/03/2025", "currency": "EUR", "note": "Merci & à bientôt",
      "orderReference": "PO-1", "attachment": "F-12.pdf",
      "supplier": {"vatNumber": "BE0477472701", "name": "Atelier", "street": "Rue 1",
                   "city": "Liège", "postalCode": "4000", "countryCode": "BE",
                   "countryName": "Belgique"},
      "customer": {"vatNumber": "BE0812345603", "name": "Client", "city": "Gent",
                   "countryCode": "BE", "email": "ap@client.example"},
      "payment": {"structuredReference": "+++090/9337/55493+++", "iban": "BE68 5390 0754 7034",
                  "bic": "GKCCBEBB", "discountDays": "8", "discountPercent": 2,
                  "discountAmount": 2.4},
      "vat": [{"rate": 21, "taxable": 100, "tax": 21, "vatCode": "V21"},
              {"rate": 0, "taxable": 20, "tax": 0, "vatCode": "V0",
               "exemptionReason": "TAXEXEMPTIONREASON"}],
      "totals": {"tax": 21, "lines": 120, "withoutVat": 120, "withVat": 141, "payable": 141},
      "lines": [{"number": "1", "quantity": 2, "unitPrice": 50, "amount": 100, "vatCode": "V21",
                 "vatRate": 21, "tax": 21, "name": "Shelf", "description": ["Oak shelf"]},
                {"number": "2", "quantity": 1, "unitPrice": 20, "amount": 20, "vatCode": "V0",
                 "name": "Manual"}],
      "parameters": {"INVNBDECQT": "3", "PEPPOLEmailSender": "invoices@atelier.example"},
      "lookups": {"vatCategories": {"V21": "S", "V0": "E"}, "easSchemes": {"BE": "0208"}}
    })");
}

class InvoiceCommandTest : public ::testing::Test {
  protected:
    testing::TempDir dir;
    std::filesystem::path in = dir / "invoice.json";
    std::filesystem::path out = dir / "invoice.xml";

    testing::CommandResult Run(const json& description, const std::string& profile,
                               bool creditNote = false) {
        testing::WriteFileBytes(in, description.dump());
        std::vector<std::string> args = {"invoice",   "--profile", profile,     "--in",
                                         in.string(), "--out",     out.string()};
        if (creditNote) args.push_back("--credit-note");
        return testing::RunFennrick(args);
    }
};

TEST_F(InvoiceCommandTest, WritesEachProfile) {
    testing::WriteFileBytes(dir / "F-12.pdf", "%PDF-1.4 small");
    testing::CommandResult result = Run(SmallInvoice(), "peppol3");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.out.find(out.string()), std::string::npos);
    {
        const testing::XmlProbe xml(out);
        EXPECT_EQ(xml.Text("/doc:Invoice/cbc:ID"), "F-12");
        EXPECT_EQ(xml.Text("/doc:Invoice/cbc:Note"), "Merci & à bientôt");
        EXPECT_EQ(xml.Text("//cac:InvoiceLine[1]/cbc:InvoicedQuantity"), "2.000");
        EXPECT_EQ(xml.Text("//cac:AccountingSupplierParty//cbc:ElectronicMail"),
                  "invoices@atelier.example");
        EXPECT_EQ(xml.Text("//cac:TaxSubtotal[2]//cbc:TaxExemptionReason"), "Exempt from tax");
        EXPECT_EQ(xml.Text("//cbc:EmbeddedDocumentBinaryObject/@filename"), "F-12.pdf");
    }
    result = Run(SmallInvoice(), "PEPPOL3", true);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(testing::XmlProbe(out).Count("/doc:CreditNote/cac:CreditNoteLine"), 2);

    result = Run(SmallInvoice(), "basic");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(testing::XmlProbe(out).Text("/doc:Invoice/cbc:UBLVersionID"), "2.0");
    result = Run(SmallInvoice(), "efff");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(testing::XmlProbe(out).Text("/doc:Invoice/cbc:UBLVersionID"), "2.1");
}

TEST_F(InvoiceCommandTest, IntraCommunitySupplyCarriesDeliveryPeriodAndReasonCode) {
    json supply = SmallInvoice();
    supply["customer"]["countryCode"] = "NL";
    supply["deliveryDate"] = "10/03/2025";
    supply["deliverToCountry"] = "NL";
    supply["invoicePeriod"] = {{"start", "01/03/2025"}, {"end", "10/03/2025"}};
    supply["lookups"]["vatCategories"]["V0"] = "K";
    supply["vat"][1]["exemptionReasonCode"] = "VATEX-EU-IC";
    supply["vat"][1]["exemptionReason"] = "";
    const testing::CommandResult result = Run(supply, "peppol3");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const testing::XmlProbe xml(out);
    EXPECT_EQ(xml.Text("//cac:Delivery/cbc:ActualDeliveryDate"), "2025-03-10");
    EXPECT_EQ(xml.Text("//cac:Delivery//cbc:IdentificationCode"), "NL");
    EXPECT_EQ(xml.Text("//cac:InvoicePeriod/cbc:EndDate"), "2025-03-10");
    EXPECT_EQ(xml.Text("//cac:TaxSubtotal[2]//cbc:TaxExemptionReasonCode"), "VATEX-EU-IC");
    EXPECT_EQ(xml.Text("//cac:TaxSubtotal[2]//cbc:TaxExemptionReason"), "Intra-community supply");

    supply["invoicePeriod"]["start"] = "11/03/2025";
    const testing::CommandResult refused = Run(supply, "peppol3");
    EXPECT_NE(refused.exitCode, 0);
    EXPECT_NE(refused.err.find("field invoicePeriod: the period ends before it starts"),
              std::string::npos)
        << refused.err;
}

TEST_F(InvoiceCommandTest, BadDescriptionsNameTheFieldAndLeaveNoFile) {
    const auto expectRefused = [&](const json& description, const std::string& field) {
        const testing::CommandResult result = Run(description, "peppol3");
        EXPECT_NE(result.exitCode, 0);
        EXPECT_NE(result.err.find(field), std::string::npos) << result.err;
        EXPECT_FALSE(std::filesystem::exists(out)) << field;
    };
    json missing = SmallInvoice();
    missing["customer"].erase("name");
    expectRefused(missing, "field customer.name: missing");
    json wrongType = SmallInvoice();
    wrongType["lines"][1]["quantity"] = "1";
    expectRefused(wrongType, "field lines[1].quantity: must be a number");
    json badDate = SmallInvoice();
    badDate["issueDate"] = "2025/03/14";
    expectRefused(badDate, "field issueDate:");
    json misspelt = SmallInvoice();
    misspelt["payment"]["ibann"] = "x";
    expectRefused(misspelt, "field payment.ibann: unknown field");
    json badLookup = SmallInvoice();
    badLookup["lookups"]["vatCategories"]["V6"] = 6;
    expectRefused(badLookup, "field lookups.vatCategories.V6: must be a text");
    json noLines = SmallInvoice();
    noLines.erase("lines");
    expectRefused(noLines, "field lines: missing");
    expectRefused(json::array(), "the document must be a JSON object");

    testing::WriteFileBytes(in, "{\"number\": ");
    const testing::CommandResult broken = testing::RunFennrick(
        {"invoice", "--profile", "basic", "--in", in.string(), "--out", out.string()});
    EXPECT_NE(broken.exitCode, 0);
    EXPECT_NE(broken.err.find("is not valid JSON"), std::string::npos) << broken.err;
    EXPECT_FALSE(std::filesystem::exists(out));

    const testing::CommandResult unknownProfile = Run(SmallInvoice(), "pdf");
    EXPECT_NE(unknownProfile.exitCode, 0);
    EXPECT_FALSE(std::filesystem::exists(out));
}

}  // namespace
}  // namespace fnrk::einvoice

// A sales invoice written entirely through the member table, section by section in the order
// the sales module calls the invoice members, with the company's own parameter, VAT-code and
// country tables answering the look-ups; the files are checked by the shared validation tool
// (UBL schema, and for PEPPOL BIS 3 the PEPPOL and EN 16931 rules).

#include <gtest/gtest.h>

#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include "facade_fixture.hpp"
#include "platform/text.hpp"
#include "support/invoice_validation.hpp"

namespace fnrk::facade {
namespace {

using testing::FacadeTest;

struct SampleLine {
    const char* number;
    double quantity;
    double unitPrice;
    double discount;
    const char* vatCode;
    double rate;
    const char* name;
    const char* description;
};

constexpr SampleLine kLines[] = {
    {"1", 10, 50.00, 0.0, "V21", 21.0, "Oak shelf", "Oak shelf, 80 cm"},
    {"2", 4, 100.00, 40.00, "V12", 12.0, "Renovation work", "Renovation work"},
    {"3", 3, 40.00, 0.0, "V6", 6.0, "Manual", "Assembly manual"},
    {"4", 1, 200.00, 0.0, "V0", 0.0, "Training", "Training day"},
};

std::vector<Variant> Party(std::initializer_list<const char*> values) {
    std::vector<Variant> party;
    for (const char* value : values) party.emplace_back(value);
    return party;
}

class InvoiceMembersTest : public FacadeTest {
  protected:
    void SetUp() override {
        FacadeTest::SetUp();
        OpenCompanyTables({{{"ID", std::string("INVNBDECQT")}, {"VALUE", std::string("2")}},
                           {{"ID", std::string("INVNBDEC")}, {"VALUE", std::string("2")}},
                           {{"ID", std::string("PEPPOLEMAILSENDER")},
                            {"VALUE", std::string("invoices@atelier.example")}}});
        CreateTable("CODEVAT", "CODE,C,6,0;TAXCODE,C,3,0", {{"SEEKUBLVAT", "CODE"}},
                    {{{"CODE", std::string("V21")}, {"TAXCODE", std::string("S")}},
                     {{"CODE", std::string("V12")}, {"TAXCODE", std::string("S")}},
                     {{"CODE", std::string("V6")}, {"TAXCODE", std::string("S")}},
                     {{"CODE", std::string("V0")}, {"TAXCODE", std::string("E")}}});
        CreateTable("COUNTRY", "CODE,C,3,0;XMLCODE,C,4,0", {{"SEEKEAS", "CODE"}},
                    {{{"CODE", std::string("BE")}, {"XMLCODE", std::string("0208")}}});
        ASSERT_EQ(Tables().ActivateAlias("ACT"), engine::AE_SUCCESS);
        pdf = (folder / "INV2025-0042.pdf").string();
        fnrk::testing::WriteFileBytes(pdf, "%PDF-1.4\n1 0 obj <<>> endobj\ntrailer <<>>\n%%EOF\n");
    }

    // A section member; its boolean answer must be true.
    void Section(const std::string& member, std::vector<Variant> values) {
        values.insert(values.begin(), registry);
        EXPECT_EQ(Call(member, std::move(values)), Variant(true)) << member;
    }
    // A UBL...Format member with the format word after the registry.
    void Format(const std::string& member, const std::string& word, std::vector<Variant> values) {
        values.insert(values.begin(), Variant(word));
        Section(member, std::move(values));
    }

    std::vector<Variant> Supplier() const {
        return Party({"BE0477472701", "Atelier Fennrick SPRL", "Rue de l'Été 12", "Liège", "4000",
                      "BE", "Belgique", "+32 4 123 45 67", "", "sales@atelier.example"});
    }
    std::vector<Variant> Customer() const {
        return Party({"BE0812345603", "Brasserie Ölbaum NV", "Kerkstraat 5", "Gent", "9000", "BE",
                      "België", "+32 9 765 43 21", "", "ap@olbaum.example"});
    }

    void SubTotals() {
        Section("UBLInitTableSubTotal", {});
        Section("UBLAddSubTotalVATInfo",
                {Variant(21.0), Variant(460.60), Variant(96.73), Variant("V21"), Variant("")});
        Section("UBLAddSubTotalVATInfo",
                {Variant(12.0), Variant(352.80), Variant(42.34), Variant("V12"), Variant("")});
        Section("UBLAddSubTotalVATInfo",
                {Variant(6.0), Variant(117.60), Variant(7.06), Variant("V6"), Variant("")});
        Section("UBLAddSubTotalVATInfo", {Variant(0), Variant(200), Variant(0), Variant("V0"),
                                          Variant("TAXEXEMPTIONREASON")});
    }

    // Each line: its description, then the line member with the line's values.
    void Lines(const std::string& member, const std::string& word) {
        for (const SampleLine& line : kLines) {
            Section("UBLResetLineDescription", {});
            Section("UBLAddLineDescription", {Variant(line.description)});
            const double gross = line.quantity * line.unitPrice;
            const double amount = gross - line.discount;
            Format(member, word,
                   {Variant(line.number), Variant(""), Variant(line.quantity), Variant(amount),
                    Variant(line.discount == 0.0 ? 0.0 : line.discount * 100.0 / gross),
                    Variant(line.discount), Variant(line.vatCode), Variant(line.rate),
                    Variant(platform::RoundHalfEven(amount * line.rate / 100.0, 2)),
                    Variant(line.rate == 0.0 ? "TAXEXEMPTIONREASON" : ""),
                    Variant(std::string("ART-") + line.number), Variant(line.unitPrice),
                    Variant(line.name)});
        }
    }

    // The number of nodes an XPath finds in the file (cbc and cac are the UBL prefixes).
    static int Count(const std::filesystem::path& file, const std::string& xpath) {
        xmlDocPtr doc = xmlReadFile(file.string().c_str(), nullptr, XML_PARSE_NONET);
        if (doc == nullptr) return -1;
        xmlXPathContextPtr context = xmlXPathNewContext(doc);
        xmlXPathRegisterNs(context, BAD_CAST "cbc",
                           BAD_CAST
                           "urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2");
        xmlXPathRegisterNs(
            context, BAD_CAST "cac",
            BAD_CAST "urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2");
        xmlXPathObjectPtr found = xmlXPathEvalExpression(BAD_CAST xpath.c_str(), context);
        const int count =
            found != nullptr && found->nodesetval != nullptr ? found->nodesetval->nodeNr : 0;
        xmlXPathFreeObject(found);
        xmlXPathFreeContext(context);
        xmlFreeDoc(doc);
        return count;
    }

    Variant registry = RegistryOf({{"ACT", 0, 1}, {"PARAM", 0, 2}, {"CSF", 0, 3}});
    std::string pdf;
};

TEST_F(InvoiceMembersTest, APeppolInvoiceWrittenThroughTheMembersPassesThePeppolRules) {
    const std::string word = "PEPPOLV3";
    Format("UBLInitFormat", word,
           {Variant("INV2025-0042"), Variant("14/03/2025"), Variant("13/04/2025"), Variant(false),
            Variant("Thank you for your order & your trust <3"), Variant("EUR")});
    Format("UBLOrderReferenceFormat", word, {Variant("PO-7781")});
    Format("UBLAddAdditionalDocRefFormat", word, {Variant(pdf)});
    Format("UBLAccountingSupplierPartFormat", word, Supplier());
    Section("SetCustomerPEPPOLID", {Variant(""), Variant("")});
    Format("UBLAccountingCustomerPartFormat", word, Customer());
    Format("UBLPaymentMeansFormat", word,
           {Variant("13/04/2025"), Variant("+++090/9337/55493+++"), Variant("BE68 5390 0754 7034"),
            Variant("GKCCBEBB")});
    Format("UBLPaymentTermsFormat", word,
           {Variant("8"), Variant(2.0), Variant(19.0), Variant(1296.13 - 19.0)});
    Section("PEPPOLAllowanceChargeFormatVatBase",
            {Variant(false), Variant(50.0), Variant("V21"), Variant(21.0), Variant(10.0)});
    Format("UBLAllowanceChargeFormat", word,
           {Variant(true), Variant("Transport"), Variant(20.0), Variant("V21"), Variant(21.0)});
    Section("PEPPOLAllowanceChargeFormatVatBase",
            {Variant(true), Variant(9.40), Variant("V21"), Variant(21.0), Variant(2.0)});
    Section("PEPPOLAllowanceChargeFormatVatBase",
            {Variant(true), Variant(7.20), Variant("V12"), Variant(12.0), Variant(2.0)});
    Section("PEPPOLAllowanceChargeFormatVatBase",
            {Variant(true), Variant(2.40), Variant("V6"), Variant(6.0), Variant(2.0)});
    Format("UBLAllowanceChargeFormat", word,
           {Variant(true), Variant("Cash Discount"), Variant(19.0), Variant("V0"), Variant(0)});
    SubTotals();
    Format("UBLTaxTotalFormat", word, {Variant(146.13), Variant(19.0)});
    Format("UBLLegalMonetaryTotalFormat", word,
           {Variant("1180.00"), Variant("1150.00"), Variant("1296.13"), Variant("69.00"),
            Variant("39.00"), Variant("0.00"), Variant("1296.13")});
    Lines("UBLInvoiceLineFormat", word);
    const std::filesystem::path file = folder / "INV2025-0042.xml";
    Section("UBLSavefile", {Variant(file.string())});
    Section("UBLClose", {});
    EXPECT_EQ(Tables().GetCurrentAlias(), "ACT") << "the caller's current table";

    const fnrk::testing::CommandResult result = fnrk::testing::ValidateInvoice(file, true);
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    EXPECT_EQ(result.out.find("fatal"), std::string::npos) << result.out;
    // The look-ups came from the company's tables.
    EXPECT_EQ(Count(file, "//cbc:EndpointID[@schemeID='0208']"), 2);
    EXPECT_EQ(Count(file,
                    "//cac:AccountingSupplierParty//cbc:ElectronicMail"
                    "[.='invoices@atelier.example']"),
              1);
    EXPECT_EQ(Count(file, "/*/cac:TaxTotal/cac:TaxSubtotal/cac:TaxCategory[cbc:ID='E']"), 1);
    EXPECT_EQ(Count(file, "//cac:InvoiceLine"), 4);
    EXPECT_EQ(Count(file, "//cbc:EmbeddedDocumentBinaryObject[@filename='INV2025-0042.pdf']"), 1);
}

TEST_F(InvoiceMembersTest, AnEfffPeppolInvoiceWrittenThroughTheMembersIsValidUbl21) {
    const std::string word = "EFFFPEPPOL";
    Format("UBLInitFormat", word,
           {Variant("INV2025-0042"), Variant("14/03/2025"), Variant(false), Variant("Thanks"),
            Variant("14/03/2025"), Variant("EUR")});
    Format("UBLOrderReferenceFormat", word, {Variant("PO-7781")});
    Format("UBLAddAdditionalDocRefFormat", word, {Variant(pdf)});
    Format("UBLAccountingSupplierPartFormat", word, Supplier());
    Format("UBLAccountingCustomerPartFormat", word, Customer());
    Format("UBLPaymentMeansFormat", word,
           {Variant("13/04/2025"), Variant("+++090/9337/55493+++"), Variant("BE68 5390 0754 7034"),
            Variant("GKCCBEBB")});
    Format("UBLPaymentTermsV2Format", word,
           {Variant("30 days"), Variant(2.0), Variant(19.0), Variant("22/03/2025")});
    Format("UBLAllowanceChargeFormat", word, {Variant(false), Variant(50.0)});
    Format("UBLAllowanceChargeFormat", word, {Variant(true), Variant(20.0)});
    SubTotals();
    Format("UBLTaxTotalFormat", word, {Variant(146.13), Variant(19.0)});
    Format("UBLLegalMonetaryTotalFormat", word,
           {Variant("1180.00"), Variant("1150.00"), Variant("1296.13"), Variant("50.00"),
            Variant("0"), Variant("1296.13")});
    Lines("UBLInvoiceLineFormat", word);
    const std::filesystem::path file = folder / "efff.xml";
    Section("UBLSavefile", {Variant(file.string())});
    Section("UBLClose", {});

    const fnrk::testing::CommandResult result = fnrk::testing::ValidateInvoice(file, false);
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    EXPECT_EQ(Count(file, "//cac:InvoiceLine"), 4);
}

TEST_F(InvoiceMembersTest, AFormatWordChoosesAFamilyThatHasTheSection) {
    std::vector<Variant> args = {registry,     Variant("PEPPOLV3"), Variant("x"),
                                 Variant(1.0), Variant(0.0),        Variant("")};
    try {
        Call("UBLPaymentTermsV2Format", args);
        FAIL() << "PEPPOL BIS 3 has no second payment-terms section";
    } catch (const FacadeError& error) {
        EXPECT_EQ(error.number(), kErrInvalidCall);
        EXPECT_NE(std::string(error.what()).find("no such section"), std::string::npos);
    }
    args[1] = Variant("XRECHNUNG");
    EXPECT_THROW(Call("UBLTaxTotalFormat", args), FacadeError);
    // The basic family's members are reached by "UBL" (and "EFFF").
    EXPECT_EQ(Call("UBLInitFormat",
                   {registry, Variant("ubl"), Variant("1"), Variant("14/03/2025"), Variant(false),
                    Variant(""), Variant("14/03/2025"), Variant("EUR"), Variant(1)}),
              Variant(true));
    // A section before an Init writes nothing and answers false, as the writer does.
    EXPECT_EQ(Call("UBLClose", {registry}), Variant(true));
    EXPECT_EQ(Call("UBLTaxTotal", {registry, Variant(1.0)}), Variant(false));
}

}  // namespace
}  // namespace fnrk::facade

#include <gtest/gtest.h>

#include "writer_test.hpp"

#include "comma_locale.hpp"

namespace fnrk::einvoice {
namespace {

using Names = std::vector<std::string>;

const UblParty kSupplier = {"be0477.472.701", "Atelier", "Rue 1", "Liège", "4000", "BE",
                            "Belgique",       "",        "",      ""};
const UblParty kCustomer = {"NA", "Client", "Straat 2", "Gent",   "9000",
                            "BE", "België", "09 123",   "09 124", "a@b.example"};

class BasicFamilyTest : public WriterTest {
  protected:
    clsUBL writer{lookups};

    testing::XmlProbe Save() { return WriterTest::Save(writer); }
};

TEST_F(BasicFamilyTest, HeaderPartiesAndPayment) {
    ASSERT_TRUE(
        writer.InitXML(" 2025/7 ", "14/03/2025", false, " Note ", "15/03/2025", " EUR ", 3));
    writer.CustomerWithoutVat(true);
    EXPECT_TRUE(writer.AccountingSupplierPart(kSupplier));
    EXPECT_TRUE(writer.AccountingCustomerPart(kCustomer));
    EXPECT_TRUE(writer.PaymentMeans("13/04/2025", "", "Thanks", "BE68 5390", "GKCCBEBB"));
    EXPECT_TRUE(writer.PaymentTerms("30 days", 2));
    EXPECT_TRUE(writer.AllowanceCharge(false, 10, 50));
    EXPECT_TRUE(writer.AllowanceCharge(true, 0, 20));
    const testing::XmlProbe xml = Save();

    EXPECT_EQ(xml.RootNamespaces().size(), 7u);
    EXPECT_EQ(xml.RootNamespaces().front(),
              "qdt=urn:oasis:names:specification:ubl:schema:xsd:QualifiedDatatypes-2");
    EXPECT_EQ(xml.RootNamespaces().back(),
              "=urn:oasis:names:specification:ubl:schema:xsd:Invoice-2");
    EXPECT_EQ(
        xml.ChildNames("/doc:Invoice"),
        (Names{"cbc:UBLVersionID", "cbc:CustomizationID", "cbc:ProfileID", "cbc:ID",
               "cbc:CopyIndicator", "cbc:IssueDate", "cbc:InvoiceTypeCode", "cbc:Note",
               "cbc:TaxPointDate", "cbc:DocumentCurrencyCode", "cbc:LineCountNumeric",
               "cac:AccountingSupplierParty", "cac:AccountingCustomerParty", "cac:PaymentMeans",
               "cac:PaymentTerms", "cac:AllowanceCharge", "cac:AllowanceCharge"}));
    EXPECT_EQ(xml.Text("/doc:Invoice/cbc:ID"), "2025/7");
    EXPECT_EQ(xml.Text("/doc:Invoice/cbc:IssueDate"), "2025-03-14");
    EXPECT_EQ(xml.Text("/doc:Invoice/cbc:InvoiceTypeCode"), "380");
    EXPECT_EQ(xml.Text("/doc:Invoice/cbc:ProfileID"), "E-FFF.BE FennRick");
    EXPECT_EQ(xml.Text("/doc:Invoice/cbc:LineCountNumeric"), "3");

    const std::string supplierId = "//cac:AccountingSupplierParty//cac:PartyIdentification/cbc:ID";
    EXPECT_EQ(xml.Text(supplierId), "0477472701");
    EXPECT_EQ(xml.AttributeNames(supplierId),
              (Names{"schemeAgencyName", "schemeAgencyID", "schemeURI"}));
    EXPECT_EQ(xml.Text(supplierId + "/@schemeAgencyID"), "BE");
    EXPECT_EQ(xml.Text("//cac:AccountingSupplierParty//cac:Country/cbc:Name"), "Belgique");
    EXPECT_EQ(xml.Text("//cac:AccountingSupplierParty//cac:PartyTaxScheme/cbc:CompanyID"),
              "be0477.472.701");

    const std::string customerId = "//cac:AccountingCustomerParty//cac:PartyIdentification/cbc:ID";
    EXPECT_EQ(xml.AttributeNames(customerId),
              (Names{"schemeURI", "schemeAgencyName", "schemeAgencyID"}));
    EXPECT_EQ(xml.Text(customerId + "/@schemeAgencyID"), "");
    EXPECT_EQ(xml.ChildNames("//cac:AccountingCustomerParty"),
              (Names{"cbc:CustomerAssignedAccountID", "cac:Party"}));
    EXPECT_EQ(
        xml.ChildNames("//cac:AccountingCustomerParty/cac:Party"),
        (Names{"cac:PartyIdentification", "cac:PartyName", "cac:PostalAddress", "cac:Contact"}));
    EXPECT_EQ(xml.Text("//cac:Contact/cbc:Telefax"), "09 124");

    EXPECT_EQ(xml.ChildNames("//cac:PaymentMeans"),
              (Names{"cbc:PaymentMeansCode", "cbc:PaymentDueDate", "cbc:InstructionNote",
                     "cac:PayeeFinancialAccount"}));
    EXPECT_EQ(xml.AttributeNames("//cbc:PaymentMeansCode"),
              (Names{"listURI", "listName", "listID"}));
    EXPECT_EQ(xml.Text("//cac:FinancialInstitution/cbc:ID"), "GKCCBEBB");
    EXPECT_EQ(xml.Text("//cac:PaymentTerms/cbc:SettlementDiscountPercent"), "2.00");
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[1]/cbc:AllowanceChargeReasonCode"), "19");
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[2]/cbc:AllowanceChargeReasonCode"), "ZZZ");
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[2]/cbc:ChargeIndicator"), "true");
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[1]/cbc:Amount/@currencyID"), "EUR");
}

TEST_F(BasicFamilyTest, CreditNoteKeepsTheInvoiceRoot) {
    ASSERT_TRUE(writer.InitXML("C1", "14/03/2025", true, "", "", "EUR", 0));
    const testing::XmlProbe xml = Save();
    EXPECT_EQ(xml.Count("/doc:Invoice"), 1);
    EXPECT_EQ(xml.Text("/doc:Invoice/cbc:InvoiceTypeCode"), "381");
}

TEST_F(BasicFamilyTest, IssueAndTaxPointDatesAreAlwaysWritten) {
    // No tax point of its own: the VAT falls due on the issue date.
    ASSERT_TRUE(writer.InitXML("1", "14/03/2025", false, "", "  /  /    ", "EUR", 0));
    const testing::XmlProbe xml = Save();
    EXPECT_EQ(xml.Text("/doc:Invoice/cbc:IssueDate"), "2025-03-14");
    EXPECT_EQ(xml.Text("/doc:Invoice/cbc:TaxPointDate"), "2025-03-14");

    // A document without issue date is refused rather than written with an empty date.
    clsUBL other(lookups);
    EXPECT_FALSE(other.InitXML("2", "", false, "", "14/03/2025", "EUR", 0));
    EXPECT_FALSE(other.AccountingSupplierPart({}));
}

TEST_F(BasicFamilyTest, CashDiscountRowAndPriceDecimals) {
    lookups.SetParam("INVNBDEC", "4");
    ASSERT_TRUE(writer.InitXML("1", "14/03/2025", false, "", "", "EUR", 1));
    writer.InitTableSubTotal();
    writer.AddTableSubtotal(21, 90.2, 18.94, "V21", "");
    EXPECT_TRUE(writer.TaxTotal(18.94, 1.84));
    UblLine line;
    line.quantity = 3;
    line.unitPrice = 30.6667;
    line.lineAmount = 92.0;
    EXPECT_TRUE(writer.InvoiceLine(line));
    const testing::XmlProbe xml = Save();
    // The cash discount has its own exempt row, so the taxable amounts add up to 92.04.
    EXPECT_EQ(xml.Count("/doc:Invoice/cac:TaxTotal/cac:TaxSubtotal"), 2);
    const std::string cash = "/doc:Invoice/cac:TaxTotal/cac:TaxSubtotal[2]";
    EXPECT_EQ(xml.Text(cash + "/cbc:TaxableAmount"), "1.84");
    EXPECT_EQ(xml.Text(cash + "/cac:TaxCategory/cbc:ID"), "E");
    EXPECT_EQ(xml.Text(cash + "/cac:TaxCategory/cbc:Name"), "NA");
    EXPECT_EQ(xml.Text(cash + "/cac:TaxCategory/cbc:TaxExemptionReason"), "Cash Discount");
    EXPECT_EQ(xml.Text("//cac:Price/cbc:PriceAmount"), "30.6667");
}

TEST_F(BasicFamilyTest, EmptyBicAndTermsNoteKeepTheirElements) {
    ASSERT_TRUE(writer.InitXML("1", "14/03/2025", false, "", "", "EUR", 0));
    EXPECT_TRUE(writer.PaymentMeans("13/04/2025", "", "", "BE68539007547034", " "));
    EXPECT_TRUE(writer.PaymentTerms(" ", 0));
    const testing::XmlProbe xml = Save();
    EXPECT_EQ(xml.Count("//cac:FinancialInstitutionBranch/cac:FinancialInstitution/cbc:ID"), 1);
    EXPECT_EQ(xml.Text("//cac:FinancialInstitution/cbc:ID/@schemeName"), "BIC");
    EXPECT_EQ(xml.ChildNames("//cac:PaymentTerms"),
              (Names{"cbc:Note", "cbc:SettlementDiscountPercent"}));
}

TEST_F(BasicFamilyTest, TotalsUnderACommaLocale) {
    testing::CommaDecimalLocale comma;
    ASSERT_TRUE(writer.InitXML("1", "14/03/2025", false, "", "", "EUR", 1));
    EXPECT_EQ(writer.DecimalSeparator(), ',');
    writer.InitTableSubTotal();
    EXPECT_TRUE(writer.TaxTotal(0));
    writer.AddTableSubtotal(21, 1234.5, 259.245, "V21", "");
    writer.AddTableSubtotal(6, 100, 6, "UNKNOWN", "");
    EXPECT_TRUE(writer.TaxTotal(265.25));
    writer.InitTableSubTotal();
    writer.AddTableSubtotal(12, 10, 1.2, "V12", "");
    EXPECT_TRUE(writer.TaxTotal(1.2));
    EXPECT_TRUE(writer.LegalMonetaryTotal("1234,5", "1234.50", "1499.75", "0", "0,00", "1499.75"));
    EXPECT_TRUE(writer.LegalMonetaryTotal("10", "10", "12.10", "5", "2", "5.10"));
    const testing::XmlProbe xml = Save();

    EXPECT_EQ(xml.ChildNames("(//cac:TaxTotal)[1]"), (Names{"cbc:TaxAmount"}));
    EXPECT_EQ(xml.Count("(//cac:TaxTotal)[2]/cac:TaxSubtotal"), 2);
    const std::string first = "(//cac:TaxTotal)[2]/cac:TaxSubtotal[1]";
    EXPECT_EQ(xml.Text(first + "/cbc:TaxableAmount"), "1234.50");
    EXPECT_EQ(xml.Text(first + "/cbc:TaxAmount"), "259.25");
    EXPECT_EQ(xml.Text(first + "/cbc:Percent"), "21.00");
    EXPECT_EQ(xml.Text(first + "/cac:TaxCategory/cbc:ID"), "S");
    EXPECT_EQ(xml.Text(first + "/cac:TaxCategory/cbc:ID/@schemeName"),
              "Duty or tax of fee category");
    EXPECT_EQ(xml.Text(first + "/cac:TaxCategory/cbc:ID/@schemeID"), "UN/EDIFACT 5305");
    EXPECT_EQ(xml.Text("(//cac:TaxTotal)[2]/cac:TaxSubtotal[2]/cac:TaxCategory/cbc:ID"), "");
    EXPECT_EQ(xml.Text("(//cac:TaxTotal)[3]/cac:TaxSubtotal/cbc:Percent"), "12.00");

    EXPECT_EQ(xml.ChildNames("(//cac:LegalMonetaryTotal)[1]"),
              (Names{"cbc:LineExtensionAmount", "cbc:TaxExclusiveAmount", "cbc:TaxInclusiveAmount",
                     "cbc:PayableAmount"}));
    EXPECT_EQ(xml.Text("(//cac:LegalMonetaryTotal)[1]/cbc:LineExtensionAmount"), "1234.50");
    EXPECT_EQ(xml.ChildNames("(//cac:LegalMonetaryTotal)[2]"),
              (Names{"cbc:LineExtensionAmount", "cbc:TaxExclusiveAmount", "cbc:TaxInclusiveAmount",
                     "cbc:AllowanceTotalAmount", "cbc:PrepaidAmount", "cbc:PayableAmount"}));
    EXPECT_EQ(xml.Count("//cac:LegalMonetaryTotal/*[not(@currencyID='EUR')]"), 0);
}

TEST_F(BasicFamilyTest, LinesAndTheirDescriptions) {
    ASSERT_TRUE(writer.InitXML("1", "14/03/2025", false, "", "", "EUR", 2));
    UblLine line;
    line.lineNumber = "1";
    line.quantity = 4;
    line.unitPrice = 100;
    line.discountPercent = 10;
    line.discountAmount = 40;
    line.lineAmount = 360;
    line.vatCode = "V0";
    line.exemptionReason = "Art. 44";
    line.itemCode = "A-1";
    writer.ResetDescriptionLine();
    writer.AddLineDescription("first");
    writer.AddLineDescription("second");
    EXPECT_TRUE(writer.InvoiceLine(line));
    line.lineNumber = "2";
    line.discountAmount = 0;
    writer.ResetDescriptionLine();
    EXPECT_TRUE(writer.InvoiceLine(line));
    const testing::XmlProbe xml = Save();

    EXPECT_EQ(xml.ChildNames("(//cac:InvoiceLine)[1]"),
              (Names{"cbc:ID", "cbc:Note", "cbc:InvoicedQuantity", "cbc:LineExtensionAmount",
                     "cac:AllowanceCharge", "cac:TaxTotal", "cac:Item", "cac:Price"}));
    EXPECT_EQ(xml.Text("(//cac:InvoiceLine)[1]/cac:Item/cbc:Description"), "first\r\nsecond");
    EXPECT_EQ(xml.Text("(//cac:InvoiceLine)[1]//cbc:MultiplierFactorNumeric"), "10.00");
    EXPECT_EQ(xml.ChildNames("(//cac:InvoiceLine)[1]//cac:TaxCategory"),
              (Names{"cbc:ID", "cbc:Name", "cbc:TaxExemptionReason", "cac:TaxScheme"}));
    EXPECT_EQ(xml.Text("(//cac:InvoiceLine)[1]//cac:TaxCategory/cbc:ID"), "E");
    EXPECT_EQ(xml.ChildNames("(//cac:InvoiceLine)[2]"),
              (Names{"cbc:ID", "cbc:Note", "cbc:InvoicedQuantity", "cbc:LineExtensionAmount",
                     "cac:TaxTotal", "cac:Item", "cac:Price"}));
    EXPECT_EQ(xml.ChildNames("(//cac:InvoiceLine)[2]/cac:Item"),
              (Names{"cac:SellersItemIdentification"}));
    EXPECT_EQ(xml.Text("(//cac:InvoiceLine)[2]/cac:Price/cbc:PriceAmount"), "100.00");
    // The line's sub-total keeps the tax amount that UBL 2.0 requires.
    EXPECT_EQ(xml.ChildNames("(//cac:InvoiceLine)[1]/cac:TaxTotal/cac:TaxSubtotal"),
              (Names{"cbc:TaxableAmount", "cbc:TaxAmount", "cbc:Percent", "cac:TaxCategory"}));
}

TEST_F(BasicFamilyTest, Attachments) {
    testing::WriteFileBytes(dir / "scan.pdf", "%PDF-1.4 test");
    const std::filesystem::path previousFolder = std::filesystem::current_path();
    std::filesystem::current_path(dir.path());
    ASSERT_TRUE(writer.InitXML("1", "14/03/2025", false, "", "", "EUR", 0));
    EXPECT_TRUE(writer.AddAdditionalDocRef("scan.pdf"));
    EXPECT_TRUE(writer.AddAdditionalDocRef((dir / "scan.pdf").string()));
    EXPECT_FALSE(writer.AddAdditionalDocRef((dir / "absent.pdf").string()));
    EXPECT_FALSE(writer.AddAdditionalDocRef(dir.path().string()));
    std::filesystem::current_path(previousFolder);
    const testing::XmlProbe xml = Save();
    EXPECT_EQ(xml.Count("//cac:AdditionalDocumentReference"), 2);
    EXPECT_EQ(xml.Text("(//cac:AdditionalDocumentReference)[1]/cbc:ID"), "scan.pdf");
    EXPECT_EQ(xml.Text("(//cac:AdditionalDocumentReference)[2]/cbc:ID"), "scan.pdf");
    EXPECT_EQ(xml.Text("//cbc:EmbeddedDocumentBinaryObject"), "JVBERi0xLjQgdGVzdA==");
    EXPECT_EQ(xml.Text("//cbc:EmbeddedDocumentBinaryObject/@mimeCode"), "application/pdf");
}

TEST_F(BasicFamilyTest, NothingIsWrittenWithoutADocument) {
    EXPECT_FALSE(writer.AccountingSupplierPart(kSupplier));
    EXPECT_FALSE(writer.TaxTotal(1));
    EXPECT_FALSE(writer.SaveFile(file.string()));
    EXPECT_FALSE(writer.InitXML("1", "2025/03/14", false, "", "", "EUR", 0));
    EXPECT_FALSE(writer.SaveFile(file.string()));
    ASSERT_TRUE(writer.InitXML("1", "14/03/2025", false, "", "", "EUR", 0));
    EXPECT_FALSE(writer.PaymentMeans("31/31", "", "", "", ""));
    EXPECT_TRUE(writer.CloseUBL());
    EXPECT_FALSE(writer.SaveFile(file.string()));
    EXPECT_FALSE(std::filesystem::exists(file));
}

}  // namespace
}  // namespace fnrk::einvoice

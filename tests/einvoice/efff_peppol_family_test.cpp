#include <gtest/gtest.h>

#include "writer_test.hpp"

namespace fnrk::einvoice {
namespace {

using Names = std::vector<std::string>;

class EfffPeppolFamilyTest : public WriterTest {
  protected:
    clsUBL writer{lookups};

    testing::XmlProbe Save() { return WriterTest::Save(writer); }
};

TEST_F(EfffPeppolFamilyTest, InvoiceHeaderAndIdentifiers) {
    ASSERT_TRUE(writer.InitEfffPEPPOL("F1", "14/03/2025", false, "n", "14/03/2025", "EUR", false));
    const testing::XmlProbe xml = Save();
    EXPECT_EQ(xml.ChildNames("/doc:Invoice"),
              (Names{"cbc:UBLVersionID", "cbc:CustomizationID", "cbc:ProfileID", "cbc:ID",
                     "cbc:IssueDate", "cbc:InvoiceTypeCode", "cbc:Note", "cbc:TaxPointDate",
                     "cbc:DocumentCurrencyCode"}));
    EXPECT_EQ(xml.Text("//cbc:UBLVersionID"), "2.1");
    EXPECT_EQ(xml.Text("//cbc:CustomizationID"),
              "urn:oasis:names:specification:ubl:schema:xsd:Invoice-2::Invoice##"
              "urn:www.cenbii.eu:transaction:biitrns010:ver2.0:extended:"
              "urn:www.peppol.eu:bis:peppol5a:ver2.0:extended:e-fff:ver3.0::2.1");
    EXPECT_EQ(xml.Text("//cbc:ProfileID"), "urn:www.cenbii.eu:profile:bii05:ver2.0");
    EXPECT_EQ(xml.Text("//cbc:InvoiceTypeCode/@listID"), "UNCL1001");
    EXPECT_EQ(xml.Text("//cbc:DocumentCurrencyCode/@listID"), "ISO4217");
    EXPECT_EQ(xml.RootNamespaces().size(), 7u);
    EXPECT_EQ(xml.RootNamespaces()[1],
              "ccts=urn:oasis:names:specification:ubl:schema:xsd:CoreComponentParameters-2");
}

TEST_F(EfffPeppolFamilyTest, CreditNoteRootLinesAndPlainIdentifier) {
    ASSERT_TRUE(writer.InitEfffPEPPOL("C1", "14/03/2025", true, "n", "14/03/2025", "EUR", true));
    EXPECT_TRUE(writer.AddAdditionalDocRefEfffPEPPOL("/no/such/file.pdf") == false);
    UblLine line;
    line.lineNumber = "1";
    line.quantity = 2;
    line.lineAmount = 90;
    line.discountAmount = 10;
    line.vatCode = "V21";
    line.vatRate = 21;
    line.taxAmount = 18.9;
    writer.ResetDescriptionLine();
    EXPECT_TRUE(writer.InvoiceLineEfffPEPPOL(line));
    const testing::XmlProbe xml = Save();

    EXPECT_EQ(xml.Count("/doc:CreditNote"), 1);
    EXPECT_EQ(xml.Count("//cbc:InvoiceTypeCode"), 0);
    EXPECT_EQ(xml.Text("//cbc:CustomizationID"),
              "urn:www.cenbii.eu:transaction:biitrns014:ver2.0:extended:"
              "urn:www.peppol.eu:bis:peppol5a:ver2.0");
    Names prefixes;
    for (const std::string& declaration : xml.RootNamespaces()) {
        prefixes.push_back(declaration.substr(0, declaration.find('=')));
    }
    EXPECT_EQ(prefixes, (Names{"qdt", "udt", "cbc", "cac", "stat", "ccts", ""}));
    EXPECT_EQ(xml.RootNamespaces().back(),
              "=urn:oasis:names:specification:ubl:schema:xsd:CreditNote-2");

    EXPECT_EQ(xml.ChildNames("//cac:CreditNoteLine"),
              (Names{"cbc:ID", "cbc:CreditedQuantity", "cbc:LineExtensionAmount", "cac:TaxTotal",
                     "cac:AllowanceCharge", "cac:Item", "cac:Price"}));
    EXPECT_EQ(xml.Text("//cbc:CreditedQuantity"), "2.00");
    EXPECT_EQ(xml.Text("//cbc:CreditedQuantity/@unitCode"), "NAR");
    EXPECT_EQ(xml.Text("//cbc:CreditedQuantity/@unitCodeListID"), "UNECERec20");
    EXPECT_EQ(xml.Text("//cac:CreditNoteLine/cac:AllowanceCharge/cbc:AllowanceChargeReasonCode"),
              "19");
    EXPECT_EQ(xml.Text("//cac:CreditNoteLine//cac:TaxSubtotal/cac:TaxCategory/cbc:ID/@schemeID"),
              "UNCL5305");
    EXPECT_EQ(xml.Text("//cac:ClassifiedTaxCategory/cbc:ID"), "S");
}

TEST_F(EfffPeppolFamilyTest, PartiesPaymentAndTaxTotal) {
    ASSERT_TRUE(writer.InitEfffPEPPOL("F1", "14/03/2025", false, "", "", "EUR", false));
    writer.CustomerWithoutVat(true);
    EXPECT_TRUE(writer.AccountingSupplierPartEfffPEPPOL(
        {"BE0477472701", "Atelier", "Rue 1", "Liège", "4000", "BE", "", "", "", ""}));
    EXPECT_TRUE(writer.AccountingCustomerPartEfffPEPPOL(
        {"DK12345678", "Kunde", "Vej 1", "Aarhus", "8000", "DK", "", "+45 1", "", "k@dk.example"}));
    EXPECT_TRUE(writer.AccountingCustomerPartEfffPEPPOL(
        {"CHE123456789", "Kunde AG", "", "Bern", "3000", "CH", "", "", "", ""}));
    EXPECT_TRUE(writer.PaymentMeansEfffPEPPOL("13/04/2025", "+++090/9337/55493+++",
                                              "BE68 5390 0754 7034", "GKCCBEBB"));
    EXPECT_TRUE(writer.PaymentTermsEfffPEPPOLV2("", 2, 19, "22/03/2025"));
    EXPECT_TRUE(writer.AllowanceChargeEfffPEPPOL(false, 50));
    writer.InitTableSubTotal();
    writer.AddTableSubtotal(21, 100, 21, "V21", "");
    writer.AddTableSubtotal(0, 50, 0, "V0", "TAXEXEMPTIONREASON");
    EXPECT_TRUE(writer.TaxTotalEfffPEPPOL(21, 19));
    const testing::XmlProbe xml = Save();

    const std::string supplier = "//cac:AccountingSupplierParty/cac:Party";
    EXPECT_EQ(xml.ChildNames(supplier),
              (Names{"cbc:EndpointID", "cac:PartyName", "cac:PostalAddress", "cac:PartyTaxScheme",
                     "cac:PartyLegalEntity"}));
    EXPECT_EQ(xml.Text(supplier + "/cbc:EndpointID"), "0477472701");
    EXPECT_EQ(xml.Text(supplier + "/cbc:EndpointID/@schemeID"), "BE:CBE");
    EXPECT_EQ(xml.Text(supplier + "//cbc:CompanyID/@schemeID"), "BE:VAT");
    EXPECT_EQ(xml.Text(supplier + "//cbc:IdentificationCode/@listID"), "ISO3166-1:Alpha2");
    const std::string danish = "(//cac:AccountingCustomerParty)[1]/cac:Party";
    EXPECT_EQ(xml.Text(danish + "/cbc:EndpointID/@schemeID"), "DK:SE");
    EXPECT_EQ(xml.Text(danish + "/cbc:EndpointID"), "DK12345678");
    EXPECT_EQ(xml.Count(danish + "/cac:PartyTaxScheme"), 0);
    EXPECT_EQ(xml.ChildNames(danish + "/cac:Contact"),
              (Names{"cbc:Telephone", "cbc:ElectronicMail"}));
    EXPECT_EQ(xml.Text("(//cac:AccountingCustomerParty)[2]/cac:Party/cbc:EndpointID/@schemeID"),
              "CH:VAT");

    EXPECT_EQ(xml.Text("//cac:PaymentMeans/cbc:PaymentID"), "090933755493");
    EXPECT_EQ(xml.Text("//cac:PayeeFinancialAccount/cbc:ID"), "BE68539007547034");
    EXPECT_EQ(xml.Text("//cac:PayeeFinancialAccount/cbc:ID/@schemeID"), "IBAN");
    EXPECT_EQ(xml.Text("//cac:FinancialInstitution/cbc:ID/@schemeID"), "BIC");
    EXPECT_EQ(
        xml.ChildNames("//cac:PaymentTerms"),
        (Names{"cbc:Note", "cbc:SettlementDiscountPercent", "cbc:Amount", "cac:SettlementPeriod"}));
    EXPECT_EQ(xml.Text("//cac:SettlementPeriod/cbc:EndDate"), "2025-03-22");
    EXPECT_EQ(xml.Text("//cac:AllowanceCharge/cbc:AllowanceChargeReason"), "Trade Discount");
    EXPECT_EQ(xml.Text("//cac:AllowanceCharge/cbc:AllowanceChargeReasonCode/@listID"), "UNCL4465");

    EXPECT_EQ(xml.Count("//cac:TaxSubtotal"), 3);
    const std::string exempt = "//cac:TaxSubtotal[2]/cac:TaxCategory";
    EXPECT_EQ(xml.Text(exempt + "/cbc:TaxExemptionReason"), "Exempt from tax");
    EXPECT_EQ(xml.Count("//cac:TaxSubtotal[1]//cbc:TaxExemptionReason"), 0);
    const std::string cash = "//cac:TaxSubtotal[3]";
    EXPECT_EQ(xml.Text(cash + "/cbc:TaxableAmount"), "19.00");
    EXPECT_EQ(
        xml.ChildNames(cash + "/cac:TaxCategory"),
        (Names{"cbc:ID", "cbc:Name", "cbc:Percent", "cbc:TaxExemptionReason", "cac:TaxScheme"}));
    EXPECT_EQ(xml.Text(cash + "/cac:TaxCategory/cbc:ID"), "E");
    EXPECT_EQ(xml.Text(cash + "/cac:TaxCategory/cbc:Name"), "NA");
    EXPECT_EQ(xml.Text(cash + "/cac:TaxCategory/cbc:Percent"), "0.00");
    EXPECT_EQ(xml.Text(cash + "/cac:TaxCategory/cbc:TaxExemptionReason"), "Cash Discount");
}

TEST_F(EfffPeppolFamilyTest, ExemptionReasonsPricesDeliveryAndPeriod) {
    lookups.SetParam("INVNBDEC", "3");
    lookups.SetVatCategory("K0", "K");
    ASSERT_TRUE(writer.InitEfffPEPPOL("1", "14/03/2025", false, "", "14/03/2025", "EUR", false,
                                      "01/03/2025", "10/03/2025"));
    EXPECT_TRUE(writer.AccountingCustomerPartEfffPEPPOL(
        {"NL123456789B01", "Klant", "", "Utrecht", "", "NL", "", "", "", ""}, "10/03/2025", "NL"));
    writer.InitTableSubTotal();
    writer.AddTableSubtotal(0, 100, 0, "K0", "", "VATEX-EU-IC");
    EXPECT_TRUE(writer.TaxTotalEfffPEPPOL(0, 0));
    UblLine line;
    line.quantity = 3;
    line.unitPrice = 33.3333;
    line.lineAmount = 100.0;
    line.vatCode = "K0";
    line.exemptionReasonCode = "VATEX-EU-IC";
    EXPECT_TRUE(writer.InvoiceLineEfffPEPPOL(line));
    const testing::XmlProbe xml = Save();

    EXPECT_EQ(xml.Text("//cac:InvoicePeriod/cbc:StartDate"), "2025-03-01");
    EXPECT_EQ(xml.Text("//cac:Delivery/cbc:ActualDeliveryDate"), "2025-03-10");
    for (const std::string category :
         {"/doc:Invoice/cac:TaxTotal/cac:TaxSubtotal/cac:TaxCategory",
          "//cac:InvoiceLine/cac:TaxTotal/cac:TaxSubtotal/cac:TaxCategory"}) {
        EXPECT_EQ(xml.Text(category + "/cbc:TaxExemptionReasonCode"), "VATEX-EU-IC");
        EXPECT_EQ(xml.Text(category + "/cbc:TaxExemptionReason"), "Intra-community supply");
    }
    EXPECT_EQ(xml.Text("//cac:Price/cbc:PriceAmount"), "33.333");
}

}  // namespace
}  // namespace fnrk::einvoice

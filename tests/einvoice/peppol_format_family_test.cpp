#include <gtest/gtest.h>

#include "writer_test.hpp"

namespace fnrk::einvoice {
namespace {

using Names = std::vector<std::string>;

const UblParty kSupplier = {
    "BE 0477.472.701", "Atelier", "Rue 1", "Liège", "4000", "BE", "", "", "", "s@a.example"};

using PeppolFormatFamilyTest = WriterTest;

TEST_F(PeppolFormatFamilyTest, QuantityAndPriceDecimalsFromParameters) {
    for (const auto& [decimals, quantity, price] :
         {std::tuple{"0", "3.00", "12.35"}, std::tuple{"1", "3.00", "12.35"},
          std::tuple{"2", "3.00", "12.35"}, std::tuple{"4", "3.0000", "12.3457"},
          std::tuple{"", "3.00", "12.35"}}) {
        lookups.SetParam("INVNBDECQT", decimals);
        lookups.SetParam("invnbdec", decimals);
        clsUBL writer(lookups);
        ASSERT_TRUE(writer.InitPeppolFormat("1", "14/03/2025", "", false, "", "EUR"));
        UblLine line;
        line.lineNumber = "1";
        line.quantity = 3;
        line.unitPrice = 12.345678;
        line.lineAmount = 37.04;
        line.vatCode = "V21";
        line.vatRate = 21;
        writer.ResetDescriptionLine();
        EXPECT_TRUE(writer.InvoiceLineFormat(line));
        const testing::XmlProbe xml = Save(writer);
        EXPECT_EQ(xml.Text("//cbc:InvoicedQuantity"), quantity) << "decimals " << decimals;
        EXPECT_EQ(xml.Text("//cbc:PriceAmount"), price) << "decimals " << decimals;
        EXPECT_EQ(xml.Text("//cbc:LineExtensionAmount"), "37.04");
    }
}

TEST_F(PeppolFormatFamilyTest, CreditNoteHeaderAndLine) {
    clsUBL writer(lookups);
    ASSERT_TRUE(writer.InitPeppolFormat("C1", "14/03/2025", "13/04/2025", true, "", "EUR"));
    UblLine line;
    line.lineNumber = "1";
    line.quantity = 1;
    line.discountAmount = 5;
    line.vatCode = "V0";
    line.itemCode = " ";
    writer.ResetDescriptionLine();
    writer.AddLineDescription("Training day");
    writer.AddLineDescription("on site");
    EXPECT_TRUE(writer.InvoiceLineFormat(line));
    const testing::XmlProbe xml = Save(writer);

    EXPECT_EQ(xml.RootNamespaces(),
              (Names{"cac=urn:oasis:names:specification:ubl:schema:xsd:CommonAggregateComponents-2",
                     "cbc=urn:oasis:names:specification:ubl:schema:xsd:CommonBasicComponents-2",
                     "=urn:oasis:names:specification:ubl:schema:xsd:CreditNote-2"}));
    EXPECT_EQ(xml.ChildNames("/doc:CreditNote"),
              (Names{"cbc:CustomizationID", "cbc:ProfileID", "cbc:ID", "cbc:IssueDate",
                     "cbc:CreditNoteTypeCode", "cbc:DocumentCurrencyCode", "cac:CreditNoteLine"}));
    EXPECT_EQ(xml.Text("//cbc:CustomizationID"),
              "urn:cen.eu:en16931:2017#compliant#urn:fdc:peppol.eu:2017:poacc:billing:3.0");
    EXPECT_EQ(xml.Text("//cbc:ProfileID"), "urn:fdc:peppol.eu:2017:poacc:billing:01:1.0");
    EXPECT_EQ(xml.Text("//cbc:CreditNoteTypeCode"), "381");
    EXPECT_EQ(xml.ChildNames("//cac:CreditNoteLine"),
              (Names{"cbc:ID", "cbc:CreditedQuantity", "cbc:LineExtensionAmount",
                     "cac:AllowanceCharge", "cac:Item", "cac:Price"}));
    EXPECT_EQ(xml.Text("//cac:CreditNoteLine/cac:AllowanceCharge/cbc:AllowanceChargeReasonCode"),
              "95");
    EXPECT_EQ(xml.ChildNames("//cac:Item"),
              (Names{"cbc:Description", "cbc:Name", "cac:ClassifiedTaxCategory"}));
    EXPECT_EQ(xml.Text("//cac:Item/cbc:Name"), "Training day");
    EXPECT_EQ(xml.Text("//cac:ClassifiedTaxCategory/cbc:ID"), "E");
    EXPECT_EQ(xml.ChildNames("//cac:ClassifiedTaxCategory"),
              (Names{"cbc:ID", "cbc:Percent", "cac:TaxScheme"}));
}

TEST_F(PeppolFormatFamilyTest, PartiesEndpointsAndContacts) {
    lookups.SetEasScheme("NL", "9944");
    clsUBL writer(lookups);
    ASSERT_TRUE(writer.InitPeppolFormat("1", "14/03/2025", "13/04/2025", false, "", "EUR"));
    EXPECT_TRUE(writer.AccountingSupplierPartFormat(kSupplier));
    writer.CustomerWithoutVat(true);
    EXPECT_TRUE(writer.AccountingCustomerFormat(
        {"NL123456789B01", "Klant", "", "Utrecht", "", "NL", "", "", "", ""}));
    writer.SetCustomerPEPPOLID("0106:12345678", "0106");
    EXPECT_TRUE(writer.AccountingCustomerFormat(
        {"NL123456789B01", "Klant", "", "", "", "NL", "", "030 1", "", "k@nl.example"}));
    lookups.SetParam("PEPPOLEmailSender", " ");
    EXPECT_TRUE(writer.AccountingSupplierPartFormat(kSupplier));
    const testing::XmlProbe xml = Save(writer);

    const std::string supplier = "(//cac:AccountingSupplierParty)[1]/cac:Party";
    EXPECT_EQ(xml.ChildNames(supplier),
              (Names{"cbc:EndpointID", "cac:PartyName", "cac:PostalAddress", "cac:PartyTaxScheme",
                     "cac:PartyLegalEntity", "cac:Contact"}));
    EXPECT_EQ(xml.Text(supplier + "/cbc:EndpointID"), "0477472701");
    EXPECT_EQ(xml.Text(supplier + "/cbc:EndpointID/@schemeID"), "0208");
    EXPECT_EQ(xml.ChildNames(supplier + "/cac:Contact"), (Names{"cbc:ElectronicMail"}));
    EXPECT_EQ(xml.Text(supplier + "/cac:Contact/cbc:ElectronicMail"), "invoices@atelier.example");
    EXPECT_EQ(xml.Count("(//cac:AccountingSupplierParty)[2]/cac:Party/cac:Contact"), 0);

    const std::string first = "(//cac:AccountingCustomerParty)[1]/cac:Party";
    EXPECT_EQ(xml.Text(first + "/cbc:EndpointID"), "123456789B01");
    EXPECT_EQ(xml.Text(first + "/cbc:EndpointID/@schemeID"), "9944");
    EXPECT_EQ(xml.ChildNames(first + "/cac:PostalAddress"), (Names{"cbc:CityName", "cac:Country"}));
    EXPECT_EQ(xml.ChildNames(first), (Names{"cbc:EndpointID", "cac:PartyName", "cac:PostalAddress",
                                            "cac:PartyLegalEntity"}));
    const std::string second = "(//cac:AccountingCustomerParty)[2]/cac:Party";
    EXPECT_EQ(xml.Text(second + "/cbc:EndpointID"), "0106:12345678");
    EXPECT_EQ(xml.Text(second + "/cbc:EndpointID/@schemeID"), "0106");
    EXPECT_EQ(xml.ChildNames(second + "/cac:Contact"),
              (Names{"cbc:Telephone", "cbc:ElectronicMail"}));
}

TEST_F(PeppolFormatFamilyTest, PaymentAllowancesAndTotals) {
    clsUBL writer(lookups);
    ASSERT_TRUE(writer.InitPeppolFormat("1", "14/03/2025", "13/04/2025", false, "", "EUR"));
    EXPECT_TRUE(
        writer.PaymentMeansFormat("13/04/2025", "+++090/9337/55493+++", "BE68 5390 0754 7034", ""));
    EXPECT_FALSE(writer.PaymentTermsFormat(" ", 2, 19, 100));
    EXPECT_TRUE(writer.PaymentTermsFormat("8", 2, 19, 1277.13));
    EXPECT_TRUE(writer.AllowanceChargeFormatVATBase(true, 9.4, "V21", 21, 2));
    EXPECT_TRUE(writer.AllowanceChargeFormatVATBase(false, 50, "V21", 21, 0));
    EXPECT_TRUE(writer.AllowanceChargeFormat(true, "", 19, "V0", 0));
    writer.InitTableSubTotal();
    writer.AddTableSubtotal(21, 100, 21, "V21", "");
    EXPECT_TRUE(writer.TaxTotalFormat(21, 19));
    writer.AddTableSubtotal(0, 200, 0, "V0", "Article 44");
    EXPECT_TRUE(writer.TaxTotalFormat(21, 19));
    EXPECT_TRUE(writer.LegalMonetaryTotalFormat("100", "100", "121", "0", "5", "0", "126"));
    const testing::XmlProbe xml = Save(writer);

    EXPECT_EQ(xml.ChildNames("//cac:PaymentMeans"),
              (Names{"cbc:PaymentMeansCode", "cbc:PaymentDueDate", "cbc:PaymentID",
                     "cac:PayeeFinancialAccount"}));
    EXPECT_EQ(xml.Text("//cac:PaymentMeans/cbc:PaymentID"), "090933755493");
    EXPECT_EQ(xml.ChildNames("//cac:PayeeFinancialAccount"), (Names{"cbc:ID"}));
    EXPECT_EQ(xml.Count("//cac:PaymentTerms"), 1);
    EXPECT_EQ(xml.Text("//cac:PaymentTerms/cbc:Note").substr(0, 49),
              "In geval van betaling binnen 8 dagen is 2.00% (19");

    EXPECT_EQ(xml.ChildNames("(//cac:AllowanceCharge)[1]"),
              (Names{"cbc:ChargeIndicator", "cbc:AllowanceChargeReasonCode",
                     "cbc:AllowanceChargeReason", "cbc:Amount", "cac:TaxCategory"}));
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[1]/cbc:AllowanceChargeReason"),
              "Conditional cash/payment discount | Korting contant | Escompte Conditionnel 2.00%");
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[1]/cac:TaxCategory/cbc:Percent"), "21.00");
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[2]/cbc:AllowanceChargeReason"), "Trade Discount");
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[3]/cbc:AllowanceChargeReasonCode"), "ZZZ");
    EXPECT_EQ(xml.Count("(//cac:AllowanceCharge)[3]/cbc:AllowanceChargeReason"), 0);
    EXPECT_EQ(xml.Text("(//cac:AllowanceCharge)[3]/cac:TaxCategory/cbc:ID"), "E");

    // Without an exempt row the cash discount has its own sub-total; with one, it joins it.
    const std::string first = "(//cac:TaxTotal)[1]";
    EXPECT_EQ(xml.Count(first + "/cac:TaxSubtotal"), 2);
    EXPECT_EQ(xml.Text(first + "/cac:TaxSubtotal[2]/cbc:TaxableAmount"), "19.00");
    EXPECT_EQ(xml.Text(first + "/cac:TaxSubtotal[2]//cbc:TaxExemptionReason"), "Cash Discount");
    EXPECT_EQ(xml.Count(first + "/cac:TaxSubtotal[1]//cbc:TaxExemptionReason"), 0);
    EXPECT_EQ(xml.ChildNames(first + "/cac:TaxSubtotal[1]/cac:TaxCategory"),
              (Names{"cbc:ID", "cbc:Percent", "cac:TaxScheme"}));
    const std::string second = "(//cac:TaxTotal)[2]";
    EXPECT_EQ(xml.Count(second + "/cac:TaxSubtotal"), 2);
    EXPECT_EQ(xml.Text(second + "/cac:TaxSubtotal[2]/cbc:TaxableAmount"), "219.00");
    EXPECT_EQ(xml.Text(second + "/cac:TaxSubtotal[2]//cbc:TaxExemptionReason"), "Article 44");

    EXPECT_EQ(xml.ChildNames("//cac:LegalMonetaryTotal"),
              (Names{"cbc:LineExtensionAmount", "cbc:TaxExclusiveAmount", "cbc:TaxInclusiveAmount",
                     "cbc:ChargeTotalAmount", "cbc:PayableAmount"}));
}

TEST_F(PeppolFormatFamilyTest, ExplicitEndpointIsWrittenAsGiven) {
    clsUBL writer(lookups);
    ASSERT_TRUE(writer.InitPeppolFormat("1", "14/03/2025", "13/04/2025", false, "", "EUR"));
    writer.SetCustomerPEPPOLID(" BE0812345603 ", "9925");
    EXPECT_TRUE(writer.AccountingCustomerFormat(
        {"BE0812345603", "Klant", "", "Gent", "", "BE", "", "", "", ""}));
    writer.SetCustomerPEPPOLID("", "");
    EXPECT_TRUE(writer.AccountingCustomerFormat(
        {"BE 0812.345.603", "Klant", "", "Gent", "", "BE", "", "", "", ""}));
    const testing::XmlProbe xml = Save(writer);
    EXPECT_EQ(xml.Text("(//cac:AccountingCustomerParty)[1]/cac:Party/cbc:EndpointID"),
              "BE0812345603");
    EXPECT_EQ(xml.Text("(//cac:AccountingCustomerParty)[1]/cac:Party/cbc:EndpointID/@schemeID"),
              "9925");
    // Derived from the VAT number, the identifier loses its country prefix.
    EXPECT_EQ(xml.Text("(//cac:AccountingCustomerParty)[2]/cac:Party/cbc:EndpointID"),
              "0812345603");
}

TEST_F(PeppolFormatFamilyTest, ExemptionReasonsDeliveryAndPeriodOfEveryZeroRatedCategory) {
    for (const auto& [category, reason] :
         {std::pair{"K", "Intra-community supply"}, std::pair{"G", "Export outside the EU"},
          std::pair{"O", "Not subject to VAT"}, std::pair{"E", "Exempt from tax"},
          std::pair{"AE", "Exempted"}}) {
        lookups.SetVatCategory("X0", category);
        clsUBL writer(lookups);
        ASSERT_TRUE(writer.InitPeppolFormat("1", "14/03/2025", "13/04/2025", false, "", "EUR",
                                            "01/03/2025", "10/03/2025"));
        writer.SupplierWithoutVat(std::string(category) == "O");
        EXPECT_TRUE(writer.AccountingSupplierPartFormat(kSupplier));
        EXPECT_TRUE(writer.AccountingCustomerFormat(
            {"NL123456789B01", "Klant", "", "Utrecht", "", "NL", "", "", "", ""}, "10/03/2025",
            "nl"));
        writer.InitTableSubTotal();
        writer.AddTableSubtotal(0, 100, 0, "X0", "", " vatex-eu-x ");
        writer.AddTableSubtotal(0, 50, 0, "X0", "Own words", "");
        EXPECT_TRUE(writer.TaxTotalFormat(0, 0));
        const testing::XmlProbe xml = Save(writer);
        SCOPED_TRACE(category);

        const std::string first = "(//cac:TaxSubtotal)[1]/cac:TaxCategory";
        EXPECT_EQ(xml.Text(first + "/cbc:TaxExemptionReason"), reason);
        EXPECT_EQ(xml.Text(first + "/cbc:TaxExemptionReasonCode"), "VATEX-EU-X");
        EXPECT_EQ(xml.Text("(//cac:TaxSubtotal)[2]//cbc:TaxExemptionReason"), "Own words");
        EXPECT_EQ(xml.Count("(//cac:TaxSubtotal)[2]//cbc:TaxExemptionReasonCode"), 0);
        // Not subject to VAT has no rate, and neither party shows a VAT number for it.
        EXPECT_EQ(xml.Count(first + "/cbc:Percent"), std::string(category) == "O" ? 0 : 1);
        const std::string supplier = "//cac:AccountingSupplierParty/cac:Party";
        if (std::string(category) == "O") {
            EXPECT_EQ(xml.Count(supplier + "/cac:PartyTaxScheme"), 0);
            EXPECT_EQ(xml.Text(supplier + "/cac:PartyLegalEntity/cbc:CompanyID"), "0477472701");
            EXPECT_EQ(xml.Text(supplier + "/cac:PartyLegalEntity/cbc:CompanyID/@schemeID"), "0208");
        } else {
            EXPECT_EQ(xml.Count(supplier + "/cac:PartyTaxScheme"), 1);
            EXPECT_EQ(xml.Count(supplier + "/cac:PartyLegalEntity/cbc:CompanyID"), 0);
        }

        EXPECT_EQ(xml.Text("/doc:Invoice/cac:InvoicePeriod/cbc:StartDate"), "2025-03-01");
        EXPECT_EQ(xml.Text("/doc:Invoice/cac:InvoicePeriod/cbc:EndDate"), "2025-03-10");
        EXPECT_EQ(xml.ChildNames("/doc:Invoice/cac:Delivery"),
                  (Names{"cbc:ActualDeliveryDate", "cac:DeliveryLocation"}));
        EXPECT_EQ(xml.Text("//cac:Delivery/cbc:ActualDeliveryDate"), "2025-03-10");
        EXPECT_EQ(xml.Text("//cac:Delivery//cac:Country/cbc:IdentificationCode"), "NL");
    }
    // S carries neither reason nor code, whatever the caller gives.
    lookups.SetVatCategory("X0", "S");
    clsUBL writer(lookups);
    ASSERT_TRUE(writer.InitPeppolFormat("1", "14/03/2025", "13/04/2025", false, "", "EUR"));
    writer.InitTableSubTotal();
    writer.AddTableSubtotal(21, 100, 21, "X0", "Some reason", "VATEX-EU-IC");
    EXPECT_TRUE(writer.TaxTotalFormat(21, 0));
    const testing::XmlProbe xml = Save(writer);
    EXPECT_EQ(xml.ChildNames("//cac:TaxSubtotal/cac:TaxCategory"),
              (Names{"cbc:ID", "cbc:Percent", "cac:TaxScheme"}));
    EXPECT_EQ(xml.Count("//cac:InvoicePeriod | //cac:Delivery"), 0);
}

TEST_F(PeppolFormatFamilyTest, BadPeriodOrDeliveryDateIsRefused) {
    clsUBL writer(lookups);
    EXPECT_FALSE(
        writer.InitPeppolFormat("1", "14/03/2025", "", false, "", "EUR", "01/03/2025", ""));
    EXPECT_FALSE(writer.InitPeppolFormat("1", "14/03/2025", "", false, "", "EUR", "10/03/2025",
                                         "01/03/2025"));
    ASSERT_TRUE(writer.InitPeppolFormat("1", "14/03/2025", "", false, "", "EUR"));
    EXPECT_FALSE(writer.AccountingCustomerFormat(kSupplier, "31-02", "NL"));
    const testing::XmlProbe xml = Save(writer);
    EXPECT_EQ(xml.Count("//cac:AccountingCustomerParty | //cac:InvoicePeriod"), 0);
}

TEST_F(PeppolFormatFamilyTest, CashDiscountNoteKeepsItsFinalBlank) {
    clsUBL writer(lookups);
    ASSERT_TRUE(writer.InitPeppolFormat("1", "14/03/2025", "", false, "", "EUR"));
    EXPECT_TRUE(writer.PaymentTermsFormat("8", 2, 19, 1277.13));
    const testing::XmlProbe xml = Save(writer);
    const std::string note = xml.Text("//cac:PaymentTerms/cbc:Note");
    EXPECT_TRUE(note.ends_with("payable amount = 1277.13€ ")) << note;
}

}  // namespace
}  // namespace fnrk::einvoice

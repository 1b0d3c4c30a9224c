// An invoice of every VAT category a Belgian company issues, and a credit note, in each of the
// three profiles: built with allowances, a charge, a cash discount, a prepaid amount, foreign
// currencies and explicit endpoints, checked against the UBL schemas and (PEPPOL BIS 3) the
// PEPPOL and EN 16931 rules through the shared validate-invoice tool, and their totals checked
// by arithmetic on the written file.

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <thread>

#include "einvoice/sales_document.hpp"
#include "einvoice/sample_sales_document.hpp"
#include "platform/text.hpp"
#include "support/invoice_validation.hpp"
#include "support/temp_dir.hpp"
#include "xml_probe.hpp"

namespace fnrk::einvoice {
namespace {

double Round2(double value) {
    return platform::RoundHalfEven(value, 2);
}

struct CategoryCase {
    std::string name;      // file name and label
    std::string vatCode;   // in the VAT-code table of the look-ups
    std::string category;  // UN/EDIFACT 5305 letter
    double rate = 0.0;
    std::string currency = "EUR";
    UblParty customer;
    bool customerWithoutVat = false;
    std::string peppolId;
    std::string peppolScheme;
    std::string exemptionReasonCode;
    bool cashDiscount = true;
};

// The sample company's own customer.
const UblParty kBelgianCustomer = SampleSalesDocument(false, "").customer;
const UblParty kDutchCustomer = {"NL123456789B01",
                                 "Fietsen BV",
                                 "Dorpsstraat 1",
                                 "Utrecht",
                                 "3511",
                                 "NL",
                                 "Nederland",
                                 "",
                                 "",
                                 "inkoop@fietsen.example"};
const UblParty kAmericanCustomer = {
    "NA", "Maple Goods Inc.", "1 Main Street", "Boston", "02110", "US", "United States", "",
    "",   "ap@maple.example"};
const UblParty kCanaryCustomer = {"ESB76543214",
                                  "Islas Muebles SL",
                                  "Calle Mayor 3",
                                  "Las Palmas",
                                  "35001",
                                  "ES",
                                  "España",
                                  "",
                                  "",
                                  "compras@islas.example"};

// Two lines (the second with a 10% discount), a trade allowance and a transport charge in the
// case's category, a cash discount of 2% (lowering that base and coming back as an exempt
// charge) and a prepayment; every total is computed here from those amounts.
SalesDocument CategoryInvoice(const CategoryCase& c, bool creditNote) {
    SalesDocument d = SampleSalesDocument(creditNote, "");
    d.number = (creditNote ? "CN-" : "INV-") + c.name;
    d.currency = c.currency;
    d.customer = c.customer;
    d.customerWithoutVat = c.customerWithoutVat;
    d.customerPeppolId = c.peppolId;
    d.customerPeppolScheme = c.peppolScheme;
    d.deliveryDate = "10/03/2025";
    d.deliverToCountry = c.customer.countryCode;
    d.invoicePeriodStart = "01/03/2025";
    d.invoicePeriodEnd = "10/03/2025";

    d.lines.clear();
    const auto addLine = [&](double quantity, double price, double discount, std::string name) {
        SalesLine line;
        UblLine& v = line.values;
        v.lineNumber = std::to_string(d.lines.size() + 1);
        v.quantity = quantity;
        v.unitPrice = price;
        v.discountAmount = discount;
        v.discountPercent = discount == 0.0 ? 0.0 : 10.0;
        v.lineAmount = Round2(quantity * price - discount);
        v.vatCode = c.vatCode;
        v.vatRate = c.rate;
        v.taxAmount = Round2(v.lineAmount * c.rate / 100.0);
        v.exemptionReasonCode = c.exemptionReasonCode;
        v.itemCode = "ART-" + v.lineNumber;
        v.itemName = name;
        line.description = {name};
        d.lines.push_back(line);
    };
    addLine(3, 120.50, 0.0, "Oak table");
    addLine(2, 75.25, 15.05, "Chair");
    const double lines = d.lines[0].values.lineAmount + d.lines[1].values.lineAmount;

    SalesAllowance trade;
    trade.onVatBase = true;
    trade.amount = 20.00;
    trade.percent = 10.0;
    trade.vatCode = c.vatCode;
    trade.vatRate = c.rate;
    SalesAllowance transport;
    transport.isCharge = true;
    transport.reason = "Transport";
    transport.amount = 15.00;
    transport.vatCode = c.vatCode;
    transport.vatRate = c.rate;
    d.allowances = {trade, transport};
    double base = lines - trade.amount + transport.amount;

    const double cash = c.cashDiscount ? Round2(base * 0.02) : 0.0;
    if (c.cashDiscount) {
        SalesAllowance discount = trade;
        discount.isCashDiscount = true;
        discount.percent = 2.0;
        discount.amount = cash;
        SalesAllowance back;
        back.isCharge = true;
        back.reason = "Cash Discount";
        back.amount = cash;
        back.vatCode = "E0";
        d.allowances.push_back(discount);
        d.allowances.push_back(back);
        base -= cash;
    }
    d.cashDiscount = cash;
    d.discountDays = c.cashDiscount ? "8" : "";
    d.discountPercent = c.cashDiscount ? 2.0 : 0.0;
    d.discountAmount = cash;

    const double tax = Round2(base * c.rate / 100.0);
    d.vatRows = {{c.rate, Round2(base), tax, c.vatCode, "", c.exemptionReasonCode}};
    d.taxTotal = tax;
    d.lineTotal = lines;
    d.allowanceTotal = trade.amount + cash;
    d.chargeTotal = transport.amount + cash;
    d.totalWithoutTax = Round2(lines - d.allowanceTotal + d.chargeTotal);
    d.totalWithTax = Round2(d.totalWithoutTax + tax);
    d.prepaidAmount = 50.00;
    d.payableAmount = Round2(d.totalWithTax - d.prepaidAmount);
    return d;
}

std::vector<CategoryCase> Cases() {
    return {
        {"S", "V21", "S", 21.0, "EUR", kBelgianCustomer, false, "BE0812345603", "9925", "", true},
        {"Z", "Z0", "Z", 0.0, "EUR", kBelgianCustomer, false, "0812345603", "0208", "", true},
        {"E", "E0", "E", 0.0, "EUR", kBelgianCustomer, false, "", "", "", true},
        {"AE", "AE0", "AE", 0.0, "GBP", kDutchCustomer, false, "NL123456789B01", "9944",
         "VATEX-EU-AE", true},
        {"K", "K0", "K", 0.0, "EUR", kDutchCustomer, false, "", "", "VATEX-EU-IC", true},
        {"G", "G0", "G", 0.0, "USD", kAmericanCustomer, true, "123456789", "0060", "", true},
        // Not subject to VAT: no other breakdown may stand beside it, so no cash discount.
        {"O", "O0", "O", 0.0, "EUR", kBelgianCustomer, false, "", "", "VATEX-EU-O", false},
        {"L", "L7", "L", 7.0, "EUR", kCanaryCustomer, false, "", "", "", true},
        {"M", "M4", "M", 4.0, "EUR", kCanaryCustomer, false, "", "", "", true},
    };
}

FixedInvoiceLookups CategoryLookups() {
    FixedInvoiceLookups lookups = SampleLookups();
    lookups.SetParam("INVNBDEC", "3");
    for (const CategoryCase& c : Cases()) lookups.SetVatCategory(c.vatCode, c.category);
    lookups.SetVatCategory("E0", "E");
    lookups.SetEasScheme("NL", "9944");
    lookups.SetEasScheme("ES", "9920");
    return lookups;
}

const char* ProfileName(InvoiceProfile profile) {
    switch (profile) {
        case InvoiceProfile::Basic:
            return "basic";
        case InvoiceProfile::EfffPeppol:
            return "efff";
        case InvoiceProfile::PeppolV3:
            return "peppol3";
    }
    return "";
}

// The totals of a written document add up: lines, allowances and charges give the amount
// without tax; the taxable amounts of the breakdown give it too; each breakdown's tax is its
// rate of its base; the tax total, the amount with tax and the amount payable follow.
void ExpectTotalsAddUp(const testing::XmlProbe& xml, const std::string& label) {
    SCOPED_TRACE(label);
    const std::string total = "/*/cac:LegalMonetaryTotal/";
    const double lineTotal = xml.Number(total + "cbc:LineExtensionAmount");
    const double withoutTax = xml.Number(total + "cbc:TaxExclusiveAmount");
    const double withTax = xml.Number(total + "cbc:TaxInclusiveAmount");
    const double prepaid = xml.Number("sum(" + total + "cbc:PrepaidAmount)");
    const double payable = xml.Number(total + "cbc:PayableAmount");
    const double allowances =
        xml.Number("sum(/*/cac:AllowanceCharge[cbc:ChargeIndicator='false']/cbc:Amount)");
    const double charges =
        xml.Number("sum(/*/cac:AllowanceCharge[cbc:ChargeIndicator='true']/cbc:Amount)");
    const double taxable = xml.Number("sum(/*/cac:TaxTotal/cac:TaxSubtotal/cbc:TaxableAmount)");
    const double subtotalTax = xml.Number("sum(/*/cac:TaxTotal/cac:TaxSubtotal/cbc:TaxAmount)");
    const double taxTotal = xml.Number("/*/cac:TaxTotal/cbc:TaxAmount");
    const std::string lines = "/*/cac:InvoiceLine | /*/cac:CreditNoteLine";

    EXPECT_GT(lineTotal, 0.0);
    EXPECT_NEAR(xml.Number("sum(" + std::string("/*/cac:InvoiceLine/cbc:LineExtensionAmount | "
                                                "/*/cac:CreditNoteLine/cbc:LineExtensionAmount)")),
                lineTotal, 0.005);
    EXPECT_NEAR(lineTotal - allowances + charges, withoutTax, 0.005);
    EXPECT_NEAR(taxable, withoutTax, 0.005);
    EXPECT_NEAR(subtotalTax, taxTotal, 0.005);
    EXPECT_NEAR(withoutTax + taxTotal, withTax, 0.005);
    EXPECT_NEAR(withTax - prepaid, payable, 0.005);
    EXPECT_NEAR(prepaid, 50.0, 0.005);
    if (xml.Count(total + "cbc:AllowanceTotalAmount") == 1) {
        EXPECT_NEAR(xml.Number(total + "cbc:AllowanceTotalAmount"), allowances, 0.005);
    }
    if (xml.Count(total + "cbc:ChargeTotalAmount") == 1) {
        EXPECT_NEAR(xml.Number(total + "cbc:ChargeTotalAmount"), charges, 0.005);
    }
    const int rows = xml.Count("/*/cac:TaxTotal/cac:TaxSubtotal");
    for (int i = 1; i <= rows; ++i) {
        const std::string row = "/*/cac:TaxTotal/cac:TaxSubtotal[" + std::to_string(i) + "]";
        // The basic profile carries the percent on the sub-total, the newer ones on the category.
        const double percent =
            xml.Number("sum(" + row + "/cbc:Percent | " + row + "/cac:TaxCategory/cbc:Percent)");
        EXPECT_NEAR(Round2(xml.Number(row + "/cbc:TaxableAmount") * percent / 100.0),
                    xml.Number(row + "/cbc:TaxAmount"), 0.005)
            << "row " << i;
    }
    // Quantity times price gives each line's amount before its discount.
    for (int i = 1; i <= xml.Count(lines); ++i) {
        const std::string line = "(" + lines + ")[" + std::to_string(i) + "]";
        const double quantity = xml.Number("sum(" + line + "/cbc:InvoicedQuantity | " + line +
                                           "/cbc:CreditedQuantity)");
        const double discount = xml.Number("sum(" + line + "/cac:AllowanceCharge/cbc:Amount)");
        EXPECT_NEAR(Round2(quantity * xml.Number(line + "/cac:Price/cbc:PriceAmount")) - discount,
                    xml.Number(line + "/cbc:LineExtensionAmount"), 0.005)
            << "line " << i;
    }
}

class VatCategoriesTest : public ::testing::Test {
  protected:
    testing::TempDir dir;
    FixedInvoiceLookups lookups = CategoryLookups();

    struct Written {
        std::filesystem::path file;
        bool peppol = false;
    };

    // Every category as an invoice and the first one as a credit note, in `profile`.
    std::vector<Written> WriteAll(InvoiceProfile profile) {
        std::vector<Written> written;
        std::vector<CategoryCase> cases = Cases();
        for (std::size_t i = 0; i <= cases.size(); ++i) {
            const bool creditNote = i == cases.size();
            const CategoryCase& c = creditNote ? cases.front() : cases[i];
            const std::filesystem::path file =
                dir / (std::string(ProfileName(profile)) + (creditNote ? "-credit-" : "-") +
                       c.name + ".xml");
            EXPECT_TRUE(
                WriteSalesDocument(CategoryInvoice(c, creditNote), profile, lookups, file.string()))
                << file;
            written.push_back({file, profile == InvoiceProfile::PeppolV3});
        }
        return written;
    }

    // Runs validate-invoice on each file, as many at a time as there are processors (at least
    // two): the tool checks one file per run, and each rule run starts a Java machine.
    static void ExpectValid(const std::vector<Written>& files) {
        const auto validate = [](const Written& w) {
            return testing::ValidateInvoice(w.file, w.peppol);
        };
        const std::size_t batch = std::max(2u, std::thread::hardware_concurrency());
        for (std::size_t i = 0; i < files.size(); i += batch) {
            std::vector<std::future<testing::CommandResult>> running;
            for (std::size_t j = i; j < std::min(i + batch, files.size()); ++j) {
                running.push_back(std::async(std::launch::async, validate, files[j]));
            }
            for (std::size_t j = 0; j < running.size(); ++j) {
                const testing::CommandResult result = running[j].get();
                EXPECT_EQ(result.exitCode, 0) << files[i + j].file << "\n"
                                              << result.out << result.err;
                EXPECT_EQ(result.out.find("fatal"), std::string::npos) << result.out;
            }
        }
    }
};

TEST_F(VatCategoriesTest, BasicProfileDocumentsAreUbl20AndAddUp) {
    const std::vector<Written> files = WriteAll(InvoiceProfile::Basic);
    for (const Written& w : files) ExpectTotalsAddUp(testing::XmlProbe(w.file), w.file.string());
    ExpectValid(files);
}

TEST_F(VatCategoriesTest, EfffProfileDocumentsAreUbl21AndAddUp) {
    const std::vector<Written> files = WriteAll(InvoiceProfile::EfffPeppol);
    for (const Written& w : files) ExpectTotalsAddUp(testing::XmlProbe(w.file), w.file.string());
    ExpectValid(files);
}

TEST_F(VatCategoriesTest, PeppolDocumentsBreakNoFatalRuleAndAddUp) {
    const std::vector<Written> files = WriteAll(InvoiceProfile::PeppolV3);
    for (const Written& w : files) ExpectTotalsAddUp(testing::XmlProbe(w.file), w.file.string());
    ExpectValid(files);
}

}  // namespace
}  // namespace fnrk::einvoice

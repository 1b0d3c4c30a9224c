// The written documents against the published UBL schemas and, for PEPPOL BIS 3, the PEPPOL and
// EN 16931 rules, through the shared validate-invoice tool. Java makes the rule runs slow, so only
// the sample invoice and credit note go through them.

#include <gtest/gtest.h>

#include "einvoice/sample_sales_document.hpp"
#include "support/invoice_validation.hpp"
#include "support/temp_dir.hpp"
#include "xml_probe.hpp"

namespace fnrk::einvoice {
namespace {

class SchemaAndRulesTest : public ::testing::Test {
  protected:
    testing::TempDir dir;
    FixedInvoiceLookups lookups = SampleLookups();

    std::string Pdf() {
        const std::filesystem::path pdf = dir / "INV2025-0042.pdf";
        testing::WriteFileBytes(pdf, "%PDF-1.4\n1 0 obj <<>> endobj\ntrailer <<>>\n%%EOF\n");
        return pdf.string();
    }

    std::filesystem::path Write(const SalesDocument& document, InvoiceProfile profile,
                                const std::string& name) {
        const std::filesystem::path file = dir / name;
        EXPECT_TRUE(WriteSalesDocument(document, profile, lookups, file.string()));
        return file;
    }
};

TEST_F(SchemaAndRulesTest, BasicInvoiceAndCreditNoteAreUbl20) {
    for (bool creditNote : {false, true}) {
        const auto file = Write(SampleSalesDocument(creditNote, Pdf()), InvoiceProfile::Basic,
                                creditNote ? "basic-credit.xml" : "basic.xml");
        const testing::CommandResult result = testing::ValidateInvoice(file, false);
        EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
        EXPECT_EQ(testing::XmlProbe(file).Count("//cac:AdditionalDocumentReference"), 1);
    }
}

TEST_F(SchemaAndRulesTest, EfffPeppolInvoiceAndCreditNoteAreUbl21) {
    for (bool creditNote : {false, true}) {
        SalesDocument document = SampleSalesDocument(creditNote, Pdf());
        document.discountEndDate = "22/03/2025";
        const auto file = Write(document, InvoiceProfile::EfffPeppol,
                                creditNote ? "efff-credit.xml" : "efff.xml");
        const testing::CommandResult result = testing::ValidateInvoice(file, false);
        EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    }
}

TEST_F(SchemaAndRulesTest, PeppolInvoiceAndCreditNoteBreakNoFatalRule) {
    for (bool creditNote : {false, true}) {
        const auto file = Write(SampleSalesDocument(creditNote, Pdf()), InvoiceProfile::PeppolV3,
                                creditNote ? "peppol-credit.xml" : "peppol.xml");
        const testing::CommandResult result = testing::ValidateInvoice(file, true);
        EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
        EXPECT_EQ(result.out.find("fatal"), std::string::npos) << result.out;

        const testing::XmlProbe xml(file);
        EXPECT_EQ(xml.Count("//cac:TaxSubtotal"), 4);
        EXPECT_EQ(xml.Count("//cac:AllowanceCharge[cbc:ChargeIndicator='true']"), 2);
        EXPECT_EQ(xml.Count("//cbc:EmbeddedDocumentBinaryObject[@filename='INV2025-0042.pdf']"), 1);
    }
}

}  // namespace
}  // namespace fnrk::einvoice

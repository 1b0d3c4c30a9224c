// Demo step: the sample company's PEPPOL BIS 3 invoice, with its PDF image attached.

#include <fstream>

#include "cli/command_registry.hpp"
#include "cli/demo_steps.hpp"
#include "einvoice/sample_sales_document.hpp"

namespace fnrk::cli {
namespace {

// The smallest file a PDF reader accepts, standing in for the printed invoice.
constexpr std::string_view kSamplePdf =
    "%PDF-1.4\n1 0 obj << /Type /Catalog /Pages 2 0 R >> endobj\n"
    "2 0 obj << /Type /Pages /Kids [] /Count 0 >> endobj\n"
    "trailer << /Root 1 0 R >>\n%%EOF\n";

void RunPeppolInvoiceStep(DemoContext& context) {
    const auto pdf = context.dossierFolder / "INV2025-0042.pdf";
    std::ofstream(pdf, std::ios::binary) << kSamplePdf;
    const auto file = context.dossierFolder / "INV2025-0042_peppol.xml";
    const einvoice::FixedInvoiceLookups lookups = einvoice::SampleLookups();
    if (!einvoice::WriteSalesDocument(einvoice::SampleSalesDocument(false, pdf.string()),
                                      einvoice::InvoiceProfile::PeppolV3, lookups, file.string())) {
        throw CommandFailure("cannot write " + file.string());
    }
    context.out << "  PEPPOL BIS 3 invoice INV2025-0042 of the sample company (three VAT rates, "
                   "an exempt line, trade discount, transport charge, 2% cash discount, PDF "
                   "attached)\n"
                << "  written to " << file.string() << "\n";
}

const DemoStepRegistration kPeppolInvoiceStep("60-peppol-invoice", RunPeppolInvoiceStep);

}  // namespace
}  // namespace fnrk::cli

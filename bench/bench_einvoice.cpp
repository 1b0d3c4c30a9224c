// Writing the sample sales document (four lines, six allowances and charges, a PDF attached) in
// each profile, saved to a temporary folder.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "einvoice/sample_sales_document.hpp"

namespace {

namespace ei = fnrk::einvoice;

void WriteSample(benchmark::State& state, ei::InvoiceProfile profile) {
    const auto folder = std::filesystem::temp_directory_path() / "fnrk-bench-einvoice";
    std::filesystem::create_directories(folder);
    const auto pdf = folder / "sample.pdf";
    std::ofstream(pdf, std::ios::binary) << std::string(64 * 1024, 'x');
    const ei::SalesDocument document = ei::SampleSalesDocument(false, pdf.string());
    const ei::FixedInvoiceLookups lookups = ei::SampleLookups();
    const std::string out = (folder / "sample.xml").string();
    for (auto _ : state) {
        if (!ei::WriteSalesDocument(document, profile, lookups, out)) {
            state.SkipWithError("the document could not be written");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations());
    std::filesystem::remove_all(folder);
}

void BM_WriteBasic(benchmark::State& state) {
    WriteSample(state, ei::InvoiceProfile::Basic);
}
void BM_WriteEfffPeppol(benchmark::State& state) {
    WriteSample(state, ei::InvoiceProfile::EfffPeppol);
}
void BM_WritePeppolV3(benchmark::State& state) {
    WriteSample(state, ei::InvoiceProfile::PeppolV3);
}

BENCHMARK(BM_WriteBasic);
BENCHMARK(BM_WriteEfffPeppol);
BENCHMARK(BM_WritePeppolV3);

}  // namespace

BENCHMARK_MAIN();

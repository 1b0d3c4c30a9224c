// fennrick invoice --profile basic|efff|peppol3 [--credit-note] --in INVOICE.json --out FILE.xml
//                  [--dossier DIR]

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/dossier_tables.hpp"
#include "cli/invoice_json.hpp"
#include "cli/json_fields.hpp"
#include "einvoice/table_invoice_lookups.hpp"

namespace fnrk::cli {
namespace {

namespace ei = fnrk::einvoice;

struct InvoiceOptions {
    ei::InvoiceProfile profile = ei::InvoiceProfile::PeppolV3;
    bool creditNote = false;
    std::string in;
    std::string out;
    std::string dossier;
};

// The whole description is read before the writer starts, so a bad one leaves no file.
void WriteInvoiceFile(const InvoiceOptions& options) {
    const nlohmann::json description = ReadJsonFile(options.in);
    ei::FixedInvoiceLookups lookups;
    // What the description does not give, the dossier's tables answer.
    std::unique_ptr<ei::TableInvoiceLookups> dossierLookups;
    if (!options.dossier.empty()) {
        dossierLookups =
            std::make_unique<ei::TableInvoiceLookups>(OpenDossierTables(options.dossier));
        lookups.SetFallback(dossierLookups.get());
    }
    ei::SalesDocument document;
    try {
        document = ReadSalesDocument(description,
                                     std::filesystem::absolute(options.in).parent_path(), lookups);
    } catch (const CommandFailure& failure) {
        throw CommandFailure(options.in + ": " + failure.what());
    }
    if (options.creditNote) document.isCreditNote = true;
    if (!ei::WriteSalesDocument(document, options.profile, lookups, options.out)) {
        std::error_code ignored;
        std::filesystem::remove(options.out, ignored);
        throw CommandFailure("cannot write " + options.out);
    }
    std::cout << "wrote " << options.out << "\n";
}

void SetUpInvoiceCommands(CLI::App& app) {
    auto options = std::make_shared<InvoiceOptions>();
    auto* command = app.add_subcommand(
        "invoice", "write a sales invoice or credit note as UBL from its JSON description");
    const std::map<std::string, ei::InvoiceProfile> profiles = {
        {"basic", ei::InvoiceProfile::Basic},
        {"efff", ei::InvoiceProfile::EfffPeppol},
        {"peppol3", ei::InvoiceProfile::PeppolV3}};
    command
        ->add_option("--profile", options->profile,
                     "basic (UBL 2.0, e-fff 1.0), efff (EFFF / PEPPOL 2.0) or peppol3 (PEPPOL BIS "
                     "Billing 3.0)")
        ->required()
        ->transform(CLI::CheckedTransformer(profiles, CLI::ignore_case));
    command->add_flag("--credit-note", options->creditNote,
                      "write a credit note (also set by \"creditNote\" in the JSON file)");
    command->add_option("--in", options->in, "the sales document described in JSON")->required();
    command->add_option("--out", options->out, "the XML file to write")->required();
    command->add_option("--dossier", options->dossier,
                        "company folder whose parameter, VAT-code and country tables answer what "
                        "the description's \"parameters\" and \"lookups\" do not");
    command->callback([options] { WriteInvoiceFile(*options); });
}

const CommandRegistration kInvoiceCommands("invoice", SetUpInvoiceCommands);

}  // namespace
}  // namespace fnrk::cli

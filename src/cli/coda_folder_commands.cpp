// fennrick coda-folders DOSSIER [--escape]

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/dossier_company.hpp"
#include "intake/coda_folders.hpp"

namespace fnrk::cli {
namespace {

struct CodaFolderOptions {
    std::string dossier;
    bool escape = false;
};

void PrintCodaFolders(const CodaFolderOptions& options) {
    DossierCompany dossier(options.dossier);
    intake::CodaFolders folders(dossier.company);
    const nlohmann::ordered_json json = {{"default", folders.DefaultFolder(options.escape)},
                                         {"pdf", folders.PdfFolder(options.escape)},
                                         {"processed", folders.ProcessedFolder(options.escape)}};
    std::cout << json.dump() << '\n';
}

void SetUpCodaFolderCommands(CLI::App& app) {
    auto options = std::make_shared<CodaFolderOptions>();
    CLI::App* command =
        app.add_subcommand("coda-folders", "the company's CODA folders in network form, as JSON");
    command->add_option("dossier", options->dossier, "the company folder")->required();
    command->add_flag("--escape", options->escape, "double every backslash of the folders");
    command->callback([options] { PrintCodaFolders(*options); });
}

const CommandRegistration kCodaFolderCommands("coda-folders", SetUpCodaFolderCommands);

}  // namespace
}  // namespace fnrk::cli

// Demo step: the sample company's OSS declaration for a quarter, written where its files live.

#include <nlohmann/json.hpp>

#include "cli/command_registry.hpp"
#include "cli/declaration_json.hpp"
#include "cli/demo_steps.hpp"

namespace fnrk::cli {
namespace {

// The sample company sells goods to consumers in France and services in Luxembourg, through a
// representative, and corrects the French VAT of the quarter before.
const nlohmann::json kSampleDeclaration = {
    {"trader", {{"country", "BE"}, {"vatNumber", "0477472701"}}},
    {"year", "2024"},
    {"quarter", "2"},
    {"representative",
     {{"NTVA", "0123456789"},
      {"Name", "Fiduciaire Démo"},
      {"Adress", "Rue Haute 12~bte 3"},
      {"PostCode", "BE-1000"},
      {"Locality", "Bruxelles"},
      {"Country", "BE"},
      {"Email", "oss@demo.be"}}},
    {"memberStates",
     {{{"country", "FR"},
       {"rows",
        {{{"goods", true},
          {"rateType", "STANDARD"},
          {"rate", "20,00"},
          {"vatAmount", "246,91"},
          {"taxableAmount", "1234,56"},
          {"currency", "EUR"}}}},
       {"corrections",
        {{{"year", "2024"}, {"quarter", "1"}, {"vatAmount", "-12,50"}, {"currency", "EUR"}}}}},
      {{"country", "LU"},
       {"rows",
        {{{"goods", false},
          {"rateType", "STANDARD"},
          {"rate", "17,00"},
          {"vatAmount", "51,00"},
          {"taxableAmount", "300,00"},
          {"currency", "EUR"}}}}}}}};

void RunOssDeclarationStep(DemoContext& context) {
    declarations::DeclarationDocument document;
    WriteOssConsignment(kSampleDeclaration, document);
    const auto file = context.dossierFolder / "OSS_2024_Q2.xml";
    if (!document.Save(file)) throw CommandFailure("cannot write " + file.string());
    context.out << "  OSS declaration of the sample company for 2024 Q2 (France, Luxembourg, "
                   "one correction, with representative)\n"
                << "  written to " << file.string() << "\n";
}

const DemoStepRegistration kOssDeclarationStep("50-oss-declaration", RunOssDeclarationStep);

}  // namespace
}  // namespace fnrk::cli

// fennrick vat-boxes --layout 11|12 [--values FILE.json]
// fennrick oss --in DECLARATION.json --out FILE.xml / fennrick moss --in ... --out ...

#include <iostream>
#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "cli/command_registry.hpp"
#include "cli/declaration_json.hpp"
#include "cli/json_fields.hpp"
#include "declarations/lux_vat_layout.hpp"
#include "declarations/vat_box_totals.hpp"

namespace fnrk::cli {
namespace {

using nlohmann::json;
namespace decl = fnrk::declarations;

// Box properties in their declared order, for a reader comparing with the class.
nlohmann::ordered_json BoxJson(const decl::DeclarationTvaCase& box) {
    return {{"Number", box.Number},
            {"ValueModified", box.ValueModified},
            {"ValueOriginal", box.ValueOriginal},
            {"XmlNodeNameModified", box.XmlNodeNameModified},
            {"XmlNodeNameOfficial", box.XmlNodeNameOfficial},
            {"MandatoryOriginal", box.MandatoryOriginal},
            {"MandatoryModified", box.MandatoryModified},
            {"CaseType", box.CaseType},
            {"Total", box.Total},
            {"Page", box.Page},
            {"TabOrder", box.TabOrder},
            {"AddEmptyLineAfter", box.AddEmptyLineAfter},
            {"FieldVisible", box.FieldVisible},
            {"ShowHeaderBefore", box.ShowHeaderBefore},
            {"CalcVisible", box.CalcVisible},
            {"CalcHeight", box.CalcHeight},
            {"CalcWidth", box.CalcWidth},
            {"CorrVisible", box.CorrVisible},
            {"CorrHeight", box.CorrHeight},
            {"CorrWidth", box.CorrWidth},
            {"ColumnNumber", box.ColumnNumber},
            {"Label", box.Label}};
}

// Fills the input boxes from {"033": "1000", "403": 17, ...}: the values the user enters.
void FillBoxes(decl::VatBoxDictionary& boxes, const json& values, const std::string& file) {
    if (!values.is_object()) throw CommandFailure(file + " must hold an object of box values");
    for (const auto& [number, value] : values.items()) {
        decl::DeclarationTvaCase* box = boxes.Find(number);
        if (box == nullptr) throw CommandFailure(file + ": box " + number + " is not on the form");
        if (!box->Total.empty())
            throw CommandFailure(file + ": box " + number +
                                 " is a total, computed from its formula");
        if (value.is_string()) {
            box->ValueModified = value.get<std::string>();
        } else if (value.is_number()) {
            box->ValueModified = value.dump();
        } else {
            throw CommandFailure(file + ": box " + number + " must be a text or a number");
        }
    }
}

struct VatBoxesOptions {
    int layout = 0;
    std::string valuesFile;
};

void PrintVatBoxes(const VatBoxesOptions& options) {
    decl::VatBoxDictionary boxes;
    decl::LuxXmlCaseInitialise(boxes, static_cast<std::int16_t>(options.layout));
    nlohmann::ordered_json output = {{"layout", options.layout},
                                     {"boxes", nlohmann::ordered_json::array()}};
    if (options.valuesFile.empty()) {
        for (const auto& [number, box] : boxes) output["boxes"].push_back(BoxJson(box));
    } else {
        FillBoxes(boxes, ReadJsonFile(options.valuesFile), options.valuesFile);
        decl::OrderedDictionary<double> totals;
        try {
            totals = decl::ComputeTotals(boxes);
        } catch (const decl::FormulaError& error) {
            throw CommandFailure(options.valuesFile + ": " + error.what());
        }
        for (const auto& [number, box] : boxes) {
            nlohmann::ordered_json item = BoxJson(box);
            if (const double* total = totals.Find(number)) item["Computed"] = *total;
            output["boxes"].push_back(std::move(item));
        }
    }
    std::cout << output.dump(2) << "\n";
}

struct ConsignmentOptions {
    std::string in;
    std::string out;
};

using ConsignmentWriter = void (*)(const json&, decl::DeclarationDocument&);

// The whole document is built before anything is written, so a bad description leaves no file.
void WriteConsignmentFile(const ConsignmentOptions& options, ConsignmentWriter write) {
    const json description = ReadJsonFile(options.in);
    decl::DeclarationDocument document;
    try {
        write(description, document);
    } catch (const CommandFailure& failure) {
        throw CommandFailure(options.in + ": " + failure.what());
    } catch (const decl::DeclarationError& error) {
        throw CommandFailure(options.in + ": " + error.what());
    }
    if (!document.Save(options.out)) throw CommandFailure("cannot write " + options.out);
    std::cout << "wrote " << options.out << "\n";
}

void AddConsignmentCommand(CLI::App& app, const char* name, const char* description,
                           ConsignmentWriter write) {
    auto options = std::make_shared<ConsignmentOptions>();
    auto* command = app.add_subcommand(name, description);
    command->add_option("--in", options->in, "the declaration described in JSON")->required();
    command->add_option("--out", options->out, "the XML file to write")->required();
    command->callback([options, write] { WriteConsignmentFile(*options, write); });
}

void SetUpDeclarationCommands(CLI::App& app) {
    auto vatOptions = std::make_shared<VatBoxesOptions>();
    auto* vatBoxes = app.add_subcommand(
        "vat-boxes", "print the boxes of the Luxembourg VAT return in drawing order (JSON)");
    vatBoxes->add_option("--layout", vatOptions->layout, "11 (earlier form) or 12 (later form)")
        ->required()
        ->check(CLI::IsMember({11, 12}));
    vatBoxes->add_option("--values", vatOptions->valuesFile,
                         "JSON object of input box values; the totals are computed from them");
    vatBoxes->callback([vatOptions] { PrintVatBoxes(*vatOptions); });

    AddConsignmentCommand(app, "oss", "write an OSS declaration from its JSON description",
                          WriteOssConsignment);
    AddConsignmentCommand(app, "moss", "write a MOSS declaration from its JSON description",
                          WriteMossConsignment);
}

const CommandRegistration kDeclarationCommands("declarations", SetUpDeclarationCommands);

}  // namespace
}  // namespace fnrk::cli

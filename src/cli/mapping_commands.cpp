// fennrick mapping DOSSIER --table MSODA|MSODAANA|MEFFFSOC|CCD|CCDKEY get KEY [--inss N]
// fennrick mapping DOSSIER --table T set KEY VALUE... [--inss N] [--ana REF]
// fennrick mapping DOSSIER --table T list
//
// set takes: MSODA and MSODAANA SOURCE DEST; MEFFFSOC IMPUTTYPE DEST (the line type letter and
// the item type); CCD CARDID CARDNUMBER ACCOUNT; CCDKEY MERCHANT account|supplier DEST. The
// table is made when missing.

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/command_registry.hpp"
#include "cli/dossier_company.hpp"
#include "intake/caro_mappings.hpp"
#include "intake/efff_mappings.hpp"
#include "intake/mapping_layouts.hpp"
#include "intake/mapping_table.hpp"
#include "intake/soda_mappings.hpp"
#include "platform/text.hpp"
#include "tables/current_alias_guard.hpp"

namespace fnrk::cli {
namespace {

using nlohmann::ordered_json;

struct MappingOptions {
    std::string dossier;
    std::string table;
    std::string action;
    std::vector<std::string> values;
    std::string inss;
    std::string ana;
};

// The fields `list` shows, in file order, and the order it walks.
struct ListedTable {
    std::vector<std::string> fields;
    intake::MappingQuery order;
};

ListedTable ListingOf(const std::string& table) {
    if (table == "MSODA") return {{"SOURCE", "DEST"}, {"SEEKSOURCE", "SOURCE"}};
    if (table == "MSODAANA") return {{"SOURCE", "DEST"}, {"SEEKSOURCEA", "SOURCE"}};
    if (table == "MEFFFSOC")
        return {{"LINETYPE", "TYPE", "INSS", "DEST", "NAME", "FIRSTNAME", "ANAREF"},
                {"SEEKINSS", "DETAIL"}};
    if (table == "CCD") return {{"CARDID", "CARDNUMBER", "GLACCOUNT"}, {"SEEKCCD", "CARDID"}};
    return {{"MERCHANT", "GLACCOUNT", "SUPPLIER"}, {"SEEKCCDKEY", "MERCHANT"}};
}

void Need(const MappingOptions& options, std::size_t count, const std::string& usage) {
    if (options.values.size() != count) {
        throw CommandFailure(options.action + " on " + options.table + " takes " + usage);
    }
}

void Check(bool done, const MappingOptions& options) {
    if (!done) throw CommandFailure("the " + options.table + " table could not be written");
}

void List(intake::CompanyFacts& company, const MappingOptions& options) {
    const ListedTable listed = ListingOf(options.table);
    tables::AdsClass& tables = company.Tables();
    const tables::CurrentAliasGuard caller(tables);
    intake::MappingTable table(company, *intake::MappingLayoutNamed(options.table));
    if (!table.Exists()) return;
    if (!table.OpenInOrder(listed.order)) {
        throw CommandFailure("the " + options.table + " table could not be opened");
    }
    for (; !tables.SelectionEof(); tables.moveNext()) {
        ordered_json record = ordered_json::object();
        for (const std::string& field : listed.fields) record[field] = tables.GetStringValue(field);
        std::cout << record.dump() << '\n';
    }
}

ordered_json Get(intake::CompanyFacts& company, const MappingOptions& options) {
    Need(options, 1, "one key");
    const std::string& key = options.values[0];
    if (options.table == "MSODA") {
        return {{"destination", intake::SodaMappings(company).GetMapping(key)}};
    }
    if (options.table == "MSODAANA") {
        return {{"destination", intake::SodaMappings(company).GetMappingANA(key)}};
    }
    if (options.table == "MEFFFSOC") {
        std::string destination;
        std::string anaRef;
        const bool found =
            intake::EfffMappings(company).GetMappingInfo(key, options.inss, destination, anaRef);
        return {{"found", found}, {"destination", destination}, {"anaRef", anaRef}};
    }
    if (options.table == "CCD") {
        return {{"account", intake::CaroMappings(company).GetMapping(key)}};
    }
    std::int16_t type = 0;
    std::string destination;
    const bool found = intake::CaroMappings(company).GetKeyMapping(key, type, destination);
    return {{"found", found},
            {"type", !found                                ? ""
                     : type == intake::kDestinationAccount ? "account"
                                                           : "supplier"},
            {"destination", destination}};
}

void Set(intake::CompanyFacts& company, const MappingOptions& options) {
    const std::vector<std::string>& v = options.values;
    if (options.table == "MSODA" || options.table == "MSODAANA") {
        Need(options, 2, "SOURCE DEST");
        intake::SodaMappings soda(company);
        const bool ana = options.table == "MSODAANA";
        Check((ana ? soda.CreateMappingANA() : soda.CreateMapping()) &&
                  (ana ? soda.UpdateMappingANA(v[0], v[1]) : soda.UpdateMapping(v[0], v[1])),
              options);
    } else if (options.table == "MEFFFSOC") {
        Need(options, 2, "IMPUTTYPE DEST");
        intake::EfffMappings efff(company);
        Check(efff.CreateMapping() &&
                  (options.ana.empty()
                       ? efff.UpdateMappingGLAccount(v[0], options.inss, v[1])
                       : efff.UpdateMappingByUser(v[0], options.inss, v[1], options.ana)),
              options);
    } else if (options.table == "CCD") {
        Need(options, 3, "CARDID CARDNUMBER ACCOUNT");
        intake::CaroMappings caro(company);
        Check(caro.CreateMapping() && caro.UpdateMapping(v[0], v[1], v[2]), options);
    } else {
        Need(options, 3, "MERCHANT account|supplier DEST");
        const std::string type = platform::LowerCase(v[1]);
        if (type != "account" && type != "supplier") {
            throw CommandFailure("the destination of a merchant is an account or a supplier");
        }
        intake::CaroMappings caro(company);
        Check(caro.CreateKeyMapping() &&
                  caro.UpdateKeyMapping(v[0],
                                        type == "account" ? intake::kDestinationAccount
                                                          : intake::kDestinationSupplier,
                                        v[2]),
              options);
    }
}

void RunMapping(const MappingOptions& options) {
    DossierCompany dossier(options.dossier);
    if (options.action == "list") {
        Need(options, 0, "nothing more");
        List(dossier.company, options);
    } else if (options.action == "get") {
        std::cout << Get(dossier.company, options).dump() << '\n';
    } else {
        Set(dossier.company, options);
    }
}

void SetUpMappingCommands(CLI::App& app) {
    auto options = std::make_shared<MappingOptions>();
    CLI::App* command =
        app.add_subcommand("mapping", "read and change the SODA, EFFF and CARO mapping tables");
    command->add_option("dossier", options->dossier, "the company folder")->required();
    command->add_option("--table", options->table, "MSODA, MSODAANA, MEFFFSOC, CCD or CCDKEY")
        ->required()
        ->transform(
            CLI::IsMember({"MSODA", "MSODAANA", "MEFFFSOC", "CCD", "CCDKEY"}, CLI::ignore_case));
    command->add_option("action", options->action, "get, set or list")
        ->required()
        ->check(CLI::IsMember({"get", "set", "list"}));
    command->add_option("values", options->values, "the key, and for set the mapping");
    command->add_option("--inss", options->inss, "MEFFFSOC: the worker's national number");
    command->add_option("--ana", options->ana, "MEFFFSOC set: the analytical reference");
    command->callback([options] {
        options->table = platform::UpperCase(options->table);
        RunMapping(*options);
    });
}

const CommandRegistration kMappingCommands("mapping", SetUpMappingCommands);

}  // namespace
}  // namespace fnrk::cli

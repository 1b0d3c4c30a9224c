// fennrick param DOSSIER KEY...                      each key's full value, one line each
// fennrick param DOSSIER --book-years [--language L] one JSON line per book year
// fennrick param DOSSIER --next-match-number [BOOKYEAR]

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/command_registry.hpp"
#include "cli/dossier_tables.hpp"
#include "company/soc_param_col_class_api.hpp"
#include "session/session_user.hpp"

namespace fnrk::cli {
namespace {

struct ParamOptions {
    std::string dossier;
    std::string company;
    std::vector<std::string> keys;
    bool bookYears = false;
    std::string language;
    std::string bookYear;
};

void PrintBookYears(company::SocParamColClassApi& params, const std::string& language) {
    // The labels in the session language; without one, in the company's own.
    session::SharedFacade().language = language.empty() ? params.Langofcreation() : language;
    const std::int16_t count = params.BookYearCount();
    for (std::int16_t number = 1; number <= count; ++number) {
        std::string asText = std::to_string(number);
        const nlohmann::ordered_json line = {
            {"number", number},
            {"status", params.BookYearStatus(number)},
            {"closed", params.IsBookYearClosed(number)},
            {"shortLabel", params.ShortLabel(number)},
            {"longLabel", params.LongLabel(number)},
            {"currency", params.SocCurrency(number)},
            {"periodCount", params.NbrPerByYear(asText)},
            {"periodLabels", params.PeriodLabels(number)},
            {"periodDates", params.PeriodDates(number)},
        };
        std::cout << line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
    }
}

// The last book year that is not closed, else the last one.
std::string DefaultBookYear(company::SocParamColClassApi& params) {
    const std::int16_t count = params.BookYearCount();
    for (std::int16_t number = count; number >= 1; --number) {
        if (!params.IsBookYearClosed(number)) return std::to_string(number);
    }
    return std::to_string(count);
}

void RunParam(const ParamOptions& options, bool nextMatchNumber) {
    company::SocParamColClassApi params(OpenDossierTables(options.dossier, options.company));
    if (options.bookYears) {
        PrintBookYears(params, options.language);
        return;
    }
    if (nextMatchNumber) {
        std::string bookYear =
            options.bookYear.empty() ? DefaultBookYear(params) : options.bookYear;
        const std::int32_t number = params.GetNewMatchNumber(bookYear);
        if (number == 0) {
            throw CommandFailure("no matching number for book year " + bookYear +
                                 ": its counter is locked by another workstation");
        }
        std::cout << number << "\n";
        return;
    }
    for (const std::string& key : options.keys) std::cout << params.GetParamValue(key) << "\n";
}

void SetUpParamCommand(CLI::App& app) {
    auto* param = app.add_subcommand("param", "read a company's parameters and book years");
    auto options = std::make_shared<ParamOptions>();
    param->add_option("DOSSIER", options->dossier, "company folder")->required();
    param->add_option("KEY", options->keys, "parameter keys to print");
    param->add_option("--company", options->company,
                      "the company's short name (default: the folder's name)");
    auto* bookYears =
        param->add_flag("--book-years", options->bookYears, "one JSON line per book year");
    param
        ->add_option("--language", options->language,
                     "language of the period labels (default: the company's)")
        ->needs(bookYears);
    auto* next = param
                     ->add_option("--next-match-number", options->bookYear,
                                  "take the next matching number of a book year "
                                  "(default: the last open one)")
                     ->expected(0, 1)
                     ->excludes(bookYears);
    param->callback([options, next] { RunParam(*options, next->count() > 0); });
}

const CommandRegistration kParamCommand("param", SetUpParamCommand);

}  // namespace
}  // namespace fnrk::cli

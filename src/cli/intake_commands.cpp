// fennrick intake DOSSIER --kind soda|efff|caro --year N
// fennrick intake DOSSIER --kind K --file PATH --status processed|error|warning|bad-year

#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/dossier_company.hpp"
#include "intake/file_period.hpp"
#include "intake/intake_folders.hpp"
#include "intake/intake_settings.hpp"
#include "intake/period_mapping.hpp"

namespace fnrk::cli {
namespace {

struct IntakeOptions {
    std::string dossier;
    intake::IntakeKind kind = intake::IntakeKind::Soda;
    int year = 0;
    std::string file;
    std::int16_t status = -1;
};

// The period and book year of a waiting file; empty texts when it has no readable period or
// no book year holds it.
nlohmann::ordered_json PeriodOf(intake::CompanyFacts& company, intake::IntakeKind kind,
                                const std::string& file) {
    std::string period;
    std::string bookYear;
    const auto month =
        intake::ReadFilePeriod(file, kind, intake::IntakeSettings(company, kind).GetSocialPeriod());
    if (month) {
        intake::DateToPeriode(company, std::to_string(month->month), std::to_string(month->year),
                              period, bookYear);
    }
    return {{"period", period}, {"bookYear", bookYear}};
}

void ListWaitingFiles(const IntakeOptions& options) {
    DossierCompany dossier(options.dossier);
    intake::IntakeFolders folders(options.kind);
    folders.GetFile(dossier.company, options.year);
    for (const intake::FileEntry& entry : folders.Files().Entries()) {
        if (entry.name.empty()) continue;
        nlohmann::ordered_json line = {
            {"name", entry.name}, {"path", entry.path}, {"done", entry.done}};
        line.update(PeriodOf(dossier.company, options.kind, entry.path));
        std::cout << line.dump() << '\n';
    }
}

void FileAway(const IntakeOptions& options) {
    DossierCompany dossier(options.dossier);
    intake::IntakeFolders folders(options.kind);
    // The PDF travels with the file whenever there is one.
    const std::string pdf = intake::IntakeFolders::GetPdfFile(options.file);
    if (!folders.UpdateFile(dossier.company, options.file, options.status, pdf)) {
        throw CommandFailure(options.file + " could not be filed: it stays where it was");
    }
}

void SetUpIntakeCommands(CLI::App& app) {
    auto options = std::make_shared<IntakeOptions>();
    CLI::App* command = app.add_subcommand(
        "intake", "list the waiting SODA, EFFF or CARO files of a year, or file one away");
    command->add_option("dossier", options->dossier, "the company folder")->required();
    const std::map<std::string, intake::IntakeKind> kinds = {{"soda", intake::IntakeKind::Soda},
                                                             {"efff", intake::IntakeKind::Efff},
                                                             {"caro", intake::IntakeKind::Caro}};
    command->add_option("--kind", options->kind, "soda, efff or caro")
        ->required()
        ->transform(CLI::CheckedTransformer(kinds, CLI::ignore_case));
    CLI::Option* year =
        command->add_option("--year", options->year, "list the waiting files of this year");
    CLI::Option* file = command->add_option("--file", options->file, "the file to file away");
    const std::map<std::string, std::int16_t> statuses = {{"processed", intake::kStatusProcessed},
                                                          {"error", intake::kStatusError},
                                                          {"warning", intake::kStatusWarning},
                                                          {"bad-year", intake::kStatusBadYear}};
    CLI::Option* status =
        command->add_option("--status", options->status, "processed, error, warning or bad-year")
            ->transform(CLI::CheckedTransformer(statuses, CLI::ignore_case));
    year->excludes(file);
    file->needs(status);
    status->needs(file);
    command->callback([options, year, file] {
        if (*file) {
            FileAway(*options);
        } else if (*year) {
            ListWaitingFiles(*options);
        } else {
            throw CommandFailure("give --year to list the waiting files, or --file and --status");
        }
    });
}

const CommandRegistration kIntakeCommands("intake", SetUpIntakeCommands);

}  // namespace
}  // namespace fnrk::cli

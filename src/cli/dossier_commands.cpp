// fennrick dossier copy FROM TO [--password-file F]: every table of a dossier, with its tags,
// between a folder of table files, a SQLite database (sqlite:PATH) and a PostgreSQL database
// (postgresql://... or a libpq connection string). Encrypted tables need the dossier's password
// (the first line of F) and stay encrypted with it.

#include <unistd.h>

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/password_file.hpp"
#include "tables/dossier_copy.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::cli {
namespace {

struct CopyOptions {
    std::string from;
    std::string to;
    std::string passwordFile;
};

tables::DossierPlace PlaceOf(const std::string& text) {
    try {
        return tables::ParseDossierPlace(text);
    } catch (const std::invalid_argument& error) {
        throw CommandFailure(error.what());
    }
}

// A bar on standard error, drawn only when it is a terminal.
void ShowProgress(const std::string& table, std::size_t done, std::size_t total) {
    constexpr std::size_t kWidth = 30;
    const std::size_t filled = total == 0 ? kWidth : done * kWidth / total;
    std::cerr << "\r\033[K[" << std::string(filled, '#') << std::string(kWidth - filled, ' ')
              << "] " << done << "/" << total << " " << table << (done == total ? "\n" : "")
              << std::flush;
}

void Copy(const CopyOptions& options) {
    const tables::DossierPlace from = PlaceOf(options.from);
    const tables::DossierPlace to = PlaceOf(options.to);
    const std::string password =
        options.passwordFile.empty() ? std::string() : ReadPasswordFile(options.passwordFile);
    std::string error;
    const bool terminal = ::isatty(STDERR_FILENO) != 0;
    if (tables::CopyDossier(tables::SharedSqlDatabase(), from, to, password,
                            terminal ? tables::DossierCopyProgress(ShowProgress) : nullptr,
                            error) != engine::AE_SUCCESS)
        throw CommandFailure("cannot copy the " + tables::Shown(from) + " to the " +
                             tables::Shown(to) + ": " + error);
}

void SetUpDossierCommands(CLI::App& app) {
    auto* dossier = app.add_subcommand("dossier", "work on whole dossiers");
    dossier->require_subcommand(1);
    auto options = std::make_shared<CopyOptions>();
    auto* copy = dossier->add_subcommand(
        "copy", "copy every table of a dossier, with its tags, to a new place");
    copy->add_option("FROM", options->from,
                     "folder, sqlite:PATH, postgresql://... or a libpq connection string")
        ->required();
    copy->add_option("TO", options->to, "the same kinds; must not hold a dossier yet")->required();
    copy->add_option("--password-file", options->passwordFile,
                     "file whose first line is the password of the dossier's encrypted tables");
    copy->callback([options] { Copy(*options); });
}

const CommandRegistration registration("dossier", SetUpDossierCommands);

}  // namespace
}  // namespace fnrk::cli

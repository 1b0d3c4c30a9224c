#include "cli/dossier_tables.hpp"

#include "backend/frc_database.hpp"
#include "cli/command_registry.hpp"

namespace fnrk::cli {

DossierTables::DossierTables(const std::filesystem::path& folder)
    : db_(engine_, [] { return std::make_unique<backend::FRCDatabase>(); }), tables_(db_) {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        throw CommandFailure("no dossier folder " + folder.string());
    const std::filesystem::path absolute = std::filesystem::absolute(folder).lexically_normal();
    const std::filesystem::path named = absolute.has_filename() ? absolute : absolute.parent_path();
    // A command answers in its output, not in message boxes.
    tables_.SetInteractive(false);
    tables_.Initialize();
    tables_.SetDossierPrefix((named / named.filename()).string());
    if (!tables_.FileExistParam() || tables_.FileOpenParam("SHARED") != 0) {
        throw CommandFailure(folder.string() + ": no parameter table " +
                             tables_.StandardTablePath("PARAM"));
    }
}

}  // namespace fnrk::cli

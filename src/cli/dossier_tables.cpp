#include "cli/dossier_tables.hpp"

#include "cli/command_registry.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::cli {

tables::AdsClass& OpenDossierTables(const std::filesystem::path& folder,
                                    const std::string& shortName) {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        throw CommandFailure("no dossier folder " + folder.string());
    const std::filesystem::path absolute = std::filesystem::absolute(folder).lexically_normal();
    const std::filesystem::path named = absolute.has_filename() ? absolute : absolute.parent_path();
    tables::AdsClass& tables = tables::SharedAdsClass();
    // A command answers in its output, not in message boxes.
    tables.SetInteractive(false);
    tables.Initialize();
    tables.SetDossierPrefix(
        (named / (shortName.empty() ? named.filename() : std::filesystem::path(shortName)))
            .string());
    if (!tables.FileExistParam() || tables.FileOpenParam("SHARED") != 0) {
        throw CommandFailure(folder.string() + ": no parameter table " +
                             tables.StandardTablePath("PARAM"));
    }
    return tables;
}

}  // namespace fnrk::cli

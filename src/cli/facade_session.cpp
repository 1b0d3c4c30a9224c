#include "cli/facade_session.hpp"

#include <filesystem>

#include "cli/dossier_tables.hpp"
#include "facade/user_object.hpp"
#include "session/api_ini.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::cli {

void AddFacadeSessionOptions(CLI::App& command, FacadeSessionOptions& options) {
    command.add_option("--ini", options.ini, "the configuration file (Fennrick.ini)");
    command.add_option("--dossier", options.dossier,
                       "company folder, named by the company's short name (/data/SOC1 holds "
                       "SOC1_param.dbf); its parameter table is opened");
    command.add_option("--users", options.users, "the folder of the users table");
    command.add_option("--user", options.user, "the current user's name");
    command.add_option("--language", options.language,
                       "session language: N Dutch, E English, anything else French");
}

void StartFacadeSession(facade::FnrkRoutines& routines, const FacadeSessionOptions& options) {
    using facade::Variant;
    // A command answers in its output, not in message boxes.
    tables::SharedAdsClass().SetInteractive(false);
    if (!options.ini.empty()) {
        routines.InitializeProperty("INIFILE", Variant(options.ini));
        session::SharedApiIni().INIfile(options.ini);
    }
    if (!options.users.empty()) routines.InitializeProperty("USERDBFPATH", Variant(options.users));
    if (!options.language.empty()) {
        routines.InitializeProperty("LANGUAGE", Variant(options.language));
    }
    routines.InitializeDLL();
    if (!options.user.empty()) {
        routines.USER_Class(
            Variant(facade::MakeUserObject(options.user, "", "", routines.language())));
    }
    routines.init();
    if (!options.dossier.empty()) {
        OpenDossierTables(options.dossier);
        const std::filesystem::path folder =
            std::filesystem::absolute(options.dossier).lexically_normal();
        const std::filesystem::path named = folder.has_filename() ? folder : folder.parent_path();
        facade::FnrkRoutines::pathName(named.string());
        facade::FnrkRoutines::socShortName(named.filename().string());
    }
}

}  // namespace fnrk::cli

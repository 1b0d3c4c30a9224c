#include "cli/dossier_company.hpp"

#include "cli/dossier_tables.hpp"

namespace fnrk::cli {

DossierCompany::DossierCompany(const std::filesystem::path& folder)
    : tables(OpenDossierTables(folder)), params(tables), company(tables, params) {}

}  // namespace fnrk::cli

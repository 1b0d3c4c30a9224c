#include "facade/shared_session.hpp"

#include "company/shared_company.hpp"
#include "facade/fnrk_routines.hpp"
#include "platform/paths.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::facade {

FacadeSession& SharedSession() {
    static FacadeSession session;
    return session;
}

FnrkRoutines& SharedFnrkRoutines() {
    static FnrkRoutines shared;
    return shared;
}

void ApplyCompanyToTables() {
    const company::SocParamColClassApi& company = company::SharedSocParamColClassApi();
    const std::string folder = company.pathName();
    if (folder.empty() || company.socShortName().empty()) return;
    tables::SharedAdsClass().SetDossierPrefix(folder + platform::kPathSep + company.socShortName());
}

}  // namespace fnrk::facade

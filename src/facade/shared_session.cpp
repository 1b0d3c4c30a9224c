#include "facade/shared_session.hpp"

#include "company/soc_param_col_class_api.hpp"
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

company::SocParamColClassApi& SharedSocParamColClassApi() {
    static company::SocParamColClassApi params(tables::SharedAdsClass());
    return params;
}

void ApplyCompanyToTables(const CompanySession& company) {
    if (company.pathName.empty() || company.socShortName.empty()) return;
    std::string folder = company.pathName;
    if (folder.back() == platform::kPathSep) folder.pop_back();
    tables::SharedAdsClass().SetDossierPrefix(folder + platform::kPathSep + company.socShortName);
}

}  // namespace fnrk::facade

#pragma once

// A company dossier opened for an intake command: its tables, parameters and the facts the
// intake classes read.

#include <filesystem>

#include "company/soc_param_col_class_api.hpp"
#include "intake/company_facts.hpp"
#include "tables/ads_class.hpp"

namespace fnrk::cli {

struct DossierCompany {
    // A folder that is missing or holds no parameter table is a CommandFailure.
    explicit DossierCompany(const std::filesystem::path& folder);

    tables::AdsClass& tables;
    company::SocParamColClassApi params;
    intake::CompanyFacts company;
};

}  // namespace fnrk::cli

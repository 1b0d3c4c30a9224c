#include "company/shared_company.hpp"

#include "tables/shared_tables.hpp"

namespace fnrk::company {

SocParamColClassApi& SharedSocParamColClassApi() {
    static SocParamColClassApi instance(tables::SharedAdsClass());
    return instance;
}

}  // namespace fnrk::company

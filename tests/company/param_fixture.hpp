#pragma once

// A parameter table "PARAM" in the test dossier (either keeping), open and ready, with a small
// "VALUE" so that values continue in "VALUEEXT" soon.

#include <string>

#include "company/soc_param_col_class_api.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::company::testing {

using tables::ads_testing::Keeping;
using tables::ads_testing::KeepingName;

inline constexpr const char* kParamTableFields = "ID,C,25,0;VALUE,C,12,0;VALUEEXT,C,120,0";

class ParamTest : public tables::ads_testing::AdsTest {
  protected:
    void SetUp() override {
        AdsTest::SetUp();
        CreateStandard("PARAM", kParamTableFields, {{"ID", "ID"}});
        ASSERT_EQ(ads.FileOpenParam(), engine::AE_SUCCESS);
    }
    // A row as stored: VALUE and VALUEEXT given separately.
    void AddParam(const std::string& id, const std::string& value, const std::string& more = "") {
        AddRecord("PARAM", {{"ID", id}, {"VALUE", value}, {"VALUEEXT", more}});
    }
    std::string Prefix() const { return (dossier / "SOC1").string(); }

    SocParamColClassApi params{ads};
};

}  // namespace fnrk::company::testing

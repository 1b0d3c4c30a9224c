#pragma once

// A company "SOC1" with its parameter table open, kept as files or in SQL, for the intake
// classes; book years are added by the tests that need them.

#include <string>

#include "company/soc_param_col_class_api.hpp"
#include "intake/company_facts.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::intake::testing {

class IntakeTest : public tables::ads_testing::AdsTest {
  protected:
    void SetUp() override {
        AdsTest::SetUp();
        CreateStandard("PARAM", "ID,C,25,0;VALUE,C,60,0;VALUEEXT,C,60,0", {{"ID", "ID"}});
        ASSERT_EQ(ads.FileOpenParam(), engine::AE_SUCCESS);
    }

    void SaveParam(const std::string& key, const std::string& value) {
        ASSERT_TRUE(company.SaveParamValue(key, value)) << key;
    }

    // Book year `number` of calendar year `year`, monthly (12 periods) or quarterly (4): the
    // period labels and the start dates, opening period first.
    void AddBookYear(int number, int year, bool monthly) {
        const std::string prefix = "BOOKYEAR" + std::to_string(number);
        const int periods = monthly ? 12 : 4;
        std::string dates = "0101" + std::to_string(year);
        for (int period = 0; period < periods; ++period) {
            const int month = monthly ? period + 1 : period * 3 + 1;
            dates += std::string("01") + (month < 10 ? "0" : "") + std::to_string(month) +
                     std::to_string(year);
        }
        SaveParam(prefix + ".PerDate", dates);
        SaveParam(prefix + ".PERLIB1", std::string(static_cast<std::size_t>(periods + 2) * 8, 'L'));
        SaveParam("Bookyearcount", std::to_string(number));
    }

    company::SocParamColClassApi params{ads};
    CompanyFacts company{ads, params};
};

}  // namespace fnrk::intake::testing

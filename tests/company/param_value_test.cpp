#include "company/soc_param_col_class_api.hpp"

#include <gtest/gtest.h>

#include "tables/ads_fixture.hpp"

namespace fnrk::company {
namespace {

using tables::ads_testing::AdsTest;
using tables::ads_testing::Keeping;

class ParamValueTest : public AdsTest {
  protected:
    void AddParam(const std::string& id, const std::string& value, const std::string& more = "") {
        AddRecord("PARAM", {{"ID", id}, {"VALUE", value}, {"VALUEEXT", more}});
    }
};

TEST_P(ParamValueTest, ReadsWholeValuesByKeyAndLeavesTheCurrentAliasAlone) {
    CreateStandard("PARAM", "ID,C,25,0;VALUE,C,12,0;VALUEEXT,C,40,0", {{"ID", "ID"}});
    CreateStandard("ACF", tables::ads_testing::kAccountFields);
    SocParamColClassApi params(ads);
    EXPECT_EQ(params.GetParamValue("SOCNAME"), "") << "the parameter table is not open";

    ASSERT_EQ(ads.FileOpenParam(), engine::AE_SUCCESS);
    AddParam("SOCNAME", "Fennrick");
    AddParam("INVNBDEC", "2");
    // A value longer than VALUE continues in VALUEEXT, without VALUE's padding in between.
    AddParam("PEPPOLEMAILSENDER", "invoices@fen", "nrick.example ");
    AddParam("ABCDEFGHIJKLMNOPQRSTUVWXY", "cut");
    ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS);
    ASSERT_EQ(ads.GetCurrentAlias(), "ACF");

    EXPECT_EQ(params.GetParamValue(" socname "), "Fennrick");
    EXPECT_EQ(params.GetParamValue("PEPPOLEmailSender"), "invoices@fennrick.example");
    EXPECT_EQ(params.GetParamValue("InvNbDec"), "2");
    EXPECT_EQ(params.GetParamValue("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), "cut")
        << "a key is cut to 25 characters";
    EXPECT_EQ(params.GetParamValue("INVNBDECQT"), "");
    EXPECT_EQ(ads.GetCurrentAlias(), "ACF");

    // Read while the parameter table itself is current: it stays current.
    ASSERT_EQ(ads.ActivateAlias("PARAM"), engine::AE_SUCCESS);
    EXPECT_EQ(params.GetParamValue("SOCNAME"), "Fennrick");
    EXPECT_EQ(ads.GetCurrentAlias(), "PARAM");
    EXPECT_EQ(Shown(), "");
}

INSTANTIATE_TEST_SUITE_P(Keeping, ParamValueTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::company

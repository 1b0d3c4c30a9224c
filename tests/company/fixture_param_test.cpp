// SocParamColClassApi on the shared fixture's parameter table (written by another engine).

#include <gtest/gtest.h>

#include "company/soc_param_col_class_api.hpp"
#include "session/session_user.hpp"
#include "tables/fixture_tables.hpp"

namespace fnrk::company::testing {
namespace {

using tables::ads_testing::Keeping;

class FixtureParamTest : public tables::ads_testing::AdsTest {
  protected:
    void SetUp() override {
        AdsTest::SetUp();
        tables::ads_testing::InstallFixtureTable(
            ads, GetParam(), "SOC1_param", dossier / "SOC1_param",
            "ID,C,25,0;VALUE,C,100,0;VALUEEXT,C,150,0", {{"ID", "ID"}});
        ASSERT_EQ(ads.FileOpenParam(), engine::AE_SUCCESS) << ads.GetAdsLastError();
    }
    void TearDown() override {
        session::SharedFacade().language.clear();
        AdsTest::TearDown();
    }
    SocParamColClassApi params{ads};
};

TEST_P(FixtureParamTest, BookYearsAndJoinedValuesOfTheFixture) {
    EXPECT_EQ(params.socname(), "Brasserie du Parc SPRL");
    EXPECT_EQ(params.BookYearCount(), 3);
    EXPECT_TRUE(params.IsBookYearClosed(1));
    EXPECT_FALSE(params.IsBookYearClosed(2)) << "stored as \"open\"";
    EXPECT_FALSE(params.IsBookYearClosed(3));
    EXPECT_EQ(params.CurrentBookYearName(), "");
    params.CurrentBYNum(3);
    EXPECT_EQ(params.CurrentBookYearName(), "2026");
    EXPECT_EQ(params.LongLabel(3), "Exercice 2026");
    EXPECT_TRUE(params.IsCoda());

    // VALUE full to its last character, continued in VALUEEXT.
    EXPECT_EQ(params.Vatparam(), std::string(40, 'A') + std::string(30, 'B'))
        << "VALUE's padding is not part of the value";
    const std::string dates = params.PerDate(3);
    EXPECT_EQ(dates.size(), 112u);
    EXPECT_EQ(dates.substr(96), "0112202601122026");
    // The labels' VALUE ends in a blank that belongs to a slot: reading drops it, and the
    // rounding of the count absorbs it (109 characters: 13.6 - 2).
    std::string bookYear;
    EXPECT_EQ(params.NbrPerByYear(bookYear), 12);
    EXPECT_EQ(bookYear, "3");
    EXPECT_TRUE(params.IsSocMensuel(3));
    session::SharedFacade().language = "F";
    EXPECT_EQ(params.perlib(3), "") << "no LANGCREATION: F is not it, and .Perlib2 is missing";
    EXPECT_EQ(params.GetParamValue("bookyear3.perlib1").substr(0, 11), "Ouvert. P01");
    EXPECT_EQ(params.GetParamValue("CODA_PARAMFILE"),
              "WITHDEFAULT=true,DEFAULT=K:\\BANK,PROCESSCAN=FALSE,PROCES=TRUE,PROCESPATH=\\\\srv\\"
              "coda\\done");
}

TEST_P(FixtureParamTest, CounterAndNewValuesOnTheFixture) {
    std::string bookYear = "3";
    EXPECT_EQ(params.GetNewMatchNumber(bookYear), 1);
    EXPECT_EQ(params.GetNewMatchNumber(bookYear), 2);
    const std::string longText = std::string(99, 'x') + " " + std::string(20, 'y');
    ASSERT_TRUE(params.SaveParamNewsoc({{"PAYROLMO", longText}}));
    EXPECT_EQ(params.GetParamValue("PAYROLMO"), longText);
    EXPECT_EQ(params.socname(), "Brasserie du Parc SPRL") << "other keys untouched";
}

INSTANTIATE_TEST_SUITE_P(Keepings, FixtureParamTest,
                         ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::company::testing

// SocParamColClassApi: writing a new company's parameters, erasing a key and the matching-number
// counter, within one process.

#include <gtest/gtest.h>

#include "param_fixture.hpp"
#include "platform/text.hpp"

namespace fnrk::company::testing {
namespace {

TEST(ParamValueSplitTest, LongValuesSplitSoThatReadingJoinsThemBack) {
    std::string value;
    std::string extension;
    ASSERT_TRUE(SplitParamValue("short  ", 12, 40, value, extension));
    EXPECT_EQ(value, "short");
    EXPECT_EQ(extension, "");

    ASSERT_TRUE(SplitParamValue("abcdefghijklmnop", 12, 40, value, extension));
    EXPECT_EQ(value, "abcdefghijkl");
    EXPECT_EQ(extension, "mnop");

    // Blanks where VALUE would end go to VALUEEXT: trimming VALUE on reading keeps them.
    ASSERT_TRUE(SplitParamValue("P1      P2  x   P3", 12, 40, value, extension));
    EXPECT_EQ(value, "P1      P2");
    EXPECT_EQ(extension, "  x   P3");
    EXPECT_EQ(platform::TrimRight(value) + extension, "P1      P2  x   P3");

    // Characters, not bytes, fill the fields.
    ASSERT_TRUE(SplitParamValue("ééééééééééééàà", 12, 40, value, extension));
    EXPECT_EQ(value, "éééééééééééé");
    EXPECT_EQ(extension, "àà");

    EXPECT_FALSE(SplitParamValue(std::string(53, 'x'), 12, 40, value, extension));
    EXPECT_TRUE(SplitParamValue(std::string(52, 'x'), 12, 40, value, extension));
}

class ParamWritesTest : public ParamTest {};

TEST_P(ParamWritesTest, NewCompanyParametersRoundTripAndReplaceExistingOnes) {
    AddParam("SOCNAME", "Old name");
    const std::string longValue = "WITHDEFAULT=true,DEFAULT=K:\\BANK    ,PROCES=TRUE    ,PATH=x";
    ASSERT_TRUE(params.SaveParamNewsoc({{"SocName", "Brasserie du Parc"},
                                        {"CODA_PARAMFILE", longValue},
                                        {"BookYearCount", "1"},
                                        {"Empty", ""}}));
    EXPECT_EQ(params.socname(), "Brasserie du Parc");
    EXPECT_EQ(params.GetParamValue("CODA_PARAMFILE"), longValue) << "a long value keeps its tail";
    EXPECT_EQ(params.BookYearCount(), 1);
    EXPECT_EQ(params.GetParamValue("EMPTY"), "");

    // One row per key: the old name was replaced, not doubled.
    ASSERT_EQ(ads.ActivateAlias("PARAM"), engine::AE_SUCCESS);
    ASSERT_TRUE(ads.SetIndex(""));
    std::uint32_t rows = 0;
    for (ads.MoveTop(); !ads.SelectionEof(); ads.moveNext()) ++rows;
    EXPECT_EQ(rows, 4u);

    // Shorter again: nothing of the longer value is left in VALUEEXT.
    ASSERT_TRUE(params.SaveParamNewsoc({{"CODA_PARAMFILE", "WITHDEFAULT=false"}}));
    EXPECT_EQ(params.GetParamValue("CODA_PARAMFILE"), "WITHDEFAULT=false");
}

TEST_P(ParamWritesTest, BadInputWritesNothing) {
    AddParam("SOCNAME", "Kept");
    EXPECT_FALSE(params.SaveParamNewsoc({{"SOCNAME", "Changed"}, {"  ", "no key"}}));
    EXPECT_FALSE(
        params.SaveParamNewsoc({{"SOCNAME", "Changed"}, {"TOOLONG", std::string(133, 'x')}}));
    EXPECT_EQ(params.socname(), "Kept");
    EXPECT_EQ(params.GetParamValue("TOOLONG"), "");
    EXPECT_TRUE(params.SaveParamNewsoc({{"FITS", std::string(132, 'x')}}));
    EXPECT_EQ(params.GetParamValue("FITS"), std::string(132, 'x'));
}

TEST_P(ParamWritesTest, ErasingAKeyRemovesItsRowAndASaveAddsItAgain) {
    AddParam("ISCODA", "TRUE");
    AddParam("ISSODA", "TRUE");
    EXPECT_TRUE(params.EraseParamValue("iscoda"));
    EXPECT_EQ(params.GetParamValue("ISCODA"), "");
    EXPECT_FALSE(params.IsCoda());
    EXPECT_TRUE(params.IsSoda()) << "only that key";
    EXPECT_FALSE(params.EraseParamValue("ISCODA")) << "already gone";
    ASSERT_TRUE(params.SaveParamNewsoc({{"ISCODA", "FALSE"}}));
    EXPECT_EQ(params.GetParamValue("ISCODA"), "FALSE");
}

TEST_P(ParamWritesTest, MatchNumbersCountUpPerBookYearAndStartARowWhenMissing) {
    AddParam("BOOKYEAR2.MATCHNUMBER", "41");
    CreateStandard("ACF", tables::ads_testing::kAccountFields);
    ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS) << ads.GetAdsLastError();
    std::string bookYear = "2";
    EXPECT_EQ(params.GetNewMatchNumber(bookYear), 42);
    EXPECT_EQ(params.GetNewMatchNumber(bookYear), 43);
    EXPECT_EQ(params.GetParamValue("BOOKYEAR2.MatchNumber"), "43");
    EXPECT_EQ(ads.GetCurrentAlias(), "ACF") << "the caller's alias is kept";

    params.CurrentBYNum(3);
    std::string current;
    EXPECT_EQ(params.GetNewMatchNumber(current), 1) << "no row yet: the count starts";
    EXPECT_EQ(current, "3");
    EXPECT_EQ(params.GetNewMatchNumber(current), 2);
    EXPECT_EQ(ads.GetLockNumberOnServer(), 0u);

    // A row another workstation holds: the user cancels, and no number is given.
    engine::Engine otherEngine;
    tables::SqlDatabase other{otherEngine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    tables::AdsClass otherAds{other};
    otherAds.SetInteractive(false);
    otherAds.SetDossierPrefix(Prefix());
    ASSERT_EQ(otherAds.Initialize(), engine::AE_SUCCESS);
    ASSERT_EQ(otherAds.FileOpenParam(), engine::AE_SUCCESS);
    SocParamColClassApi otherParams(otherAds);
    ASSERT_TRUE(otherParams.GetParamValue("BOOKYEAR2.MATCHNUMBER") == "43");
    ASSERT_TRUE(otherAds.RecLock("PARAM", otherAds.recno()));
    messages.QueueAnswer(platform::MessageAnswer::Cancel);
    EXPECT_EQ(params.GetNewMatchNumber(bookYear), 0);
    ASSERT_EQ(otherAds.FlushAndUnlock("PARAM"), engine::AE_SUCCESS);
    EXPECT_EQ(params.GetNewMatchNumber(bookYear), 44) << "nothing was used up by the refusal";
}

INSTANTIATE_TEST_SUITE_P(Keepings, ParamWritesTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);

}  // namespace
}  // namespace fnrk::company::testing

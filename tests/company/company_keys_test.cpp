// SocParamColClassApi: the settings it keeps and the plain company keys with their conversions.

#include <gtest/gtest.h>

#include "param_fixture.hpp"
#include "platform/paths.hpp"

namespace fnrk::company::testing {
namespace {

class CompanyKeysTest : public ParamTest {};

TEST_P(CompanyKeysTest, AddressTextsAndSwitchesReadTheirOwnKeys) {
    AddParam("SOCNAME", "Brasserie", " du Parc");
    AddParam("SOCADR1", "Rue Haute 5");
    AddParam("SOCVATNO", "BE0123456789");
    AddParam("SOCZIP", "1000");
    AddParam("SOCCITY", "Bruxelles");
    AddParam("SOCCOUNTRY", "BE");
    AddParam("COMPANY.CURRENCY", "EUR");
    AddParam("LANGCREATION", "F");
    AddParam("ISINVOICE", "TRUE");
    AddParam("ISSCAN", ".T.");
    AddParam("ISASSET", "y");
    AddParam("ISAUTO", "1");
    AddParam("ISCODA", "true ");
    AddParam("ISSODA", "FALSE");
    AddParam("ISANA", "0");
    AddParam("IS2LANGUAGE", "T");
    AddParam("INV_DESCUSE", "NO");

    EXPECT_EQ(params.socname(), "Brasserie du Parc");
    EXPECT_EQ(params.SocAdr(), "Rue Haute 5");
    EXPECT_EQ(params.SocVatNo(), "BE0123456789");
    EXPECT_EQ(params.SocZip(), "1000");
    EXPECT_EQ(params.SocCity(), "Bruxelles");
    EXPECT_EQ(params.SocCountry(), "BE");
    EXPECT_EQ(params.CompanyCurrency(), "EUR");
    EXPECT_EQ(params.Langofcreation(), "F");
    EXPECT_TRUE(params.IsInvoice());
    EXPECT_TRUE(params.IsScanModule());
    EXPECT_TRUE(params.IsAsset());
    EXPECT_TRUE(params.IsAutomate());
    EXPECT_TRUE(params.IsCoda());
    EXPECT_FALSE(params.IsSoda());
    EXPECT_FALSE(params.IsAnalytical());
    EXPECT_TRUE(params.Is2Language());
    EXPECT_FALSE(params.Inv_DescUse());
    EXPECT_EQ(params.Vatparam(), "") << "a missing key is empty";
}

TEST_P(CompanyKeysTest, ZoneCountsUseTheirOwnSpellingsAndNumbersParseAsFarAsTheyGo) {
    AddParam("SIGCSPARAMZONECOUNT", "3");
    // Keys are case-blind, so "SigGLStdZoneCount" differs from the member name only in a way
    // the table hides; the asset count's key "SigAsParamZoneCount" really differs from it.
    AddParam("SIGGLSTDZONECOUNT", "4");
    AddParam("SIGGLPARAMZONECOUNT", "2.5");
    AddParam("SIGARSTDZONECOUNT", "3.5");
    AddParam("SIGARPARAMZONECOUNT", "7 zones");
    AddParam("SIGASPARAMZONECOUNT", "9");
    AddParam("SIGASSETPARAMZONECOUNT", "99");
    AddParam("FILEREVISION", "abc");
    AddParam("SIGCSPARAMZONE2.PARAMS", "Sector");
    AddParam("SIGGLPARAMZONE1.PARAMS", "Budget");
    AddParam("SIGARPARAMZONE1.PARAMS", "Colour");
    AddParam("SIGASPARAMZONE3.PARAMS", "Building");

    EXPECT_EQ(params.SigCSParamZoneCount(), 3);
    EXPECT_EQ(params.SigGlStdZoneCount(), 4);
    EXPECT_EQ(params.SigGlParamZoneCount(), 2) << "ties round to even";
    EXPECT_EQ(params.SigArStdZoneCount(), 4) << "ties round to even";
    EXPECT_EQ(params.SigArParamZoneCount(), 7);
    EXPECT_EQ(params.SigAssetParamZoneCount(), 9);
    EXPECT_EQ(params.FileRevisionNumber(), 0);

    EXPECT_EQ(params.GetSigParamItemValue("CLIFOU", 2), "Sector");
    EXPECT_EQ(params.GetSigParamItemValue("gen", 1), "Budget");
    EXPECT_EQ(params.GetSigParamItemValue("ART", 1), "Colour");
    EXPECT_EQ(params.GetSigParamItemValue("ASSET", 3), "Building");
    EXPECT_EQ(params.GetSigParamItemValue("ASSET", 1), "");
    EXPECT_EQ(params.GetSigParamItemValue("ACT", 1), "") << "not a file with user zones";
}

TEST_P(CompanyKeysTest, ProtectionByAnotherOfficeLocksTheDossier) {
    EXPECT_FALSE(params.IsDossierLocked()) << "nobody protects it";
    AddParam("PROTECTEDBY", "Fidu Nord");
    EXPECT_TRUE(params.IsDossierLocked());
    params.ProtectedBy(" fidu nord ");
    EXPECT_FALSE(params.IsDossierLocked()) << "the session is the protecting office";
    params.ProtectedBy("Fidu Sud");
    EXPECT_TRUE(params.IsDossierLocked());
}

TEST_P(CompanyKeysTest, ClosedParameterTableAnswersEmptyWithoutMessages) {
    AddParam("SOCNAME", "Brasserie");
    AddParam("BOOKYEARCOUNT", "3");
    ASSERT_EQ(ads.CloseAlias("PARAM"), engine::AE_SUCCESS);
    EXPECT_EQ(params.socname(), "");
    EXPECT_EQ(params.BookYearCount(), 0);
    EXPECT_TRUE(params.IsBookYearClosed(1));
    EXPECT_FALSE(params.IsCoda());
    std::string bookYear = "1";
    EXPECT_EQ(params.GetNewMatchNumber(bookYear), 0);
    EXPECT_FALSE(params.SaveParamNewsoc({{"SOCNAME", "x"}}));
    EXPECT_FALSE(params.EraseParamValue("SOCNAME"));
    EXPECT_EQ(Shown(), "");
}

INSTANTIATE_TEST_SUITE_P(Keepings, CompanyKeysTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);

// Settings kept in the object: no table involved.
TEST(CompanyFolderTest, PathNameIsTrimmedLosesOneSeparatorAndHidesTheSqlMarker) {
    engine::Engine engine;
    tables::SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    tables::AdsClass ads{db};
    SocParamColClassApi params(ads);
    const std::string sep(1, platform::kPathSep);

    params.pathName("  /data/SOC1" + sep + sep + " ");
    EXPECT_EQ(params.pathName(), "/data/SOC1" + sep) << "one trailing separator only";
    params.pathName("C:\\Fennrick\\SOC1\\");
    EXPECT_EQ(params.pathName(), "C:\\Fennrick\\SOC1");
    EXPECT_EQ(params.GetConnect26Path(), "C:\\Fennrick\\SOC1" + sep);
    EXPECT_FALSE(params.IsNetwork());

    params.pathName("<SQL>/data/SOC2");
    EXPECT_EQ(params.pathName(), "/data/SOC2");
    EXPECT_EQ(params.GetConnect26Path(), "<SQL>/data/SOC2") << "the marker routes the connection";

    params.pathName("\\\\srv\\compta\\SOC3");
    EXPECT_TRUE(params.IsNetwork());
    params.pathName("//srv/compta/SOC3");
    EXPECT_TRUE(params.IsNetwork());
    params.pathName("");
    EXPECT_EQ(params.GetConnect26Path(), "");

    params.CurrentBYNum(4);
    params.socShortName("SOC3");
    EXPECT_EQ(params.CurrentBYNum(), 4);
    EXPECT_EQ(params.socShortName(), "SOC3");
}

}  // namespace
}  // namespace fnrk::company::testing

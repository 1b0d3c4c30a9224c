// AdsClass: encryption switches, the data dictionary, and opens of a table by someone else.

#include <gtest/gtest.h>

#include "tables/ads_fixture.hpp"

namespace fnrk::tables::ads_testing {
namespace {

using namespace engine;  // status and option numbers

using AdsEncryptionTest = AdsTest;

TEST_P(AdsEncryptionTest, DecryptingAPlainTableChangesNothing) {
    ads.Dossier().tablePassword = "s3cret";
    OpenEntries();
    ASSERT_EQ(ads.MoveTop(), AE_SUCCESS);
    const std::string before = ads.GetRecordValue();
    EXPECT_FALSE(ads.FileIsEncrypted("ACT"));
    EXPECT_FALSE(ads.MakeFileEncrypt(false, "ACT"));
    EXPECT_FALSE(ads.FileIsEncrypted("ACT"));
    EXPECT_EQ(ads.GetRecordValue(), before);
    EXPECT_EQ(Shown(), "");
    EXPECT_FALSE(ads.MakeFileEncrypt(true, "GHOST"));
}

TEST_P(AdsFilesTest, TablesAreEncryptedAndDecryptedWithTheDossierPassword) {
    ads.Dossier().tablePassword = "s3cret";
    OpenEntries();
    CreateStandard("PARAM", kParamFields);
    CreateStandard("ACF", kAccountFields);
    ASSERT_EQ(ads.FileOpenParam(), AE_SUCCESS);
    ASSERT_EQ(ads.FileOpen("ACF", "EXCLUSIVE"), AE_SUCCESS);
    ASSERT_EQ(ads.FileOpen("ACT", "EXCLUSIVE"), AE_SUCCESS);
    EXPECT_FALSE(ads.IsAllFilesEncrypted());

    ASSERT_TRUE(ads.MakeFileEncrypt(true, "ACT")) << ads.GetAdsLastError();
    EXPECT_TRUE(ads.FileIsEncrypted("ACT"));
    EXPECT_FALSE(ads.IsAllFilesEncrypted());
    ASSERT_TRUE(ads.MakeFileEncrypt(true, "ACF"));
    // The parameter table is never counted.
    EXPECT_TRUE(ads.IsAllFilesEncrypted());
    EXPECT_EQ(fnrk::testing::ReadFileBytes(ads.StandardTablePath("ACT")).find("700000"),
              std::string::npos);
    ASSERT_EQ(ads.ActivateAlias("ACT"), AE_SUCCESS);
    ASSERT_EQ(ads.MoveAbsolute(2), AE_SUCCESS);
    EXPECT_EQ(ads.GetStringValue("ACCOUNTGL"), "700000");

    ASSERT_TRUE(ads.MakeFileEncrypt(false, "ACT"));
    EXPECT_FALSE(ads.FileIsEncrypted("ACT"));
    EXPECT_NE(fnrk::testing::ReadFileBytes(ads.StandardTablePath("ACT")).find("700000"),
              std::string::npos);
}

TEST_P(AdsFilesTest, OpensByOthersAreSeen) {
    OpenEntries();
    CreateStandard("PARAM", kParamFields);
    ASSERT_EQ(ads.FileClose("ACT"), AE_SUCCESS);
    EXPECT_FALSE(ads.IsExternalOpen("ACT"));
    EXPECT_FALSE(ads.IsAnyFileExternalOpenExceptParam());
    {
        engine::Engine otherEngine;
        SqlDatabase otherDb{otherEngine, [] { return std::make_unique<backend::FRCDatabase>(); }};
        AdsClass other{otherDb};
        other.SetDossierPrefix((dossier / "SOC1").string());
        ASSERT_EQ(other.FileOpenParam(), AE_SUCCESS);
        // The parameter table is not one of those examined.
        EXPECT_FALSE(ads.IsAnyFileExternalOpenExceptParam());
        ASSERT_EQ(other.FileOpen("ACT"), AE_SUCCESS);
        EXPECT_TRUE(ads.IsExternalOpen("ACT"));
        EXPECT_TRUE(ads.IsAnyFileExternalOpenExceptParam());
    }
    EXPECT_FALSE(ads.IsExternalOpen("ACT"));
}

TEST_P(AdsEncryptionTest, TheDataDictionaryHoldsTheDossier) {
    ads.Dossier().tablePassword = "s3cret";
    CreateStandard("PARAM", kParamFields);
    CreateStandard("ACF", kAccountFields, {{"NUMBER", "NUMBER"}});
    OpenEntries();
    EXPECT_EQ(ads.BuildDataDictionnary(), AE_SUCCESS) << Shown();
    EXPECT_TRUE(messages.shown().empty()) << Shown();
    EXPECT_TRUE(std::filesystem::exists(dossier / "SOC1.add"));
}

INSTANTIATE_TEST_SUITE_P(Keepings, AdsEncryptionTest, AllKeepings(), KeepingName);
INSTANTIATE_TEST_SUITE_P(Files, AdsFilesTest, ::testing::Values(Keeping::Files), KeepingName);

}  // namespace
}  // namespace fnrk::tables::ads_testing

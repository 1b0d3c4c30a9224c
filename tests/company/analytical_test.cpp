// SocParamColClassApi: analytical sections ("ZONANA") and analytical accounts ("ACF").

#include <gtest/gtest.h>

#include "param_fixture.hpp"

namespace fnrk::company::testing {
namespace {

class AnalyticalTest : public ParamTest {
  protected:
    void OpenZones() {
        const std::string path = (dossier / "SOC1_zonana.dbf").string();
        engine::Handle table = 0;
        ASSERT_EQ(db.CreateTable(ads.DossierConnection(), path, "ZONANA", engine::ADS_CDX,
                                 engine::ADS_ANSI, engine::ADS_COMPATIBLE_LOCKING,
                                 engine::ADS_IGNORERIGHTS, 0,
                                 "GEN,C,2,0;NAME,C,10,0;LEN,N,2,0;TIT1,C,30,0;MSK,C,20,0;"
                                 "USRTYP,C,1,0",
                                 table),
                  engine::AE_SUCCESS);
        ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);
        ASSERT_EQ(ads.FileOpenExternal("ZONANA", path), engine::AE_SUCCESS);
    }
    void AddZone(const std::string& plan, const std::string& title, double length,
                 const std::string& mask, const std::string& type) {
        ASSERT_EQ(ads.ActivateAlias("ZONANA"), engine::AE_SUCCESS);
        ASSERT_EQ(ads.RecordAdd(), engine::AE_SUCCESS);
        EXPECT_TRUE(ads.PutFieldValue("GEN", plan));
        EXPECT_TRUE(ads.PutFieldValue("NAME", "Z" + title.substr(0, 3)));
        EXPECT_TRUE(ads.PutFieldValue("LEN", length));
        EXPECT_TRUE(ads.PutFieldValue("TIT1", title));
        EXPECT_TRUE(ads.PutFieldValue("MSK", mask));
        EXPECT_TRUE(ads.PutFieldValue("USRTYP", type));
        ASSERT_EQ(ads.FlushAndUnlock("ZONANA"), engine::AE_SUCCESS);
    }
};

TEST_P(AnalyticalTest, SectionsAreTheZoneRowsInNaturalOrder) {
    EXPECT_EQ(params.AnalyticalSectionsCount(), 0) << "no zone table open";
    OpenZones();
    AddZone("1", "Departments", 4, "9999", "N");
    AddZone("1", "Projects", 6, "XXXXXX", "C");
    AddZone("2", "Vehicles", 3, "999", "N");
    AddZone("3", "Dropped", 2, "99", "N");
    ASSERT_EQ(ads.RecLock("ZONANA", 4), true);
    ASSERT_EQ(ads.RecordDelete(), engine::AE_SUCCESS);
    ASSERT_EQ(ads.FlushAndUnlock("ZONANA"), engine::AE_SUCCESS);
    ASSERT_EQ(ads.ActivateAlias("PARAM"), engine::AE_SUCCESS);

    EXPECT_EQ(params.AnalyticalSectionsCount(), 3) << "a deleted row is no section";
    EXPECT_EQ(params.AnalyticalPlansCount(), 2);
    EXPECT_EQ(params.AnalyticalSectionName(2), "Projects");
    EXPECT_EQ(params.AnalyticalSectionLength(2), 6);
    EXPECT_EQ(params.AnalyticalSectionMask(3), "999");
    EXPECT_EQ(params.AnalyticalSectionType(1), "N");
    EXPECT_EQ(params.AnalyticalSectionName(4), "");
    EXPECT_EQ(params.AnalyticalSectionName(0), "");
    EXPECT_EQ(params.AnalyticalSectionLength(9), 0);
    EXPECT_EQ(ads.GetCurrentAlias(), "PARAM");
}

TEST_P(AnalyticalTest, AccountsAreMatchedWholeAndQuotesCannotChangeTheSearch) {
    EXPECT_FALSE(params.IsAccountAnalytical("600000")) << "no account table open";
    CreateStandard("ACF", "GLNUMBER,C,10,0;ISANALYT,L,1,0;PLANANALYT,C,2,0");
    ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS);
    AddRecord("ACF", {{"GLNUMBER", "600000"}, {"ISANALYT", "T"}, {"PLANANALYT", "1"}});
    AddRecord("ACF", {{"GLNUMBER", "60"}, {"ISANALYT", "F"}});
    AddRecord("ACF", {{"GLNUMBER", "6'1\"0"}, {"ISANALYT", "T"}, {"PLANANALYT", "2"}});

    EXPECT_TRUE(params.IsAccountAnalytical(" 600000 "));
    EXPECT_EQ(params.AccountAnalyticalPlan("600000"), "1");
    EXPECT_FALSE(params.IsAccountAnalytical("60")) << "not the start of 600000";
    EXPECT_FALSE(params.IsAccountAnalytical("6000"));
    EXPECT_TRUE(params.IsAccountAnalytical("6'1\"0"));
    EXPECT_EQ(params.AccountAnalyticalPlan("6'1\"0"), "2");
    EXPECT_FALSE(params.IsAccountAnalytical("x' .OR. .T. .OR. 'y"));
    EXPECT_EQ(params.AccountAnalyticalPlan(""), "");
    EXPECT_EQ(Shown(), "");
}

INSTANTIATE_TEST_SUITE_P(Keepings, AnalyticalTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);

}  // namespace
}  // namespace fnrk::company::testing

// The table registry and the wrapper protocol on real tables of a company: the caller's order,
// duplicate aliases, "PARAM" re-pointed at its keyed view, the fast path, the "CSF" detour and
// the caller's current alias around a wrapped call.

#include <gtest/gtest.h>

#include "facade_fixture.hpp"
#include "platform/paths.hpp"

namespace fnrk::facade {
namespace {

using testing::FacadeTest;

class RegistryProtocolTest : public FacadeTest {};

TEST_F(RegistryProtocolTest, EntriesKeepTheCallersOrderAndADuplicateAliasIsIgnored) {
    OpenCompanyTables();
    routines.ReinitializeColAdsTable(
        RegistryOf({{"ACT", 5, 3}, {"ACF", 6, 1}, {"act", 7, 2}, {"CSF", 0, 4}}));
    const TableRegistry& registry = FnrkRoutines::Registry();
    ASSERT_EQ(registry.Count(), 3u);
    EXPECT_EQ(registry.Entries()[0]->Alias, "ACT");
    EXPECT_EQ(registry.Entries()[0]->ActiveIndexHandle, 5) << "the first entry stays";
    EXPECT_EQ(registry.Entries()[1]->Alias, "ACF");
    EXPECT_EQ(registry.Entries()[2]->Alias, "CSF");

    // A plain collection of objects with the three properties is a registry too.
    auto collection = std::make_shared<VariantCollection>();
    auto entry = std::make_shared<PropertyBag>(
        "TableEntry", std::vector<std::string>{"Alias", "ActiveIndexHandle", "Order"});
    entry->SetProperty("Alias", Variant("ACF"));
    entry->SetProperty("ActiveIndexHandle", Variant("42"));
    entry->SetProperty("Order", Variant(1.0));
    collection->Add(Variant(entry));
    routines.ReinitializeColAdsTable(Variant(collection));
    ASSERT_EQ(registry.Count(), 1u);
    EXPECT_EQ(registry.Entries()[0]->ActiveIndexHandle, 42);

    // So is an array of them (a script's registry); an empty array empties the registry.
    routines.ReinitializeColAdsTable(Variant(VariantArray{}));
    EXPECT_EQ(registry.Count(), 0u);
    entry->SetProperty("Alias", Variant("CSF"));
    routines.ReinitializeColAdsTable(Variant(VariantArray{Variant(entry)}));
    ASSERT_EQ(registry.Count(), 1u);
    EXPECT_EQ(registry.Entries()[0]->Alias, "CSF");
    EXPECT_THROW(routines.ReinitializeColAdsTable(Variant(VariantArray{Variant("ACT")})),
                 FacadeError);

    EXPECT_THROW(routines.ReinitializeColAdsTable(Variant("ACT")), FacadeError);
    EXPECT_THROW(routines.ReinitializeColAdsTable(Variant()), FacadeError);
    EXPECT_EQ(registry.Count(), 1u) << "a refused registry changes nothing";
}

TEST_F(RegistryProtocolTest, AddingParamPointsItAtItsKeyedViewAndLeavesItCurrent) {
    OpenCompanyTables({{{"ID", std::string("SOCNAME")}, {"VALUE", std::string("SOC1 sprl")}}});
    ASSERT_EQ(Tables().ActivateAlias("ACT"), engine::AE_SUCCESS);
    routines.ReinitializeColAdsTable(RegistryOf({{"ACT", 0, 1}, {"PARAM", 0, 2}, {"CSF", 0, 3}}));
    EXPECT_TRUE(Tables().IsQuery("SEEKPARAM", 0));
    EXPECT_EQ(Tables().QueryIndex("SEEKPARAM", 0), "ID");
    EXPECT_EQ(Tables().GetCurrentAlias(), "PARAM");
    EXPECT_EQ(routines.SavedAlias(), "PARAM");
    EXPECT_TRUE(Tables().seekKey("SOCNAME")) << "the keyed view is the active order";
}

TEST_F(RegistryProtocolTest, ParamActivateNeedsBothParamAndCsf) {
    CreateTable("PARAM", testing::kParamFields, {{"ID", "ID"}});
    CreateTable("ACT", testing::kAccountFields);
    ASSERT_EQ(Tables().ActivateAlias("ACT"), engine::AE_SUCCESS);
    routines.ParamActivate();
    EXPECT_FALSE(Tables().IsQuery("SEEKPARAM", 0));
    EXPECT_EQ(Tables().GetCurrentAlias(), "ACT");
    routines.ReinitializeColAdsTable(RegistryOf({{"PARAM", 0, 1}}));
    EXPECT_FALSE(Tables().IsQuery("SEEKPARAM", 0));
}

TEST_F(RegistryProtocolTest, AParamTableWithoutBookYearsIsReportedWhereTheConfigurationAsks) {
    platform::SetProgramFolder((folder / "PRG").string());
    OpenCompanyTables();
    routines.ParamActivate();
    EXPECT_TRUE(messages.shown().empty()) << "no configuration file, no warning";

    fnrk::testing::WriteFileBytes(folder / "FennRick.ini", "[Param]\r\nTest=TRUE\r\n");
    routines.ParamActivate();
    ASSERT_EQ(messages.shown().size(), 1u);
    EXPECT_EQ(messages.shown()[0].text,
              "Attention, nous avons détecté un problème potentiel d'accès au fichier param");
    EXPECT_EQ(messages.shown()[0].title, platform::kErrorTitle);
    EXPECT_EQ(platform::IconOf(messages.shown()[0].style), platform::message_style::kCritical);

    // "Test" must be "TRUE" exactly.
    fnrk::testing::WriteFileBytes(folder / "FennRick.ini", "[Param]\r\nTest=true\r\n");
    routines.ParamActivate();
    EXPECT_EQ(messages.shown().size(), 1u);
    // With book years the table is sound.
    fnrk::testing::WriteFileBytes(folder / "FennRick.ini", "[Param]\r\nTest=TRUE\r\n");
    ASSERT_EQ(Tables().ActivateAlias("PARAM"), engine::AE_SUCCESS);
    ASSERT_EQ(Tables().RecordAdd(), engine::AE_SUCCESS);
    ASSERT_TRUE(Tables().PutFieldValue("ID", std::string("BOOKYEARCOUNT")));
    ASSERT_TRUE(Tables().PutFieldValue("VALUE", std::string("2")));
    ASSERT_EQ(Tables().FlushAndUnlock("PARAM"), engine::AE_SUCCESS);
    routines.ParamActivate();
    EXPECT_EQ(messages.shown().size(), 1u);
}

TEST_F(RegistryProtocolTest, AnUnchangedRegistryActivatesNoTable) {
    OpenCompanyTables();
    const Variant registry = RegistryOf({{"PARAM", 0, 1}, {"CSF", 3, 2}, {"ACT", 0, 3}});
    routines.ReinitializeColAdsTable(registry);
    ASSERT_EQ(Tables().GetCurrentAlias(), "PARAM");
    // With the same entries nothing is rebuilt: the parameter view is not made again and the
    // caller's current table stays current.
    ASSERT_EQ(Tables().ActivateAlias("ACF"), engine::AE_SUCCESS);
    Tables().RemoveQuery("SEEKPARAM", 0);
    routines.ReinitializeColAdsTable(RegistryOf({{"PARAM", 0, 1}, {"CSF", 3, 2}, {"ACT", 0, 3}}));
    EXPECT_EQ(Tables().GetCurrentAlias(), "ACF");
    EXPECT_FALSE(Tables().IsQuery("SEEKPARAM", 0));
    EXPECT_EQ(routines.SavedAlias(), "PARAM") << "the saved alias is the rebuild's";

    // One field of one entry differs: the registry is rebuilt.
    routines.ReinitializeColAdsTable(RegistryOf({{"PARAM", 0, 1}, {"CSF", 4, 2}, {"ACT", 0, 3}}));
    EXPECT_TRUE(Tables().IsQuery("SEEKPARAM", 0));
    EXPECT_EQ(Tables().GetCurrentAlias(), "PARAM");
    EXPECT_EQ(FnrkRoutines::Registry().Entries()[1]->ActiveIndexHandle, 4);
}

TEST_F(RegistryProtocolTest, ARebuildReturnsToTheCurrentTableExceptTheNewsTable) {
    OpenCompanyTables();
    ASSERT_EQ(Tables().ActivateAlias("ACT"), engine::AE_SUCCESS);
    routines.ReinitializeColAdsTable(RegistryOf({{"ACT", 0, 1}}));
    EXPECT_EQ(Tables().GetCurrentAlias(), "ACT");
    EXPECT_EQ(routines.SavedAlias(), "ACT");

    // From "CSF" the detour goes through "ACF" and comes back.
    ASSERT_EQ(Tables().ActivateAlias("CSF"), engine::AE_SUCCESS);
    routines.ReinitializeColAdsTable(RegistryOf({{"CSF", 0, 1}}));
    EXPECT_EQ(Tables().GetCurrentAlias(), "CSF");

    // The news table is left for "CSF".
    ASSERT_EQ(Tables().FileClose("ACT"), engine::AE_SUCCESS);
    ASSERT_EQ(Tables().FileOpenExternal("USERSNEWS", Tables().StandardTablePath("ACT")),
              engine::AE_SUCCESS);
    ASSERT_EQ(Tables().ActivateAlias("USERSNEWS"), engine::AE_SUCCESS);
    routines.ReinitializeColAdsTable(RegistryOf({{"USERSNEWS", 0, 1}}));
    EXPECT_EQ(Tables().GetCurrentAlias(), "CSF");
}

TEST_F(RegistryProtocolTest, AWrappedCallLeavesTheCallersCurrentTableCurrent) {
    OpenCompanyTables({{{"ID", std::string("SOCNAME")}, {"VALUE", std::string("SOC1 sprl")}}});
    // "PARAM" current before: current after.
    ASSERT_EQ(Tables().ActivateAlias("PARAM"), engine::AE_SUCCESS);
    std::vector<Variant> args = {RegistryOf({{"CSF", 0, 1}, {"PARAM", 0, 2}}), Variant("SOCNAME"),
                                 Variant("")};
    MemberTable::Instance().Invoke(routines, "GetParamValue", MemberKind::Method, args);
    EXPECT_EQ(args[2], Variant("SOC1 sprl"));
    EXPECT_EQ(Tables().GetCurrentAlias(), "PARAM");

    // "ACT" current, and the rebuild (which makes "PARAM" current) is undone for the caller.
    ASSERT_EQ(Tables().ActivateAlias("ACT"), engine::AE_SUCCESS);
    args = {RegistryOf({{"ACT", 0, 1}, {"PARAM", 0, 2}, {"CSF", 0, 3}}), Variant("NOSUCHKEY"),
            Variant("x")};
    MemberTable::Instance().Invoke(routines, "GetParamValue", MemberKind::Method, args);
    EXPECT_EQ(args[2], Variant(""));
    EXPECT_EQ(Tables().GetCurrentAlias(), "ACT");
}

TEST_F(RegistryProtocolTest, AHelpersErrorReachesTheCallerAndTheAliasIsNotRestored) {
    OpenCompanyTables();
    ASSERT_EQ(Tables().ActivateAlias("ACT"), engine::AE_SUCCESS);
    // A row before any member state: the declaration writer refuses it.
    try {
        Call("OssXmlRow", {RegistryOf({{"PARAM", 0, 1}, {"CSF", 0, 2}}), Variant(), Variant("1"),
                           Variant(true), Variant(""), Variant(""), Variant("STANDARD"),
                           Variant("21"), Variant("21,00"), Variant("100,00"), Variant("EUR")});
        FAIL() << "a row needs its member state";
    } catch (const FacadeError& error) {
        EXPECT_EQ(error.number(), kErrInvalidCall);
        EXPECT_NE(std::string(error.what()).find("OSSDeclarationInfo"), std::string::npos)
            << error.what();
    }
    EXPECT_EQ(Tables().GetCurrentAlias(), "PARAM") << "left where the rebuild put it";
}

TEST_F(RegistryProtocolTest, AssetGetAnswersNothingPastTheCountAndOnAnEmptyCollection) {
    const Variant registry = RegistryOf({});
    EXPECT_THROW(Call("AssetClass_Count", {registry}), FacadeError) << "before AssetClass_Init";
    Call("AssetClass_Init", {registry});
    EXPECT_EQ(Call("AssetClass_Count", {registry}), Variant(0));
    EXPECT_TRUE(Call("AssetClass_Get", {registry, Variant(1)}).IsEmpty());
    EXPECT_TRUE(Call("AssetClass_Get", {registry, Variant(0)}).IsEmpty());
    Call("AssetClass_Add", {registry, Variant("Van")});
    Call("AssetClass_Add", {registry, Variant("Press")});
    EXPECT_EQ(Call("AssetClass_Count", {registry}), Variant(2));
    EXPECT_EQ(Call("AssetClass_Get", {registry, Variant(1)}), Variant("Van"));
    EXPECT_EQ(Call("asset"
                   "class_get",
                   {registry, Variant("2")}),
              Variant("Press"));
    EXPECT_TRUE(Call("AssetClass_Get", {registry, Variant(3)}).IsEmpty());
    EXPECT_TRUE(Call("AssetClass_Get", {registry, Variant(-1)}).IsEmpty());
    // A new collection each AssetClass_Init.
    Call("AssetClass_Init", {registry});
    EXPECT_EQ(Call("AssetClass_Count", {registry}), Variant(0));
}

}  // namespace
}  // namespace fnrk::facade

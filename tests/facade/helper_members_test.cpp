// The helper members reach their helper with the arguments in place, answer in the result or in
// the by-reference argument, and keep the caller's objects between calls.

#include <gtest/gtest.h>

#include "facade_fixture.hpp"

namespace fnrk::facade {
namespace {

using testing::FacadeTest;

class HelperMembersTest : public FacadeTest {
  protected:
    Variant registry = RegistryOf({});
};

TEST_F(HelperMembersTest, ResultsComeBackFromTheHelpers) {
    EXPECT_EQ(Call("ConvertToMD5", {registry, Variant("abc")}),
              Variant("900150983cd24fb0d6963f7d28e17f72"));
    EXPECT_EQ(Call("ConvertTabOfByteToMD5", {registry, Variant(VariantBytes{'a', 'b', 'c'})}),
              Variant("900150983cd24fb0d6963f7d28e17f72"));
    EXPECT_EQ(Call("DATIMDaysInYearCount", {registry, Variant("2024")}),
              Variant(std::int16_t{366}));
    EXPECT_EQ(
        Call("DATIMPerToDate", {registry, Variant(2025), Variant(2), Variant(4), Variant(false)}),
        Variant("30/06/2025"));
    EXPECT_EQ(Call("XLSTabFormat",
                   {registry, Variant(VariantArray{Variant("a\tb"), Variant(12), Variant("c")})}),
              Variant("a b\t12\tc"));
    EXPECT_EQ(Call("XMLEscaping", {registry, Variant("<a & b>")}), Variant("&lt;a &amp; b&gt;"));
    EXPECT_EQ(Call("PRNSignTot", {registry, Variant(100), Variant(30)}), Variant(70.0));

    auto keyed = std::make_shared<VariantCollection>();
    keyed->Add(Variant(1), "ACT");
    keyed->Add(Variant(2), "Param");
    EXPECT_EQ(Call("COLIsItemExistsInCollection", {registry, Variant(keyed), Variant("PARAM")}),
              Variant(true));
    EXPECT_EQ(Call("COLIsItemExistsInCollection", {registry, Variant(keyed), Variant("1")}),
              Variant(false))
        << "items are not keys";
    EXPECT_THROW(Call("XLSTabFormat", {registry, Variant("a")}), FacadeError);
}

TEST_F(HelperMembersTest, AValueListTravelsInItsByReferenceArgument) {
    std::vector<Variant> args = {registry, Variant()};
    MemberTable::Instance().Invoke(routines, "LSTValuesInit", MemberKind::Method, args);
    const Variant list = args[1];
    ASSERT_TRUE(list.IsObject());
    EXPECT_EQ(Call("LSTValuesAddItem", {registry, list, Variant("Brussels"), Variant(10)}),
              Variant(0));
    EXPECT_EQ(Call("LSTValuesAddItem", {registry, list, Variant("Gent  "), Variant(20)}),
              Variant(1));
    EXPECT_EQ(Call("LSTIndexListByItemDataGet", {registry, list, Variant(20)}), Variant(1));
    EXPECT_EQ(Call("LSTIndexListByItemListGet", {registry, list, Variant("gent")}), Variant(1));
    EXPECT_EQ(Call("LSTIsItemInListValues", {registry, list, Variant("Liège")}), Variant(false));
    EXPECT_EQ(list.ToObject()->GetProperty("Count"), Variant(2));
    EXPECT_THROW(Call("LSTValuesAddItem",
                      {registry, Variant(MakeFont("Arial", 8)), Variant("x"), Variant(1)}),
                 FacadeError);
}

TEST_F(HelperMembersTest, APdfFailureIsAnsweredWithItsReason) {
    std::vector<Variant> args = {registry, Variant((folder / "missing.pdf").string()),
                                 Variant((folder / "copy.pdf").string()), Variant("")};
    EXPECT_EQ(MemberTable::Instance().Invoke(routines, "CreateDuplicata", MemberKind::Method, args),
              Variant(false));
    EXPECT_NE(args[3].ToString().find("missing.pdf"), std::string::npos) << args[3].ToString();
    EXPECT_FALSE(std::filesystem::exists(folder / "copy.pdf"));
}

}  // namespace
}  // namespace fnrk::facade

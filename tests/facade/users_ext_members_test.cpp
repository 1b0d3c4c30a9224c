// The external-logins members over the installation's "USERSEXT" table, through the member
// table and the wrapper protocol.

#include <gtest/gtest.h>

#include "facade_fixture.hpp"

namespace fnrk::facade {
namespace {

using testing::FacadeTest;

class UsersExtMembersTest : public FacadeTest {
  protected:
    Variant registry = RegistryOf({{"ACT", 0, 1}});
};

TEST_F(UsersExtMembersTest, ValuesAreWrittenReadCountedAndDeletedByUserTypeAndKey) {
    CreateTable("ACT", testing::kAccountFields);
    // No table yet: nothing is held, and nothing is shown.
    EXPECT_EQ(Call("UserExtGetValueUserExtented",
                   {registry, Variant("ANN"), Variant("FENNRICKID"), Variant("CLOUD")}),
              Variant(""));
    EXPECT_TRUE(messages.shown().empty());

    const Variant login = Call("UserExtGetPasswordInString",
                               {registry, Variant("FennrickId"), Variant("ann,1"), Variant("p=w")});
    EXPECT_EQ(login, Variant("Login=ann\\,1,Pwd=p\\=w"));
    EXPECT_EQ(Call("UserExtUpdateUserExtended",
                   {registry, Variant("ANN"), Variant("FENNRICKID"), Variant("CLOUD"), login}),
              Variant(true));
    EXPECT_TRUE(std::filesystem::exists(folder / "USERSEXT.dbf"));
    EXPECT_EQ(Call("UserExtGetValueUserExtented",
                   {registry, Variant("ANN"), Variant("FENNRICKID"), Variant("CLOUD")}),
              login);
    EXPECT_EQ(
        Call("UserExtIsMultiUserExtented", {registry, Variant("FENNRICKID"), Variant("CLOUD")}),
        Variant(false));
    EXPECT_EQ(Call("UserExtUpdateUserExtended", {registry, Variant("BOB"), Variant("FENNRICKID"),
                                                 Variant("CLOUD"), Variant("Login=bob,Pwd=x")}),
              Variant(true));
    EXPECT_EQ(
        Call("UserExtIsMultiUserExtented", {registry, Variant("FENNRICKID"), Variant("CLOUD")}),
        Variant(true));
    EXPECT_EQ(Call("UserExtDeleteSpecificUser", {registry, Variant("ann")}), Variant(1));
    EXPECT_EQ(
        Call("UserExtDeleteAllUsersExtended", {registry, Variant("FENNRICKID"), Variant("CLOUD")}),
        Variant(1));
    EXPECT_EQ(Call("UserExtGetValueUserExtented",
                   {registry, Variant("BOB"), Variant("FENNRICKID"), Variant("CLOUD")}),
              Variant(""));
    EXPECT_EQ(Tables().GetCurrentAlias(), "ACT") << "the caller's table is current again";

    // A fresh table, made on request.
    EXPECT_EQ(Call("UserExtCreateUserExtended", {registry}), Variant(true));
    EXPECT_EQ(
        Call("UserExtIsMultiUserExtented", {registry, Variant("FENNRICKID"), Variant("CLOUD")}),
        Variant(false));
}

}  // namespace
}  // namespace fnrk::facade

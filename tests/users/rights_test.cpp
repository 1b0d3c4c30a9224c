// user: the rights string, its menu codes and the level.

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "session/session_user.hpp"
#include "tables/ads_class.hpp"
#include "users/menu_rights.hpp"
#include "users/shared_user.hpp"
#include "users/user.hpp"
#include "users/user_password.hpp"

namespace fnrk::users {
namespace {

// A rights string of a non-administrator with "1" at `position` only.
std::string Withdrawing(std::size_t position) {
    std::string rights(40, '0');
    rights[position - 1] = '1';
    return rights;
}

TEST(MenuRightsTest, EachPositionWithdrawsExactlyItsCodes) {
    const std::map<std::size_t, std::set<std::string>> positions = {
        {3, {"MNUIMPUTVEN", "MNUIMPUTACH", "MNUIMPUTFIN", "MNUIMPUTOD"}},
        {4, {"MNUPRINT"}},
        {5, {"RAPPELSCLIENTS"}},
        {6, {"MNUVIREMENTFOUR"}},
        {7, {"MNUPARAM"}},
        {8, {"MNUREINDEX"}},
        {9, {"MNURESTORE"}},
        {10, {"MNUREORGBIC"}},
        {11, {"MNUCLOTPER", "MNUOUVERTURE"}},
        {12, {"MNUUPDATEFENNRICK"}},
        {13, {"MNUTESTCPT"}},
        {14, {"MNUIMPORT", "MNUEXPORT"}},
        {15, {"MNUBACKUP"}},
        {16, {"DOCUMENT", "MNUDOCVIEW"}},
        {17, {"MNUINTERNETMAILBOX"}},
        {18, {"MNUPROTECT"}},
        {19, {"MNUINVOICEDESIGN"}},
        {20, {"MNUARTICLES", "POPFACREF"}},
        {21, {"POPFACENCODAGE"}},
        {22, {"POPFACCONSULT", "POPFACPRINT"}},
        {23, {"MNUFACTURATION"}},
        {24, {"MNUANALYTIC"}},
        {25, {"MNUCOMPTEANA"}},
        {26, {"MNUODANALYTIC"}},
        {27, {"MNUUTILANALYTIC"}},
        {28, {"MNUWINOFFICE"}},
        {29, {"MNUCODJOU"}},
        {30, {"MNUCPTTITRE"}},
        {31, {"MNUCATGEN"}},
        {32, {"MNUTABLECATCLI"}},
        {33, {"MNUTABLECATFOU"}},
        {34, {"MNUTABLECATART"}},
        {35, {"MNURECIPCODA"}},
    };
    std::set<std::string> every = {"MNUCOMPTEGEN", "MNUCOMPTECLI", "MNUCOMPTEFOU", "UNKNOWN"};
    for (const auto& [position, codes] : positions) every.insert(codes.begin(), codes.end());
    ASSERT_EQ(every.size(), 45u) << "the 44 menu codes and one unknown";

    for (std::size_t position = 2; position <= 40; ++position) {
        const std::string rights = Withdrawing(position);
        const auto listed = positions.find(position);
        for (const std::string& code : every) {
            const bool withdrawn = listed != positions.end() && listed->second.contains(code);
            EXPECT_EQ(IsMenuCodeGranted(rights, code), !withdrawn)
                << code << " with \"1\" at " << position;
        }
    }
}

TEST(MenuRightsTest, AdministratorsShortStringsAndCase) {
    engine::Engine engine;
    tables::SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    tables::AdsClass ads{db};
    user person(ads);

    person.Rights("0001");
    EXPECT_FALSE(person.IsAdministrator());
    EXPECT_FALSE(person.IsAccess("MNUPRINT"));
    EXPECT_FALSE(person.IsAccess("mnuPrint")) << "codes compare in upper case";
    EXPECT_TRUE(person.IsAccess("MNUPARAM")) << "position 7 is past the end: granted";
    EXPECT_TRUE(person.IsAccess("MNUNOTACODE"));
    EXPECT_TRUE(person.IsAccess(""));
    EXPECT_EQ(person.Level(), "0");

    person.Rights("1111111111111111111111111111111111111");
    EXPECT_TRUE(person.IsAdministrator());
    EXPECT_TRUE(person.IsAccess("MNUPRINT")) << "an administrator may use everything";
    EXPECT_TRUE(person.IsAccess("MNURECIPCODA"));
    EXPECT_EQ(person.Level(), "1");

    person.Rights("2 0A");
    EXPECT_EQ(person.Level(), "2");
    EXPECT_TRUE(person.IsAccess("MNUPRINT")) << "only \"1\" withdraws";
    person.Rights("");
    EXPECT_EQ(person.Level(), "0");
    EXPECT_FALSE(person.IsAdministrator());
    EXPECT_TRUE(person.IsAccess("MNUPRINT"));
    person.Rights("X");
    EXPECT_EQ(person.Level(), "0");
}

TEST(UserObjectTest, RegisterFillsAndUnRegisterBlanks) {
    engine::Engine engine;
    tables::SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    tables::AdsClass ads{db};
    user person(ads);
    EXPECT_EQ(person.Name(), "");
    person.Register("ignored", "martin", "N", "secret", "0001");
    EXPECT_EQ(person.Name(), "martin");
    EXPECT_EQ(person.language(), "N");
    EXPECT_EQ(person.Rights(), "0001");
    EXPECT_EQ(UserPassword(person), "secret");
    const user copy = person;
    EXPECT_EQ(UserPassword(copy), "secret");
    person.UnRegister();
    EXPECT_EQ(person.Name(), "");
    EXPECT_EQ(person.language(), "");
    EXPECT_EQ(person.Rights(), "");
    EXPECT_EQ(UserPassword(person), "");
    EXPECT_EQ(copy.Name(), "martin") << "a copy is a person of its own";
}

TEST(UserObjectTest, MakingAUserCurrentCopiesItForTheWholeProcess) {
    engine::Engine engine;
    tables::SqlDatabase db{engine, [] { return std::make_unique<backend::FRCDatabase>(); }};
    tables::AdsClass ads{db};
    user person(ads);
    person.Register("", "LEA", "E", "pw", "0001");
    MakeCurrentUser(person);
    person.UnRegister();
    EXPECT_EQ(SharedUser().Name(), "LEA");
    EXPECT_EQ(SharedUser().language(), "E");
    EXPECT_EQ(SharedUser().Rights(), "0001");
    EXPECT_EQ(UserPassword(SharedUser()), "pw");
    EXPECT_FALSE(SharedUser().IsAccess("MNUPRINT"));
    EXPECT_EQ(session::CurrentUser().Name, "LEA") << "the layers below see the same user";
    EXPECT_EQ(session::CurrentUser().language, "E");
    SharedUser().UnRegister();
    session::CurrentUser() = {};
}

}  // namespace
}  // namespace fnrk::users

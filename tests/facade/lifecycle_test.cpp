// Initialize, init, InitializeProperty, InitializeDLL and USER_Class: how a caller hands its
// session over, and what reaches the shared objects.

#include <gtest/gtest.h>

#include "company/shared_company.hpp"
#include "facade/user_object.hpp"
#include "facade_fixture.hpp"
#include "session/session_user.hpp"
#include "users/shared_user.hpp"
#include "users/user_password.hpp"

namespace fnrk::facade {
namespace {

using testing::FacadeTest;

class LifecycleTest : public FacadeTest {
  protected:
    // The first eleven values of a caller's Initialize list: two connection handles, the
    // registry, test mode, book year, language, four folders and the screen font.
    static std::vector<Variant> ElevenValues(Variant registry) {
        return {Variant(7),
                Variant(8),
                registry,
                Variant("True"),
                Variant("3"),
                Variant("N"),
                Variant("/tmp"),
                Variant("/org"),
                Variant("/usr/"),
                Variant("/etc/FennRick.ini"),
                Variant(MakeFont("Tahoma", 8.25))};
    }
};

TEST_F(LifecycleTest, InitializeDoesNothingWithTenValuesAndSetsEverythingWithEleven) {
    std::vector<Variant> values = ElevenValues(RegistryOf({{"ACT", 0, 1}}));
    values.pop_back();
    routines.Initialize(values);
    EXPECT_FALSE(routines.TestMode());
    EXPECT_EQ(routines.language(), "");
    EXPECT_FALSE(routines.Initialized());
    EXPECT_EQ(FnrkRoutines::Registry().Count(), 0u);

    routines.Initialize(ElevenValues(RegistryOf({{"ACT", 0, 1}, {"ACF", 12, 2}})));
    EXPECT_TRUE(routines.Initialized());
    EXPECT_TRUE(routines.InitializedByCaller());
    EXPECT_EQ(SharedSession().connectionHandles[0], 7);
    EXPECT_EQ(SharedSession().connectionHandles[1], 8);
    EXPECT_TRUE(routines.TestMode());
    EXPECT_EQ(FnrkRoutines::CurrentBYNum(), 3);
    EXPECT_EQ(routines.language(), "N");
    EXPECT_EQ(session::CurrentMessageLanguage(), session::MessageLanguage::Dutch);
    EXPECT_EQ(routines.TempPath(), "/tmp");
    EXPECT_EQ(routines.OrgPath(), "/org");
    EXPECT_EQ(routines.UserDbfPath(), "/usr/");
    EXPECT_EQ(routines.INIfile(), "/etc/FennRick.ini");
    ASSERT_TRUE(routines.ScreenFont());
    EXPECT_EQ(routines.ScreenFont()->GetProperty("name").ToString(), "Tahoma");
    // The registry of position 2, in the caller's order.
    ASSERT_EQ(FnrkRoutines::Registry().Count(), 2u);
    EXPECT_EQ(FnrkRoutines::Registry().Entries()[0]->Alias, "ACT");
    EXPECT_EQ(FnrkRoutines::Registry().Entries()[1]->ActiveIndexHandle, 12);
    session::SetMessageLanguage("F");
}

TEST_F(LifecycleTest, InitializeKeepsTheBackendPositionsAndIgnoresThoseAfterTwentySix) {
    std::vector<Variant> values = ElevenValues(RegistryOf({}));
    auto backendObject = MakeFont("not a backend, only an object", 1);
    const std::vector<Variant> rest = {Variant(false),
                                       Variant("kept"),
                                       Variant("  Fiduciaire Dupont  "),
                                       Variant("4"),
                                       Variant(backendObject),
                                       Variant(),
                                       Variant(),
                                       Variant(),
                                       Variant("300"),
                                       Variant(" 600 "),
                                       Variant("900"),
                                       Variant(true),
                                       Variant(false),
                                       Variant("True"),
                                       Variant(-1),
                                       Variant("12.5 s"),
                                       Variant("position 27 is not read")};
    values.insert(values.end(), rest.begin(), rest.end());
    routines.Initialize(values);
    const BackendSettings& backend = SharedSession().backend;
    EXPECT_FALSE(routines.IsFiduc());
    EXPECT_EQ(routines.Position12Text(), "kept");
    EXPECT_EQ(routines.ProtectedBy(), "Fiduciaire Dupont");
    EXPECT_EQ(company::SharedSocParamColClassApi().ProtectedBy(), "Fiduciaire Dupont");
    EXPECT_EQ(backend.backendSetting, 4);
    EXPECT_EQ(backend.objects[0], backendObject);
    EXPECT_EQ(backend.objects[1], nullptr);
    EXPECT_EQ(backend.openSettings, (std::array<std::int32_t, 3>{300, 600, 900}));
    EXPECT_EQ(backend.dispatchFlags, (std::array<bool, 4>{true, false, true, true}));
    // A numeric parse of the text's start, rounded half to even.
    EXPECT_EQ(backend.lastSetting, 12);
}

TEST_F(LifecycleTest, InitializeWantsAFontAtPositionTen) {
    std::vector<Variant> values = ElevenValues(RegistryOf({}));
    values[10] = Variant("Tahoma");
    try {
        routines.Initialize(values);
        FAIL() << "a text is no font";
    } catch (const FacadeError& error) {
        EXPECT_EQ(error.number(), kErrObjectRequired);
    }
    values[10] = Variant(MakeUserObject("ANN", "", "", "F"));
    try {
        routines.Initialize(values);
        FAIL() << "a user is no font";
    } catch (const FacadeError& error) {
        EXPECT_EQ(error.number(), kErrTypeMismatch);
    }
    EXPECT_FALSE(routines.ScreenFont());
}

TEST_F(LifecycleTest, InitIsDoneOnceAndAlwaysAnswersTrue) {
    EXPECT_FALSE(routines.Initialized());
    EXPECT_TRUE(routines.init());
    EXPECT_TRUE(routines.Initialized());
    EXPECT_FALSE(routines.InitializedByCaller());
    EXPECT_TRUE(routines.init(Variant("any value")));
    EXPECT_TRUE(routines.Initialized());
    EXPECT_EQ(Call("init", {Variant(0)}), Variant(true));
}

TEST_F(LifecycleTest, InitializePropertyTakesUpperCasedNamesAndSetsTheSharedFacadeToo) {
    FnrkRoutines& shared = SharedFnrkRoutines();
    for (const char* name : {"TEMPATH", "tempath", "TemPath"}) {
        routines.InitializeProperty(name, Variant(std::string("  /var/tmp/") + name + "  "));
        EXPECT_EQ(routines.TempPath(), std::string("/var/tmp/") + name);
        EXPECT_EQ(shared.TempPath(), std::string("/var/tmp/") + name);
    }
    // "TEMPPATH" (two P) is not a name of the façade: nothing changes.
    routines.InitializeProperty("TEMPPATH", Variant("/elsewhere"));
    routines.InitializeProperty("tempPath", Variant("/elsewhere"));
    routines.InitializeProperty("NoSuchSetting", Variant("/elsewhere"));
    EXPECT_EQ(routines.TempPath(), "/var/tmp/TemPath");
    EXPECT_EQ(shared.TempPath(), "/var/tmp/TemPath");

    routines.InitializeProperty("orgpath", Variant(" /org "));
    routines.InitializeProperty("UserDbfPath", Variant("/users/"));
    routines.InitializeProperty("Language", Variant(" E "));
    routines.InitializeProperty("testmode", Variant(-1));
    routines.InitializeProperty("IniFile", Variant("/etc/FennRick.ini "));
    routines.InitializeProperty("ScreenFont", Variant(MakeFont("Arial", 10)));
    routines.InitializeProperty("isfiduc", Variant("True"));
    routines.InitializeProperty("ProtectedBy", Variant(" Office "));
    for (FnrkRoutines* r : {&routines, &shared}) {
        EXPECT_EQ(r->OrgPath(), "/org");
        EXPECT_EQ(r->UserDbfPath(), "/users/");
        EXPECT_EQ(r->language(), "E");
        EXPECT_TRUE(r->TestMode());
        EXPECT_EQ(r->INIfile(), "/etc/FennRick.ini");
        ASSERT_TRUE(r->ScreenFont());
        EXPECT_TRUE(r->IsFiduc());
        EXPECT_EQ(r->ProtectedBy(), "Office");
    }
    EXPECT_EQ(session::CurrentMessageLanguage(), session::MessageLanguage::English);
    EXPECT_EQ(company::SharedSocParamColClassApi().ProtectedBy(), "Office");
    // A value that is no boolean is refused and nothing is set.
    EXPECT_THROW(routines.InitializeProperty("TESTMODE", Variant("maybe")), FacadeError);
    EXPECT_TRUE(routines.TestMode());
    routines.InitializeProperty("LANGUAGE", Variant("F"));
    routines.InitializeProperty("TESTMODE", Variant(false));
    routines.InitializeProperty("ISFIDUC", Variant(false));
}

TEST_F(LifecycleTest, InitializeDllCopiesTheNineSettingsToTheSharedFacade) {
    routines.TempPath("/t");
    routines.OrgPath("/o");
    routines.UserDbfPath("/u/");
    routines.language("N");
    routines.TestMode(true);
    routines.INIfile("/i.ini");
    const auto font = MakeFont("Verdana", 9);
    routines.ScreenFont(Variant(font));
    routines.IsFiduc(true);
    routines.ProtectedBy("P");
    routines.isNewVoucher(true);  // not one of the nine
    routines.InitializeDLL();
    const FnrkRoutines& shared = SharedFnrkRoutines();
    EXPECT_EQ(shared.TempPath(), "/t");
    EXPECT_EQ(shared.OrgPath(), "/o");
    EXPECT_EQ(shared.UserDbfPath(), "/u/");
    EXPECT_EQ(shared.language(), "N");
    EXPECT_TRUE(shared.TestMode());
    EXPECT_EQ(shared.INIfile(), "/i.ini");
    EXPECT_EQ(shared.ScreenFont(), font) << "the font is kept by reference";
    EXPECT_TRUE(shared.IsFiduc());
    EXPECT_EQ(shared.ProtectedBy(), "P");
    EXPECT_FALSE(shared.isNewVoucher());
    routines.language("F");
    routines.TestMode(false);
    routines.IsFiduc(false);
    routines.InitializeDLL();
}

TEST_F(LifecycleTest, UserClassCopiesTheFourValuesByNameIntoANewUser) {
    // Any object with the four properties will do; its other properties are not read.
    auto given = std::make_shared<PropertyBag>(
        "Employee", std::vector<std::string>{"Rights", "Name", "Office", "Password", "language"});
    given->SetProperty("Name", Variant("MARTIN"));
    given->SetProperty("Password", Variant("secret"));
    given->SetProperty("Rights", Variant("1101"));
    given->SetProperty("language", Variant("N"));
    std::vector<Variant> args = {Variant(given)};
    MemberTable::Instance().Invoke(routines, "user_class", MemberKind::PropertyPut, args);
    ASSERT_TRUE(routines.USER_Class());
    EXPECT_NE(routines.USER_Class(), std::static_pointer_cast<VariantObject>(given));
    EXPECT_EQ(routines.USER_Class()->GetProperty("Rights").ToString(), "1101");
    // The shared user and the session below it are the new user.
    EXPECT_EQ(users::SharedUser().Name(), "MARTIN");
    EXPECT_EQ(users::SharedUser().language(), "N");
    EXPECT_EQ(users::UserPassword(users::SharedUser()), "secret");
    const session::SessionUser& current = session::CurrentUser();
    EXPECT_EQ(current.Name, "MARTIN");
    EXPECT_EQ(current.Password, "secret");
    EXPECT_EQ(current.Rights, "1101");
    EXPECT_EQ(current.language, "N");
    // Later changes to the caller's object do not reach the session's user.
    given->SetProperty("Name", Variant("OTHER"));
    EXPECT_EQ(routines.USER_Class()->GetProperty("Name").ToString(), "MARTIN");
    // The password is never read back from the library's user, yet the user object can be
    // handed over again as it is.
    EXPECT_THROW(routines.USER_Class()->GetProperty("Password"), FacadeError);
    routines.USER_Class(Variant(routines.USER_Class()));
    EXPECT_EQ(users::UserPassword(users::SharedUser()), "secret");

    auto incomplete =
        std::make_shared<PropertyBag>("Person", std::vector<std::string>{"Name", "language"});
    try {
        routines.USER_Class(Variant(incomplete));
        FAIL() << "an object without Password is no user";
    } catch (const FacadeError& error) {
        EXPECT_EQ(error.number(), kErrNoSuchMember);
        EXPECT_NE(std::string(error.what()).find("Person.Password"), std::string::npos);
    }
    EXPECT_EQ(current.Name, "MARTIN");
    EXPECT_THROW(routines.USER_Class(Variant("MARTIN")), FacadeError);
}

}  // namespace
}  // namespace fnrk::facade

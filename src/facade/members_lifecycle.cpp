// The session properties and the lifecycle operations of the member table.

#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;

// A property kept as text on the instance.
void TextProperty(MemberTable& table, const char* name, const std::string& (R::*get)() const,
                  void (R::*put)(std::string)) {
    table.Property(
        name, ArgKind::String, [get](R& r, CallArgs&) { return Variant((r.*get)()); },
        [put](R& r, CallArgs& a) {
            (r.*put)(a.String(0));
            return Variant();
        });
}

void FlagProperty(MemberTable& table, const char* name, bool (R::*get)() const,
                  void (R::*put)(bool)) {
    table.Property(
        name, ArgKind::Boolean, [get](R& r, CallArgs&) { return Variant((r.*get)()); },
        [put](R& r, CallArgs& a) {
            (r.*put)(a.Boolean(0));
            return Variant();
        });
}

void AddSessionProperties(MemberTable& table) {
    TextProperty(table, "TempPath", &R::TempPath, &R::TempPath);
    TextProperty(table, "OrgPath", &R::OrgPath, &R::OrgPath);
    TextProperty(table, "UserDbfPath", &R::UserDbfPath, &R::UserDbfPath);
    TextProperty(table, "language", &R::language, &R::language);
    TextProperty(table, "INIfile", &R::INIfile, &R::INIfile);
    TextProperty(table, "ProtectedBy", &R::ProtectedBy, &R::ProtectedBy);
    TextProperty(table, "GetDecimalSpecifier", &R::GetDecimalSpecifier, &R::GetDecimalSpecifier);
    TextProperty(table, "GetThousandSpecifier", &R::GetThousandSpecifier, &R::GetThousandSpecifier);
    TextProperty(table, "LastNewsBrowser", &R::LastNewsBrowser, &R::LastNewsBrowser);
    FlagProperty(table, "TestMode", &R::TestMode, &R::TestMode);
    FlagProperty(table, "IsFiduc", &R::IsFiduc, &R::IsFiduc);
    FlagProperty(table, "isNewVoucher", &R::isNewVoucher, &R::isNewVoucher);

    table.Property(
        "ScreenFont", ArgKind::Object,
        [](R& r, CallArgs&) { return r.ScreenFont() ? Variant(r.ScreenFont()) : Variant(); },
        [](R& r, CallArgs& a) {
            r.ScreenFont(a.Value(0));
            return Variant();
        });
    table.Property(
        "USER_Class", ArgKind::Object,
        [](R& r, CallArgs&) { return r.USER_Class() ? Variant(r.USER_Class()) : Variant(); },
        [](R& r, CallArgs& a) {
            r.USER_Class(a.Value(0));
            return Variant();
        });
    table.Property(
        "ConnexionInternetActive", ArgKind::Boolean,
        [](R&, CallArgs&) { return Variant(R::ConnexionInternetActive()); }, nullptr);
    table.Property(
        "CurrentBYNum", ArgKind::Integer, [](R&, CallArgs&) { return Variant(R::CurrentBYNum()); },
        [](R&, CallArgs& a) {
            R::CurrentBYNum(a.Integer(0));
            return Variant();
        });
    for (const char* name : {"SocPathName", "pathName"}) {
        table.Property(
            name, ArgKind::String, [](R&, CallArgs&) { return Variant(R::pathName()); },
            [](R&, CallArgs& a) {
                R::pathName(a.String(0));
                return Variant();
            });
    }
    table.Property(
        "socShortName", ArgKind::String, [](R&, CallArgs&) { return Variant(R::socShortName()); },
        [](R&, CallArgs& a) {
            R::socShortName(a.String(0));
            return Variant();
        });
}

void AddLifecycleOperations(MemberTable& table) {
    table.Add(Member{"Initialize", MemberKind::Method, {}, true, [](R& r, CallArgs& a) {
                         r.Initialize(a.All());
                         return Variant();
                     }});
    table.Method("init", {Optional(kVariant)},
                 [](R& r, CallArgs& a) { return Variant(r.init(a.Value(0))); });
    table.Method("InitializeProperty", {kString, kVariant}, [](R& r, CallArgs& a) {
        r.InitializeProperty(a.String(0), a.Value(1));
        return Variant();
    });
    table.Method("InitializeDLL", {}, [](R& r, CallArgs&) {
        r.InitializeDLL();
        return Variant();
    });
    table.Method("ParamActivate", {}, [](R& r, CallArgs&) {
        r.ParamActivate();
        return Variant();
    });
    table.Method("ReinitializeColAdsTable", {kRegistry}, [](R& r, CallArgs& a) {
        r.ReinitializeColAdsTable(a.Value(0));
        return Variant();
    });
    table.Method("DBDisconnect", {}, [](R& r, CallArgs&) {
        r.DBDisconnect();
        return Variant();
    });
}

}  // namespace

void AddLifecycleMembers(MemberTable& table) {
    AddSessionProperties(table);
    AddLifecycleOperations(table);
}

}  // namespace fnrk::facade

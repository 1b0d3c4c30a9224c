// The company settings of the SODA, EFFF and CARO intakes: one getter and one setter per
// setting, the kind word in front. Getters answer in their last argument; a setter whose
// parameter could not be written fails.

#include "facade/intake_member_support.hpp"
#include "intake/intake_settings.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;
using intake::IntakeKind;
using intake::IntakeSettings;
using intake_members::AddAnswering;
using intake_members::AddChecked;
using intake_members::CurrentCompany;
using intake_members::MemberName;

constexpr const char* kNotWritten = "the setting could not be written";

// The getter `Get<setting>` answering a value of kind `answer`, and the setter `Set<setting>`
// taking one of kind `value`, for `kind`.
template <typename Get, typename Set>
void AddSetting(MemberTable& table, IntakeKind kind, const std::string& setting, ArgSpec answer,
                ArgSpec value, Get get, Set set) {
    AddAnswering(table, MemberName(kind, "Get" + setting), {}, answer, [kind, get](R&, CallArgs&) {
        intake::CompanyFacts company = CurrentCompany();
        IntakeSettings settings(company, kind);
        return get(settings);
    });
    AddChecked(table, MemberName(kind, "Set" + setting), {value}, kNotWritten,
               [kind, set](R&, CallArgs& a) {
                   intake::CompanyFacts company = CurrentCompany();
                   IntakeSettings settings(company, kind);
                   return set(settings, a);
               });
}

void AddCommonSettings(MemberTable& table, IntakeKind kind) {
    AddSetting(
        table, kind, "MoveFile", kBoolean, kBoolean,
        [](IntakeSettings& s) { return s.GetMoveFile(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetMoveFile(a.Boolean(1)); });
    AddSetting(
        table, kind, "LastMovedFile", kString, kString,
        [](IntakeSettings& s) { return s.GetLastMovedFile(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetLastMovedFile(a.String(1)); });
    AddSetting(
        table, kind, "WaitingAccount", kString, kString,
        [](IntakeSettings& s) { return s.GetWaitingAccount(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetWaitingAccount(a.String(1)); });
    AddSetting(
        table, kind, "Path", kString, kString, [](IntakeSettings& s) { return s.GetPath(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetPath(a.String(1)); });
}

// The format switch and the analytical type of the payroll kinds.
void AddPayrollSettings(MemberTable& table, IntakeKind kind) {
    AddSetting(
        table, kind, "Is", kBoolean, kBoolean, [](IntakeSettings& s) { return s.GetIs(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetIs(a.Boolean(1)); });
    // The type is written as a number and read back as the text stored.
    AddSetting(
        table, kind, "AnaType", kString, kInteger, [](IntakeSettings& s) { return s.GetAnaType(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetAnaType(a.Integer(1)); });
}

}  // namespace

void AddIntakeSettingMembers(MemberTable& table) {
    for (IntakeKind kind : {IntakeKind::Soda, IntakeKind::Efff, IntakeKind::Caro}) {
        AddCommonSettings(table, kind);
    }
    AddPayrollSettings(table, IntakeKind::Soda);
    AddPayrollSettings(table, IntakeKind::Efff);
    AddSetting(
        table, IntakeKind::Soda, "SocialPeriod", kBoolean, kBoolean,
        [](IntakeSettings& s) { return s.GetSocialPeriod(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetSocialPeriod(a.Boolean(1)); });
    AddSetting(
        table, IntakeKind::Efff, "Split", kLong, kLong,
        [](IntakeSettings& s) { return s.GetSplit(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetSplit(a.Long(1)); });
    AddSetting(
        table, IntakeKind::Efff, "DownloadEFFF", kString, kString,
        [](IntakeSettings& s) { return s.GetDownloadEFFF(); },
        [](IntakeSettings& s, CallArgs& a) { return s.SetDownloadEFFF(a.String(1)); });
    // The account of a fee type: the type is the getter's and the setter's first argument.
    AddAnswering(table, "CAROGetFeeAccount", {kString}, kString, [](R&, CallArgs& a) {
        intake::CompanyFacts company = CurrentCompany();
        return IntakeSettings(company, IntakeKind::Caro).GetFeeAccount(a.String(1));
    });
    AddChecked(table, "CAROSetFeeAccount", {kString, kString}, kNotWritten, [](R&, CallArgs& a) {
        intake::CompanyFacts company = CurrentCompany();
        return IntakeSettings(company, IntakeKind::Caro).SetFeeAccount(a.String(1), a.String(2));
    });
}

}  // namespace fnrk::facade

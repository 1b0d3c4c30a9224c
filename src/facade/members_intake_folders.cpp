// The SODA, EFFF and CARO files waiting in the company's intake tree: finding them, testing
// their book year, filing them away by status, the status codes, and the month-to-period rule
// of the payroll kinds. The façade keeps the intake folders of each kind for the whole session
// (FnrkRoutines::IntakeFoldersOf), so that a scan is remembered from one call to the next.

#include "facade/intake_member_support.hpp"
#include "intake/intake_folders.hpp"
#include "intake/period_mapping.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;
using intake::IntakeKind;
using intake_members::AddAnswering;
using intake_members::AddChecked;
using intake_members::CurrentCompany;
using intake_members::MemberName;

void AddFileMembers(MemberTable& table, IntakeKind kind) {
    AddWrapped(table, MemberName(kind, "Init"), {}, [kind](R& r, CallArgs&) {
        r.IntakeFoldersOf(kind).Init();
        return Variant();
    });
    // Year: the calendar year that names the year folder.
    AddAnswering(table, MemberName(kind, "GetFile"), {kInteger}, kString,
                 [kind](R& r, CallArgs& a) {
                     intake::CompanyFacts company = CurrentCompany();
                     return r.IntakeFoldersOf(kind).GetFile(company, a.Integer(1));
                 });
    // Year: a book-year number, as ...DateToPeriode answers it.
    AddAnswering(table, MemberName(kind, "FileInTheGoodBookyear"), {kString, kInteger}, kBoolean,
                 [kind](R& r, CallArgs& a) {
                     intake::CompanyFacts company = CurrentCompany();
                     return r.IntakeFoldersOf(kind).FileInTheGoodBookyear(company, a.String(1),
                                                                          a.Integer(2));
                 });
    // FilePath, Status, pdfPath (blank: the PDF stays where it is).
    AddChecked(table, MemberName(kind, "UpdateFile"), {kString, kInteger, kString},
               "the file could not be filed away; it was left where it was",
               [kind](R& r, CallArgs& a) {
                   intake::CompanyFacts company = CurrentCompany();
                   return r.IntakeFoldersOf(kind).UpdateFile(company, a.String(1), a.Integer(2),
                                                             a.String(3));
               });
    AddAnswering(table, MemberName(kind, "GetPdfFile"), {kString}, kString,
                 [](R&, CallArgs& a) { return intake::IntakeFolders::GetPdfFile(a.String(1)); });
    AddAnswering(table, MemberName(kind, "GetWarningPath"), {}, kString,
                 [kind](R& r, CallArgs&) { return r.IntakeFoldersOf(kind).GetWarningPath(); });
    AddAnswering(table, MemberName(kind, "GetErrorPath"), {}, kString,
                 [kind](R& r, CallArgs&) { return r.IntakeFoldersOf(kind).GetErrorPath(); });
    AddAnswering(table, MemberName(kind, "GetProcessedPath"), {}, kString,
                 [kind](R& r, CallArgs&) { return r.IntakeFoldersOf(kind).GetProcessedPath(); });
}

void AddStatusMember(MemberTable& table, IntakeKind kind, std::string_view status,
                     std::int16_t code) {
    AddAnswering(table, MemberName(kind, "Const" + std::string(status)), {}, kInteger,
                 [code](R&, CallArgs&) { return code; });
}

// CARO has no analytical mapping, hence no ErrorAna.
void AddStatusMembers(MemberTable& table, IntakeKind kind) {
    AddStatusMember(table, kind, "Nothing", intake::kStatusNothing);
    AddStatusMember(table, kind, "Processed", intake::kStatusProcessed);
    AddStatusMember(table, kind, "Error", intake::kStatusError);
    if (kind != IntakeKind::Caro) AddStatusMember(table, kind, "ErrorAna", intake::kStatusErrorAna);
    AddStatusMember(table, kind, "BadYear", intake::kStatusBadYear);
}

// month, Year, ByRef Period, ByRef booyear, ByRef answer. Period and booyear keep the values
// given when the month has no period.
void AddDateToPeriode(MemberTable& table, IntakeKind kind) {
    AddAnswering(
        table, MemberName(kind, "DateToPeriode"),
        {kString, kString, ByRef(kString), ByRef(kString)}, kBoolean, [](R&, CallArgs& a) {
            std::string period = a.String(3);
            std::string bookYear = a.String(4);
            intake::CompanyFacts company = CurrentCompany();
            if (!intake::DateToPeriode(company, a.String(1), a.String(2), period, bookYear)) {
                return false;
            }
            a.Ref(3) = Variant(period);
            a.Ref(4) = Variant(bookYear);
            return true;
        });
}

}  // namespace

void AddIntakeFolderMembers(MemberTable& table) {
    for (IntakeKind kind : {IntakeKind::Soda, IntakeKind::Efff, IntakeKind::Caro}) {
        AddFileMembers(table, kind);
        AddStatusMembers(table, kind);
    }
    AddDateToPeriode(table, IntakeKind::Soda);
    AddDateToPeriode(table, IntakeKind::Efff);
    // ByRef errorMessage, ByRef answer: fetches the waiting EFFF files into the year folder last
    // scanned.
    AddAnswering(table, "EFFFDownloadFiles", {ByRef(kString)}, kBoolean, [](R& r, CallArgs& a) {
        std::string message;
        const bool fetched = r.IntakeFoldersOf(IntakeKind::Efff).DownloadFiles(message);
        a.Ref(1) = Variant(message);
        return fetched;
    });
}

}  // namespace fnrk::facade

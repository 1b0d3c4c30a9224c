// The payroll mapping tables: SODA's code and analytical mappings (MSODA, MSODAANA), EFFF's
// mapping (MEFFFSOC) and the payroll origin of booked document lines (ACTCOM). Answers come back
// in the last argument; an update the table refused fails the member.

#include "facade/intake_member_support.hpp"
#include "intake/efff_mappings.hpp"
#include "intake/efff_type_labels.hpp"
#include "intake/soda_mappings.hpp"

namespace fnrk::facade {
namespace {

using namespace args;
using intake::EfffMappings;
using intake::SodaMappings;
using intake_members::AddAnswering;
using intake_members::AddChecked;
using intake_members::DocumentLine;
using intake_members::DocumentLineOf;
using intake_members::kDocumentLineArgs;
using intake_members::OnCompany;

constexpr const char* kNotWritten = "the mapping could not be written";

void AddSodaMembers(MemberTable& table) {
    const auto soda = [](auto work) { return OnCompany<SodaMappings>(std::move(work)); };
    AddAnswering(table, "SODACreateMapping", {}, kBoolean,
                 soda([](SodaMappings& m, CallArgs&) { return m.CreateMapping(); }));
    AddAnswering(table, "SODACreateMappingANA", {}, kBoolean,
                 soda([](SodaMappings& m, CallArgs&) { return m.CreateMappingANA(); }));
    AddAnswering(table, "SODAGetMapping", {kString}, kString,
                 soda([](SodaMappings& m, CallArgs& a) { return m.GetMapping(a.String(1)); }));
    AddAnswering(table, "SODAGetMappingANA", {kString}, kString,
                 soda([](SodaMappings& m, CallArgs& a) { return m.GetMappingANA(a.String(1)); }));
    AddChecked(table, "SODAUpdateMapping", {kString, kString}, kNotWritten,
               soda([](SodaMappings& m, CallArgs& a) {
                   return m.UpdateMapping(a.String(1), a.String(2));
               }));
    AddChecked(table, "SODAUpdateMappingANA", {kString, kString}, kNotWritten,
               soda([](SodaMappings& m, CallArgs& a) {
                   return m.UpdateMappingANA(a.String(1), a.String(2));
               }));
    AddChecked(table, "SODADeleteAnaSection", {}, "the analytical mapping could not be cleared",
               soda([](SodaMappings& m, CallArgs&) { return m.DeleteAnaSection(); }));
}

void AddEfffMappingMembers(MemberTable& table) {
    const auto efff = [](auto work) { return OnCompany<EfffMappings>(std::move(work)); };
    AddAnswering(table, "EFFFCreateMapping", {}, kBoolean,
                 efff([](EfffMappings& m, CallArgs&) { return m.CreateMapping(); }));
    AddAnswering(table, "EFFFGetMapping", {kString}, kString,
                 efff([](EfffMappings& m, CallArgs& a) { return m.GetMapping(a.String(1)); }));
    AddChecked(table, "EFFFUpdateMapping", {kString, kString}, kNotWritten,
               efff([](EfffMappings& m, CallArgs& a) {
                   return m.UpdateMapping(a.String(1), a.String(2));
               }));
    // imputType, inss, destination.
    AddChecked(table, "EFFFUpdateMappingGLAccount", {kString, kString, kString}, kNotWritten,
               efff([](EfffMappings& m, CallArgs& a) {
                   return m.UpdateMappingGLAccount(a.String(1), a.String(2), a.String(3));
               }));
    // imputType, inss, workerName, workerFirstName.
    AddChecked(table, "EFFFUpdateMappingDetailByFile", {kString, kString, kString, kString},
               kNotWritten, efff([](EfffMappings& m, CallArgs& a) {
                   return m.UpdateMappingDetailByFile(a.String(1), a.String(2), a.String(3),
                                                      a.String(4));
               }));
    // imputType, inss, destination, anaRef.
    AddChecked(table, "EFFFUpdateMappingByUser", {kString, kString, kString, kString}, kNotWritten,
               efff([](EfffMappings& m, CallArgs& a) {
                   return m.UpdateMappingByUser(a.String(1), a.String(2), a.String(3), a.String(4));
               }));
    // imputType, inss, ByRef destination, ByRef anaRef, ByRef found.
    AddAnswering(table, "EFFFGetMappingInfo", {kString, kString, ByRef(kString), ByRef(kString)},
                 kBoolean, efff([](EfffMappings& m, CallArgs& a) {
                     std::string destination;
                     std::string anaRef;
                     const bool found =
                         m.GetMappingInfo(a.String(1), a.String(2), destination, anaRef);
                     a.Ref(3) = Variant(destination);
                     a.Ref(4) = Variant(anaRef);
                     return found;
                 }));
    AddAnswering(
        table, "EFFFGetMappingIsGlobal", {kString}, kBoolean,
        efff([](EfffMappings& m, CallArgs& a) { return m.GetMappingIsGlobal(a.String(1)); }));
    // ByRef inss (the worker before, "" for the first), firstName, lastName, found.
    AddAnswering(table, "EFFFGetINSS", {ByRef(kString), ByRef(kString), ByRef(kString)}, kBoolean,
                 efff([](EfffMappings& m, CallArgs& a) {
                     std::string inss = a.String(1);
                     std::string firstName;
                     std::string lastName;
                     if (!m.GetINSS(inss, firstName, lastName)) return false;
                     a.Ref(1) = Variant(inss);
                     a.Ref(2) = Variant(firstName);
                     a.Ref(3) = Variant(lastName);
                     return true;
                 }));
    // typeEfff, language, ByRef typeLabel, found.
    AddAnswering(
        table, "EFFFGetTypeLabel", {kString, kString, ByRef(kString)}, kBoolean,
        [](FnrkRoutines&, CallArgs& a) {
            std::string label;
            if (!intake::EfffTypeLabel(FnrkRoutines::Tables(), a.String(1), a.String(2), label))
                return false;
            a.Ref(3) = Variant(label);
            return true;
        });
    AddChecked(table, "EfffDeleteAnaSection", {}, "the analytical references could not be cleared",
               efff([](EfffMappings& m, CallArgs&) { return m.DeleteAnaSection(); }));
}

// ACTCOM: the document line (DbkCode, DocNumber, docOrder, Bookyear, Period) first.
void AddActcomMembers(MemberTable& table) {
    const auto efff = [](auto work) { return OnCompany<EfffMappings>(std::move(work)); };
    AddAnswering(table, "EFFFCreateACTEFFF", {}, kBoolean,
                 efff([](EfffMappings& m, CallArgs&) { return m.CreateACTEFFF(); }));
    // ByRef typeEfff, inss, payroll, payrollName, answer.
    AddAnswering(
        table, "EFFFGetACTEFFF",
        Concat(kDocumentLineArgs, {ByRef(kString), ByRef(kString), ByRef(kString), ByRef(kString)}),
        kBoolean, efff([](EfffMappings& m, CallArgs& a) {
            const DocumentLine line = DocumentLineOf(a);
            std::string typeEfff;
            std::string inss;
            std::string payroll;
            std::string payrollName;
            const bool found =
                m.GetACTEFFF(line.DbkCode, line.DocNumber, line.docOrder, line.Bookyear,
                             line.Period, typeEfff, inss, payroll, payrollName);
            a.Ref(6) = Variant(typeEfff);
            a.Ref(7) = Variant(inss);
            a.Ref(8) = Variant(payroll);
            a.Ref(9) = Variant(payrollName);
            return found;
        }));
    // typeEfff, inss, payroll, payrollName after the line.
    AddChecked(
        table, "EFFFUpdateACTEFFF", Concat(kDocumentLineArgs, {kString, kString, kString, kString}),
        kNotWritten, efff([](EfffMappings& m, CallArgs& a) {
            const DocumentLine line = DocumentLineOf(a);
            return m.UpdateACTEFFF(line.DbkCode, line.DocNumber, line.docOrder, line.Bookyear,
                                   line.Period, a.String(6), a.String(7), a.String(8), a.String(9));
        }));
    // Deleting a line that has no origin recorded is no fault; failing to delete one is.
    AddChecked(table, "EFFFDeleteACTEFFF", kDocumentLineArgs, "the line could not be deleted",
               efff([](EfffMappings& m, CallArgs& a) {
                   const DocumentLine line = DocumentLineOf(a);
                   std::string typeEfff;
                   std::string inss;
                   std::string payroll;
                   std::string payrollName;
                   if (!m.GetACTEFFF(line.DbkCode, line.DocNumber, line.docOrder, line.Bookyear,
                                     line.Period, typeEfff, inss, payroll, payrollName)) {
                       return true;
                   }
                   return m.DeleteACTEFFF(line.DbkCode, line.DocNumber, line.docOrder,
                                          line.Bookyear, line.Period);
               }));
}

}  // namespace

void AddPayrollMappingMembers(MemberTable& table) {
    AddSodaMembers(table);
    AddEfffMappingMembers(table);
    AddActcomMembers(table);
}

}  // namespace fnrk::facade

// The basic UBL family and the members the three invoice families share (sub-totals,
// description lines, saving and closing).

#include "facade/member_table.hpp"
#include "facade/ubl_member_args.hpp"
#include "facade/ubl_section.hpp"

namespace fnrk::facade {

using einvoice::clsUBL;
using R = FnrkRoutines;
using namespace args;

namespace {

void AddSharedMembers(MemberTable& table) {
    table.Method("UBLInitTableSubTotal", {kRegistry}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.InitTableSubTotal(); });
    });
    table.Method("UBLAddSubTotalVATInfo", {kRegistry, kDouble, kDouble, kDouble, kString, kString},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AddTableSubtotal(a.Double(1), a.Double(2), a.Double(3),
                                                   a.String(4), a.String(5));
                     });
                 });
    table.Method("UBLResetLineDescription", {kRegistry}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.ResetDescriptionLine(); });
    });
    table.Method("UBLAddLineDescription", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.AddLineDescription(a.String(1)); });
    });
    table.Method("UBLSavefile", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.SaveFile(a.String(1)); });
    });
    table.Method("UBLClose", {kRegistry}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.CloseUBL(); });
    });
}

void AddBasicMembers(MemberTable& table) {
    table.Method("UBLInit",
                 {kRegistry, kString, kString, kBoolean, kString, kString, kString, kLong},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.InitXML(a.String(1), a.String(2), a.Boolean(3), a.String(4),
                                          a.String(5), a.String(6), a.Long(7));
                     });
                 });
    table.Method("UBLAddAdditionalDocRef", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.AddAdditionalDocRef(a.String(1)); });
    });
    table.Method(
        "UBLAccountingSupplierPart", Concat({kRegistry}, PartyArgs()), [](R& r, CallArgs& a) {
            return UblSection(r, a,
                              [&](clsUBL& w) { return w.AccountingSupplierPart(PartyFrom(a, 1)); });
        });
    table.Method(
        "UBLAccountingCustomerPart", Concat({kRegistry}, PartyArgs()), [](R& r, CallArgs& a) {
            return UblSection(r, a,
                              [&](clsUBL& w) { return w.AccountingCustomerPart(PartyFrom(a, 1)); });
        });
    table.Method("UBLPaymentMeans", {kRegistry, kString, kString, kString, kString, kString},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.PaymentMeans(a.String(1), a.String(2), a.String(3), a.String(4),
                                               a.String(5));
                     });
                 });
    table.Method("UBLPaymentTerms", {kRegistry, kString, kDouble}, [](R& r, CallArgs& a) {
        return UblSection(r, a,
                          [&](clsUBL& w) { return w.PaymentTerms(a.String(1), a.Double(2)); });
    });
    table.Method("UBLAllowanceCharge", {kRegistry, kBoolean, kDouble, kDouble},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AllowanceCharge(a.Boolean(1), a.Double(2), a.Double(3));
                     });
                 });
    table.Method("UBLTaxTotal", {kRegistry, kDouble}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.TaxTotal(a.Double(1)); });
    });
    table.Method("UBLLegalMonetaryTotal",
                 {kRegistry, kString, kString, kString, kString, kString, kString},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.LegalMonetaryTotal(a.String(1), a.String(2), a.String(3),
                                                     a.String(4), a.String(5), a.String(6));
                     });
                 });
    table.Method("UBLInvoiceLine", Concat({kRegistry}, LineArgs()), [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.InvoiceLine(LineFrom(a, 1)); });
    });
}

}  // namespace

void AddUblMembers(MemberTable& table) {
    AddSharedMembers(table);
    AddBasicMembers(table);
}

}  // namespace fnrk::facade

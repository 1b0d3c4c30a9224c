// The EFFF / PEPPOL 2.0 members (EfffPEPPOL...) and the PEPPOL BIS 3 members (PEPPOL...Format,
// SetCustomerPEPPOLID). The doubled "L" of EfffPEPPOLLInit, EfffPEPPOLLAddAdditionalDocRef and
// PEPPOLLAddAdditionalDocRefFormat is part of the public names.

#include "facade/member_table.hpp"
#include "facade/ubl_member_args.hpp"
#include "facade/ubl_section.hpp"

namespace fnrk::facade {

using einvoice::clsUBL;
using R = FnrkRoutines;
using namespace args;

namespace {

void AddEfffPeppolMembers(MemberTable& table) {
    // The last flag chooses the plain PEPPOL BIS 5a identifier over the Belgian extension.
    table.Method(
        "EfffPEPPOLLInit",
        {kRegistry, kString, kString, kBoolean, kString, kString, kString, Optional(kBoolean)},
        [](R& r, CallArgs& a) {
            return UblSection(r, a, [&](clsUBL& w) {
                return w.InitEfffPEPPOL(a.String(1), a.String(2), a.Boolean(3), a.String(4),
                                        a.String(5), a.String(6), a.Boolean(7));
            });
        });
    table.Method("EfffPEPPOLLAddAdditionalDocRef", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(r, a,
                          [&](clsUBL& w) { return w.AddAdditionalDocRefEfffPEPPOL(a.String(1)); });
    });
    table.Method("EfffPEPPOLOrderReference", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.OrderReferenceEfffPEPPOL(a.String(1)); });
    });
    table.Method("EfffPEPPOLBillingReference", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(r, a,
                          [&](clsUBL& w) { return w.BillingReferenceEfffPEPPOL(a.String(1)); });
    });
    table.Method("EfffPEPPOLAccountingSupplierPart", Concat({kRegistry}, PartyArgs()),
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AccountingSupplierPartEfffPEPPOL(PartyFrom(a, 1));
                     });
                 });
    table.Method("EfffPEPPOLCustomerWithoutVAT", {kRegistry, kBoolean}, [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) {
            w.CustomerWithoutVat(a.Boolean(1));
            return true;
        });
    });
    table.Method("EfffPEPPOLAccountingCustomerPart", Concat({kRegistry}, PartyArgs()),
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AccountingCustomerPartEfffPEPPOL(PartyFrom(a, 1));
                     });
                 });
    table.Method("EfffPEPPOLPaymentMeans", {kRegistry, kString, kString, kString, kString},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.PaymentMeansEfffPEPPOL(a.String(1), a.String(2), a.String(3),
                                                         a.String(4));
                     });
                 });
    table.Method("EfffPEPPOLPaymentTerms", {kRegistry, kString, kDouble}, [](R& r, CallArgs& a) {
        return UblSection(
            r, a, [&](clsUBL& w) { return w.PaymentTermsEfffPEPPOL(a.String(1), a.Double(2)); });
    });
    table.Method("EfffPEPPOLPaymentTermsV2", {kRegistry, kString, kDouble, kDouble, kString},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.PaymentTermsEfffPEPPOLV2(a.String(1), a.Double(2), a.Double(3),
                                                           a.String(4));
                     });
                 });
    table.Method("EfffPEPPOLAllowanceCharge", {kRegistry, kBoolean, kDouble},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AllowanceChargeEfffPEPPOL(a.Boolean(1), a.Double(2));
                     });
                 });
    table.Method(
        "EfffPEPPOLTaxTotal", {kRegistry, kDouble, Optional(kDouble)}, [](R& r, CallArgs& a) {
            return UblSection(
                r, a, [&](clsUBL& w) { return w.TaxTotalEfffPEPPOL(a.Double(1), a.Double(2)); });
        });
    table.Method(
        "EfffPEPPOLLegalMonetaryTotal",
        {kRegistry, kString, kString, kString, kString, kString, kString}, [](R& r, CallArgs& a) {
            return UblSection(r, a, [&](clsUBL& w) {
                return w.LegalMonetaryTotalEfffPEPPOL(a.String(1), a.String(2), a.String(3),
                                                      a.String(4), a.String(5), a.String(6));
            });
        });
    table.Method("EfffPEPPOLInvoiceLine", Concat({kRegistry}, LineArgs()), [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.InvoiceLineEfffPEPPOL(LineFrom(a, 1)); });
    });
}

void AddPeppolFormatMembers(MemberTable& table) {
    table.Method("PEPPOLInitFormat",
                 {kRegistry, kString, kString, kString, kBoolean, kString, kString},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.InitPeppolFormat(a.String(1), a.String(2), a.String(3),
                                                   a.Boolean(4), a.String(5), a.String(6));
                     });
                 });
    table.Method("PEPPOLOrderReferenceFormat", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(r, a,
                          [&](clsUBL& w) { return w.OrderReferencePeppolFormat(a.String(1)); });
    });
    table.Method("PEPPOLBillingReferenceFormat", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(r, a,
                          [&](clsUBL& w) { return w.BillingReferencePeppolFormat(a.String(1)); });
    });
    table.Method("PEPPOLLAddAdditionalDocRefFormat", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return UblSection(
            r, a, [&](clsUBL& w) { return w.AddAdditionalDocRefPeppolFormat(a.String(1)); });
    });
    table.Method("PEPPOLAccountingSupplierPartFormat", Concat({kRegistry}, PartyArgs()),
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AccountingSupplierPartFormat(PartyFrom(a, 1));
                     });
                 });
    table.Method("SetCustomerPEPPOLID", {kRegistry, kString, kString}, [](R& r, CallArgs& a) {
        return UblSection(
            r, a, [&](clsUBL& w) { return w.SetCustomerPEPPOLID(a.String(1), a.String(2)); });
    });
    table.Method("PEPPOLAccountingCustomerPartFormat", Concat({kRegistry}, PartyArgs()),
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AccountingCustomerFormat(PartyFrom(a, 1));
                     });
                 });
    table.Method("PEPPOLPaymentMeansFormat", {kRegistry, kString, kString, kString, kString},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.PaymentMeansFormat(a.String(1), a.String(2), a.String(3),
                                                     a.String(4));
                     });
                 });
    // Discount days, percentage, discount amount, payable amount after the discount.
    table.Method("PEPPOLPaymentTermsFormat", {kRegistry, kString, kDouble, kDouble, kDouble},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.PaymentTermsFormat(a.String(1), a.Double(2), a.Double(3),
                                                     a.Double(4));
                     });
                 });
    table.Method("PEPPOLAllowanceChargeFormat",
                 {kRegistry, kBoolean, kString, kDouble, kString, kDouble}, [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AllowanceChargeFormat(a.Boolean(1), a.String(2), a.Double(3),
                                                        a.String(4), a.Double(5));
                     });
                 });
    // Cash-discount flag, amount, VAT code, VAT rate, percentage.
    table.Method("PEPPOLAllowanceChargeFormatVatBase",
                 {kRegistry, kBoolean, kDouble, kString, kDouble, Optional(kDouble)},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.AllowanceChargeFormatVATBase(
                             a.Boolean(1), a.Double(2), a.String(3), a.Double(4), a.Double(5));
                     });
                 });
    table.Method(
        "PEPPOLTaxTotalFormat", {kRegistry, kDouble, Optional(kDouble)}, [](R& r, CallArgs& a) {
            return UblSection(
                r, a, [&](clsUBL& w) { return w.TaxTotalFormat(a.Double(1), a.Double(2)); });
        });
    table.Method("PEPPOLLegalMonetaryTotalFormat",
                 {kRegistry, kString, kString, kString, kString, kString, kString, kString},
                 [](R& r, CallArgs& a) {
                     return UblSection(r, a, [&](clsUBL& w) {
                         return w.LegalMonetaryTotalFormat(a.String(1), a.String(2), a.String(3),
                                                           a.String(4), a.String(5), a.String(6),
                                                           a.String(7));
                     });
                 });
    table.Method("PEPPOLInvoiceLineFormat", Concat({kRegistry}, LineArgs()), [](R& r, CallArgs& a) {
        return UblSection(r, a, [&](clsUBL& w) { return w.InvoiceLineFormat(LineFrom(a, 1)); });
    });
}

}  // namespace

void AddPeppolMembers(MemberTable& table) {
    AddEfffPeppolMembers(table);
    AddPeppolFormatMembers(table);
}

}  // namespace fnrk::facade

// The UBL...Format members: the invoice section named by the member, in the family chosen by a
// format word given after the registry ("UBL" or "EFFF" for the basic family, "EFFFPEPPOL" for
// EFFF / PEPPOL 2.0, "PEPPOLV3" for PEPPOL BIS 3). The remaining arguments are those of that
// family's own member, which is called with them.

#include <array>
#include <optional>

#include "einvoice/sales_document.hpp"
#include "facade/facade_error.hpp"
#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {
namespace {

struct FormatMember {
    const char* name;
    // The family members by profile: basic, EFFF / PEPPOL 2.0, PEPPOL BIS 3; nullptr where the
    // family has no such section.
    std::array<const char*, 3> byProfile;
};

constexpr FormatMember kFormatMembers[] = {
    {"UBLInitFormat", {"UBLInit", "EfffPEPPOLLInit", "PEPPOLInitFormat"}},
    {"UBLAddAdditionalDocRefFormat",
     {"UBLAddAdditionalDocRef", "EfffPEPPOLLAddAdditionalDocRef",
      "PEPPOLLAddAdditionalDocRefFormat"}},
    {"UBLAccountingSupplierPartFormat",
     {"UBLAccountingSupplierPart", "EfffPEPPOLAccountingSupplierPart",
      "PEPPOLAccountingSupplierPartFormat"}},
    {"UBLAccountingCustomerPartFormat",
     {"UBLAccountingCustomerPart", "EfffPEPPOLAccountingCustomerPart",
      "PEPPOLAccountingCustomerPartFormat"}},
    {"UBLPaymentMeansFormat",
     {"UBLPaymentMeans", "EfffPEPPOLPaymentMeans", "PEPPOLPaymentMeansFormat"}},
    {"UBLPaymentTermsFormat",
     {"UBLPaymentTerms", "EfffPEPPOLPaymentTerms", "PEPPOLPaymentTermsFormat"}},
    {"UBLOrderReferenceFormat",
     {nullptr, "EfffPEPPOLOrderReference", "PEPPOLOrderReferenceFormat"}},
    {"UBLBillingReferenceFormat",
     {nullptr, "EfffPEPPOLBillingReference", "PEPPOLBillingReferenceFormat"}},
    {"UBLPaymentTermsV2Format", {nullptr, "EfffPEPPOLPaymentTermsV2", nullptr}},
    {"UBLAllowanceChargeFormat",
     {"UBLAllowanceCharge", "EfffPEPPOLAllowanceCharge", "PEPPOLAllowanceChargeFormat"}},
    {"UBLTaxTotalFormat", {"UBLTaxTotal", "EfffPEPPOLTaxTotal", "PEPPOLTaxTotalFormat"}},
    {"UBLLegalMonetaryTotalFormat",
     {"UBLLegalMonetaryTotal", "EfffPEPPOLLegalMonetaryTotal", "PEPPOLLegalMonetaryTotalFormat"}},
    {"UBLInvoiceLineFormat",
     {"UBLInvoiceLine", "EfffPEPPOLInvoiceLine", "PEPPOLInvoiceLineFormat"}},
};

std::size_t ProfileIndex(einvoice::InvoiceProfile profile) {
    switch (profile) {
        case einvoice::InvoiceProfile::Basic:
            return 0;
        case einvoice::InvoiceProfile::EfffPeppol:
            return 1;
        case einvoice::InvoiceProfile::PeppolV3:
            return 2;
    }
    return 0;
}

Variant CallInFormat(const FormatMember& member, FnrkRoutines& routines, CallArgs& a) {
    const std::string word = a.String(1);
    const std::optional<einvoice::InvoiceProfile> profile = einvoice::ProfileFromFormatWord(word);
    if (!profile) {
        throw FacadeError(kErrInvalidCall, "FnrkRoutines." + std::string(member.name) +
                                               ": unknown format \"" + word + "\"");
    }
    const char* target = member.byProfile[ProfileIndex(*profile)];
    if (target == nullptr) {
        throw FacadeError(kErrInvalidCall, "FnrkRoutines." + std::string(member.name) +
                                               ": the format \"" + word + "\" has no such section");
    }
    std::vector<Variant> forwarded;
    forwarded.push_back(a.Value(0));
    for (std::size_t i = 2; i < a.Count(); ++i) forwarded.push_back(a.Value(i));
    return MemberTable::Instance().Invoke(routines, target, MemberKind::Method, forwarded);
}

}  // namespace

void AddUblFormatMembers(MemberTable& table) {
    for (const FormatMember& member : kFormatMembers) {
        table.Add(Member{
            member.name, MemberKind::Method, {}, true, [&member](FnrkRoutines& r, CallArgs& a) {
                return CallInFormat(member, r, a);
            }});
    }
}

}  // namespace fnrk::facade

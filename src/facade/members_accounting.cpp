// The accounting and analytical helpers (clsAccounting, clsAnalytical): the member name after
// the prefix is the class's method, over the current company's tables.

#include "company/cls_accounting.hpp"
#include "company/cls_analytical.hpp"
#include "company/shared_company.hpp"
#include "facade/wrapped_member.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;

company::clsAccounting Accounting() {
    return company::clsAccounting(company::SharedSocParamColClassApi(), FnrkRoutines::Tables());
}

}  // namespace

void AddAccountingMembers(MemberTable& table) {
    // date (text "DD/MM/YYYY" or a date), [book year, the current one when left out or 0].
    AddWrapped(table, "ACCReturnPeriode", {kVariant, Optional(kInteger)}, [](R&, CallArgs& a) {
        const Variant& date = a.Value(1);
        const std::string text =
            date.Type() == VariantType::Date ? DateText(date.ToDate()) : date.ToString();
        return Accounting().ReturnPeriode(text, a.Has(2) ? a.Integer(2) : std::int16_t{0});
    });
    AddWrapped(table, "ACCCheckCentralisateur", {kString},
               [](R&, CallArgs& a) { return Accounting().CheckCentralisateur(a.String(1)); });
    AddWrapped(table, "ACCGetBankName", {kString},
               [](R&, CallArgs& a) { return Accounting().GetBankName(a.String(1)); });
    AddWrapped(table, "ANAGetFormatforSectionQuantity", {kInteger}, [](R&, CallArgs& a) {
        return company::clsAnalytical(company::SharedSocParamColClassApi())
            .GetFormatforSectionQuantity(a.Integer(1));
    });
    AddWrapped(table, "ANAIsAccountAnalytical", {kString}, [](R&, CallArgs& a) {
        return company::clsAnalytical(company::SharedSocParamColClassApi())
            .IsAccountAnalytical(a.String(1));
    });
}

}  // namespace fnrk::facade

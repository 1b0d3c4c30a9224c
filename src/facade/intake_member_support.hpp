#pragma once

// What the SODA, EFFF and CARO member files share: the current company as the intake classes
// see it, the document-line arguments, members whose answer comes back in their last,
// by-reference argument, and the error of a write the intake layer refused.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "company/shared_company.hpp"
#include "facade/facade_error.hpp"
#include "facade/wrapped_member.hpp"
#include "intake/company_facts.hpp"
#include "intake/intake_kind.hpp"

namespace fnrk::facade::intake_members {

// The current company: the shared table access and company-parameter object.
inline intake::CompanyFacts CurrentCompany() {
    return intake::CompanyFacts(FnrkRoutines::Tables(), company::SharedSocParamColClassApi());
}

// `work(helper, args)` on a fresh `Helper` over the current company, made for this call only.
template <typename Helper, typename Work>
auto OnCompany(Work work) {
    return [work = std::move(work)](FnrkRoutines&, CallArgs& a) {
        intake::CompanyFacts company = CurrentCompany();
        Helper helper(company);
        return work(helper, a);
    };
}

// The member's name: the kind word, then the rest ("SODA" + "GetPath").
inline std::string MemberName(intake::IntakeKind kind, std::string_view rest) {
    return std::string(intake::KeysOf(kind).word) + std::string(rest);
}

// The document line of the ACTCOM and CCDDETAIL members, their arguments 2 to 6.
struct DocumentLine {
    std::string DbkCode;
    std::string DocNumber;
    std::string docOrder;
    std::string Bookyear;
    std::string Period;
};

inline const std::vector<ArgSpec> kDocumentLineArgs = {args::kString, args::kString, args::kString,
                                                       args::kString, args::kString};

inline DocumentLine DocumentLineOf(const CallArgs& a) {
    return DocumentLine{a.String(1), a.String(2), a.String(3), a.String(4), a.String(5)};
}

// A wrapped member whose answer (of kind `answer`) comes back in a by-reference argument after
// the `rest` arguments; `work` gives the answer.
template <typename Work>
void AddAnswering(MemberTable& table, std::string name, std::vector<ArgSpec> rest, ArgSpec answer,
                  Work work) {
    const std::size_t answerAt = rest.size() + 1;  // after the registry and the rest
    rest.push_back(args::ByRef(answer));
    AddWrapped(table, std::move(name), std::move(rest),
               [work = std::move(work), answerAt](FnrkRoutines& r, CallArgs& a) {
                   a.Ref(answerAt) = Variant(work(r, a));
                   return Variant();
               });
}

// A wrapped member that answers nothing; `work` answers whether it did its work, and a refusal
// fails the member with `refusal` after its name.
template <typename Work>
void AddChecked(MemberTable& table, std::string name, std::vector<ArgSpec> rest,
                std::string refusal, Work work) {
    AddWrapped(table, name, std::move(rest),
               [work = std::move(work), message = "FnrkRoutines." + name + ": " + refusal](
                   FnrkRoutines& r, CallArgs& a) {
                   if (!work(r, a)) throw FacadeError(kErrInvalidCall, message);
                   return Variant();
               });
}

}  // namespace fnrk::facade::intake_members

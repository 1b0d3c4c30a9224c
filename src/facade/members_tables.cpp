// The table-access members the façade exposes, so that a caller without an engine of its own
// (the command line, a script) can open the company's tables on the library's connection and
// name them in its registry, and the company-parameter reader.

#include "company/shared_company.hpp"
#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;

// The table access once started (date format, epoch, local connection); later calls do nothing.
tables::AdsClass& StartedTables() {
    tables::AdsClass& tables = R::Tables();
    static_cast<void>(tables.Initialize());
    return tables;
}

}  // namespace

void AddTableAccessMembers(MemberTable& table) {
    // Status 0 when the table opened; the table is the current company's (pathName and
    // socShortName).
    table.Method("FileOpen", {kString, Optional(kString)}, [](R&, CallArgs& a) {
        const std::string mode = a.Has(1) ? a.String(1) : "SHARED";
        return Variant(static_cast<std::int32_t>(StartedTables().FileOpen(a.String(0), mode)));
    });
    table.Method("FileOpenParam", {Optional(kString)}, [](R&, CallArgs& a) {
        const std::string mode = a.Has(0) ? a.String(0) : "SHARED";
        return Variant(static_cast<std::int32_t>(StartedTables().FileOpenParam(mode)));
    });
    table.Method("FileClose", {kString}, [](R&, CallArgs& a) {
        return Variant(static_cast<std::int32_t>(R::Tables().FileClose(a.String(0))));
    });
    table.Method("FileCloseAll", {Optional(kBoolean)}, [](R&, CallArgs& a) {
        return Variant(static_cast<std::int32_t>(R::Tables().FileCloseAll(a.Boolean(0))));
    });
    table.Method("IsAlias", {kString},
                 [](R&, CallArgs& a) { return Variant(R::Tables().IsAlias(a.String(0))); });
    table.Method("ActivateAlias", {kString}, [](R&, CallArgs& a) {
        return Variant(static_cast<std::int32_t>(R::Tables().ActivateAlias(a.String(0))));
    });
    table.Method("GetCurrentAlias", {},
                 [](R&, CallArgs&) { return Variant(R::Tables().GetCurrentAlias()); });
    // The full value of a company parameter, in the last argument ("" when absent).
    table.Method("GetParamValue", {kRegistry, kString, ByRef(kString)}, [](R& r, CallArgs& a) {
        const std::string key = a.String(1);
        a.Ref(2) = Variant(r.Wrapped(
            a.Value(0), [&] { return company::SharedSocParamColClassApi().GetParamValue(key); }));
        return Variant();
    });
}

}  // namespace fnrk::facade

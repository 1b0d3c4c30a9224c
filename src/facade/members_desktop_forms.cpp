// StartForm shows one of the calling application's desktop forms. A library build without a
// desktop has no forms to show: the member fails with that reason, so that a caller never
// takes a form for shown.

#include "facade/facade_error.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {

void AddDesktopFormMembers(MemberTable& table) {
    table.Add(Member{"StartForm", MemberKind::Method, {}, true, [](FnrkRoutines&, CallArgs&) {
                         throw FacadeError(kErrNotAvailable,
                                           "FnrkRoutines.StartForm: no desktop forms in this "
                                           "build: forms are shown by the calling application");
                         return Variant();
                     }});
}

}  // namespace fnrk::facade

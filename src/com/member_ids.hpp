#pragma once

// DISPIDs of FnrkRoutines: a member's position in the member table, plus one so that no member
// takes DISPID_VALUE (0), the default member. A property's get and put share the DISPID of the
// first of them; the call's flags choose between method, get and put.

#include "facade/member_table.hpp"

#include <oaidl.h>

#include <string_view>

namespace fnrk::com {

// DISPID_UNKNOWN when the table has no member of that name (compared without regard to case).
DISPID MemberId(std::string_view name);
// The member a DISPID names; nullptr when none.
const facade::Member* MemberOfId(DISPID id);
// The kind of `name` a call with `flags` reaches: a put for DISPATCH_PROPERTYPUT(REF); the
// method for DISPATCH_METHOD (a script sends METHOD|PROPERTYGET for `x = obj.Name`), else the
// property get; a get of a name that is only a method calls the method, as late binding allows.
facade::MemberKind KindOfCall(std::string_view name, WORD flags);

}  // namespace fnrk::com

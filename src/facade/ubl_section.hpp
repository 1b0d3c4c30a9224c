#pragma once

// One section call of the invoice writer through the wrapper protocol: the façade's writer is
// handed to `write`, whose boolean is the member's result.

#include "einvoice/cls_ubl.hpp"
#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {

template <typename Write>
Variant UblSection(FnrkRoutines& routines, CallArgs& a, Write write) {
    return Variant(
        routines.Wrapped(a.Value(0), [&]() -> bool { return write(routines.UblWriter()); }));
}

}  // namespace fnrk::facade

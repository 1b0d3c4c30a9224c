#pragma once

// A service member answered by a helper: the wrapper protocol around `call`, whose value is the
// member's result. The helper instance is made inside `call` and lives for that call only.

#include <string>
#include <vector>

#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {

template <typename Call>
Variant HelperCall(FnrkRoutines& routines, CallArgs& a, Call call) {
    return routines.Wrapped(a.Value(0), [&]() -> Variant { return Variant(call()); });
}

// The texts of an array or a collection argument, each item as text; type mismatch otherwise.
std::vector<std::string> TextsOf(const Variant& value);

}  // namespace fnrk::facade

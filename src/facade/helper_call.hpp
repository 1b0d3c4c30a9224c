#pragma once

// A service member answered by a helper: the wrapper protocol around `call`, whose value is the
// member's result. The helper instance is made inside `call` and lives for that call only.

#include <string>
#include <vector>

#include "facade/facade_error.hpp"
#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {

template <typename Call>
Variant HelperCall(FnrkRoutines& routines, CallArgs& a, Call call) {
    return routines.Wrapped(a.Value(0), [&]() -> Variant { return Variant(call()); });
}

// The object of class Holder that the caller keeps in the by-reference argument `index`
// between calls (a document, a value list): the caller's, or a new one left there when the
// argument is empty. Any other value is a type mismatch.
template <typename Holder>
Holder& HeldObject(CallArgs& a, std::size_t index, const char* what) {
    Variant& slot = a.Ref(index);
    if (slot.IsEmpty()) slot = Variant(std::make_shared<Holder>());
    auto* holder = dynamic_cast<Holder*>(slot.ToObject().get());
    if (holder == nullptr) {
        ThrowTypeMismatch("argument " + std::to_string(index + 1) + " is not " + what);
    }
    return *holder;
}

// The texts of an array or a collection argument, each item as text; type mismatch otherwise.
std::vector<std::string> TextsOf(const Variant& value);

}  // namespace fnrk::facade

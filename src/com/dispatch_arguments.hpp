#pragma once

// The arguments of one IDispatch::Invoke as a member takes them: in their own order (COM sends
// the last first), a left-out optional argument Empty, the value of a property put last. After
// the call, arguments the caller passed by reference (VT_BYREF|VT_VARIANT, VT_BYREF|VT_BSTR and
// the by-reference numbers, booleans, dates and objects) take the values the member left in
// them; a value the member left in an argument passed by value goes nowhere. Only arguments the
// member changed are written: a caller's collection, read as a copy, stays the caller's own.

#include "facade/variant.hpp"

#include <oaidl.h>

#include <vector>

namespace fnrk::com {

class DispatchArguments {
  public:
    // DispatchFault (DISP_E_NONAMEDARGS) for named arguments: the members take theirs by
    // position, and only a property put names its value (DISPID_PROPERTYPUT).
    DispatchArguments(const DISPPARAMS& params, bool propertyPut);

    std::vector<facade::Variant>& Values() { return values_; }
    // FacadeError (type mismatch, overflow) when a value does not fit the caller's variable.
    void WriteBack() const;

  private:
    const DISPPARAMS& params_;
    std::vector<facade::Variant> values_;
    std::vector<facade::Variant> given_;  // as the caller passed them
};

}  // namespace fnrk::com

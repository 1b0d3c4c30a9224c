#pragma once

// How a call through IDispatch fails: a member's error (a FacadeError) reaches the caller as
// DISP_E_EXCEPTION with EXCEPINFO carrying the library's number, the source and the description,
// so that a script's Err.Number is the library's number; a fault of the call itself (named
// arguments, an unknown DISPID) is an HRESULT of its own.

#include <oaidl.h>

#include <cstdint>
#include <functional>
#include <string_view>

namespace fnrk::com {

// Thrown inside a guarded call to answer with `result` instead of an exception.
struct DispatchFault {
    HRESULT result;
};

// The scode that makes a script show `number` as Err.Number: numbers of 1 to 65535 travel in
// the control facility, as the scripting hosts' own run-time errors do; other numbers as they are.
HRESULT ScodeOfNumber(std::int32_t number);

// The library's number of an error a caller's object raised: its wCode, or its scode read back as
// ScodeOfNumber writes it.
std::int32_t NumberOfExcepInfo(const EXCEPINFO& info);

void FillExcepInfo(EXCEPINFO* info, std::int32_t number, std::string_view source,
                   std::string_view description);

// Runs `call`; its FacadeError (or any other exception, as an invalid call) becomes
// DISP_E_EXCEPTION with `info` filled, a DispatchFault its HRESULT, std::bad_alloc
// E_OUTOFMEMORY. S_OK when `call` returns.
HRESULT GuardedCall(EXCEPINFO* info, std::string_view source, const std::function<void()>& call);

}  // namespace fnrk::com

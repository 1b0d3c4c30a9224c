#include "com/dispatch_errors.hpp"

#include "facade/facade_error.hpp"

#include <oleauto.h>

#include <new>

#include "com/utf16_text.hpp"

namespace fnrk::com {

HRESULT ScodeOfNumber(std::int32_t number) {
    if (number > 0 && number <= 0xFFFF)
        return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
    return number == 0 ? E_FAIL : static_cast<HRESULT>(number);
}

std::int32_t NumberOfExcepInfo(const EXCEPINFO& info) {
    if (info.wCode != 0) return info.wCode;
    if (HRESULT_FACILITY(info.scode) == FACILITY_CONTROL) return HRESULT_CODE(info.scode);
    return info.scode;
}

void FillExcepInfo(EXCEPINFO* info, std::int32_t number, std::string_view source,
                   std::string_view description) {
    if (info == nullptr) return;
    *info = EXCEPINFO{};
    info->scode = ScodeOfNumber(number);
    try {
        info->bstrSource = BstrFromUtf8(source);
        info->bstrDescription = BstrFromUtf8(description);
    } catch (const std::bad_alloc&) {
        // The number still reaches the caller; texts that found no memory stay empty.
    }
}

HRESULT GuardedCall(EXCEPINFO* info, std::string_view source, const std::function<void()>& call) {
    try {
        call();
        return S_OK;
    } catch (const DispatchFault& fault) {
        return fault.result;
    } catch (const facade::FacadeError& error) {
        FillExcepInfo(info, error.number(), source, error.what());
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
        FillExcepInfo(info, facade::kErrInvalidCall, source, error.what());
    }
    return DISP_E_EXCEPTION;
}

}  // namespace fnrk::com

#include "com/dispatch_base.hpp"

namespace fnrk::com {

HRESULT STDMETHODCALLTYPE DispatchBase::GetTypeInfoCount(UINT* count) {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE DispatchBase::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info != nullptr) *info = nullptr;
    return DISP_E_BADINDEX;
}

}  // namespace fnrk::com

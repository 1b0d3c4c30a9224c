#include "com/dispatch_base.hpp"

#include "com/server_counts.hpp"

namespace fnrk::com {

DispatchBase::DispatchBase() {
    CountObjectCreated();
}

DispatchBase::~DispatchBase() {
    CountObjectDestroyed();
}

HRESULT STDMETHODCALLTYPE DispatchBase::QueryInterface(REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch) {
        *out = static_cast<IDispatch*>(this);
    } else {
        *out = OtherInterface(iid);
        if (*out == nullptr) return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE DispatchBase::AddRef() {
    return ++references_;
}

ULONG STDMETHODCALLTYPE DispatchBase::Release() {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
}

HRESULT STDMETHODCALLTYPE DispatchBase::GetTypeInfoCount(UINT* count) {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE DispatchBase::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info != nullptr) *info = nullptr;
    return DISP_E_BADINDEX;
}

void* DispatchBase::OtherInterface(REFIID) {
    return nullptr;
}

}  // namespace fnrk::com

#include "com/class_factory.hpp"

#include <new>

#include "com/routines_dispatch.hpp"
#include "com/server_counts.hpp"

namespace fnrk::com {

RoutinesFactory::RoutinesFactory() {
    CountObjectCreated();
}

RoutinesFactory::~RoutinesFactory() {
    CountObjectDestroyed();
}

HRESULT STDMETHODCALLTYPE RoutinesFactory::QueryInterface(REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    *out = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

ULONG STDMETHODCALLTYPE RoutinesFactory::AddRef() {
    return ++references_;
}

ULONG STDMETHODCALLTYPE RoutinesFactory::Release() {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
}

HRESULT STDMETHODCALLTYPE RoutinesFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    RoutinesDispatch* routines = new (std::nothrow) RoutinesDispatch();
    if (routines == nullptr) return E_OUTOFMEMORY;
    const HRESULT asked = routines->QueryInterface(iid, out);
    routines->Release();
    return asked;
}

HRESULT STDMETHODCALLTYPE RoutinesFactory::LockServer(BOOL lock) {
    CountLock(lock != FALSE);
    return S_OK;
}

}  // namespace fnrk::com

#include "com/class_factory.hpp"

#include "com/routines_dispatch.hpp"
#include "com/server_counts.hpp"

namespace fnrk::com {

HRESULT STDMETHODCALLTYPE RoutinesFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
    if (outer != nullptr) {
        if (out != nullptr) *out = nullptr;
        return CLASS_E_NOAGGREGATION;
    }
    return CreateAs<RoutinesDispatch>(iid, out);
}

HRESULT STDMETHODCALLTYPE RoutinesFactory::LockServer(BOOL lock) {
    CountLock(lock != FALSE);
    return S_OK;
}

}  // namespace fnrk::com

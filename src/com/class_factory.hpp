#pragma once

// The class factory of FnrkRoutines, handed out by DllGetClassObject. Creating an object gives
// a new façade; LockServer keeps the DLL loaded between creations.

#include "com/com_object.hpp"

namespace fnrk::com {

class RoutinesFactory : public ComObject<IClassFactory, IID_IClassFactory> {
  public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;
};

}  // namespace fnrk::com

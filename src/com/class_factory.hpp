#pragma once

// The class factory of FnrkRoutines, handed out by DllGetClassObject. Creating an object gives
// a new façade; LockServer keeps the DLL loaded between creations.

#include <unknwn.h>

#include <atomic>

namespace fnrk::com {

class RoutinesFactory : public IClassFactory {
  public:
    RoutinesFactory();
    virtual ~RoutinesFactory();
    RoutinesFactory(const RoutinesFactory&) = delete;
    RoutinesFactory& operator=(const RoutinesFactory&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

  private:
    std::atomic<ULONG> references_{1};
};

}  // namespace fnrk::com

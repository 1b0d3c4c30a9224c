#pragma once

// What every COM object of the server shares: a reference count that starts at 1 for the
// creator, the server's count of live objects (DllCanUnloadNow), and QueryInterface for
// IUnknown and the object's interface.

#include <unknwn.h>

#include <atomic>
#include <new>

#include "com/server_counts.hpp"

namespace fnrk::com {

template <typename Interface, const IID& kInterfaceId>
class ComObject : public Interface {
  public:
    ComObject() { CountObjectCreated(); }
    virtual ~ComObject() { CountObjectDestroyed(); }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (out == nullptr) return E_POINTER;
        *out = iid == IID_IUnknown || iid == kInterfaceId ? static_cast<Interface*>(this)
                                                          : OtherInterface(iid);
        if (*out == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  protected:
    // An interface besides IUnknown and the object's own that it answers; nullptr for none.
    virtual void* OtherInterface(REFIID) { return nullptr; }

  private:
    std::atomic<ULONG> references_{1};
};

// A new `Object` made with `arguments`, handed out as the interface `iid`; the creator's
// reference goes with it.
template <typename Object, typename... Arguments>
HRESULT CreateAs(REFIID iid, void** out, Arguments&&... arguments) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    Object* made = new (std::nothrow) Object(std::forward<Arguments>(arguments)...);
    if (made == nullptr) return E_OUTOFMEMORY;
    const HRESULT asked = made->QueryInterface(iid, out);
    made->Release();
    return asked;
}

}  // namespace fnrk::com

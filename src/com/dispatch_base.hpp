#pragma once

// What every IDispatch of the server shares: reference counting that keeps the server's object
// count, QueryInterface for IUnknown and IDispatch, and no type information (callers bind late,
// by name).

#include <oaidl.h>

#include <atomic>

namespace fnrk::com {

class DispatchBase : public IDispatch {
  public:
    DispatchBase();
    virtual ~DispatchBase();
    DispatchBase(const DispatchBase&) = delete;
    DispatchBase& operator=(const DispatchBase&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;

  protected:
    // An interface besides IUnknown and IDispatch that the object answers; nullptr for none.
    virtual void* OtherInterface(REFIID iid);

  private:
    // Starts at 1: the creator holds the first reference.
    std::atomic<ULONG> references_{1};
};

}  // namespace fnrk::com

#pragma once

// What every IDispatch of the server shares besides reference counting: no type information
// (callers bind late, by name).

#include <oaidl.h>

#include "com/com_object.hpp"

namespace fnrk::com {

class DispatchBase : public ComObject<IDispatch, IID_IDispatch> {
  public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
};

}  // namespace fnrk::com

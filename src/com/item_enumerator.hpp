#pragma once

// The enumerator of a collection's items (IEnumVARIANT), what a script's For Each walks: the
// items as they were when the walk began.

#include "facade/variant.hpp"

#include <oaidl.h>

#include <vector>

#include "com/com_object.hpp"

namespace fnrk::com {

class ItemEnumerator : public ComObject<IEnumVARIANT, IID_IEnumVARIANT> {
  public:
    explicit ItemEnumerator(std::vector<facade::Variant> items, std::size_t position = 0);

    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* fetched) override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override;
    HRESULT STDMETHODCALLTYPE Reset() override;
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override;

  private:
    std::vector<facade::Variant> items_;
    std::size_t position_;
};

}  // namespace fnrk::com

#pragma once

// IDispatch over one of the library's objects (a registry and its AdsPropertyClass entries, the
// current user, a font, a collection, a declaration document): its properties read and written
// by name. A collection answers "Count" and "Item" (a 1-based index or a key; also its default
// member, so that a script may write coll(1)) and "_NewEnum", the enumerator For Each walks.

#include "facade/variant_object.hpp"

#include <memory>

#include "com/dispatch_base.hpp"

namespace fnrk::com {

class ObjectDispatch : public DispatchBase {
  public:
    explicit ObjectDispatch(std::shared_ptr<facade::VariantObject> object);

    // The library's object behind `unknown` when it is an ObjectDispatch; nullptr otherwise.
    static std::shared_ptr<facade::VariantObject> ObjectBehind(IUnknown* unknown);

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* info,
                                     UINT* argumentError) override;

  protected:
    void* OtherInterface(REFIID iid) override;

  private:
    facade::Variant Call(DISPID id, WORD flags, std::vector<facade::Variant>& args);
    // The enumerator of a collection's items into `result`.
    void StartWalk(VARIANT* result);

    std::shared_ptr<facade::VariantObject> object_;
};

}  // namespace fnrk::com

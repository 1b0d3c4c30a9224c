#pragma once

// A caller's object handed to the library (a user, a font, a registry entry of the caller's own
// making): its properties read and written by name through its IDispatch, its errors raised as
// FacadeErrors with the caller's number and description.

#include "facade/variant_object.hpp"

#include <oaidl.h>

#include <string>
#include <vector>

namespace fnrk::com {

class ForeignObject : public facade::VariantObject {
  public:
    explicit ForeignObject(IDispatch* dispatch);
    ~ForeignObject() override;
    ForeignObject(const ForeignObject&) = delete;
    ForeignObject& operator=(const ForeignObject&) = delete;

    // The name its type information gives, "Object" when it has none.
    std::string_view ClassName() const override { return className_; }
    // Not listed without type information; every name is tried at the call.
    std::vector<std::string> PropertyNames() const override { return {}; }
    facade::Variant GetProperty(std::string_view name) const override;
    void SetProperty(std::string_view name, const facade::Variant& value) override;

    bool HasMember(std::string_view name) const;
    // Calls the member `name` with `flags` (DISPATCH_*) and the arguments in their own order.
    facade::Variant Call(std::string_view name, WORD flags,
                         std::vector<facade::Variant> args) const;
    IDispatch* Dispatch() const { return dispatch_; }

  private:
    DISPID IdOf(std::string_view name) const;

    IDispatch* dispatch_;
    std::string className_;
};

}  // namespace fnrk::com

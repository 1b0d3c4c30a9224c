#include "com/foreign_object.hpp"

#include "facade/facade_error.hpp"

#include <dispex.h>
#include <oleauto.h>

#include "com/dispatch_errors.hpp"
#include "com/owned_variant.hpp"
#include "com/utf16_text.hpp"
#include "com/variant_conversion.hpp"

namespace fnrk::com {
namespace {

using facade::Variant;

std::string TypeNameOf(IDispatch* dispatch) {
    ITypeInfo* info = nullptr;
    if (FAILED(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info)) || info == nullptr) {
        return "Object";
    }
    BSTR name = nullptr;
    const HRESULT read = info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    info->Release();
    std::string text = SUCCEEDED(read) ? Utf8FromBstr(name) : std::string();
    SysFreeString(name);
    return text.empty() ? "Object" : text;
}

// The VARIANTs of a call, last argument first as IDispatch::Invoke takes them.
class ReversedArguments {
  public:
    explicit ReversedArguments(const std::vector<Variant>& args) : slots_(args.size()) {
        for (std::size_t i = 0; i < args.size(); ++i) {
            ToComVariant(args[i], slots_[args.size() - 1 - i]);
        }
    }
    ~ReversedArguments() {
        for (VARIANT& slot : slots_) VariantClear(&slot);
    }
    ReversedArguments(const ReversedArguments&) = delete;
    ReversedArguments& operator=(const ReversedArguments&) = delete;

    VARIANT* Data() { return slots_.data(); }
    UINT Count() const { return static_cast<UINT>(slots_.size()); }

  private:
    std::vector<VARIANT> slots_;
};

[[noreturn]] void ThrowCallerError(std::string_view member, HRESULT result, EXCEPINFO& info) {
    if (result == DISP_E_EXCEPTION) {
        if (info.pfnDeferredFillIn != nullptr) info.pfnDeferredFillIn(&info);
        facade::FacadeError error(NumberOfExcepInfo(info), Utf8FromBstr(info.bstrDescription));
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
        throw error;
    }
    if (result == DISP_E_MEMBERNOTFOUND) {
        throw facade::FacadeError(
            facade::kErrNoSuchMember,
            "Object doesn't support this property or method: " + std::string(member));
    }
    throw facade::FacadeError(facade::kErrInvalidCall, "The caller's object failed " +
                                                           std::string(member) + " (HRESULT " +
                                                           std::to_string(result) + ")");
}

}  // namespace

ForeignObject::ForeignObject(IDispatch* dispatch)
    : dispatch_(dispatch), className_(TypeNameOf(dispatch)) {
    dispatch_->AddRef();
}

ForeignObject::~ForeignObject() {
    dispatch_->Release();
}

DISPID ForeignObject::IdOf(std::string_view name) const {
    DISPID id = DISPID_UNKNOWN;
    // A script's own objects may name their members only through IDispatchEx (Wine's VBScript
    // answers GetIDsOfNames with E_NOTIMPL for instances of its classes).
    IDispatchEx* extended = nullptr;
    if (SUCCEEDED(dispatch_->QueryInterface(__uuidof(IDispatchEx),
                                            reinterpret_cast<void**>(&extended)))) {
        BSTR text = BstrFromUtf8(name);
        const HRESULT found = extended->GetDispID(text, fdexNameCaseInsensitive, &id);
        SysFreeString(text);
        extended->Release();
        return SUCCEEDED(found) ? id : DISPID_UNKNOWN;
    }
    std::wstring wide = Utf16FromUtf8(name);
    LPOLESTR names[] = {wide.data()};
    if (FAILED(dispatch_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
        return DISPID_UNKNOWN;
    }
    return id;
}

bool ForeignObject::HasMember(std::string_view name) const {
    return IdOf(name) != DISPID_UNKNOWN;
}

Variant ForeignObject::Call(std::string_view name, WORD flags, std::vector<Variant> args) const {
    const DISPID id = IdOf(name);
    if (id == DISPID_UNKNOWN) ThrowNoProperty(name);
    ReversedArguments arguments(args);
    DISPID putId = DISPID_PROPERTYPUT;
    const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS params{arguments.Data(), put ? &putId : nullptr, arguments.Count(), put ? 1u : 0u};
    OwnedVariant result;
    EXCEPINFO info{};
    const HRESULT called = dispatch_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                                             &result.value, &info, nullptr);
    if (FAILED(called)) ThrowCallerError(name, called, info);
    return FromComVariant(result.value);
}

Variant ForeignObject::GetProperty(std::string_view name) const {
    return Call(name, DISPATCH_PROPERTYGET, {});
}

void ForeignObject::SetProperty(std::string_view name, const Variant& value) {
    Call(name, value.IsObject() ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, {value});
}

}  // namespace fnrk::com

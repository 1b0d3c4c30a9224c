#include "com/dispatch_arguments.hpp"

#include "facade/facade_error.hpp"

#include <oleauto.h>

#include "com/dispatch_errors.hpp"
#include "com/object_crossing.hpp"
#include "com/utf16_text.hpp"
#include "com/variant_conversion.hpp"

namespace fnrk::com {
namespace {

using facade::Variant;

VARIANT_BOOL ComBoolean(bool value) {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

// Writes `value` into the caller's variable that `slot` refers to.
void WriteInto(const VARIANT& slot, const Variant& value) {
    switch (V_VT(&slot) & ~VT_BYREF) {
        case VT_VARIANT: {
            // A script passing on its own by-reference parameter sends a reference to one.
            VARIANT* target = V_VARIANTREF(&slot);
            while (V_VT(target) == (VT_BYREF | VT_VARIANT)) target = V_VARIANTREF(target);
            VARIANT converted;
            ToComVariant(value, converted);
            VariantClear(target);
            *target = converted;
            return;
        }
        case VT_BSTR: {
            BSTR text = BstrFromUtf8(value.ToString());
            SysFreeString(*V_BSTRREF(&slot));
            *V_BSTRREF(&slot) = text;
            return;
        }
        case VT_I2:
            *V_I2REF(&slot) = value.ToInteger();
            return;
        case VT_I4:
            *V_I4REF(&slot) = value.ToLong();
            return;
        case VT_R8:
            *V_R8REF(&slot) = value.ToDouble();
            return;
        case VT_BOOL:
            *V_BOOLREF(&slot) = ComBoolean(value.ToBoolean());
            return;
        case VT_DATE:
            *V_DATEREF(&slot) = value.ToDate().serial;
            return;
        case VT_CY:
            V_CYREF(&slot)->int64 = value.ToCurrency().tenThousandths;
            return;
        case VT_DISPATCH: {
            IDispatch* object = DispatchFromObject(value.ToObject());
            if (*V_DISPATCHREF(&slot) != nullptr) (*V_DISPATCHREF(&slot))->Release();
            *V_DISPATCHREF(&slot) = object;
            return;
        }
        default:
            facade::ThrowTypeMismatch("a by-reference argument of type " +
                                      std::to_string(V_VT(&slot)));
    }
}

}  // namespace

DispatchArguments::DispatchArguments(const DISPPARAMS& params, bool propertyPut) : params_(params) {
    const bool namesOnlyThePutValue =
        propertyPut && params.cNamedArgs == 1 && params.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    if (params.cNamedArgs != 0 && !namesOnlyThePutValue) throw DispatchFault{DISP_E_NONAMEDARGS};
    // The put value is rgvarg[0] whether named or not, so reversing puts it last.
    for (UINT i = params.cArgs; i > 0; --i) values_.push_back(FromComVariant(params.rgvarg[i - 1]));
    given_ = values_;
}

void DispatchArguments::WriteBack() const {
    for (std::size_t i = 0; i < given_.size(); ++i) {
        const VARIANT& slot = params_.rgvarg[given_.size() - 1 - i];
        const bool byReference = (V_VT(&slot) & VT_BYREF) != 0 && (V_VT(&slot) & VT_ARRAY) == 0;
        if (byReference && !(values_[i] == given_[i])) WriteInto(slot, values_[i]);
    }
}

}  // namespace fnrk::com

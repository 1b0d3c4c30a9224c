#include "com/variant_conversion.hpp"

#include "facade/facade_error.hpp"

#include <oleauto.h>

#include <limits>
#include <new>

#include "com/object_crossing.hpp"
#include "com/owned_variant.hpp"
#include "com/utf16_text.hpp"

namespace fnrk::com {
namespace {

using facade::Variant;

[[noreturn]] void ThrowUnsupported(VARTYPE type) {
    facade::ThrowTypeMismatch("a VARIANT of type " + std::to_string(type) + " has no value here");
}

// Whole numbers wider than a Long become a Double, as late-bound callers widen them.
Variant WholeNumber(long long value) {
    if (value >= std::numeric_limits<std::int32_t>::min() &&
        value <= std::numeric_limits<std::int32_t>::max()) {
        return Variant(static_cast<std::int32_t>(value));
    }
    return Variant(static_cast<double>(value));
}

double DoubleOf(const VARIANT& value) {
    OwnedVariant converted;
    if (FAILED(VariantChangeType(&converted.value, const_cast<VARIANT*>(&value), 0, VT_R8)))
        ThrowUnsupported(V_VT(&value));
    return V_R8(&converted.value);
}

// One element of a SAFEARRAY read into a VARIANT of its own type.
Variant ElementOf(SAFEARRAY* array, VARTYPE type, LONG index) {
    OwnedVariant element;
    void* storage = type == VT_VARIANT ? static_cast<void*>(&element.value) : &V_I4(&element.value);
    if (FAILED(SafeArrayGetElement(array, &index, storage))) ThrowUnsupported(type | VT_ARRAY);
    if (type != VT_VARIANT) V_VT(&element.value) = type;
    return FromComVariant(element.value);
}

Variant FromSafeArray(SAFEARRAY* array) {
    if (array == nullptr) return Variant(facade::VariantArray{});
    if (SafeArrayGetDim(array) != 1) {
        facade::ThrowTypeMismatch("an array of more than one dimension");
    }
    VARTYPE type = VT_EMPTY;
    LONG lower = 0;
    LONG upper = -1;
    if (FAILED(SafeArrayGetVartype(array, &type)) || FAILED(SafeArrayGetLBound(array, 1, &lower)) ||
        FAILED(SafeArrayGetUBound(array, 1, &upper))) {
        facade::ThrowTypeMismatch("an unreadable array");
    }
    if (type == VT_UI1) {
        facade::VariantBytes bytes;
        for (LONG i = lower; i <= upper; ++i) {
            bytes.push_back(static_cast<std::uint8_t>(ElementOf(array, type, i).ToInteger()));
        }
        return Variant(std::move(bytes));
    }
    facade::VariantArray items;
    for (LONG i = lower; i <= upper; ++i) items.push_back(ElementOf(array, type, i));
    return Variant(std::move(items));
}

SAFEARRAY* NewSafeArray(VARTYPE type, std::size_t count) {
    SAFEARRAY* array = SafeArrayCreateVector(type, 0, static_cast<ULONG>(count));
    if (array == nullptr) throw std::bad_alloc();
    return array;
}

SAFEARRAY* SafeArrayOfBytes(const facade::VariantBytes& bytes) {
    SAFEARRAY* array = NewSafeArray(VT_UI1, bytes.size());
    void* data = nullptr;
    SafeArrayAccessData(array, &data);
    std::copy(bytes.begin(), bytes.end(), static_cast<std::uint8_t*>(data));
    SafeArrayUnaccessData(array);
    return array;
}

SAFEARRAY* SafeArrayOfVariants(const facade::VariantArray& items) {
    SAFEARRAY* array = NewSafeArray(VT_VARIANT, items.size());
    void* data = nullptr;
    SafeArrayAccessData(array, &data);
    auto* slots = static_cast<VARIANT*>(data);
    try {
        for (std::size_t i = 0; i < items.size(); ++i) ToComVariant(items[i], slots[i]);
    } catch (...) {
        SafeArrayUnaccessData(array);
        SafeArrayDestroy(array);
        throw;
    }
    SafeArrayUnaccessData(array);
    return array;
}

}  // namespace

Variant FromComVariant(const VARIANT& value) {
    const VARTYPE type = V_VT(&value);
    if (type == (VT_BYREF | VT_VARIANT)) {
        return V_VARIANTREF(&value) == nullptr ? Variant() : FromComVariant(*V_VARIANTREF(&value));
    }
    if ((type & VT_ARRAY) != 0) {
        return FromSafeArray((type & VT_BYREF) != 0 ? *V_ARRAYREF(&value) : V_ARRAY(&value));
    }
    if ((type & VT_BYREF) != 0) {
        // The referenced value read as a plain VARIANT of its type.
        OwnedVariant plain;
        if (FAILED(VariantCopyInd(&plain.value, const_cast<VARIANT*>(&value)))) {
            ThrowUnsupported(type);
        }
        return FromComVariant(plain.value);
    }
    switch (type) {
        case VT_EMPTY:
            return Variant();
        case VT_NULL:
            return Variant(facade::VariantNull{});
        case VT_ERROR:
            if (V_ERROR(&value) == DISP_E_PARAMNOTFOUND) return Variant();
            ThrowUnsupported(type);
        case VT_BOOL:
            return Variant(V_BOOL(&value) != VARIANT_FALSE);
        case VT_I1:
            return Variant(static_cast<std::int16_t>(V_I1(&value)));
        case VT_UI1:
            return Variant(static_cast<std::int16_t>(V_UI1(&value)));
        case VT_I2:
            return Variant(static_cast<std::int16_t>(V_I2(&value)));
        case VT_UI2:
            return Variant(static_cast<std::int32_t>(V_UI2(&value)));
        case VT_I4:
            return Variant(static_cast<std::int32_t>(V_I4(&value)));
        case VT_INT:
            return Variant(static_cast<std::int32_t>(V_INT(&value)));
        case VT_UI4:
            return WholeNumber(V_UI4(&value));
        case VT_UINT:
            return WholeNumber(V_UINT(&value));
        case VT_I8:
            return WholeNumber(V_I8(&value));
        case VT_R4:
        case VT_DECIMAL:
        case VT_UI8:
            return Variant(DoubleOf(value));
        case VT_R8:
            return Variant(V_R8(&value));
        case VT_CY:
            return Variant(facade::VariantCurrency{V_CY(&value).int64});
        case VT_DATE:
            return Variant(facade::VariantDate{V_DATE(&value)});
        case VT_BSTR:
            return Variant(Utf8FromBstr(V_BSTR(&value)));
        case VT_DISPATCH:
            return Variant(ObjectFromDispatch(V_DISPATCH(&value)));
        case VT_UNKNOWN:
            return Variant(ObjectFromUnknown(V_UNKNOWN(&value)));
        default:
            ThrowUnsupported(type);
    }
}

void ToComVariant(const Variant& value, VARIANT& out) {
    VariantInit(&out);
    switch (value.Type()) {
        case facade::VariantType::Empty:
            return;
        case facade::VariantType::Null:
            V_VT(&out) = VT_NULL;
            return;
        case facade::VariantType::Boolean:
            V_VT(&out) = VT_BOOL;
            V_BOOL(&out) = value.As<bool>() ? VARIANT_TRUE : VARIANT_FALSE;
            return;
        case facade::VariantType::Integer:
            V_VT(&out) = VT_I2;
            V_I2(&out) = value.As<std::int16_t>();
            return;
        case facade::VariantType::Long:
            V_VT(&out) = VT_I4;
            V_I4(&out) = value.As<std::int32_t>();
            return;
        case facade::VariantType::Double:
            V_VT(&out) = VT_R8;
            V_R8(&out) = value.As<double>();
            return;
        case facade::VariantType::Currency:
            V_VT(&out) = VT_CY;
            V_CY(&out).int64 = value.As<facade::VariantCurrency>().tenThousandths;
            return;
        case facade::VariantType::Date:
            V_VT(&out) = VT_DATE;
            V_DATE(&out) = value.As<facade::VariantDate>().serial;
            return;
        case facade::VariantType::String:
            V_BSTR(&out) = BstrFromUtf8(value.As<std::string>());
            V_VT(&out) = VT_BSTR;
            return;
        case facade::VariantType::Object:
            V_DISPATCH(&out) =
                DispatchFromObject(value.As<std::shared_ptr<facade::VariantObject>>());
            V_VT(&out) = VT_DISPATCH;
            return;
        case facade::VariantType::Bytes:
            V_ARRAY(&out) = SafeArrayOfBytes(value.As<facade::VariantBytes>());
            V_VT(&out) = VT_ARRAY | VT_UI1;
            return;
        case facade::VariantType::Array:
            V_ARRAY(&out) = SafeArrayOfVariants(value.ToArray());
            V_VT(&out) = VT_ARRAY | VT_VARIANT;
            return;
    }
}

}  // namespace fnrk::com

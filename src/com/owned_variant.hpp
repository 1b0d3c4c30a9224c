#pragma once

// A VARIANT this code owns: empty when made, cleared (its string, array or object released)
// when it goes out of scope, whatever way the scope is left.

#include <oaidl.h>
#include <oleauto.h>

namespace fnrk::com {

struct OwnedVariant {
    OwnedVariant() { VariantInit(&value); }
    ~OwnedVariant() { VariantClear(&value); }
    OwnedVariant(OwnedVariant&& other) noexcept : value(other.value) { VariantInit(&other.value); }
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant& operator=(const OwnedVariant&) = delete;

    VARIANT value;
};

}  // namespace fnrk::com

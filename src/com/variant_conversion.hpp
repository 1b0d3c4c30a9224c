#pragma once

// VARIANT to the library's Variant and back. Strings cross as BSTR (UTF-16 outside, UTF-8
// inside); numbers, booleans, dates and amounts keep their type; one-dimensional SAFEARRAYs are
// lists (of bytes: a byte array); objects cross through object_crossing.hpp. An argument a caller
// left out (VT_ERROR with DISP_E_PARAMNOTFOUND) is Empty.

#include "facade/variant.hpp"

#include <oaidl.h>

namespace fnrk::com {

// A by-reference VARIANT is read through. FacadeError (type mismatch) for a type the library has
// no value for.
facade::Variant FromComVariant(const VARIANT& value);
// `out` is overwritten without being cleared first.
void ToComVariant(const facade::Variant& value, VARIANT& out);

}  // namespace fnrk::com

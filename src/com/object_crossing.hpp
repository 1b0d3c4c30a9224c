#pragma once

// Objects across the COM boundary. The library's objects go out as IDispatch (ObjectDispatch)
// and come back in as the very same objects; a caller's object comes in as a ForeignObject that
// reads and writes its properties by name, and goes back out as the caller's own IDispatch. A
// caller's collection (an object with "Items", as a dictionary, or with "Count" and a 1-based
// "Item", as a collection) comes in as a VariantCollection of its items as they are at the call:
// the library reads a caller's collections, it never changes them.

#include "facade/variant_object.hpp"

#include <oaidl.h>

#include <memory>

namespace fnrk::com {

// nullptr for Nothing.
std::shared_ptr<facade::VariantObject> ObjectFromDispatch(IDispatch* dispatch);
// An object that is no IDispatch is a FacadeError (object required).
std::shared_ptr<facade::VariantObject> ObjectFromUnknown(IUnknown* unknown);
// A new reference; nullptr for Nothing.
IDispatch* DispatchFromObject(const std::shared_ptr<facade::VariantObject>& object);

}  // namespace fnrk::com

#include "com/object_crossing.hpp"

#include "facade/facade_error.hpp"

#include "com/foreign_object.hpp"
#include "com/object_dispatch.hpp"

namespace fnrk::com {
namespace {

using facade::Variant;

std::shared_ptr<facade::VariantObject> CollectionOf(const ForeignObject& caller) {
    auto collection = std::make_shared<facade::VariantCollection>();
    if (caller.HasMember("Items")) {
        const Variant items = caller.Call("Items", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {});
        for (const Variant& item : items.ToArray()) collection->Add(item);
        return collection;
    }
    const std::int32_t count = caller.GetProperty("Count").ToLong();
    for (std::int32_t index = 1; index <= count; ++index) {
        collection->Add(
            caller.Call("Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {Variant(index)}));
    }
    return collection;
}

}  // namespace

std::shared_ptr<facade::VariantObject> ObjectFromDispatch(IDispatch* dispatch) {
    if (dispatch == nullptr) return nullptr;
    if (auto own = ObjectDispatch::ObjectBehind(dispatch)) return own;
    auto caller = std::make_shared<ForeignObject>(dispatch);
    if (caller->HasMember("Items") || (caller->HasMember("Count") && caller->HasMember("Item"))) {
        return CollectionOf(*caller);
    }
    return caller;
}

std::shared_ptr<facade::VariantObject> ObjectFromUnknown(IUnknown* unknown) {
    if (unknown == nullptr) return nullptr;
    IDispatch* dispatch = nullptr;
    if (FAILED(unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch)))) {
        throw facade::FacadeError(facade::kErrObjectRequired,
                                  "Object required: the object given has no IDispatch");
    }
    std::shared_ptr<facade::VariantObject> object = ObjectFromDispatch(dispatch);
    dispatch->Release();
    return object;
}

IDispatch* DispatchFromObject(const std::shared_ptr<facade::VariantObject>& object) {
    if (!object) return nullptr;
    if (const auto* caller = dynamic_cast<const ForeignObject*>(object.get())) {
        caller->Dispatch()->AddRef();
        return caller->Dispatch();
    }
    return new ObjectDispatch(object);
}

}  // namespace fnrk::com

#include "com/object_dispatch.hpp"

#include "facade/facade_error.hpp"
#include "facade/table_registry.hpp"
#include "platform/text.hpp"

#include "com/dispatch_arguments.hpp"
#include "com/dispatch_errors.hpp"
#include "com/item_enumerator.hpp"
#include "com/property_ids.hpp"
#include "com/utf16_text.hpp"
#include "com/variant_conversion.hpp"

namespace fnrk::com {
namespace {

using facade::Variant;

// Answered only by ObjectDispatch, to find the library's own objects among those a caller hands
// back. {5C0E7A8B-1F3D-4E62-9B57-2A6D0C4F81E3}
constexpr IID kObjectDispatchIid = {
    0x5c0e7a8b, 0x1f3d, 0x4e62, {0x9b, 0x57, 0x2a, 0x6d, 0x0c, 0x4f, 0x81, 0xe3}};

// A collection's items and their keys (upper case, empty for an item without one), read from the
// library's registry or one of its collections; false for any other object.
bool ItemsOf(const facade::VariantObject& object, std::vector<Variant>& items,
             std::vector<std::string>& keys) {
    if (const auto* registry = dynamic_cast<const facade::TableRegistry*>(&object)) {
        for (const auto& entry : registry->Entries()) {
            items.emplace_back(entry);
            keys.push_back(platform::UpperCase(entry->Alias));
        }
        return true;
    }
    const auto* collection = dynamic_cast<const facade::VariantCollection*>(&object);
    if (collection == nullptr) return false;
    items = collection->Items();
    keys = collection->Keys();
    return true;
}

// The item by 1-based index or by key.
Variant ItemOf(const std::vector<Variant>& items, const std::vector<std::string>& keys,
               const Variant& which) {
    if (which.Type() == facade::VariantType::String) {
        const std::string key = platform::UpperCase(which.ToString());
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (!key.empty() && keys[i] == key) return items[i];
        }
        throw facade::FacadeError(facade::kErrInvalidCall,
                                  "Invalid procedure call or argument: " + which.ToString());
    }
    const std::int32_t index = which.ToLong();
    if (index < 1 || static_cast<std::size_t>(index) > items.size()) {
        throw facade::FacadeError(9, "Subscript out of range: " + std::to_string(index));
    }
    return items[static_cast<std::size_t>(index - 1)];
}

}  // namespace

ObjectDispatch::ObjectDispatch(std::shared_ptr<facade::VariantObject> object)
    : object_(std::move(object)) {}

std::shared_ptr<facade::VariantObject> ObjectDispatch::ObjectBehind(IUnknown* unknown) {
    void* own = nullptr;
    if (FAILED(unknown->QueryInterface(kObjectDispatchIid, &own))) return nullptr;
    auto* dispatch = static_cast<ObjectDispatch*>(own);
    std::shared_ptr<facade::VariantObject> object = dispatch->object_;
    dispatch->Release();
    return object;
}

void* ObjectDispatch::OtherInterface(REFIID iid) {
    return iid == kObjectDispatchIid ? this : nullptr;
}

HRESULT STDMETHODCALLTYPE ObjectDispatch::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                                        DISPID* ids) {
    if (names == nullptr || ids == nullptr) return E_POINTER;
    try {
        const std::string name = Utf8FromUtf16(names[0]);
        ids[0] = platform::EqualsNoCase(name, "_NewEnum") ? DISPID_NEWENUM : PropertyId(name);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    // Properties take no named arguments.
    for (UINT i = 1; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    return count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
}

Variant ObjectDispatch::Call(DISPID id, WORD flags, std::vector<Variant>& args) {
    std::string name;
    if (id != DISPID_VALUE && !PropertyNameOf(id, name)) throw DispatchFault{DISP_E_MEMBERNOTFOUND};
    const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    std::vector<Variant> items;
    std::vector<std::string> keys;
    const bool isItem = id == DISPID_VALUE || platform::EqualsNoCase(name, "Item");
    if (isItem && !put && args.size() == 1 && ItemsOf(*object_, items, keys)) {
        return ItemOf(items, keys, args[0]);
    }
    if (id == DISPID_VALUE) throw DispatchFault{DISP_E_MEMBERNOTFOUND};
    if (put) {
        if (args.size() != 1) {
            throw facade::FacadeError(facade::kErrWrongArgumentCount,
                                      "Wrong number of arguments: " + name + " takes one value");
        }
        object_->SetProperty(name, args[0]);
        return Variant();
    }
    if (!args.empty()) {
        throw facade::FacadeError(facade::kErrWrongArgumentCount,
                                  "Wrong number of arguments: " + name + " takes none");
    }
    return object_->GetProperty(name);
}

void ObjectDispatch::StartWalk(VARIANT* result) {
    std::vector<Variant> items;
    std::vector<std::string> keys;
    if (!ItemsOf(*object_, items, keys)) throw DispatchFault{DISP_E_MEMBERNOTFOUND};
    if (result == nullptr) return;
    VariantInit(result);
    V_UNKNOWN(result) = new ItemEnumerator(std::move(items));
    V_VT(result) = VT_UNKNOWN;
}

HRESULT STDMETHODCALLTYPE ObjectDispatch::Invoke(DISPID id, REFIID iid, LCID, WORD flags,
                                                 DISPPARAMS* params, VARIANT* result,
                                                 EXCEPINFO* info, UINT*) {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (params == nullptr) return E_POINTER;
    const std::string source = "Fennrickfct." + std::string(object_->ClassName());
    return GuardedCall(info, source, [&] {
        if (id == DISPID_NEWENUM) {
            StartWalk(result);
            return;
        }
        const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        DispatchArguments arguments(*params, put);
        const Variant answer = Call(id, flags, arguments.Values());
        if (result != nullptr) ToComVariant(answer, *result);
    });
}

}  // namespace fnrk::com

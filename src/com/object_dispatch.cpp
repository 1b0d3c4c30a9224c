#include "com/object_dispatch.hpp"

#include "facade/facade_error.hpp"
#include "facade/table_registry.hpp"
#include "platform/text.hpp"

#include "com/dispatch_arguments.hpp"
#include "com/dispatch_errors.hpp"
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

// The item of a collection by 1-based index or by key; false when `object` is no collection.
bool CollectionItem(const facade::VariantObject& object, const Variant& which, Variant& item) {
    if (const auto* registry = dynamic_cast<const facade::TableRegistry*>(&object)) {
        const auto& entries = registry->Entries();
        if (which.Type() == facade::VariantType::String) {
            for (const auto& entry : entries) {
                if (platform::EqualsNoCase(entry->Alias, which.ToString())) {
                    item = Variant(entry);
                    return true;
                }
            }
            throw facade::FacadeError(facade::kErrInvalidCall,
                                      "Invalid procedure call or argument: " + which.ToString());
        }
        const std::int32_t index = which.ToLong();
        if (index < 1 || static_cast<std::size_t>(index) > entries.size()) {
            throw facade::FacadeError(9, "Subscript out of range: " + std::to_string(index));
        }
        item = Variant(entries[static_cast<std::size_t>(index - 1)]);
        return true;
    }
    const auto* collection = dynamic_cast<const facade::VariantCollection*>(&object);
    if (collection == nullptr) return false;
    if (which.Type() == facade::VariantType::String) {
        const std::string key = platform::UpperCase(which.ToString());
        const auto& keys = collection->Keys();
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (!key.empty() && keys[i] == key) {
                item = collection->Items()[i];
                return true;
            }
        }
        throw facade::FacadeError(facade::kErrInvalidCall,
                                  "Invalid procedure call or argument: " + which.ToString());
    }
    item = collection->Item(static_cast<std::size_t>(which.ToLong()));
    return true;
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
        ids[0] = PropertyId(Utf8FromUtf16(names[0]));
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
    if ((id == DISPID_VALUE || platform::EqualsNoCase(name, "Item")) && !put && args.size() == 1) {
        Variant item;
        if (CollectionItem(*object_, args[0], item)) return item;
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

HRESULT STDMETHODCALLTYPE ObjectDispatch::Invoke(DISPID id, REFIID iid, LCID, WORD flags,
                                                 DISPPARAMS* params, VARIANT* result,
                                                 EXCEPINFO* info, UINT*) {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (params == nullptr) return E_POINTER;
    const std::string source(object_->ClassName());
    return GuardedCall(info, source, [&] {
        const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        DispatchArguments arguments(*params, put);
        const Variant answer = Call(id, flags, arguments.Values());
        if (result != nullptr) ToComVariant(answer, *result);
    });
}

}  // namespace fnrk::com

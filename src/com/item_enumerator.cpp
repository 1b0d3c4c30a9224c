#include "com/item_enumerator.hpp"

#include <new>

#include "com/variant_conversion.hpp"

namespace fnrk::com {

ItemEnumerator::ItemEnumerator(std::vector<facade::Variant> items, std::size_t position)
    : items_(std::move(items)), position_(position) {}

HRESULT STDMETHODCALLTYPE ItemEnumerator::Next(ULONG count, VARIANT* items, ULONG* fetched) {
    if (items == nullptr) return E_POINTER;
    ULONG given = 0;
    try {
        for (; given < count && position_ < items_.size(); ++given, ++position_) {
            ToComVariant(items_[position_], items[given]);
        }
    } catch (const std::bad_alloc&) {
        for (ULONG i = 0; i < given; ++i) VariantClear(&items[i]);
        return E_OUTOFMEMORY;
    }
    if (fetched != nullptr) *fetched = given;
    return given == count ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE ItemEnumerator::Skip(ULONG count) {
    const std::size_t left = items_.size() - position_;
    position_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE ItemEnumerator::Reset() {
    position_ = 0;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE ItemEnumerator::Clone(IEnumVARIANT** copy) {
    return CreateAs<ItemEnumerator>(IID_IEnumVARIANT, reinterpret_cast<void**>(copy), items_,
                                    position_);
}

}  // namespace fnrk::com

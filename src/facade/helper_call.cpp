#include "facade/helper_call.hpp"

#include "facade/facade_error.hpp"

namespace fnrk::facade {

std::vector<std::string> TextsOf(const Variant& value) {
    std::vector<std::string> texts;
    const VariantArray* items = nullptr;
    if (value.Type() == VariantType::Array) {
        items = &value.ToArray();
    } else if (const auto* collection =
                   dynamic_cast<const VariantCollection*>(value.ToObject().get())) {
        items = &collection->Items();
    } else {
        ThrowTypeMismatch("an array or a collection of texts is expected");
    }
    for (const Variant& item : *items) texts.push_back(item.ToString());
    return texts;
}

}  // namespace fnrk::facade

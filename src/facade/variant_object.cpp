#include "facade/variant_object.hpp"

#include <algorithm>

#include "facade/facade_error.hpp"
#include "platform/text.hpp"

namespace fnrk::facade {

Variant VariantObject::GetProperty(std::string_view name) const {
    ThrowNoProperty(name);
}

void VariantObject::SetProperty(std::string_view name, const Variant&) {
    ThrowNoProperty(name);
}

void VariantObject::ThrowNoProperty(std::string_view name) const {
    throw FacadeError(kErrNoSuchMember, "Object doesn't support this property or method: " +
                                            std::string(ClassName()) + "." + std::string(name));
}

PropertyBag::PropertyBag(std::string className, std::vector<std::string> names)
    : className_(std::move(className)), names_(std::move(names)), values_(names_.size()) {}

std::size_t PropertyBag::IndexOf(std::string_view name) const {
    const auto found = std::find_if(names_.begin(), names_.end(), [&](const std::string& known) {
        return platform::EqualsNoCase(known, name);
    });
    if (found == names_.end()) ThrowNoProperty(name);
    return static_cast<std::size_t>(found - names_.begin());
}

Variant PropertyBag::GetProperty(std::string_view name) const {
    return values_[IndexOf(name)];
}

void PropertyBag::SetProperty(std::string_view name, const Variant& value) {
    values_[IndexOf(name)] = value;
}

std::shared_ptr<PropertyBag> MakeFont(std::string name, double size) {
    auto font = std::make_shared<PropertyBag>(
        "Font", std::vector<std::string>{"Name", "Size", "Bold", "Italic"});
    font->SetProperty("Name", Variant(std::move(name)));
    font->SetProperty("Size", Variant(size));
    font->SetProperty("Bold", Variant(false));
    font->SetProperty("Italic", Variant(false));
    return font;
}

bool IsFont(const VariantObject& object) {
    return object.ClassName() == "Font";
}

Variant VariantCollection::GetProperty(std::string_view name) const {
    if (platform::EqualsNoCase(name, "Count")) {
        return Variant(static_cast<std::int32_t>(items_.size()));
    }
    ThrowNoProperty(name);
}

const Variant& VariantCollection::Item(std::size_t index) const {
    if (index < 1 || index > items_.size()) {
        throw FacadeError(9, "Subscript out of range: " + std::to_string(index));
    }
    return items_[index - 1];
}

bool VariantCollection::HasKey(std::string_view key) const {
    const std::string upper = platform::UpperCase(key);
    return !upper.empty() && std::find(keys_.begin(), keys_.end(), upper) != keys_.end();
}

void VariantCollection::Add(Variant item, std::string key) {
    if (HasKey(key)) {
        throw FacadeError(457,
                          "This key is already associated with an element of this "
                          "collection: " +
                              key);
    }
    items_.push_back(std::move(item));
    keys_.push_back(platform::UpperCase(key));
}

void VariantCollection::Remove(std::size_t index) {
    Item(index);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index - 1));
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(index - 1));
}

}  // namespace fnrk::facade

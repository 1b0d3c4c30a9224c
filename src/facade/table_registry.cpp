#include "facade/table_registry.hpp"

#include <algorithm>

#include "facade/facade_error.hpp"
#include "platform/text.hpp"

namespace fnrk::facade {

Variant AdsPropertyClass::GetProperty(std::string_view name) const {
    if (platform::EqualsNoCase(name, "Alias")) return Variant(Alias);
    if (platform::EqualsNoCase(name, "ActiveIndexHandle")) return Variant(ActiveIndexHandle);
    if (platform::EqualsNoCase(name, "Order")) return Variant(Order);
    ThrowNoProperty(name);
}

void AdsPropertyClass::SetProperty(std::string_view name, const Variant& value) {
    if (platform::EqualsNoCase(name, "Alias")) {
        Alias = value.ToString();
    } else if (platform::EqualsNoCase(name, "ActiveIndexHandle")) {
        ActiveIndexHandle = value.ToLong();
    } else if (platform::EqualsNoCase(name, "Order")) {
        Order = value.ToDouble();
    } else {
        ThrowNoProperty(name);
    }
}

Variant TableRegistry::GetProperty(std::string_view name) const {
    if (platform::EqualsNoCase(name, "Count")) {
        return Variant(static_cast<std::int32_t>(entries_.size()));
    }
    ThrowNoProperty(name);
}

bool TableRegistry::Contains(std::string_view alias) const {
    return std::any_of(entries_.begin(), entries_.end(), [&](const auto& entry) {
        return platform::EqualsNoCase(entry->Alias, alias);
    });
}

bool TableRegistry::Add(const AdsPropertyClass& entry) {
    if (Contains(entry.Alias)) return false;
    entries_.push_back(std::make_shared<AdsPropertyClass>(entry));
    return true;
}

void TableRegistry::RemoveFirst() {
    if (!entries_.empty()) entries_.erase(entries_.begin());
}

namespace {

std::vector<AdsPropertyClass> EntriesOf(const std::vector<Variant>& items) {
    std::vector<AdsPropertyClass> entries;
    for (const Variant& item : items) {
        const std::shared_ptr<VariantObject> source = item.ToObject();
        entries.emplace_back(source->GetProperty("Alias").ToString(),
                             source->GetProperty("ActiveIndexHandle").ToLong(),
                             source->GetProperty("Order").ToDouble());
    }
    return entries;
}

}  // namespace

std::vector<AdsPropertyClass> ReadCallerRegistry(const Variant& registry) {
    // A script has arrays where a compiled caller has collections.
    if (registry.Type() == VariantType::Array) return EntriesOf(registry.ToArray());
    const std::shared_ptr<VariantObject> object = registry.ToObject();
    if (const auto* own = dynamic_cast<const TableRegistry*>(object.get())) {
        std::vector<AdsPropertyClass> entries;
        for (const auto& entry : own->Entries()) entries.push_back(*entry);
        return entries;
    }
    const auto* collection = dynamic_cast<const VariantCollection*>(object.get());
    if (collection == nullptr) {
        ThrowTypeMismatch(std::string(object->ClassName()) + " is not a table registry");
    }
    return EntriesOf(collection->Items());
}

}  // namespace fnrk::facade

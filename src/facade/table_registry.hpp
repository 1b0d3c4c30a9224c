#pragma once

// The table registry: the library's view of the tables the calling application has open, one
// `AdsPropertyClass` entry per alias, in the caller's order. The alias is the key (compared
// without regard to case); adding an alias that is already present is silently refused and the
// first entry stays.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "facade/variant_object.hpp"

namespace fnrk::facade {

class AdsPropertyClass : public VariantObject {
  public:
    AdsPropertyClass() = default;
    AdsPropertyClass(std::string alias, std::int32_t activeIndexHandle, double order)
        : Alias(std::move(alias)), ActiveIndexHandle(activeIndexHandle), Order(order) {}

    std::string_view ClassName() const override { return "AdsPropertyClass"; }
    std::vector<std::string> PropertyNames() const override {
        return {"Alias", "ActiveIndexHandle", "Order"};
    }
    Variant GetProperty(std::string_view name) const override;
    void SetProperty(std::string_view name, const Variant& value) override;

    bool operator==(const AdsPropertyClass& other) const {
        return Alias == other.Alias && ActiveIndexHandle == other.ActiveIndexHandle &&
               Order == other.Order;
    }

    std::string Alias;
    std::int32_t ActiveIndexHandle = 0;
    double Order = 0.0;
};

class TableRegistry : public VariantObject {
  public:
    std::string_view ClassName() const override { return "Collection"; }
    std::vector<std::string> PropertyNames() const override { return {"Count"}; }
    Variant GetProperty(std::string_view name) const override;

    std::size_t Count() const { return entries_.size(); }
    const std::vector<std::shared_ptr<AdsPropertyClass>>& Entries() const { return entries_; }
    // Adds a copy of the entry at the end; false (and nothing added) when its alias is present.
    bool Add(const AdsPropertyClass& entry);
    bool Contains(std::string_view alias) const;
    void RemoveFirst();

  private:
    std::vector<std::shared_ptr<AdsPropertyClass>> entries_;
};

// The entries of a registry a caller hands over: the library's own registry object, or any
// collection or array whose items are objects with the properties "Alias", "ActiveIndexHandle"
// and "Order" (read by name). Anything else is a FacadeError (object required, type mismatch).
std::vector<AdsPropertyClass> ReadCallerRegistry(const Variant& registry);

}  // namespace fnrk::facade

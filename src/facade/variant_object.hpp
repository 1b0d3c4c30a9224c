#pragma once

// The objects a Variant can carry: each offers named properties, read and written by name as a
// late-bound caller does ("Alias" of a registry entry, "Name" of a user or a font). Names are
// matched without regard to case; an unknown name is error 438.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "facade/variant.hpp"

namespace fnrk::facade {

class VariantObject {
  public:
    virtual ~VariantObject() = default;

    // The class name a caller sees ("Font", "AdsPropertyClass", "Collection", ...).
    virtual std::string_view ClassName() const = 0;
    // The readable properties, in the order they are listed to a caller.
    virtual std::vector<std::string> PropertyNames() const = 0;
    virtual Variant GetProperty(std::string_view name) const;
    virtual void SetProperty(std::string_view name, const Variant& value);

  protected:
    [[noreturn]] void ThrowNoProperty(std::string_view name) const;
};

// An object of fixed named properties, each kept as a Variant: the font, the user handed to
// `USER_Class` and the entries of a registry are made of this.
class PropertyBag : public VariantObject {
  public:
    PropertyBag(std::string className, std::vector<std::string> names);

    std::string_view ClassName() const override { return className_; }
    std::vector<std::string> PropertyNames() const override { return names_; }
    Variant GetProperty(std::string_view name) const override;
    void SetProperty(std::string_view name, const Variant& value) override;

  private:
    std::size_t IndexOf(std::string_view name) const;

    std::string className_;
    std::vector<std::string> names_;
    std::vector<Variant> values_;
};

// A font as the caller's screen font: "Name", "Size", "Bold", "Italic".
std::shared_ptr<PropertyBag> MakeFont(std::string name, double size);
bool IsFont(const VariantObject& object);

// A collection of values, 1-based as callers count, optionally keyed (keys compared without
// regard to case). "Count" is its one property.
class VariantCollection : public VariantObject {
  public:
    std::string_view ClassName() const override { return "Collection"; }
    std::vector<std::string> PropertyNames() const override { return {"Count"}; }
    Variant GetProperty(std::string_view name) const override;

    std::size_t Count() const { return items_.size(); }
    // The item at a 1-based index; error 9 past the ends.
    const Variant& Item(std::size_t index) const;
    // Adds at the end; a key already present is error 457 and nothing is added.
    void Add(Variant item, std::string key = {});
    bool HasKey(std::string_view key) const;
    void Remove(std::size_t index);
    const std::vector<Variant>& Items() const { return items_; }
    // The keys in item order, upper case; empty for an item added without one.
    const std::vector<std::string>& Keys() const { return keys_; }

  private:
    std::vector<Variant> items_;
    std::vector<std::string> keys_;  // upper case, empty for an item without key
};

}  // namespace fnrk::facade

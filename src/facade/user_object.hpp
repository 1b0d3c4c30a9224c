#pragma once

// The current user as a late-bound caller sees it: a `user` with the properties "Name",
// "Rights" and "language", read and written by name, and "Password", which can be written but
// never read back.

#include <memory>
#include <string>

#include "facade/variant_object.hpp"
#include "users/user.hpp"

namespace fnrk::facade {

class UserObject : public VariantObject {
  public:
    std::string_view ClassName() const override { return "user"; }
    std::vector<std::string> PropertyNames() const override {
        return {"Name", "Rights", "language"};
    }
    Variant GetProperty(std::string_view name) const override;
    void SetProperty(std::string_view name, const Variant& value) override;

    users::user person;
};

std::shared_ptr<UserObject> MakeUserObject(std::string name, std::string password,
                                           std::string rights, std::string language);

}  // namespace fnrk::facade

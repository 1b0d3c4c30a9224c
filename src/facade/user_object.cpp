#include "facade/user_object.hpp"

#include "platform/text.hpp"
#include "users/user_password.hpp"

namespace fnrk::facade {

Variant UserObject::GetProperty(std::string_view name) const {
    if (platform::EqualsNoCase(name, "Name")) return Variant(person.Name());
    if (platform::EqualsNoCase(name, "Rights")) return Variant(person.Rights());
    if (platform::EqualsNoCase(name, "language")) return Variant(person.language());
    ThrowNoProperty(name);
}

void UserObject::SetProperty(std::string_view name, const Variant& value) {
    if (platform::EqualsNoCase(name, "Name")) {
        person.Name(value.ToString());
    } else if (platform::EqualsNoCase(name, "Rights")) {
        person.Rights(value.ToString());
    } else if (platform::EqualsNoCase(name, "language")) {
        person.language(value.ToString());
    } else if (platform::EqualsNoCase(name, "Password")) {
        users::SetUserPassword(person, value.ToString());
    } else {
        ThrowNoProperty(name);
    }
}

std::shared_ptr<UserObject> MakeUserObject(std::string name, std::string password,
                                           std::string rights, std::string language) {
    auto user = std::make_shared<UserObject>();
    user->person.Name(std::move(name));
    users::SetUserPassword(user->person, std::move(password));
    user->person.Rights(std::move(rights));
    user->person.language(std::move(language));
    return user;
}

}  // namespace fnrk::facade

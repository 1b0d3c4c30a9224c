#pragma once

// The password a user typed, for the library's own code only (the façade copies it in from the
// caller's user object; CheckPasswordOfUser compares it). Nothing outside the library reaches
// it: it is no member of `user`, no façade member and no command.

#include <string>

#include "users/user.hpp"

namespace fnrk::users {

const std::string& UserPassword(const user& person);
void SetUserPassword(user& person, std::string password);

}  // namespace fnrk::users

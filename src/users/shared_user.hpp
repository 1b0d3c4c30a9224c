#pragma once

// The process-wide current user. Making a user current copies its name, language, password
// and rights into the shared object and into the session's current user, which the layers
// below (configuration, preference files) read.

#include "users/user.hpp"

namespace fnrk::users {

user& SharedUser();
void MakeCurrentUser(const user& person);

}  // namespace fnrk::users

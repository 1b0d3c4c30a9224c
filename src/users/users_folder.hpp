#pragma once

// The "USERS" subfolder of the users folder: it holds the log-on table and one private folder
// per user.

#include <string>

namespace fnrk::users {

// "<users folder>USERS" (native separators); empty when the users folder is not known.
std::string UsersSubfolder();

}  // namespace fnrk::users

#pragma once

// The "USERS" subfolder of the users folder: it holds the log-on table and one private folder
// per user; and the installation's own tables of per-user values.

#include <string>
#include <string_view>

namespace fnrk::users {

// "<users folder>USERS" (native separators); empty when the users folder is not known.
std::string UsersSubfolder();

// The file `name` in the installation folder (settings "Installation"/"MainPath"), beside the
// shared configuration file; empty when that folder is not set.
std::string InstallationFile(std::string_view name);

}  // namespace fnrk::users

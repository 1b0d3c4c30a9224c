#pragma once

// Where the open users table lives. The table layer, which sits above this one, installs a
// locator that asks its alias table; until then the users table counts as not open.

#include <optional>
#include <string>

namespace fnrk::session {

class UsersTableLocator {
  public:
    virtual ~UsersTableLocator() = default;
    // The folder of the table open under the alias "USERS", as the table layer reports it;
    // nothing when that alias is not open.
    virtual std::optional<std::string> OpenUsersTableFolder() const = 0;
};

const UsersTableLocator& CurrentUsersTableLocator();
// Makes `locator` current and returns the previous one; nullptr restores the default. The caller
// keeps the locator alive while it is current.
const UsersTableLocator* SetUsersTableLocator(const UsersTableLocator* locator);

}  // namespace fnrk::session

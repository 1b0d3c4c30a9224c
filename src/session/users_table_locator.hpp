#pragma once

// Where the open users table lives. The table layer, which sits above the session, answers it;
// whoever owns both hands one to ApiIni (ApiIni::UsersTableFrom).

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

}  // namespace fnrk::session

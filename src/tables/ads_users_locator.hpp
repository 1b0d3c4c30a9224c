#pragma once

// The users-table locator of the session layer, answered by an AdsClass: the folder of the table
// open under the alias "USERS".

#include "session/users_table_locator.hpp"
#include "tables/ads_class.hpp"

namespace fnrk::tables {

class AdsUsersTableLocator final : public session::UsersTableLocator {
  public:
    explicit AdsUsersTableLocator(AdsClass& ads) : ads_(ads) {}
    // The folder with a trailing separator, as the users folder is written elsewhere.
    std::optional<std::string> OpenUsersTableFolder() const override;

  private:
    AdsClass& ads_;
};

}  // namespace fnrk::tables

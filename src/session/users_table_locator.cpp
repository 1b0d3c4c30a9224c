#include "session/users_table_locator.hpp"

namespace fnrk::session {
namespace {

class NoUsersTable : public UsersTableLocator {
  public:
    std::optional<std::string> OpenUsersTableFolder() const override { return std::nullopt; }
};

const UsersTableLocator& DefaultLocator() {
    static const NoUsersTable locator;
    return locator;
}

const UsersTableLocator*& CurrentSlot() {
    static const UsersTableLocator* current = nullptr;
    return current;
}

}  // namespace

const UsersTableLocator& CurrentUsersTableLocator() {
    return CurrentSlot() != nullptr ? *CurrentSlot() : DefaultLocator();
}

const UsersTableLocator* SetUsersTableLocator(const UsersTableLocator* locator) {
    const UsersTableLocator* previous = CurrentSlot();
    CurrentSlot() = locator;
    return previous != nullptr ? previous : &DefaultLocator();
}

}  // namespace fnrk::session

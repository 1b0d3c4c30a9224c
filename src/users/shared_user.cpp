#include "users/shared_user.hpp"

#include "session/session_user.hpp"
#include "users/user_password.hpp"

namespace fnrk::users {

user& SharedUser() {
    static user instance;
    return instance;
}

void MakeCurrentUser(const user& person) {
    user& current = SharedUser();
    current.Name(person.Name());
    current.language(person.language());
    current.Rights(person.Rights());
    SetUserPassword(current, UserPassword(person));

    session::SessionUser& session = session::CurrentUser();
    session.Name = person.Name();
    session.language = person.language();
    session.Rights = person.Rights();
    session.Password = UserPassword(person);
}

}  // namespace fnrk::users

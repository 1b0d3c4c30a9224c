// The external-logins members: the user's values for outside services, kept in the
// installation's "USERSEXT" table ("Extented" is the public spelling).

#include "facade/wrapped_member.hpp"
#include "users/password_in_string.hpp"
#include "users/users_ext.hpp"

namespace fnrk::facade {

using R = FnrkRoutines;
using namespace args;

void AddUsersExtMembers(MemberTable& table) {
    AddWrapped(table, "UserExtCreateUserExtended", {},
               [](R&, CallArgs&) { return users::UsersExt().CreateUserExtended(); });
    // Name, type, key, value.
    AddWrapped(table, "UserExtUpdateUserExtended", {kString, kString, kString, kString},
               [](R&, CallArgs& a) {
                   return users::UsersExt().UpdateUserExtended(a.String(1), a.String(2),
                                                               a.String(3), a.String(4));
               });
    // Name, type, key; the value, empty when there is none.
    AddWrapped(
        table, "UserExtGetValueUserExtented", {kString, kString, kString}, [](R&, CallArgs& a) {
            return users::UsersExt().GetValueUserExtented(a.String(1), a.String(2), a.String(3));
        });
    // The number of rows deleted.
    AddWrapped(table, "UserExtDeleteSpecificUser", {kString},
               [](R&, CallArgs& a) { return users::UsersExt().DeleteSpecificUser(a.String(1)); });
    AddWrapped(table, "UserExtDeleteAllUsersExtended", {kString, kString}, [](R&, CallArgs& a) {
        return users::UsersExt().DeleteAllUsersExtended(a.String(1), a.String(2));
    });
    AddWrapped(table, "UserExtIsMultiUserExtented", {kString, kString}, [](R&, CallArgs& a) {
        return users::UsersExt().IsMultiUserExtented(a.String(1), a.String(2));
    });
    // Type, login, password: the text stored for that type.
    AddWrapped(table, "UserExtGetPasswordInString", {kString, kString, kString},
               [](R&, CallArgs& a) {
                   return users::GetPasswordInString(a.String(1), a.String(2), a.String(3));
               });
}

}  // namespace fnrk::facade

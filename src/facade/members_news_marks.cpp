// The current user's news preferences and release-note marks, kept in the installation's
// "USERSNEWS" table (users/users_news.hpp). The news items and release notes themselves come
// from online feeds (members_online_services.cpp).

#include "facade/wrapped_member.hpp"
#include "session/session_user.hpp"
#include "tables/shared_tables.hpp"
#include "users/users_news.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;

users::UsersNews News() {
    return users::UsersNews(tables::SharedAdsClass());
}

const std::string& CurrentUserName() {
    return session::CurrentUser().Name;
}

}  // namespace

void AddNewsMarkMembers(MemberTable& table) {
    AddWrapped(table, "GetTypeNews", {},
               [](R&, CallArgs&) { return News().GetTypeNews(CurrentUserName()); });
    AddWrapped(table, "GetFreqNews", {},
               [](R&, CallArgs&) { return News().GetFreqNews(CurrentUserName()); });
    // type of news, frequency.
    AddWrapped(table, "SaveNewsPref", {kInteger, kInteger}, [](R&, CallArgs& a) {
        return News().SaveNewsPref(CurrentUserName(), a.Integer(1), a.Integer(2));
    });
    AddWrapped(table, "SaveLastNews", {kString},
               [](R&, CallArgs& a) { return News().SaveLastNews(CurrentUserName(), a.String(1)); });
    // label, [selected: true when left out].
    AddWrapped(table, "SelectLabel", {kString, Optional(kBoolean)}, [](R&, CallArgs& a) {
        return News().SelectLabel(CurrentUserName(), a.String(1), !a.Has(2) || a.Boolean(2));
    });
    AddWrapped(table, "NewsLabelsSelected", {},
               [](R&, CallArgs&) { return News().NewsLabelsSelected(CurrentUserName()); });
    AddWrapped(table, "RNSetLastReleaseNote", {kString}, [](R&, CallArgs& a) {
        return News().SetLastReleaseNote(CurrentUserName(), a.String(1));
    });
    AddWrapped(table, "RNIsUnreadReleaseNote", {kString}, [](R&, CallArgs& a) {
        return News().IsUnreadReleaseNote(CurrentUserName(), a.String(1));
    });
}

}  // namespace fnrk::facade

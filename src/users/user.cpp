#include "users/user.hpp"

#include "platform/file_system.hpp"
#include "platform/messages.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "tables/shared_tables.hpp"
#include "users/menu_rights.hpp"
#include "users/user_password.hpp"
#include "users/users_folder.hpp"

namespace fnrk::users {

namespace {

constexpr std::size_t kNameWidth = 15;

}  // namespace

std::string RegisterName(std::string_view userName) {
    return platform::PadRight(platform::UpperCase(platform::Trim(userName)), kNameWidth);
}

user::user() : user(tables::SharedAdsClass()) {}

user::user(tables::AdsClass& tables) : tables_(&tables) {}

user::~user() {
    LogOff();
}

// A copy is the same person, not the same log-on: the row lock stays with the original.
user::user(const user& other)
    : tables_(other.tables_),
      name_(other.name_),
      language_(other.language_),
      password_(other.password_),
      rights_(other.rights_) {}

user& user::operator=(const user& other) {
    if (this != &other) {
        tables_ = other.tables_;
        name_ = other.name_;
        language_ = other.language_;
        password_ = other.password_;
        rights_ = other.rights_;
    }
    return *this;
}

void user::Register(std::string_view, std::string_view name, std::string_view language,
                    std::string_view password, std::string_view rights) {
    name_ = name;
    language_ = language;
    password_ = password;
    rights_ = rights;
}

void user::UnRegister() {
    LogOff();
    name_.clear();
    language_.clear();
    password_.clear();
    rights_.clear();
}

std::string user::Level() const {
    return std::string(LevelOfRights(rights_));
}

bool user::IsAdministrator() const {
    return IsAdministratorRights(rights_);
}

bool user::IsAccess(std::string_view menuCode) const {
    return IsMenuCodeGranted(rights_, menuCode);
}

std::string user::PrefsPath() {
    const std::string users = UsersSubfolder();
    if (users.empty()) {
        platform::ShowMessage("Error getting user private path",
                              platform::message_style::kExclamation, platform::kProductTitle);
        return {};
    }
    if (!platform::FolderExists(users)) platform::CreateFolder(users);
    const std::string own = users + platform::kPathSep + platform::Trim(name_);
    if (!platform::FolderExists(own)) platform::CreateFolder(own);
    return own;
}

const std::string& UserPassword(const user& person) {
    return person.password_;
}

void SetUserPassword(user& person, std::string password) {
    person.password_ = std::move(password);
}

}  // namespace fnrk::users

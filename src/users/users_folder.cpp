#include "users/users_folder.hpp"

#include "platform/paths.hpp"
#include "platform/settings_store.hpp"
#include "platform/text.hpp"
#include "session/api_ini.hpp"

namespace fnrk::users {

std::string UsersSubfolder() {
    const std::string usersFolder = platform::TrimRight(session::SharedApiIni().GetUserDbfPath());
    // Without an installation the users folder comes back as a bare separator.
    if (platform::Trim(usersFolder).empty() || usersFolder == std::string(1, platform::kPathSep))
        return {};
    const bool ended = usersFolder.back() == platform::kPathSep;
    return usersFolder + (ended ? "" : std::string(1, platform::kPathSep)) + "USERS";
}

std::string InstallationFile(std::string_view name) {
    const std::string folder = platform::TrimRight(platform::SettingsMainPath());
    if (platform::Trim(folder).empty()) return {};
    return folder +
           (folder.back() == platform::kPathSep ? "" : std::string(1, platform::kPathSep)) +
           std::string(name);
}

}  // namespace fnrk::users

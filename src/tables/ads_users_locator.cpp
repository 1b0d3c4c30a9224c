#include "tables/ads_users_locator.hpp"

#include <filesystem>

#include "platform/paths.hpp"

namespace fnrk::tables {

std::optional<std::string> AdsUsersTableLocator::OpenUsersTableFolder() const {
    const std::string file = ads_.OpenTableFile("USERS");
    if (file.empty()) return std::nullopt;
    return std::filesystem::path(file).parent_path().string() + platform::kPathSep;
}

}  // namespace fnrk::tables

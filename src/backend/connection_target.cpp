#include "backend/connection_target.hpp"

#include <filesystem>

#include "platform/text.hpp"

namespace fnrk::backend {

namespace {

constexpr std::string_view kSqlMarker = "<SQL>";
constexpr std::string_view kDirMarker = "<DIR>";

bool SetItem(ConnectionTarget& target, std::string_view key, std::string value) {
    std::string name = platform::UpperCase(platform::Trim(key));
    if (name == "DRIVER")
        target.driver = std::move(value);
    else if (name == "DATABASE")
        target.database = std::move(value);
    else if (name == "SERVER")
        target.server = std::move(value);
    else if (name == "PORT")
        target.port = std::move(value);
    else if (name == "USER")
        target.user = std::move(value);
    else if (name == "PASSWORD")
        target.password = std::move(value);
    else
        return false;
    return true;
}

}  // namespace

std::optional<ConnectionTarget> ParseConnectionPath(std::string_view path, std::string& error) {
    std::string text = platform::Trim(path);
    std::string_view rest = text;
    if (rest.starts_with(kSqlMarker)) rest.remove_prefix(kSqlMarker.size());
    ConnectionTarget target;
    if (auto dir = rest.find(kDirMarker); dir != std::string_view::npos) {
        target.folder = platform::Trim(rest.substr(dir + kDirMarker.size()));
        rest = rest.substr(0, dir);
    }
    std::string items = platform::Trim(rest);
    if (items.find('=') == std::string::npos) {
        // A bare folder.
        if (target.folder.empty()) target.folder = items;
        items.clear();
    }
    std::string_view remaining = items;
    while (!remaining.empty()) {
        auto end = remaining.find(';');
        std::string_view item = remaining.substr(0, end);
        remaining = end == std::string_view::npos ? std::string_view() : remaining.substr(end + 1);
        if (platform::Trim(item).empty()) continue;
        auto equals = item.find('=');
        if (equals == std::string_view::npos ||
            !SetItem(target, item.substr(0, equals), platform::Trim(item.substr(equals + 1)))) {
            error = "bad connection item \"" + std::string(item) + "\"";
            return std::nullopt;
        }
    }
    if (target.database.empty()) {
        if (target.folder.empty()) {
            error = "no database and no folder in \"" + std::string(path) + "\"";
            return std::nullopt;
        }
        target.database = kDefaultDatabaseFile;
    }
    if (!target.folder.empty() && std::filesystem::path(target.database).is_relative() &&
        platform::EqualsNoCase(target.driver, "SQLite")) {
        target.database = (std::filesystem::path(target.folder) / target.database).string();
    }
    return target;
}

}  // namespace fnrk::backend

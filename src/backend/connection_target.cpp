#include "backend/connection_target.hpp"

#include <filesystem>
#include <set>

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
    else if (name == "SCHEMA")
        target.schema = std::move(value);
    else
        return false;
    return true;
}

}  // namespace

std::optional<ConnectionTarget> ParseConnectionPath(std::string_view path, std::string& error) {
    std::string text = platform::Trim(path);
    std::string_view rest = text;
    // The marker may follow other text (a folder a caller put in front): what precedes it goes.
    if (auto marker = rest.find(kSqlMarker); marker != std::string_view::npos)
        rest.remove_prefix(marker + kSqlMarker.size());
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
        // Only the key is named: the value may be a password.
        auto equals = item.find('=');
        if (equals == std::string_view::npos) {
            error = "a connection item without \"=\"";
            return std::nullopt;
        }
        if (!SetItem(target, item.substr(0, equals), platform::Trim(item.substr(equals + 1)))) {
            error = "unknown connection item \"" + platform::Trim(item.substr(0, equals)) + "\"";
            return std::nullopt;
        }
    }
    if (target.database.empty()) {
        if (target.folder.empty()) {
            error = "no database and no folder in \"" + WithoutPassword(path) + "\"";
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

std::string WithoutPassword(std::string_view path) {
    static const std::set<std::string> shown = {"DRIVER",   "SERVER", "PORT",
                                                "DATABASE", "USER",   "SCHEMA"};
    std::string text(path);
    for (std::size_t equals = text.find('='); equals != std::string::npos;
         equals = text.find('=', equals + 1)) {
        const std::size_t start = text.find_last_of(";>", equals);
        const std::size_t keyStart = start == std::string::npos ? 0 : start + 1;
        if (shown.contains(platform::UpperCase(
                platform::Trim(std::string_view(text).substr(keyStart, equals - keyStart))))) {
            continue;
        }
        const std::size_t end = text.find_first_of(";<", equals + 1);
        text.replace(equals + 1, (end == std::string::npos ? text.size() : end) - equals - 1,
                     "***");
    }
    return text;
}

}  // namespace fnrk::backend

#include "platform/special_folders.hpp"

#include <filesystem>
#include <fstream>
#include <string_view>

#include "platform/environment.hpp"

namespace fnrk::platform {
namespace {

std::string Home() {
    return EnvironmentValue("HOME");
}

std::string ConfigHome() {
    const std::string config = EnvironmentValue("XDG_CONFIG_HOME");
    if (!config.empty()) return config;
    return Home().empty() ? std::string() : Home() + "/.config";
}

// The value of `XDG_<name>_DIR` in the user-dirs.dirs file, with "$HOME" expanded.
std::string UserDirsEntry(std::string_view variable) {
    if (ConfigHome().empty()) return {};
    std::ifstream in(ConfigHome() + "/user-dirs.dirs");
    std::string line;
    while (std::getline(in, line)) {
        if (line.rfind(variable, 0) != 0 || line.size() <= variable.size() ||
            line[variable.size()] != '=') {
            continue;
        }
        std::string value = line.substr(variable.size() + 1);
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
            value = value.substr(1, value.size() - 2);
        }
        if (value.rfind("$HOME", 0) == 0) value = Home() + value.substr(5);
        return value;
    }
    return {};
}

// An XDG user folder: its variable, its user-dirs.dirs entry, or `fallback` under the home folder.
std::string UserFolder(const char* variable, const char* fallback) {
    if (std::string value = EnvironmentValue(variable); !value.empty()) return value;
    if (std::string value = UserDirsEntry(variable); !value.empty()) return value;
    return Home().empty() ? std::string() : Home() + "/" + fallback;
}

std::string LocalAppData() {
    const std::string data = EnvironmentValue("XDG_DATA_HOME");
    if (!data.empty()) return data;
    return Home().empty() ? std::string() : Home() + "/.local/share";
}

}  // namespace

std::string SpecialFolderPath(std::int32_t identifier) {
    namespace id = special_folder;
    switch (identifier) {
        case id::kDesktop:
        case id::kDesktopDirectory:
            return UserFolder("XDG_DESKTOP_DIR", "Desktop");
        case id::kPersonal:
            return UserFolder("XDG_DOCUMENTS_DIR", "Documents");
        case id::kMyMusic:
            return UserFolder("XDG_MUSIC_DIR", "Music");
        case id::kMyVideo:
            return UserFolder("XDG_VIDEOS_DIR", "Videos");
        case id::kTemplates:
            return UserFolder("XDG_TEMPLATES_DIR", "Templates");
        case id::kMyPictures:
            return UserFolder("XDG_PICTURES_DIR", "Pictures");
        case id::kAppData:
            return ConfigHome();
        case id::kLocalAppData:
            return LocalAppData();
        case id::kCommonAppData:
            return "/var/lib";
        case id::kProfile:
            return Home();
        default:
            return {};
    }
}

std::string SystemFolder() {
    return {};
}

}  // namespace fnrk::platform

#include "users/password_in_string.hpp"

#include "platform/text.hpp"

namespace fnrk::users {

namespace {

constexpr std::string_view kLoginLabel = "LOGIN=";
constexpr std::string_view kPasswordLabel = "PWD=";

bool IsFennrickId(std::string_view type) {
    return platform::UpperCase(platform::Trim(type)) == kFennrickIdType;
}

std::string Escaped(std::string_view value) {
    std::string escaped;
    for (char c : value) {
        if (c == '\\' || c == ',' || c == '=') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

// Reads an escaped value from `at` up to an unescaped `stop` (or the end when `stop` is 0);
// `at` is left on the stop character.
std::string Unescaped(std::string_view text, std::size_t& at, char stop) {
    std::string value;
    for (; at < text.size() && (stop == 0 || text[at] != stop); ++at) {
        if (text[at] == '\\' && at + 1 < text.size()) ++at;
        value += text[at];
    }
    return value;
}

bool LabelAt(std::string_view text, std::size_t at, std::string_view label) {
    return platform::UpperCase(text.substr(at, label.size())) == label;
}

}  // namespace

std::string GetPasswordInString(std::string_view type, std::string_view login,
                                std::string_view password) {
    if (!IsFennrickId(type)) return std::string(login);
    return "Login=" + Escaped(login) + ",Pwd=" + Escaped(password);
}

bool ReadPasswordInString(std::string_view type, std::string_view text, std::string& login,
                          std::string& password) {
    login.clear();
    password.clear();
    if (!IsFennrickId(type)) {
        login = text;
        return true;
    }
    if (!LabelAt(text, 0, kLoginLabel)) return false;
    std::size_t at = kLoginLabel.size();
    std::string readLogin = Unescaped(text, at, ',');
    if (at >= text.size() || !LabelAt(text, at + 1, kPasswordLabel)) return false;
    at += 1 + kPasswordLabel.size();
    password = Unescaped(text, at, 0);
    login = std::move(readLogin);
    return true;
}

}  // namespace fnrk::users

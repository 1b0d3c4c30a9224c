#include "cli/password_file.hpp"

#include <fstream>

#include "cli/command_registry.hpp"

namespace fnrk::cli {

std::string ReadPasswordFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string password;
    if (!in || !std::getline(in, password)) throw CommandFailure("cannot read " + path);
    if (!password.empty() && password.back() == '\r') password.pop_back();
    if (password.empty()) throw CommandFailure(path + " holds no password");
    return password;
}

}  // namespace fnrk::cli

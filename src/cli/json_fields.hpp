#pragma once

// Reading the members of a JSON object given on the command line, with messages that name the
// member ("customer.vatNumber", "lines[2].quantity"). Every member must be known: a misspelt one
// is reported rather than silently ignored.

#include <set>
#include <string>

#include <nlohmann/json.hpp>

#include "cli/command_registry.hpp"

namespace fnrk::cli {

// The parsed content of a JSON file; CommandFailure when it cannot be read or parsed.
nlohmann::json ReadJsonFile(const std::string& file);

class JsonFields {
  public:
    JsonFields(const nlohmann::json& object, std::string path);

    std::string Text(const std::string& key, bool required = false);
    double Number(const std::string& key, bool required = false);
    bool Flag(const std::string& key);
    // The member, or nullptr when absent and not required; it must be of the type asked for.
    const nlohmann::json* Object(const std::string& key, bool required = false);
    const nlohmann::json* Array(const std::string& key, bool required = false);
    // The path of a member, or of an item of an array member.
    std::string PathOf(const std::string& key) const;
    std::string PathOf(const std::string& key, std::size_t index) const;
    // CommandFailure naming the first member that was never asked for.
    void RejectUnknown() const;

  private:
    const nlohmann::json* Find(const std::string& key, bool required);
    [[noreturn]] void Fail(const std::string& key, const std::string& problem) const;

    const nlohmann::json& object_;
    std::string path_;
    std::set<std::string> known_;
};

}  // namespace fnrk::cli

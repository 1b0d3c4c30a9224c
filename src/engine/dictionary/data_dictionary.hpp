#pragma once

// A data dictionary: one ".add" file of our own format (JSON) naming a database's tables and
// views, its users and its properties. Passwords are kept as salted hashes only. Tables are
// kept relative to the dictionary's folder when they lie in it, so that the folder can move.
// Every change is written at once, through a temporary file renamed over the old one.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/crypt/password_hash.hpp"
#include "engine/errors.hpp"

namespace fnrk::engine::dictionary {

// The administrator every dictionary has.
inline constexpr std::string_view kAdministrator = "ADSSYS";

struct DictionaryTable {
    std::string name;
    std::string path;  // as stored: relative to the dictionary's folder where it lies in it
    std::uint16_t tableType = 0;
    std::uint16_t charType = 0;
    std::string indexFiles;
    std::string comments;
};

struct DictionaryView {
    std::string name;
    std::string sql;
    std::string comments;
};

struct DictionaryUser {
    std::string name;
    std::string group;
    std::string description;
    crypt::PasswordHash password;
    std::map<std::uint16_t, std::string> properties;
};

class DataDictionary {
  public:
    // Writes a new dictionary; AE_DICTIONARY_ALREADY_EXISTS when the file is there.
    [[nodiscard]] static Status Create(const std::string& path, bool encrypt,
                                       std::string_view description, DataDictionary& created,
                                       std::string& message);
    // AE_FILE_NOT_FOUND, or AE_INVALID_DICTIONARY_FILE for a file that is not one of ours.
    [[nodiscard]] static Status Load(const std::string& path, DataDictionary& loaded,
                                     std::string& message);

    const std::string& path() const { return path_; }
    std::string folder() const;

    // Whether `user` may connect with `password`. The administrator has no password until one
    // is set (ADS_DD_ADMIN_PASSWORD): a new dictionary lets it in, as it must to be set up.
    [[nodiscard]] Status CheckLogin(std::string_view user, std::string_view password) const;
    static bool IsAdministrator(std::string_view user);

    [[nodiscard]] Status AddTable(DictionaryTable table, std::string& message);
    // A table kept in a SQL database rather than a file: the caller has found it there, and its
    // name is kept as given.
    [[nodiscard]] Status AddDatabaseTable(DictionaryTable table, std::string& message);
    [[nodiscard]] Status AddView(DictionaryView view, std::string& message);
    [[nodiscard]] Status CreateUser(std::string_view group, std::string_view name,
                                    std::string_view password, std::string_view description,
                                    std::string& message);
    [[nodiscard]] Status SetDatabaseProperty(std::uint16_t property, std::string_view value,
                                             std::string& message);
    [[nodiscard]] Status SetUserProperty(std::string_view user, std::uint16_t property,
                                         std::string_view value, std::string& message);

    // By name, in any letter case.
    const DictionaryTable* FindTable(std::string_view name) const;
    const DictionaryView* FindView(std::string_view name) const;
    const DictionaryUser* FindUser(std::string_view name) const;
    // The full path of a table of the dictionary.
    std::string TablePath(const DictionaryTable& table) const;
    // A database property as set (secret ones are not kept: see SetDatabaseProperty).
    std::optional<std::string> DatabaseProperty(std::uint16_t property) const;

  private:
    [[nodiscard]] Status Save(std::string& message) const;
    bool NameTaken(std::string_view name) const;
    Status CheckTableName(const std::string& name, std::string& message) const;

    std::string path_;
    std::string description_;
    bool encrypt_ = false;
    std::optional<crypt::PasswordHash> administratorPassword_;
    std::optional<crypt::PasswordHash> tablePassword_;
    std::map<std::uint16_t, std::string> properties_;
    std::vector<DictionaryTable> tables_;
    std::vector<DictionaryView> views_;
    std::vector<DictionaryUser> users_;
};

}  // namespace fnrk::engine::dictionary

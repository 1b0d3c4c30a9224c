#pragma once

// The configuration file: reads that pick the physical file (the shared installation file, the
// one beside the users table, or the user's preference file) and plain writes.

#include <string>
#include <string_view>

#include "session/users_table_locator.hpp"

namespace fnrk::session {

class ApiIni {
  public:
    const std::string& INIfile() const { return iniFile_; }
    void INIfile(std::string file) { iniFile_ = std::move(file); }

    // The value of `key`, empty when absent. When INIfile is the shared configuration file the
    // user's preference file overrides it, except for the machine-wide sections.
    std::string ReadINI(std::string_view section, std::string_view key) const;
    // Writes to INIfile itself.
    void WriteINI(std::string_view section, std::string_view key, std::string_view value) const;
    bool IsSpecifiedKeyExist(std::string_view section, std::string_view key,
                             std::string_view file) const;
    // Where the open users table is, handed over by whoever owns both this object and the
    // table access; without one (or with nullptr) no users table counts as open. The locator
    // must outlive its use here.
    void UsersTableFrom(const UsersTableLocator* locator) { usersTable_ = locator; }
    const UsersTableLocator* UsersTable() const { return usersTable_; }
    // Folder of the users table, normally ending with the separator: the installation's
    // "UserPath", else the folder of the open users table, else the main path.
    std::string GetUserDbfPath() const;
    // The users folder's "UsersPrefs" when it exists, else empty.
    std::string GetUsersPrefDirectory() const;

  private:
    std::string FileToRead(std::string_view section, std::string_view key) const;

    std::string iniFile_;
    const UsersTableLocator* usersTable_ = nullptr;
};

// The process-wide instance.
ApiIni& SharedApiIni();

// True when the session runs under terminal services.
bool IsTerminalServices();

}  // namespace fnrk::session

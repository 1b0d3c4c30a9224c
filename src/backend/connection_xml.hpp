#pragma once

// Readers of "users.data", "org.data" and "folder.data": small XML files that describe the SQL
// database of the user register, of the organisation and of a dossier:
//
//   <connection>
//     <Driver>SQLite</Driver>
//     <Database>users.sqlite</Database>
//   </connection>
//
// Every child element of <connection> is one "Name=value" item of the connection string, in
// document order. A relative Database is taken from the folder that follows "<DIR>".

#include <string>
#include <string_view>

namespace fnrk::backend {

class ConnectionXml {
  public:
    // Reads the file; false (and an empty connection string) when it is missing or malformed.
    bool Load(std::string_view path);
    const std::string& GetConnectionString() const { return connectionString_; }
    // Why the last Load failed, for messages.
    const std::string& LoadError() const { return loadError_; }

  private:
    std::string connectionString_;
    std::string loadError_;
};

using UsersXml = ConnectionXml;
using OrgXml = ConnectionXml;
using FolderXml = ConnectionXml;

}  // namespace fnrk::backend

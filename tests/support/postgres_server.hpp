#pragma once

// A throwaway PostgreSQL server for one test program: created with initdb in a temporary
// folder (as the "postgres" user when the tests run as root), listening only on a Unix socket
// in that folder, with one database named after the program. It starts on first use and is
// stopped and removed when the program ends, however it ends: a watchdog process does it
// when the program's end closes its pipe.

#include <filesystem>
#include <string>
#include <string_view>

namespace fnrk::testing {

class PostgresServer {
  public:
    // The program's server, started on the first call. Throws std::runtime_error with the
    // reason when it cannot start (no server installed, initdb or start failed); a later call
    // throws the same error again without retrying.
    static PostgresServer& Shared();

    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;
    ~PostgresServer();

    // A backend connection path to the program's database, in `schema` (created on connect):
    // a schema per test keeps their tables apart.
    std::string ConnectionPath(std::string_view schema) const;
    // The same database as a libpq URI (for the command line).
    std::string Uri() const;
    const std::filesystem::path& socketFolder() const { return folder_; }
    const std::string& database() const { return database_; }

  private:
    PostgresServer();
    void Start();

    std::filesystem::path folder_;
    std::string database_;
    int watchdogPipe_ = -1;
    int watchdog_ = -1;
};

}  // namespace fnrk::testing

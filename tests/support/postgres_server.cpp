#include "support/postgres_server.hpp"

#include <fcntl.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "support/run_command.hpp"

namespace fnrk::testing {

namespace {

constexpr const char* kServerUser = "postgres";

std::filesystem::path FindServerProgram(const std::string& name) {
    // Debian keeps the server programs out of PATH, under their major version.
    for (const char* folder : {"/usr/lib/postgresql/15/bin", "/usr/local/bin", "/usr/bin"}) {
        std::filesystem::path candidate = std::filesystem::path(folder) / name;
        if (access(candidate.c_str(), X_OK) == 0) return candidate;
    }
    throw std::runtime_error(
        "PostgreSQL 15 server programs not found (" + name +
        " in /usr/lib/postgresql/15/bin): install the Debian package \"postgresql\" "
        "(scripts/setup.sh) to run the PostgreSQL tests");
}

bool RunningAsRoot() {
    return geteuid() == 0;
}

// The command as the server's owner: as root, through runuser.
std::vector<std::string> AsServerUser(std::vector<std::string> command) {
    if (!RunningAsRoot()) return command;
    command.insert(command.begin(), {"runuser", "-u", kServerUser, "--"});
    return command;
}

void Run(const std::vector<std::string>& command, const std::string& what) {
    CommandResult result = RunCommand(command);
    if (result.exitCode != 0) {
        throw std::runtime_error("PostgreSQL test server: " + what + " failed (exit " +
                                 std::to_string(result.exitCode) + "): " + result.err + result.out);
    }
}

std::string ProgramName() {
    std::string name = program_invocation_short_name;
    for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    }
    return "fnrk_" + name;
}

}  // namespace

PostgresServer& PostgresServer::Shared() {
    static std::optional<std::string> failure;
    static std::unique_ptr<PostgresServer> server;
    if (failure) throw std::runtime_error(*failure);
    if (!server) {
        try {
            server.reset(new PostgresServer());
        } catch (const std::exception& error) {
            failure = error.what();
            throw;
        }
    }
    return *server;
}

PostgresServer::PostgresServer() : database_(ProgramName()) {
    const auto initdb = FindServerProgram("initdb");
    const auto pgctl = FindServerProgram("pg_ctl");
    std::string pattern = (std::filesystem::temp_directory_path() / "fnrk-pg-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot create a temporary folder");
    folder_ = pattern;
    if (RunningAsRoot()) {
        const passwd* owner = getpwnam(kServerUser);
        if (!owner || chown(folder_.c_str(), owner->pw_uid, owner->pw_gid) != 0) {
            std::filesystem::remove_all(folder_);
            throw std::runtime_error(
                "PostgreSQL test server: no \"postgres\" user to own the server's folder "
                "(install the Debian package \"postgresql\")");
        }
    }

    // The watchdog waits for the end of this process (its pipe closing), then stops the
    // server and removes the folder.
    int guard[2];
    if (pipe2(guard, O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
    const std::string data = (folder_ / "data").string();
    std::string stop = "cat >/dev/null; ";
    if (RunningAsRoot()) stop += "runuser -u postgres -- ";
    stop += "\"$0\" -D \"$1\" -m immediate -s stop >/dev/null 2>&1; rm -rf \"$2\"";
    const pid_t watchdog = fork();
    if (watchdog < 0) throw std::runtime_error("fork failed");
    if (watchdog == 0) {
        dup2(guard[0], 0);
        // Its own process group: a signal to the test's group does not skip the cleanup.
        setpgid(0, 0);
        execl("/bin/sh", "sh", "-c", stop.c_str(), pgctl.c_str(), data.c_str(), folder_.c_str(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    close(guard[0]);
    watchdogPipe_ = guard[1];
    watchdog_ = watchdog;

    Run(AsServerUser({initdb.string(), "-D", data, "-A", "trust", "-U", kServerUser, "-E", "UTF8",
                      "--locale=C", "--no-sync"}),
        "initdb");
    Run(AsServerUser({pgctl.string(), "-D", data, "-l", (folder_ / "server.log").string(), "-w",
                      "-t", "60", "-s", "-o",
                      "-c listen_addresses= -k " + folder_.string() +
                          " -c fsync=off -c synchronous_commit=off -c full_page_writes=off",
                      "start"}),
        "pg_ctl start");
    const auto createdb = FindServerProgram("createdb");
    Run({createdb.string(), "-h", folder_.string(), "-U", kServerUser, database_}, "createdb");
}

PostgresServer::~PostgresServer() {
    close(watchdogPipe_);
    int status = 0;
    waitpid(watchdog_, &status, 0);
}

std::string PostgresServer::ConnectionPath(std::string_view schema) const {
    return "Driver=PostgreSQL;Server=" + folder_.string() + ";User=" + kServerUser +
           ";Database=" + database_ + ";Schema=" + std::string(schema);
}

std::string PostgresServer::Uri() const {
    return "postgresql://" + std::string(kServerUser) + "@/" + database_ +
           "?host=" + folder_.string();
}

}  // namespace fnrk::testing

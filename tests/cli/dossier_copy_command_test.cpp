// `fennrick dossier copy FROM TO` between a folder of table files, a SQLite database and a
// PostgreSQL database: tables written by another engine come back from a round trip through
// every kind exactly as they were, and a copy that fails leaves nothing under the target's
// name.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/postgres_server.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::testing {
namespace {

namespace fs = std::filesystem;

const std::vector<std::string> kFixtures = {"people",   "SOC1_MSODA", "SOC1_ACTCOM",
                                            "USERSEXT", "SOC1_param", "big"};

// The fixture tables (table, memo and index files) copied into `folder`.
void CopyFixtures(const fs::path& folder, const std::vector<std::string>& tables) {
    fs::create_directories(folder);
    for (const std::string& table : tables)
        for (const char* extension : {".dbf", ".cdx", ".fpt"}) {
            const fs::path file = SharedDir() / "fixtures" / "xbase" / (table + extension);
            if (fs::exists(file)) fs::copy_file(file, folder / (table + extension));
        }
}

// A new, empty database on the test server, as a URI.
std::string NewDatabase(const std::string& name) {
    const PostgresServer& server = PostgresServer::Shared();
    const CommandResult created =
        RunCommand({"createdb", "-h", server.socketFolder().string(), "-U", "postgres", name});
    EXPECT_EQ(created.exitCode, 0) << created.err;
    return "postgresql://postgres@/" + name + "?host=" + server.socketFolder().string();
}

// What psql answers to one query on the database of `uri`.
std::string Ask(const std::string& uri, const std::string& query) {
    return RunCommand({"psql", uri, "-Atc", query}).out;
}

CommandResult CopyDossier(const std::string& from, const std::string& to,
                          const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = {"dossier", "copy", from, to};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunFennrick(arguments);
}

// Entries of `folder` whose name holds `part`.
int EntriesNamed(const fs::path& folder, const std::string& part) {
    int count = 0;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().find(part) != std::string::npos) ++count;
    return count;
}

// A `fennrick` process of its own, killed at the end if it still runs.
class Process {
  public:
    explicit Process(const std::vector<std::string>& args) {
        std::vector<std::string> all = {FNRK_CLI_PATH};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (std::string& arg : all) argv.push_back(arg.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t quiet;
        posix_spawn_file_actions_init(&quiet);
        posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&quiet, 2, "/dev/null", O_WRONLY, 0);
        EXPECT_EQ(posix_spawn(&pid_, FNRK_CLI_PATH, &quiet, nullptr, argv.data(), environ), 0);
        posix_spawn_file_actions_destroy(&quiet);
    }
    ~Process() { Kill(); }
    pid_t pid() const { return pid_; }
    // Kills it and waits for its end: what it left stays as it was.
    void Kill() {
        if (pid_ <= 0) return;
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
        pid_ = 0;
    }
    void Stop() const { ::kill(pid_, SIGSTOP); }
    // Whether it still runs (it has not ended by itself).
    bool Running() const { return ::waitpid(pid_, nullptr, WNOHANG) == 0; }

  private:
    pid_t pid_ = 0;
};

// Waits (up to ten seconds) until `appeared` answers true while `process` runs.
bool CaughtWhileRunning(const Process& process, const std::function<bool()>& appeared) {
    for (int i = 0; i < 10'000; ++i) {
        if (appeared()) return true;
        if (!process.Running()) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

TEST(DossierCopy, FixturesComeBackFromPostgresqlAndSqliteWithTheSameDumpsAndTagOrders) {
    TempDir dir;
    CopyFixtures(dir / "start", kFixtures);
    const std::string postgres = NewDatabase("dossier_round_trip");
    const std::string sqlite = "sqlite:" + (dir / "mid.sqlite").string();
    for (const auto& [from, to] :
         std::vector<std::pair<std::string, std::string>>{{(dir / "start").string(), postgres},
                                                          {postgres, sqlite},
                                                          {sqlite, (dir / "end").string() + "/"}}) {
        // (The last target is written with a trailing separator, as shells complete folders.)
        const CommandResult copy = CopyDossier(from, to);
        ASSERT_EQ(copy.exitCode, 0) << to << ": " << copy.err;
        EXPECT_EQ(copy.err, "") << "no progress bar when standard error is not a terminal";
    }
    EXPECT_EQ(Ask(postgres, "SELECT count(*) FROM fnrk_table"), "6\n");
    for (const std::string& table : kFixtures) {
        SCOPED_TRACE(table);
        const std::string before = (dir / "start" / (table + ".dbf")).string();
        const std::string after = (dir / "end" / (table + ".dbf")).string();
        for (const char* verb : {"dump", "tags"}) {
            const CommandResult original = RunFennrick({"table", verb, before});
            const CommandResult copied = RunFennrick({"table", verb, after});
            ASSERT_EQ(original.exitCode, 0) << original.err;
            ASSERT_EQ(copied.exitCode, 0) << copied.err;
            EXPECT_FALSE(original.out.empty());
            EXPECT_TRUE(original.out == copied.out) << verb << " differs";
        }
        if (table == "people") continue;  // its memo file fails the check as the fixture is
        const CommandResult check = RunFennrick({"table", "check", after});
        EXPECT_EQ(check.exitCode, 0) << check.err;
    }
}

// A table with a field of every type the engine creates, filled, blank and deleted records
// among its rows, and tags over the types that order records.
void MakeEveryKindTable(const fs::path& folder) {
    fs::create_directories(folder);
    const std::string table = (folder / "kinds.dbf").string();
    const CommandResult created = RunFennrick(
        {"table", "create", table, "--fields",
         "CODE,C,6,0;AMOUNT,N,12,2;RATIO,F,10,4;COUNT,Integer;WEIGHT,Double,8,3;PAID,L;DAY,D;"
         "STAMP,DateTime;PRICE,Currency;NOTE,M;PICTURE,General;BLOB,Binary"});
    ASSERT_EQ(created.exitCode, 0) << created.err;
    const CommandResult loaded = RunFennrick(
        {"table", "load", table},
        R"({"CODE":"full","AMOUNT":"-1234.56","RATIO":"3.1416","COUNT":"-2147483648",)"
        R"("WEIGHT":"0.125","PAID":true,"DAY":"20261124","STAMP":"11/24/2026 13:45:07.089",)"
        R"("PRICE":"12345678901234.5678","NOTE":"two\nlines, \u00e9","PICTURE":"GIF89a\u0001",)"
        R"("BLOB":"raw"})"
        "\n"
        R"({"CODE":"blank"})"
        "\n"
        R"({"CODE":"gone","deleted":true,"AMOUNT":"0","PRICE":"-0.0001",)"
        R"("STAMP":"01/01/1900 00:00:00.001","PICTURE":"old"})"
        "\n"
        R"({"CODE":"late","AMOUNT":"7","RATIO":"0","COUNT":"2147483647","WEIGHT":"-1e300",)"
        R"("PAID":false,"DAY":"19991231","STAMP":"12/31/9999 23:59:59.999",)"
        R"("PRICE":"-922337203685477.5808","NOTE":"","PICTURE":""})"
        "\n");
    ASSERT_EQ(loaded.exitCode, 0) << loaded.err;
    for (const std::vector<std::string>& tag : std::vector<std::vector<std::string>>{
             {"--tag", "CODE", "--key", "UPPER(CODE)"},
             {"--tag", "STAMP", "--key", "DTOS(STAMP)", "--descending"},
             {"--tag", "PRICE", "--key", "PRICE"},
             {"--tag", "PAIDSUM", "--key", "AMOUNT", "--for", "PAID"}}) {
        std::vector<std::string> arguments = {"table", "index", table};
        arguments.insert(arguments.end(), tag.begin(), tag.end());
        const CommandResult indexed = RunFennrick(arguments);
        ASSERT_EQ(indexed.exitCode, 0) << indexed.err;
    }
}

// Every field type comes back from every kind of place with the same values, blank ones
// included, the same deleted flags and the same tag orders, in both directions round.
TEST(DossierCopy, EveryFieldTypeComesBackExactlyFromEveryKindOfPlace) {
    TempDir dir;
    MakeEveryKindTable(dir / "start");
    const fs::path start = dir / "start" / "kinds.dbf";
    const CommandResult original = RunFennrick({"table", "dump", start.string()});
    const CommandResult originalTags = RunFennrick({"table", "tags", start.string()});
    ASSERT_EQ(original.exitCode, 0) << original.err;
    ASSERT_EQ(originalTags.exitCode, 0) << originalTags.err;
    // What the test must see: the values in words, not in stored bytes.
    EXPECT_NE(
        original.out.find(R"("STAMP":"11/24/2026 13:45:07.089","PRICE":"12345678901234.5678")"),
        std::string::npos)
        << original.out;
    EXPECT_NE(original.out.find(R"("STAMP":"  /  /    ","PRICE":"0","NOTE":"","PICTURE":"")"),
              std::string::npos)
        << original.out;

    const std::string sqliteFirst = "sqlite:" + (dir / "first.sqlite").string();
    const std::string sqliteSecond = "sqlite:" + (dir / "second.sqlite").string();
    const std::string postgresFirst = NewDatabase("every_kind_first");
    const std::string postgresSecond = NewDatabase("every_kind_second");
    const std::vector<std::vector<std::string>> rounds = {
        {(dir / "start").string(), postgresFirst, sqliteFirst, (dir / "end1").string()},
        {(dir / "start").string(), sqliteSecond, postgresSecond, (dir / "end2").string()}};
    for (const std::vector<std::string>& round : rounds) {
        for (std::size_t step = 1; step < round.size(); ++step) {
            SCOPED_TRACE(round[step]);
            const CommandResult copy = CopyDossier(round[step - 1], round[step]);
            ASSERT_EQ(copy.exitCode, 0) << copy.err;
            if (step == round.size() - 1) continue;
            // On its way the table reads the same from the database.
            const std::vector<std::string> kept = {"--database", round[step], "--table", "kinds"};
            for (const auto& [verb, expected] :
                 {std::pair{"dump", &original.out}, std::pair{"tags", &originalTags.out}}) {
                std::vector<std::string> arguments = {"table", verb};
                arguments.insert(arguments.end(), kept.begin(), kept.end());
                const CommandResult read = RunFennrick(arguments);
                ASSERT_EQ(read.exitCode, 0) << read.err;
                EXPECT_TRUE(read.out == *expected) << verb << ":\n" << read.out;
            }
        }
        const fs::path end = fs::path(round.back()) / "kinds.dbf";
        EXPECT_TRUE(RunFennrick({"table", "dump", end.string()}).out == original.out);
        EXPECT_TRUE(RunFennrick({"table", "tags", end.string()}).out == originalTags.out);
        const CommandResult check = RunFennrick({"table", "check", end.string()});
        EXPECT_EQ(check.exitCode, 0) << check.out << check.err;
    }
}

TEST(DossierCopy, AFailedOrRefusedCopyLeavesNothingUnderTheTargetsName) {
    TempDir dir;
    // The second table in name order cannot be read to its end: its memo file is cut short.
    CopyFixtures(dir / "broken", {"SOC1_param", "people"});
    fs::resize_file(dir / "broken" / "people.fpt", 1024);
    const std::string postgres = NewDatabase("dossier_failed_copy");
    const std::string sqliteFile = (dir / "out.sqlite").string();
    for (const std::string& target : {(dir / "out").string(), "sqlite:" + sqliteFile, postgres}) {
        const CommandResult copy = CopyDossier((dir / "broken").string(), target);
        EXPECT_EQ(copy.exitCode, 1) << target;
        EXPECT_NE(copy.err.find("table people"), std::string::npos) << copy.err;
    }
    EXPECT_FALSE(fs::exists(dir / "out"));
    EXPECT_FALSE(fs::exists(sqliteFile));
    EXPECT_EQ(EntriesNamed(dir.path(), "copying"), 0) << "the staged copies are removed";
    EXPECT_EQ(Ask(postgres, "SELECT count(*) FROM fnrk_table"), "0\n");
    EXPECT_EQ(Ask(postgres, "SELECT count(*) FROM pg_namespace WHERE nspname LIKE 'fnrk_copying%'"),
              "0\n");

    // A target that holds a dossier already is refused and left as it was.
    CopyFixtures(dir / "good", {"SOC1_param"});
    ASSERT_EQ(CopyDossier((dir / "good").string(), postgres).exitCode, 0);
    const std::string dumped =
        RunFennrick({"table", "dump", "--database", postgres, "--table", "SOC1_param"}).out;
    ASSERT_FALSE(dumped.empty());
    CopyFixtures(dir / "other", {"USERSEXT"});
    for (const std::string& target : {postgres, (dir / "good").string()}) {
        const CommandResult refused = CopyDossier((dir / "other").string(), target);
        EXPECT_EQ(refused.exitCode, 1) << target;
        EXPECT_NE(refused.err.find("already"), std::string::npos) << refused.err;
    }
    EXPECT_EQ(Ask(postgres, "SELECT name FROM fnrk_table"), "SOC1_PARAM\n");
    EXPECT_EQ(RunFennrick({"table", "dump", "--database", postgres, "--table", "SOC1_param"}).out,
              dumped);
    EXPECT_FALSE(fs::exists(dir / "good" / "USERSEXT.dbf"));

    // A source that cannot be reached is named without its password.
    const CommandResult unreachable =
        CopyDossier("postgresql://postgres:Secr3tWord@/nodb?host=" + (dir / "nosocket").string(),
                    (dir / "never").string());
    EXPECT_EQ(unreachable.exitCode, 1);
    EXPECT_NE(unreachable.err.find("postgres:***@"), std::string::npos) << unreachable.err;
    EXPECT_EQ(unreachable.err.find("Secr3tWord"), std::string::npos) << unreachable.err;
    EXPECT_FALSE(fs::exists(dir / "never"));
}

// A copy killed on its way leaves its staging area under the temporary name; the next copy to
// the same target removes it, but never the staging area of a copy that still runs.
TEST(DossierCopy, AKilledCopysStagingIsRemovedByTheNextOneButALiveOnesIsKept) {
    TempDir dir;
    CopyFixtures(dir / "start", {"SOC1_param", "big"});
    const std::string from = (dir / "start").string();
    // Twice as long to copy to a folder, where a copy goes fastest.
    CopyFixtures(dir / "longer", {"SOC1_param", "big"});
    for (const char* extension : {".dbf", ".cdx"})
        fs::copy_file(dir / "longer" / (std::string("big") + extension),
                      dir / "longer" / (std::string("big2") + extension));

    // Folder and SQLite file: the killed process's staging is found by its process id.
    const fs::path folder = dir / "out";
    const fs::path sqlite = dir / "out.sqlite";
    for (const auto& [target, staged] : std::vector<std::pair<std::string, std::string>>{
             {folder.string(), ".out.copying-"},
             {"sqlite:" + sqlite.string(), "out.sqlite.copying-"}}) {
        SCOPED_TRACE(target);
        Process killed({"dossier", "copy", (dir / "longer").string(), target});
        const std::string leftover = staged + std::to_string(killed.pid());
        ASSERT_TRUE(CaughtWhileRunning(killed, [&] { return fs::exists(dir / leftover); }));
        killed.Kill();
        ASSERT_TRUE(fs::exists(dir / leftover));
        // A staging area of a process that runs (this test) is not touched.
        const fs::path live = dir / (staged + std::to_string(::getpid()));
        WriteFileBytes(live, "in use");

        const CommandResult copy = CopyDossier(from, target);
        ASSERT_EQ(copy.exitCode, 0) << copy.err;
        EXPECT_FALSE(fs::exists(dir / leftover));
        EXPECT_EQ(fnrk::testing::ReadFileBytes(live), "in use");
        fs::remove(live);
    }
    EXPECT_EQ(EntriesNamed(dir.path(), "copying"), 0);

    // PostgreSQL: a staging schema is claimed by its copy's connection for as long as it runs.
    const std::string postgres = NewDatabase("dossier_killed_copy");
    auto staging = [&](const Process& process) {
        return "fnrk_copying_" + std::to_string(process.pid());
    };
    auto schemaExists = [&](const std::string& schema) {
        return Ask(postgres,
                   "SELECT count(*) FROM pg_namespace WHERE nspname = '" + schema + "'") == "1\n";
    };
    Process stopped({"dossier", "copy", from, postgres});
    ASSERT_TRUE(CaughtWhileRunning(stopped, [&] { return schemaExists(staging(stopped)); }));
    stopped.Stop();
    Process killed({"dossier", "copy", from, postgres});
    const std::string leftover = staging(killed);
    ASSERT_TRUE(CaughtWhileRunning(killed, [&] { return schemaExists(leftover); }));
    killed.Kill();
    ASSERT_TRUE(schemaExists(leftover));
    // Its claim ends once the server has seen its connection close.
    for (int i = 0; i < 100 && Ask(postgres, "SELECT pg_try_advisory_lock(hashtext('" + leftover +
                                                 "'))") != "t\n";
         ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));

    const CommandResult copy = CopyDossier(from, postgres);
    ASSERT_EQ(copy.exitCode, 0) << copy.err;
    EXPECT_FALSE(schemaExists(leftover));
    EXPECT_TRUE(schemaExists(staging(stopped))) << "a copy that still runs keeps its staging";
    EXPECT_EQ(Ask(postgres, "SELECT count(*) FROM fnrk_table"), "2\n");
}

TEST(DossierCopy, EncryptedTablesTravelEncryptedWithTheDossiersPassword) {
    TempDir dir;
    CopyFixtures(dir / "start", {"people", "SOC1_param"});
    const fs::path people = dir / "start" / "people.dbf";
    const std::string plainDump = RunFennrick({"table", "dump", people.string()}).out;
    ASSERT_FALSE(plainDump.empty());
    const std::string passwordFile = (dir / "password").string();
    WriteFileBytes(passwordFile, "dossier key\n");
    const CommandResult encrypted =
        RunFennrick({"table", "encrypt", people.string(), "--password-file", passwordFile});
    ASSERT_EQ(encrypted.exitCode, 0) << encrypted.err;

    // Without the password the encrypted table cannot be read: the copy is refused whole.
    const std::string postgres = NewDatabase("dossier_encrypted_copy");
    const CommandResult refused = CopyDossier((dir / "start").string(), postgres);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.err.find("table people: it is encrypted"), std::string::npos) << refused.err;
    EXPECT_EQ(Ask(postgres, "SELECT count(*) FROM fnrk_table"), "0\n");

    const std::string sqlite = "sqlite:" + (dir / "mid.sqlite").string();
    for (const auto& [from, to] :
         std::vector<std::pair<std::string, std::string>>{{(dir / "start").string(), postgres},
                                                          {postgres, sqlite},
                                                          {sqlite, (dir / "end").string()}}) {
        const CommandResult copy = CopyDossier(from, to, {"--password-file", passwordFile});
        ASSERT_EQ(copy.exitCode, 0) << to << ": " << copy.err;
    }
    // Encrypted on the server too: only the encrypted table has a mark, no name shows.
    EXPECT_EQ(Ask(postgres, "SELECT table_name FROM fnrk_crypt"), "PEOPLE\n");
    EXPECT_EQ(Ask(postgres, "SELECT count(*) FROM \"t_PEOPLE\" WHERE \"f_NAME\" IS NOT NULL"),
              "0\n");
    // At the end of the round trip the table opens with the password to the records it had.
    const fs::path copied = dir / "end" / "people.dbf";
    // Dumped, it needs its password too: without it, it is refused rather than shown blank.
    const CommandResult blind = RunFennrick({"table", "dump", copied.string()});
    EXPECT_EQ(blind.exitCode, 1);
    EXPECT_TRUE(blind.out.empty());
    EXPECT_NE(blind.err.find("is encrypted: give its password"), std::string::npos) << blind.err;
    const CommandResult fromSqlite = RunFennrick({"table", "dump", "--database", sqlite, "--table",
                                                  "people", "--password-file", passwordFile});
    EXPECT_EQ(fromSqlite.exitCode, 0) << fromSqlite.err;
    EXPECT_TRUE(fromSqlite.out == plainDump);
    const CommandResult decrypted =
        RunFennrick({"table", "decrypt", copied.string(), "--password-file", passwordFile});
    ASSERT_EQ(decrypted.exitCode, 0) << decrypted.err;
    EXPECT_TRUE(RunFennrick({"table", "dump", copied.string()}).out == plainDump);
}

}  // namespace
}  // namespace fnrk::testing

// `fennrick table ...` and `fennrick sql` over a table of a SQL database (--database URL
// --table NAME) answer exactly as over a DBF file: the same session of commands gives the same
// dumps, tag orders, seeks and query rows on a file, a SQLite database and a PostgreSQL one.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/postgres_server.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::testing {
namespace {

using Args = std::vector<std::string>;

constexpr const char* kTable = "items";

// Four records: accented text, a blank date, a memo, a deleted one, equal keys, a field named in
// small letters.
const std::string kRecords =
    R"({"NAME":"Élodie","QTY":"12.50","BORN":"19991231","OK":true,"NOTE":"première ligne"})"
    "\n"
    R"({"name":"bob","QTY":"-3","BORN":"        ","OK":false,"NOTE":""})"
    "\n"
    R"({"NAME":"Anna","QTY":"12.50","BORN":"20240229","OK":true,"NOTE":"x","deleted":true})"
    "\n"
    R"({"NAME":"Bob","QTY":"0.25","BORN":"20000101","OK":true,"NOTE":")" +
    std::string(600, 'n') + "\"}\n";

// Where the session's table is: the arguments naming it, and how `sql` reaches it.
struct Source {
    Args table;  // after "table VERB"
    Args sql;    // after "sql", before the statement
};

Source FileSource(const TempDir& dir) {
    return {{(dir / (std::string(kTable) + ".dbf")).string()}, {dir.path().string()}};
}

Source DatabaseSource(const std::string& url) {
    return {{"--database", url, "--table", kTable}, {"--database", url}};
}

// Everything the commands print, in order, each step under its name; stops at a failed step.
std::string Session(const Source& source) {
    std::string transcript;
    auto run = [&](const std::string& step, const Args& verb, const Args& tail = {},
                   const std::string& input = "") {
        Args args = {"table"};
        args.insert(args.end(), verb.begin(), verb.end());
        args.insert(args.end(), source.table.begin(), source.table.end());
        args.insert(args.end(), tail.begin(), tail.end());
        const CommandResult result = RunFennrick(args, input);
        transcript += "== " + step + " (" + std::to_string(result.exitCode) + ")\n" + result.out;
        if (result.exitCode != 0) ADD_FAILURE() << step << ": " << result.err;
        return result.exitCode == 0;
    };
    if (!run("create", {"create"}, {"--fields", "NAME,C,12;QTY,N,7,2;BORN,D;OK,L;NOTE,M"}) ||
        !run("load", {"load"}, {}, kRecords) ||
        !run("index name", {"index"}, {"--tag", "NAME", "--key", "UPPER(NAME)"}) ||
        !run("index qty", {"index"}, {"--tag", "QTY", "--key", "QTY", "--descending"}) ||
        !run("index ok", {"index"}, {"--tag", "OKS", "--key", "NAME", "--for", "OK"}))
        return transcript;
    run("dump", {"dump"});
    run("dump by name", {"dump"}, {"--tag", "NAME"});
    run("tags", {"tags"});
    run("seek", {"seek"}, {"--tag", "NAME", "--key", "BOB"});
    run("seek last", {"seek"}, {"--tag", "NAME", "--key", "BOB", "--last"});
    run("seek soft", {"seek"}, {"--tag", "NAME", "--key", "BA", "--soft"});
    run("seek missing", {"seek"}, {"--tag", "NAME", "--key", "ZZ"});
    run("delete", {"delete"}, {"--recno", "2"});
    run("recall", {"recall"}, {"--recno", "3"});
    run("pack", {"pack"});  // drops record 2 only
    run("dump packed", {"dump"});
    run("tags packed", {"tags"});
    Args sql = {"sql"};
    sql.insert(sql.end(), source.sql.begin(), source.sql.end());
    sql.push_back("select NAME, QTY, BORN, OK from items where QTY > 0 order by NAME");
    const CommandResult rows = RunFennrick(sql);
    transcript += "== sql (" + std::to_string(rows.exitCode) + ")\n" + rows.out;
    const CommandResult check = RunFennrick([&] {
        Args args = {"table", "check"};
        args.insert(args.end(), source.table.begin(), source.table.end());
        return args;
    }());
    EXPECT_EQ(check.exitCode, 0) << check.err;
    run("zap", {"zap"});
    run("dump zapped", {"dump"});
    return transcript;
}

TEST(TableDatabaseCommands, ASqliteTableAnswersAsADbfFile) {
    TempDir dir;
    const std::string onFile = Session(FileSource(dir));
    // What the file gives is what a reader expects, so the comparison below means something.
    EXPECT_NE(onFile.find(R"("NAME":"Élodie      ","QTY":"  12.50","BORN":"19991231")"),
              std::string::npos)
        << onFile;
    EXPECT_NE(onFile.find("== seek missing (0)\n0\n"), std::string::npos) << onFile;
    EXPECT_NE(onFile.find(R"("recno":2,"deleted":false,"NAME":"bob         ")"), std::string::npos)
        << onFile;
    EXPECT_TRUE(onFile.ends_with("== dump zapped (0)\n")) << onFile;
    EXPECT_EQ(Session(DatabaseSource("sqlite:" + (dir / "office.sqlite").string())), onFile);
    EXPECT_TRUE(std::filesystem::exists(dir / "office.sqlite"));
}

TEST(TableDatabaseCommands, APostgresqlTableAnswersAsADbfFile) {
    TempDir dir;
    const std::string onFile = Session(FileSource(dir));
    EXPECT_EQ(Session(DatabaseSource(PostgresServer::Shared().Uri())), onFile);
}

// A record whose key a tag has lost (its key column emptied behind the backend's back) is named
// by the check; the table's own answers stay readable.
TEST(TableDatabaseCommands, TheCheckOfASqliteTableNamesARecordItsTagLost) {
    TempDir dir;
    const std::string database = (dir / "office.sqlite").string();
    const Args table = {"--database", "sqlite:" + database, "--table", kTable};
    auto run = [&](Args args, const std::string& input = "") {
        args.insert(args.end(), table.begin(), table.end());
        return RunFennrick(args, input);
    };
    ASSERT_EQ(
        run({"table", "create", "--fields", "NAME,C,12;QTY,N,7,2;BORN,D;OK,L;NOTE,M"}).exitCode, 0);
    ASSERT_EQ(run({"table", "load"}, kRecords).exitCode, 0);
    ASSERT_EQ(run({"table", "index", "--tag", "NAME", "--key", "UPPER(NAME)"}).exitCode, 0);
    const CommandResult sound = run({"table", "check"});
    EXPECT_EQ(sound.exitCode, 0) << sound.err;
    EXPECT_EQ(sound.out, "table items: ok\n");

    const CommandResult damage =
        RunCommand({"/usr/bin/python3", "-c",
                    "import sqlite3, sys\n"
                    "db = sqlite3.connect(sys.argv[1])\n"
                    "db.execute('UPDATE \"t_ITEMS\" SET \"k_NAME\" = NULL WHERE recno = 2')\n"
                    "db.commit()\n"
                    "print(db.total_changes)\n",
                    database});
    ASSERT_EQ(damage.out, "1\n") << damage.err;
    const CommandResult check = run({"table", "check"});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_NE(check.err.find("tag NAME: record 2 is missing"), std::string::npos) << check.err;
    EXPECT_EQ(check.err.find("record 1"), std::string::npos) << check.err;
}

TEST(TableDatabaseCommands, WrongSourcesAreRefusedWithoutShowingAPassword) {
    TempDir dir;
    const std::string sqlite = "sqlite:" + (dir / "empty.sqlite").string();
    struct Refusal {
        Args args;
        std::string says;
    };
    const std::vector<Refusal> refusals = {
        {{"table", "dump", "--database", sqlite}, "--table"},
        {{"table", "dump", "--table", "items"}, "--database"},
        {{"table", "dump", "x.dbf", "--database", sqlite, "--table", "items"}, "name a table"},
        {{"table", "dump", "--database", "mysql:x", "--table", "items"}, "not a database URL"},
        {{"table", "dump", "--database", sqlite, "--table", "nosuch"}, "table nosuch"},
        {{"sql", "--database", sqlite, dir.path().string(), "select 1"}, "STATEMENT only"},
        {{"table", "tags", "--database",
          "postgresql://ann:Secr3tWord@/nodb?host=" + (dir / "nosocket").string(), "--table",
          "items"},
         "cannot connect"},
        {{"sql", "--database",
          "host=" + (dir / "nosocket").string() + " dbname=x user=ann password=Secr3tWord",
          "select 1"},
         "cannot use"},
    };
    for (const Refusal& refusal : refusals) {
        const CommandResult result = RunFennrick(refusal.args);
        EXPECT_NE(result.exitCode, 0) << refusal.says;
        EXPECT_NE(result.err.find(refusal.says), std::string::npos)
            << refusal.says << ": " << result.err;
        EXPECT_EQ(result.err.find("Secr3tWord"), std::string::npos) << result.err;
        EXPECT_EQ(result.out, "") << refusal.says;
    }
}

}  // namespace
}  // namespace fnrk::testing

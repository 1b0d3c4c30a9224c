// The `fennrick table` commands against the fixture tables, python3-dbfread as an independent
// reader of what we write, and damaged files.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine {
namespace {

using fnrk::testing::LinuxPath;
using fnrk::testing::ReadFileBytes;
using fnrk::testing::RunCommand;
using fnrk::testing::RunFennrick;
using fnrk::testing::SharedDir;
using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

std::string Fixture(const std::string& name) {
    return (SharedDir() / "fixtures" / "xbase" / name).string();
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (!line.empty()) lines.push_back(line);
    return lines;
}

// Compares two dumps record by record and field by field; says where they first differ.
void ExpectSameRecords(const std::string& actual, const std::string& expected,
                       const std::string& what) {
    const auto got = Lines(actual);
    const auto want = Lines(expected);
    ASSERT_EQ(got.size(), want.size()) << what;
    for (std::size_t i = 0; i < got.size(); ++i) {
        const auto a = nlohmann::json::parse(got[i]);
        const auto b = nlohmann::json::parse(want[i]);
        if (a == b) continue;
        for (const auto& [key, value] : b.items()) {
            EXPECT_EQ(a.value(key, nlohmann::json()), value)
                << what << " record " << i + 1 << " field " << key;
        }
        FAIL() << what << ": record " << i + 1 << " differs";
    }
}

// The field list of `table create` for the structure `table info` prints.
std::string FieldList(const std::string& info) {
    std::string list;
    const std::map<std::string, std::string> types = {{"C", "CHAR"}, {"N", "NUMERIC"},
                                                      {"D", "DATE"}, {"L", "LOGICAL"},
                                                      {"M", "MEMO"}, {"P", "BINARY"}};
    const nlohmann::json structure = nlohmann::json::parse(info);
    for (const auto& field : structure["fields"]) {
        if (!list.empty()) list += ";";
        list += field["name"].get<std::string>() + "," + types.at(field["type"]) + "," +
                std::to_string(field["length"].get<int>()) + "," +
                std::to_string(field["decimals"].get<int>());
    }
    return list;
}

TEST(TableCommands, EveryFixtureDumpsExactlyAsItsNaturalRecords) {
    for (const char* name :
         {"people", "SOC1_MSODA", "SOC1_ACTCOM", "USERSEXT", "SOC1_param", "big"}) {
        const auto dump = RunFennrick({"table", "dump", Fixture(std::string(name) + ".dbf")});
        ASSERT_EQ(dump.exitCode, 0) << name << ": " << dump.err;
        ExpectSameRecords(dump.out, ReadFileBytes(Fixture(std::string(name) + ".natural.jsonl")),
                          name);
        const auto check = RunFennrick({"table", "check", Fixture(std::string(name) + ".dbf")});
        EXPECT_EQ(check.exitCode, 0) << name << ": " << check.err;
    }
}

// A dump loads back into an empty copy of its table; without memos the records come out byte
// for byte as the other engine wrote them.
TEST(TableCommands, DumpsLoadBackIntoAnEmptyCopy) {
    TempDir dir;
    for (const char* name : {"people", "SOC1_ACTCOM", "USERSEXT"}) {
        const auto info = RunFennrick({"table", "info", Fixture(std::string(name) + ".dbf")});
        ASSERT_EQ(info.exitCode, 0) << info.err;
        const std::string copy = (dir / (std::string(name) + ".dbf")).string();
        const auto create = RunFennrick({"table", "create", copy, "--fields", FieldList(info.out)});
        ASSERT_EQ(create.exitCode, 0) << create.err;
        const std::string original = ReadFileBytes(Fixture(std::string(name) + ".natural.jsonl"));
        const auto load = RunFennrick({"table", "load", copy}, original);
        ASSERT_EQ(load.exitCode, 0) << name << ": " << load.err;
        const auto dump = RunFennrick({"table", "dump", copy});
        ExpectSameRecords(dump.out, original, std::string(name) + " reloaded");
        EXPECT_EQ(RunFennrick({"table", "check", copy}).exitCode, 0);
        EXPECT_EQ(RunFennrick({"table", "info", copy}).out, info.out);
        if (std::string(name) != "people") {
            const std::string theirs = ReadFileBytes(Fixture(std::string(name) + ".dbf"));
            const std::string ours = ReadFileBytes(copy);
            const std::size_t start = static_cast<unsigned char>(theirs[8]) |
                                      (static_cast<unsigned char>(theirs[9]) << 8);
            EXPECT_EQ(ours.substr(4, 8), theirs.substr(4, 8)) << name;  // count and lengths
            EXPECT_TRUE(ours.substr(start) == theirs.substr(start)) << name << ": records differ";
        }
    }
}

constexpr const char* kDbfreadCompare = R"(
import datetime, json, sys, dbfread
table = dbfread.DBF(sys.argv[1], encoding='cp1252', char_decode_errors='strict')
ours = [json.loads(line) for line in open(sys.argv[2], encoding='utf-8')]
live = [r for r in ours if not r['deleted']]
dead = [r for r in ours if r['deleted']]
def same(theirs, mine):
    for name, value in theirs.items():
        v = mine[name]
        if value is None: ok = not str(v).strip()
        elif isinstance(value, str): ok = value == v.rstrip(' ')
        elif isinstance(value, bool): ok = value == v
        elif isinstance(value, (int, float)): ok = abs(value - float(v)) < 1e-9
        elif isinstance(value, datetime.date): ok = value.strftime('%Y%m%d') == v
        else: ok = False
        if not ok: print('differs', name, repr(value), repr(v)); return False
    return True
records = list(table)
deleted = list(table.deleted)
good = len(records) == len(live) and len(deleted) == len(dead) and \
    all(same(a, b) for a, b in zip(records, live)) and all(same(a, b) for a, b in zip(deleted, dead))
print('MATCH' if good else 'DIFFER', len(records), len(deleted))
)";

TEST(TableCommands, TablesWeWriteReadTheSameInDbfread) {
    TempDir dir;
    const std::string table = (dir / "clients.dbf").string();
    ASSERT_EQ(RunFennrick({"table", "create", table, "--fields",
                           "NAME,CHARACTER,20,0;CITY,C,12;AMOUNT,N,12,2;QTY,N,5,0;SINCE,D;"
                           "ACTIVE,LOGICAL;NOTE,MEMO"})
                  .exitCode,
              0);
    const std::string input =
        R"({"NAME":"Chloé Dupré","CITY":"Liège","AMOUNT":"1234.50","QTY":"-12","SINCE":"20240131","ACTIVE":true,"NOTE":"première ligne\r\nseconde € ligne"})"
        "\n"
        R"({"NAME":"Bob","CITY":"","AMOUNT":"-0.01","QTY":"0","SINCE":"        ","ACTIVE":false,"NOTE":""})"
        "\n"
        R"({"NAME":"Ærøskøbing Œuvre","CITY":"Luxembourg-Ville","AMOUNT":"999999999.99","QTY":"99999","SINCE":"19991231","ACTIVE":true,"NOTE":")" +
        std::string(5000, 'x') + R"("})" + "\n";
    const auto load = RunFennrick({"table", "load", table}, input + input);
    ASSERT_EQ(load.exitCode, 0) << load.err;
    ASSERT_EQ(RunFennrick({"table", "delete", table, "--recno", "2"}).exitCode, 0);
    ASSERT_EQ(RunFennrick({"table", "delete", table, "--recno", "5"}).exitCode, 0);
    ASSERT_EQ(RunFennrick({"table", "recall", table, "--recno", "5"}).exitCode, 0);
    EXPECT_NE(RunFennrick({"table", "delete", table, "--recno", "7"}).exitCode, 0);
    ASSERT_EQ(RunFennrick({"table", "pack", table}).exitCode, 0);  // drops record 2

    const auto dump = RunFennrick({"table", "dump", table});
    ASSERT_EQ(dump.exitCode, 0);
    EXPECT_EQ(Lines(dump.out).size(), 5u);
    EXPECT_NE(dump.out.find(R"("CITY":"Luxembourg-V")"), std::string::npos);  // cut to 12
    const std::string dumpFile = (dir / "dump.jsonl").string();
    WriteFileBytes(dumpFile, dump.out);
    const std::vector<std::string> compareCommand = {"/usr/bin/python3", "-c", kDbfreadCompare,
                                                     LinuxPath(table), LinuxPath(dumpFile)};
    const auto compare = RunCommand(compareCommand);
    EXPECT_EQ(compare.out, "MATCH 5 0\n") << compare.err;

    ASSERT_EQ(RunFennrick({"table", "delete", table, "--recno", "1"}).exitCode, 0);
    WriteFileBytes(dumpFile, RunFennrick({"table", "dump", table}).out);
    EXPECT_EQ(RunCommand(compareCommand).out, "MATCH 4 1\n");
    ASSERT_EQ(RunFennrick({"table", "zap", table}).exitCode, 0);
    EXPECT_EQ(RunFennrick({"table", "dump", table}).out, "");
}

TEST(TableCommands, DamagedFilesAreReportedNotCrashedOn) {
    TempDir dir;
    const std::string good = ReadFileBytes(Fixture("people.dbf"));
    const std::string memo = ReadFileBytes(Fixture("people.fpt"));
    struct Damage {
        std::string name;
        std::string dbf;
        std::string fpt;
        std::string message;
    };
    std::vector<Damage> damages;
    damages.push_back({"truncated", good.substr(0, good.size() / 2), memo, "record count"});
    std::string headerLength = good;
    headerLength[8] = '\x30';
    headerLength[9] = 0;
    damages.push_back({"header_length", headerLength, memo, "header length"});
    std::string zeroField = good;
    zeroField[32 + 16] = 0;
    damages.push_back({"zero_field", zeroField, memo, "length 0"});
    damages.push_back({"memo_cut", good, memo.substr(0, 4096), "past the end"});
    damages.push_back({"no_memo", good, "", "memo"});
    damages.push_back({"tiny", "\x03\x7e", "", "too short"});
    for (const Damage& damage : damages) {
        const auto path = dir / (damage.name + ".dbf");
        WriteFileBytes(path, damage.dbf);
        if (!damage.fpt.empty()) WriteFileBytes(dir / (damage.name + ".fpt"), damage.fpt);
        const auto check = RunFennrick({"table", "check", path.string()});
        EXPECT_EQ(check.exitCode, 1) << damage.name;
        EXPECT_NE(check.err.find(damage.message), std::string::npos)
            << damage.name << ": " << check.err;
        const auto dump = RunFennrick({"table", "dump", path.string()});
        EXPECT_TRUE(dump.exitCode == 0 || dump.exitCode == 1) << damage.name << dump.err;
    }
    EXPECT_EQ(RunFennrick({"table", "load", (dir / "missing.dbf").string()}, "{}\n").exitCode, 1);
    // A whole table (with its structural index) refuses a line naming an unknown field.
    WriteFileBytes(dir / "intact.dbf", good);
    WriteFileBytes(dir / "intact.fpt", memo);
    WriteFileBytes(dir / "intact.cdx", ReadFileBytes(Fixture("people.cdx")));
    const auto badLine =
        RunFennrick({"table", "load", (dir / "intact.dbf").string()}, R"({"NOSUCH":"x"})");
    EXPECT_EQ(badLine.exitCode, 1);
    EXPECT_NE(badLine.err.find("no field NOSUCH"), std::string::npos) << badLine.err;
    // Nothing appended: the count and every record stay (only the last-update date may move).
    EXPECT_EQ(ReadFileBytes(dir / "intact.dbf").substr(4), good.substr(4));
}

}  // namespace
}  // namespace fnrk::engine

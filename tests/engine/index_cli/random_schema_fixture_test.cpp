// Tables with random schemas written and indexed by an independent engine: each checks clean,
// dumps as that engine reads it (numbers compared by value: past the fifteenth significant
// digit they are noise), lists its tags as that engine orders them, and reindexes to the same
// orders. Among them: keys that begin with blanks before a STR() of many digits, and tags over
// a 250-character field, whose keys are cut to 240.

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::testing {
namespace {

std::filesystem::path Fixture(const std::string& name) {
    return SharedDir() / "fixtures" / "xbase-random" / name;
}

std::vector<nlohmann::json> JsonLines(const std::string& text) {
    std::vector<nlohmann::json> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (!line.empty()) lines.push_back(nlohmann::json::parse(line));
    return lines;
}

// Numbers as that engine prints them: blanks are zero; only fifteen digits count.
bool SameNumber(const std::string& a, const std::string& b) {
    auto value = [](const std::string& text) {
        return text.find_first_not_of(' ') == std::string::npos ? 0.0 : std::stod(text);
    };
    const double x = value(a);
    const double y = value(b);
    return std::abs(x - y) <= 1e-14 * std::max(std::abs(x), std::abs(y));
}

void ExpectSameTags(const std::string& ours, const std::string& theirs, const std::string& what) {
    const auto got = JsonLines(ours);
    const auto want = JsonLines(theirs);
    ASSERT_EQ(got.size(), want.size()) << what;
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_EQ(got[i], want[i]) << what << ": tag " << want[i]["tag"];
}

TEST(RandomSchemaFixtures, CheckCleanDumpListAndReindexAsTheirEngine) {
    for (const std::string table : {"R1039", "R2013", "R2029", "R2076"}) {
        SCOPED_TRACE(table);
        TempDir dir;
        for (const char* extension : {".dbf", ".cdx", ".fpt"})
            if (std::filesystem::exists(Fixture(table + extension)))
                WriteFileBytes(dir / (table + extension),
                               ReadFileBytes(Fixture(table + extension)));
        const std::string file = (dir / (table + ".dbf")).string();

        const CommandResult check = RunFennrick({"table", "check", file});
        EXPECT_EQ(check.exitCode, 0) << check.err;

        std::set<std::string> numeric;
        const auto info = nlohmann::json::parse(RunFennrick({"table", "info", file}).out);
        for (const auto& field : info["fields"])
            if (field["type"] == "N" || field["type"] == "F") numeric.insert(field["name"]);
        const CommandResult dump = RunFennrick({"table", "dump", file});
        ASSERT_EQ(dump.exitCode, 0) << dump.err;
        const auto records = JsonLines(dump.out);
        const auto expected = JsonLines(ReadFileBytes(Fixture(table + ".natural.jsonl")));
        ASSERT_EQ(records.size(), expected.size());
        for (std::size_t i = 0; i < records.size(); ++i) {
            for (const auto& [name, value] : expected[i].items()) {
                if (numeric.contains(name)) {
                    EXPECT_TRUE(SameNumber(records[i][name], value))
                        << "record " << i + 1 << " " << name << ": " << records[i][name] << " vs "
                        << value;
                } else {
                    EXPECT_EQ(records[i][name], value) << "record " << i + 1 << " " << name;
                }
            }
        }

        const std::string tags = ReadFileBytes(Fixture(table + ".tags.jsonl"));
        ExpectSameTags(RunFennrick({"table", "tags", file}).out, tags, "as written");
        const CommandResult reindex = RunFennrick({"table", "reindex", file});
        ASSERT_EQ(reindex.exitCode, 0) << reindex.err;
        ExpectSameTags(RunFennrick({"table", "tags", file}).out, tags, "reindexed");
        const CommandResult again = RunFennrick({"table", "check", file});
        EXPECT_EQ(again.exitCode, 0) << again.err;
    }
}

}  // namespace
}  // namespace fnrk::testing

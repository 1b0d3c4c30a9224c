// `fennrick table tags` gives each fixture's *.tags.jsonl exactly and `table check` passes; a tag
// built, searched, dumped and rebuilt from the command line stays sound.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::testing {
namespace {

std::filesystem::path Fixture(const std::string& name) {
    return SharedDir() / "fixtures" / "xbase" / name;
}

std::filesystem::path CopyFixture(const TempDir& dir, const std::string& table) {
    for (const char* extension : {".dbf", ".cdx", ".fpt"})
        if (std::filesystem::exists(Fixture(table + extension)))
            WriteFileBytes(dir / (table + extension), ReadFileBytes(Fixture(table + extension)));
    return dir / (table + ".dbf");
}

TEST(TableIndexCommands, TagsOfEveryFixtureAreListedExactlyAndCheckPasses) {
    for (const std::string table :
         {"people", "SOC1_MSODA", "SOC1_ACTCOM", "USERSEXT", "SOC1_param", "big"}) {
        SCOPED_TRACE(table);
        TempDir dir;
        const auto file = CopyFixture(dir, table);
        const CommandResult tags = RunFennrick({"table", "tags", file.string()});
        ASSERT_EQ(tags.exitCode, 0) << tags.err;
        EXPECT_EQ(tags.out, ReadFileBytes(Fixture(table + ".tags.jsonl")));
        if (table == "people") continue;  // its memo file fails the table check, not its tags
        const CommandResult check = RunFennrick({"table", "check", file.string()});
        EXPECT_EQ(check.exitCode, 0) << check.err;
    }
}

TEST(TableIndexCommands, IndexSeekDumpAndReindex) {
    TempDir dir;
    const auto file = (dir / "t.dbf").string();
    ASSERT_EQ(RunFennrick({"table", "create", file, "--fields", "NAME,C,6;QTY,N,4,0"}).exitCode, 0);
    std::string lines;
    for (int i = 1; i <= 50; ++i)
        lines += R"({"NAME":")" + std::string(1, static_cast<char>('A' + i % 5)) + R"(","QTY":")" +
                 std::to_string(100 - i) + "\"}\n";
    ASSERT_EQ(RunFennrick({"table", "load", file}, lines).exitCode, 0);
    ASSERT_EQ(RunFennrick({"table", "index", file, "--tag", "NAME", "--key", "NAME"}).exitCode, 0);
    ASSERT_EQ(RunFennrick({"table", "index", file, "--tag", "QTY", "--key", "QTY", "--descending"})
                  .exitCode,
              0);
    EXPECT_EQ(RunFennrick({"table", "seek", file, "--tag", "NAME", "--key", "C"}).out, "2\n");
    EXPECT_EQ(RunFennrick({"table", "seek", file, "--tag", "NAME", "--key", "C", "--last"}).out,
              "47\n");
    EXPECT_EQ(RunFennrick({"table", "seek", file, "--tag", "NAME", "--key", "Q"}).out, "0\n");
    EXPECT_EQ(RunFennrick({"table", "seek", file, "--tag", "QTY", "--key", "60"}).out, "40\n");
    const CommandResult dump = RunFennrick({"table", "dump", file, "--tag", "QTY"});
    ASSERT_EQ(dump.exitCode, 0) << dump.err;
    std::istringstream in(dump.out);
    std::string first;
    std::getline(in, first);
    EXPECT_EQ(nlohmann::json::parse(first)["recno"], 1) << "QTY 99 leads the descending tag";
    ASSERT_EQ(RunFennrick({"table", "delete", file, "--recno", "2"}).exitCode, 0);
    ASSERT_EQ(RunFennrick({"table", "pack", file}).exitCode, 0);
    ASSERT_EQ(RunFennrick({"table", "reindex", file}).exitCode, 0);
    const CommandResult check = RunFennrick({"table", "check", file});
    EXPECT_EQ(check.exitCode, 0) << check.err;
    EXPECT_EQ(RunFennrick({"table", "seek", file, "--tag", "NAME", "--key", "C"}).out, "6\n");
    // A bad expression is refused and leaves the index as it was.
    const CommandResult bad = RunFennrick({"table", "index", file, "--tag", "X", "--key", "NOPE+"});
    EXPECT_NE(bad.exitCode, 0);
    EXPECT_EQ(RunFennrick({"table", "check", file}).exitCode, 0);
}

}  // namespace
}  // namespace fnrk::testing

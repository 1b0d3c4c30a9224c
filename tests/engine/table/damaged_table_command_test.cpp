// `fennrick table` commands on tables damaged in ways a disk, a killed program or a hand edit
// leave them: each is reported by `check`, and the reading commands name what they cannot read
// instead of failing silently or hanging.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine {
namespace {

using fnrk::testing::CommandResult;
using fnrk::testing::ReadFileBytes;
using fnrk::testing::RunFennrick;
using fnrk::testing::SharedDir;
using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

constexpr std::size_t kHeaderLength = 290;  // people.dbf: 8 fields
constexpr std::size_t kRecordLength = 128;
constexpr std::size_t kPathDescriptor = 32 + 2 * 32;  // the third field, PATH
constexpr std::size_t kNoteOffset = 118;              // NOTE, the memo, within a record

std::filesystem::path Fixture(const std::string& name) {
    return SharedDir() / "fixtures" / "xbase" / name;
}

// people.dbf / .fpt / .cdx copied to `dir` as `name`, with `damage` applied to the table bytes.
std::filesystem::path PeopleCopy(const TempDir& dir, const std::string& name,
                                 void (*damage)(std::string& dbf)) {
    std::string dbf = ReadFileBytes(Fixture("people.dbf"));
    if (damage != nullptr) damage(dbf);
    WriteFileBytes(dir / (name + ".dbf"), dbf);
    WriteFileBytes(dir / (name + ".fpt"), ReadFileBytes(Fixture("people.fpt")));
    WriteFileBytes(dir / (name + ".cdx"), ReadFileBytes(Fixture("people.cdx")));
    return dir / (name + ".dbf");
}

void RenamePath(std::string& dbf, std::string_view name) {
    std::fill_n(dbf.begin() + kPathDescriptor, 11, '\0');
    std::copy(name.begin(), name.end(), dbf.begin() + kPathDescriptor);
}

void SetNote(std::string& dbf, std::uint32_t record, std::string_view pointer) {
    std::copy(pointer.begin(), pointer.end(),
              dbf.begin() + kHeaderLength + (record - 1) * kRecordLength + kNoteOffset);
}

std::size_t LineCount(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

bool Holds(const CommandResult& result, const std::string& text) {
    return result.err.find(text) != std::string::npos;
}

TEST(DamagedTableCommands, FieldNamesInWindows1252ComeOutAsUtf8) {
    TempDir dir;
    const auto path = PeopleCopy(dir, "accent", [](std::string& dbf) {
        RenamePath(dbf, "P\xC2TH");  // "PÂTH"
    });
    const CommandResult info = RunFennrick({"table", "info", path.string()});
    ASSERT_EQ(info.exitCode, 0) << info.err;
    EXPECT_EQ(nlohmann::json::parse(info.out)["fields"][2]["name"], "P\u00C2TH");
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"table", "dump", path.string()},
          std::vector<std::string>{"table", "dump", path.string(), "--tag", "NAME"}}) {
        const CommandResult dump = RunFennrick(args);
        ASSERT_EQ(dump.exitCode, 0) << dump.err;
        EXPECT_EQ(LineCount(dump.out), 600u);
        std::istringstream first(dump.out);
        std::string line;
        std::getline(first, line);
        EXPECT_TRUE(nlohmann::json::parse(line).contains("P\u00C2TH")) << line;
    }
    // Lines load by those names too.
    const CommandResult load = RunFennrick({"table", "load", path.string()},
                                           "{\"NAME\":\"ANN\",\"P\u00C2TH\":\"D:/books\"}\n");
    EXPECT_EQ(load.exitCode, 0) << load.err;
    const CommandResult dump = RunFennrick({"table", "dump", path.string()});
    EXPECT_NE(dump.out.find("\"P\u00C2TH\":\"D:/books"), std::string::npos);
}

TEST(DamagedTableCommands, TwoFieldsOfOneNameAreRefusedEverywhere) {
    TempDir dir;
    const auto path = PeopleCopy(dir, "twice", [](std::string& dbf) { RenamePath(dbf, "NAME"); });
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"table", "check", path.string()},
          std::vector<std::string>{"table", "dump", path.string()},
          std::vector<std::string>{"table", "info", path.string()},
          std::vector<std::string>{"sql", dir.path().string(), "select count(*) from twice"}}) {
        const CommandResult result = RunFennrick(args);
        EXPECT_EQ(result.exitCode, 1) << args[1];
        EXPECT_TRUE(Holds(result, "two fields named NAME")) << args[1] << ": " << result.err;
        EXPECT_TRUE(result.out.empty()) << args[1];
    }
}

TEST(DamagedTableCommands, BadMemoPointersAreNamedAndTheRestStillDumps) {
    TempDir dir;
    const auto path = PeopleCopy(dir, "pointers", [](std::string& dbf) {
        SetNote(dbf, 2, "    12x456");  // not a number
        SetNote(dbf, 5, "9999999999");  // beyond 32 bits
        SetNote(dbf, 7, "    999999");  // a block past the end of the memo file
    });
    const CommandResult check = RunFennrick({"table", "check", path.string()});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_TRUE(Holds(check, "record 2: NOTE: memo pointer \"    12x456\" is not a block number"))
        << check.err;
    EXPECT_TRUE(Holds(check, "record 5: NOTE: memo pointer \"9999999999\"")) << check.err;
    EXPECT_TRUE(Holds(check, "record 7: NOTE: memo block past the end")) << check.err;

    const CommandResult dump = RunFennrick({"table", "dump", path.string()});
    EXPECT_EQ(dump.exitCode, 1);
    EXPECT_EQ(LineCount(dump.out), 597u);
    EXPECT_TRUE(Holds(dump, "record 2: reading memo NOTE")) << dump.err;
    EXPECT_TRUE(Holds(dump, "record 5: reading memo NOTE")) << dump.err;
    EXPECT_TRUE(Holds(dump, "record 7: reading memo NOTE")) << dump.err;
    EXPECT_TRUE(Holds(dump, "3 record(s) could not be read")) << dump.err;
    // The records around them come out whole, memo included.
    const std::string natural = ReadFileBytes(Fixture("people.natural.jsonl"));
    std::istringstream expected(natural);
    std::string eighth;
    for (int i = 0; i < 8; ++i) std::getline(expected, eighth);
    const std::string note = nlohmann::json::parse(eighth)["NOTE"].dump();
    ASSERT_GT(note.size(), 10u);
    EXPECT_NE(dump.out.find(note), std::string::npos);

    const CommandResult tagged = RunFennrick({"table", "dump", path.string(), "--tag", "CODE"});
    EXPECT_EQ(tagged.exitCode, 1);
    EXPECT_EQ(LineCount(tagged.out), 597u);
}

TEST(DamagedTableCommands, AnEmptiedTagDirectoryIsReported) {
    TempDir dir;
    const auto path = PeopleCopy(dir, "directory", nullptr);
    std::string cdx = ReadFileBytes(dir / "directory.cdx");
    // The directory's root leaf (its offset in the first bytes of the file) with key count 0.
    const std::size_t root = static_cast<unsigned char>(cdx[0]) |
                             static_cast<std::size_t>(static_cast<unsigned char>(cdx[1])) << 8;
    cdx[root + 2] = 0;
    cdx[root + 3] = 0;
    WriteFileBytes(dir / "directory.cdx", cdx);
    const CommandResult check = RunFennrick({"table", "check", path.string()});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_TRUE(Holds(check, "directory.cdx: the tag directory lists no tag")) << check.err;
}

// A table whose index cannot be opened (cut short, or missing though the table names one) still
// dumps whole in record order, with a word on why its index was left aside; a dump in a tag's
// order needs the index and fails.
TEST(DamagedTableCommands, ATableWhoseIndexCannotBeOpenedDumpsInRecordOrder) {
    TempDir dir;
    const auto path = PeopleCopy(dir, "noindex", nullptr);
    const CommandResult whole = RunFennrick({"table", "dump", path.string()});
    ASSERT_EQ(whole.exitCode, 0) << whole.err;
    ASSERT_EQ(whole.err, "");
    const std::filesystem::path index = dir / "noindex.cdx";
    WriteFileBytes(index, ReadFileBytes(index).substr(0, 700));
    for (const char* damage : {"cut short", "missing"}) {
        SCOPED_TRACE(damage);
        const CommandResult dump = RunFennrick({"table", "dump", path.string()});
        EXPECT_EQ(dump.exitCode, 0) << dump.err;
        EXPECT_TRUE(dump.out == whole.out);
        EXPECT_TRUE(Holds(dump, "the index of " + path.string() + " could not be opened"))
            << dump.err;
        EXPECT_TRUE(Holds(dump, "dumped in record order")) << dump.err;
        EXPECT_TRUE(Holds(dump, "noindex.cdx")) << "the reason names the index: " << dump.err;
        const CommandResult inTagOrder =
            RunFennrick({"table", "dump", path.string(), "--tag", "NAME"});
        EXPECT_EQ(inTagOrder.exitCode, 1);
        EXPECT_EQ(inTagOrder.out, "");
        std::filesystem::remove(index);
    }
}

// What an append killed between its steps leaves: a counted blank record that has no keys yet,
// and a record written past the count. Both are reported; reindex clears both.
TEST(DamagedTableCommands, AKilledAppendsLeftoversAreReportedAndReindexClearsThem) {
    TempDir dir;
    const auto path = PeopleCopy(dir, "leftover", [](std::string& dbf) {
        const std::size_t end = kHeaderLength + 600 * kRecordLength;
        const std::string blank = " " + std::string(kRecordLength - 1, ' ');
        const std::string uncounted = dbf.substr(kHeaderLength, kRecordLength);
        dbf = dbf.substr(0, end) + blank + uncounted + '\x1A';
        dbf[4] = static_cast<char>(601 & 0xFF);  // the count takes the blank record only
        dbf[5] = static_cast<char>(601 >> 8);
    });
    const CommandResult check = RunFennrick({"table", "check", path.string()});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_TRUE(Holds(check, "bytes after the last counted record")) << check.err;
    EXPECT_TRUE(Holds(check, "tag NAME: record 601 is missing")) << check.err;
    const CommandResult reindex = RunFennrick({"table", "reindex", path.string()});
    ASSERT_EQ(reindex.exitCode, 0) << reindex.err;
    const CommandResult again = RunFennrick({"table", "check", path.string()});
    EXPECT_EQ(again.exitCode, 0) << again.err;
    EXPECT_EQ(std::filesystem::file_size(path), kHeaderLength + 601 * kRecordLength + 1);
    EXPECT_EQ(LineCount(RunFennrick({"table", "dump", path.string(), "--tag", "NAME"}).out), 601u);
}

TEST(DamagedTableCommands, OnlyRegularFilesAreOpened) {
    TempDir dir;
    const auto fifo = dir / "queue.dbf";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    for (const char* command : {"info", "dump", "check"}) {
        const CommandResult result = RunFennrick({"table", command, fifo.string()});
        EXPECT_EQ(result.exitCode, 1) << command;
        EXPECT_TRUE(Holds(result, "not a regular file")) << command << ": " << result.err;
    }
    // A regular table whose memo file is a FIFO.
    const auto path = PeopleCopy(dir, "memo", nullptr);
    std::filesystem::remove(dir / "memo.fpt");
    ASSERT_EQ(::mkfifo((dir / "memo.fpt").c_str(), 0600), 0);
    const CommandResult memo = RunFennrick({"table", "check", path.string()});
    EXPECT_EQ(memo.exitCode, 1);
    EXPECT_TRUE(Holds(memo, "memo")) << memo.err;
}

}  // namespace
}  // namespace fnrk::engine

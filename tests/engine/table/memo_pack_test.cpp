// Pack and the memo file: only the memos of the kept records stay, each record still reads its
// own, the memo file checks clean, and a pack that fails leaves both files as they were.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <vector>

#include "engine/dbf/table_check.hpp"
#include "engine_fixture.hpp"
#include "memo_bytes.hpp"
#include "platform/codepage.hpp"
#include "platform/text.hpp"
#include "support/file_size_limit.hpp"

namespace fnrk::engine {
namespace {

struct Row {
    std::string code;
    std::string note;
    std::string picture;
    bool operator==(const Row&) const = default;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.code << " note \"" << row.note << "\" picture \"" << row.picture << "\"";
}

// Twelve records whose memos take no block, one block or several; some have none at all.
std::vector<Row> SampleRows() {
    std::vector<Row> rows;
    for (int i = 1; i <= 12; ++i) {
        Row row{"R" + std::to_string(i), "", ""};
        if (i % 4 != 0) row.note = "note " + std::to_string(i) + std::string(i * 23, 'a' + i);
        if (i % 3 == 0) row.picture = std::string(i * 9, 'P');
        rows.push_back(row);
    }
    return rows;
}

class MemoPack : public EngineTest {
  protected:
    // A new table "notes" holding `rows`, open exclusively. Record 2's note is first written
    // short and then long, so that its first blocks are left behind in the memo file.
    Handle NotesWith(const std::vector<Row>& rows, const std::string& password = "") {
        Create("notes", "CODE,C,4;NOTE,memo;PIC,BINARY");
        const Handle table = Open("notes", ADS_EXCLUSIVE);
        if (!password.empty()) {
            EXPECT_EQ(engine.EnableEncryption(table, password), AE_SUCCESS);
            EXPECT_EQ(engine.EncryptTable(table), AE_SUCCESS);
        }
        for (const Row& row : rows) {
            EXPECT_EQ(engine.AppendRecord(table), AE_SUCCESS);
            EXPECT_EQ(engine.SetString(table, "CODE", row.code), AE_SUCCESS);
            if (row.code == "R2") {
                EXPECT_EQ(engine.SetString(table, "NOTE", "short"), AE_SUCCESS);
            }
            if (!row.note.empty()) {
                EXPECT_EQ(engine.SetString(table, "NOTE", row.note), AE_SUCCESS);
            }
            if (!row.picture.empty()) {
                EXPECT_EQ(engine.SetString(table, "PIC", row.picture), AE_SUCCESS);
            }
        }
        return table;
    }

    void Delete(Handle table, const std::vector<std::uint32_t>& records) {
        for (const std::uint32_t record : records) {
            ASSERT_EQ(engine.GotoRecord(table, record), AE_SUCCESS);
            ASSERT_EQ(engine.DeleteRecord(table), AE_SUCCESS);
        }
    }

    std::vector<Row> Contents(Handle table) {
        std::vector<Row> rows;
        for (Top(table); !Eof(table); Next(table)) {
            rows.push_back({platform::Trim(String(table, "CODE")), String(table, "NOTE"),
                            String(table, "PIC")});
        }
        return rows;
    }

    std::string LastError() {
        Status code = AE_SUCCESS;
        std::string text;
        EXPECT_EQ(engine.GetLastError(code, text), AE_SUCCESS);
        return text;
    }

    std::uint64_t MemoFileSize(const std::string& table) {
        return std::filesystem::file_size(dir / (table + ".fpt"));
    }
};

// The rows left after deleting `records` (1-based), and the memo file size they need.
std::vector<Row> Kept(const std::vector<Row>& rows, const std::vector<std::uint32_t>& records,
                      std::uint64_t& memoFileSize) {
    std::vector<Row> kept;
    memoFileSize = kMemoHeaderBytes;
    for (std::uint32_t i = 1; i <= rows.size(); ++i) {
        if (std::find(records.begin(), records.end(), i) != records.end()) continue;
        kept.push_back(rows[i - 1]);
        memoFileSize += MemoBytes(rows[i - 1].note.size()) + MemoBytes(rows[i - 1].picture.size());
    }
    return kept;
}

TEST_F(MemoPack, KeepsOnlyTheMemosOfTheKeptRecords) {
    const std::vector<Row> rows = SampleRows();
    const std::vector<std::uint32_t> deleted = {1, 3, 6, 7, 12};
    std::uint64_t expectedSize = 0;
    const std::vector<Row> kept = Kept(rows, deleted, expectedSize);

    Handle table = NotesWith(rows);
    Delete(table, deleted);
    const std::uint64_t sizeBefore = MemoFileSize("notes");
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS) << LastError();
    EXPECT_EQ(Contents(table), kept);
    EXPECT_EQ(MemoFileSize("notes"), expectedSize);
    EXPECT_LT(MemoFileSize("notes"), sizeBefore);
    EXPECT_FALSE(std::filesystem::exists(dir / "notes.fpt.pack"));

    // A pack with nothing to drop leaves the memo file as it is.
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS);
    EXPECT_EQ(MemoFileSize("notes"), expectedSize);
    EXPECT_EQ(Contents(table), kept);

    // New memos go after the packed ones.
    ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
    ASSERT_EQ(engine.SetString(table, "NOTE", std::string(100, 'n')), AE_SUCCESS);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    EXPECT_EQ(MemoFileSize("notes"), expectedSize + MemoBytes(100));
    EXPECT_EQ(dbf::CheckTable((dir / "notes.dbf").string()), std::vector<std::string>{});

    table = Open("notes");
    std::vector<Row> contents = Contents(table);
    ASSERT_EQ(contents.size(), kept.size() + 1);
    EXPECT_EQ(contents.back().note, std::string(100, 'n'));
    contents.pop_back();
    EXPECT_EQ(contents, kept);
}

TEST_F(MemoPack, TableWithoutAnyMemoKeepsAnEmptyMemoFile) {
    std::vector<Row> rows = SampleRows();
    for (Row& row : rows) row.note = row.picture = "";
    const Handle table = NotesWith(rows);
    Delete(table, {2, 5});
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS) << LastError();
    EXPECT_EQ(Count(table, ADS_IGNOREFILTERS), 10u);
    EXPECT_EQ(Contents(table)[1].code, "R3");
    // Record 2's "short" note went with its record: only the header is left.
    EXPECT_EQ(MemoFileSize("notes"), kMemoHeaderBytes);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    EXPECT_EQ(dbf::CheckTable((dir / "notes.dbf").string()), std::vector<std::string>{});
}

TEST_F(MemoPack, EncryptedTableReadsItsMemosAfterPack) {
    const std::vector<Row> rows = SampleRows();
    const std::vector<std::uint32_t> deleted = {2, 4, 5, 11};
    std::uint64_t expectedSize = 0;
    const std::vector<Row> kept = Kept(rows, deleted, expectedSize);

    Handle table = NotesWith(rows, "pack word");
    Delete(table, deleted);
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS) << LastError();
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    EXPECT_EQ(MemoFileSize("notes"), expectedSize);
    const std::string memoBytes = testing::ReadFileBytes(dir / "notes.fpt");
    EXPECT_EQ(memoBytes.find("note 1"), std::string::npos) << "memos written in plain text";

    table = Open("notes", ADS_EXCLUSIVE);
    ASSERT_EQ(engine.EnableEncryption(table, "pack word"), AE_SUCCESS);
    EXPECT_EQ(Contents(table), kept);
}

TEST_F(MemoPack, FailedPackChangesNothing) {
    const std::vector<Row> rows = SampleRows();
    Handle table = NotesWith(rows);
    Delete(table, {1, 2});
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    const std::string tableBefore = testing::ReadFileBytes(dir / "notes.dbf");
    const std::string memoBefore = testing::ReadFileBytes(dir / "notes.fpt");

    // The new memo file cannot be written where it goes.
    std::filesystem::create_directory(dir / "notes.fpt.pack");
    table = Open("notes", ADS_EXCLUSIVE);
    EXPECT_NE(engine.PackTable(table), AE_SUCCESS);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    EXPECT_EQ(testing::ReadFileBytes(dir / "notes.dbf"), tableBefore);
    EXPECT_EQ(testing::ReadFileBytes(dir / "notes.fpt"), memoBefore);
    std::filesystem::remove(dir / "notes.fpt.pack");

    // A kept record whose memo runs past the end of the memo file.
    const std::string cut = memoBefore.substr(0, memoBefore.size() - kMemoBlockBytes);
    testing::WriteFileBytes(dir / "notes.fpt", cut);
    table = Open("notes", ADS_EXCLUSIVE);
    EXPECT_EQ(engine.PackTable(table), AE_CORRUPT_TABLE);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    EXPECT_EQ(testing::ReadFileBytes(dir / "notes.dbf"), tableBefore);
    EXPECT_EQ(testing::ReadFileBytes(dir / "notes.fpt"), cut);
    EXPECT_FALSE(std::filesystem::exists(dir / "notes.fpt.pack"));
}

// A pack that runs out of disk space half way leaves the table, its memo file and its index
// exactly as they were; one that completes keeps the files' permissions.
TEST_F(MemoPack, APackCutShortLeavesEveryFileAsItWas) {
    Create("ledger", "CODE,C,4;TEXT,C,100;NOTE,memo");
    Handle table = Open("ledger", ADS_EXCLUSIVE);
    for (int i = 1; i <= 40; ++i) {
        ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(engine.SetString(table, "CODE", std::to_string(100 - i)), AE_SUCCESS);
        ASSERT_EQ(engine.SetString(table, "TEXT", std::string(90, 'a' + i % 26)), AE_SUCCESS);
        if (i <= 3) {
            ASSERT_EQ(engine.SetString(table, "NOTE", "note " + std::to_string(i)), AE_SUCCESS);
        }
    }
    Handle tag = 0;
    ASSERT_EQ(engine.CreateIndex(table, "", "CODE", "CODE", "", "", ADS_COMPOUND, tag), AE_SUCCESS);
    Delete(table, {2, 10});
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    const std::vector<std::string> files = {"ledger.dbf", "ledger.fpt", "ledger.cdx"};
    std::vector<std::string> before;
    for (const std::string& file : files) {
        std::filesystem::permissions(dir / file, std::filesystem::perms::owner_read |
                                                     std::filesystem::perms::owner_write |
                                                     std::filesystem::perms::group_read);
        before.push_back(testing::ReadFileBytes(dir / file));
    }

    // The packed memo file (3 small notes less one) fits under the limit, the records do not.
    const int exit = testing::RunWithFileSizeLimit(2048, [&] {
        Engine own;
        const Handle packed = OpenElsewhere(own, "ledger", ADS_EXCLUSIVE);
        if (packed == 0) return 2;
        return own.PackTable(packed) == AE_SUCCESS ? 0 : 1;
    });
    EXPECT_EQ(exit, 1);
    for (std::size_t i = 0; i < files.size(); ++i)
        EXPECT_EQ(testing::ReadFileBytes(dir / files[i]), before[i]) << files[i];
    for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
        EXPECT_EQ(entry.path().filename().string().find(".pack"), std::string::npos)
            << entry.path();

    table = Open("ledger", ADS_EXCLUSIVE);
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS) << LastError();
    EXPECT_EQ(Count(table, ADS_IGNOREFILTERS), 38u);
    ASSERT_EQ(engine.GetIndexHandle(table, "CODE", tag), AE_SUCCESS);
    std::vector<std::string> codes;
    for (Top(tag); !Eof(tag); Next(tag)) codes.push_back(platform::Trim(String(table, "CODE")));
    ASSERT_EQ(codes.size(), 38u);
    EXPECT_EQ(codes.front(), "60");
    EXPECT_EQ(codes.back(), "99");
    ASSERT_EQ(engine.GotoRecord(table, 2), AE_SUCCESS);
    EXPECT_EQ(String(table, "NOTE"), "note 3");
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    for (const std::string& file : files)
        EXPECT_EQ(std::filesystem::status(dir / file).permissions() & std::filesystem::perms::all,
                  std::filesystem::perms::owner_read | std::filesystem::perms::owner_write |
                      std::filesystem::perms::group_read)
            << file;
    EXPECT_EQ(dbf::CheckTable((dir / "ledger.dbf").string()), std::vector<std::string>{});
}

// A table written by another engine: 600 records, 86 of them deleted, memos of many lengths.
TEST_F(MemoPack, FixtureTableKeepsTheNotesOfItsLiveRecords) {
    const auto fixtures = testing::SharedDir() / "fixtures" / "xbase";
    for (const char* extension : {".dbf", ".cdx", ".fpt"})
        std::filesystem::copy_file(fixtures / (std::string("people") + extension),
                                   dir / (std::string("people") + extension));
    std::vector<std::string> liveNotes;
    std::uint64_t expectedSize = kMemoHeaderBytes;
    std::ifstream natural(fixtures / "people.natural.jsonl");
    for (std::string line; std::getline(natural, line);) {
        const auto record = nlohmann::json::parse(line);
        if (record["deleted"].get<bool>()) continue;
        const std::string note = record["NOTE"].get<std::string>();
        liveNotes.push_back(note);
        expectedSize += MemoBytes(platform::Utf8ToCp1252(note).size());
    }
    const std::uint64_t sizeBefore = MemoFileSize("people");
    ASSERT_LT(expectedSize, sizeBefore);

    const Handle table = Open("people", ADS_EXCLUSIVE);
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS) << LastError();
    std::vector<std::string> notes;
    for (Top(table); !Eof(table); Next(table)) notes.push_back(String(table, "NOTE"));
    EXPECT_EQ(notes, liveNotes);
    ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    EXPECT_EQ(MemoFileSize("people"), expectedSize);
    EXPECT_EQ(dbf::CheckTable((dir / "people.dbf").string()), std::vector<std::string>{});
}

}  // namespace
}  // namespace fnrk::engine

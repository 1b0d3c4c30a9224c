// Memo space of statement cursors and tables: a cursor's memo file holds its header and the
// blocks of its memos and nothing more; a memo written again takes new blocks (the record keeps
// its committed text until it is written), which pack gives back; and a memo written in pieces
// takes its final size once, not every piece.

#include <filesystem>

#include "engine/dbf/table_file.hpp"
#include "engine/table/memo_bytes.hpp"
#include "sql_fixture.hpp"

namespace fnrk::engine {
namespace {

class CursorMemoTest : public SqlTest {
  protected:
    const std::vector<std::string> notes = {"first note", std::string(70, 'b'), "c",
                                            std::string(200, 'd')};

    void SetUp() override {
        SqlTest::SetUp();
        Create("notes", "CODE,C,4;NOTE,memo");
        const Handle table = Open("notes", ADS_EXCLUSIVE);
        for (std::size_t i = 0; i < notes.size(); ++i) {
            ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
            ASSERT_EQ(engine.SetString(table, "CODE", "N" + std::to_string(i)), AE_SUCCESS);
            ASSERT_EQ(engine.SetString(table, "NOTE", notes[i]), AE_SUCCESS);
        }
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }

    std::uint64_t NeededBytes() const {
        std::uint64_t bytes = kMemoHeaderBytes;
        for (const std::string& note : notes) bytes += MemoBytes(note.size());
        return bytes;
    }

    std::uint64_t MemoFileSize(Handle table) {
        std::string path;
        EXPECT_EQ(engine.GetTableFilename(table, ADS_FULLPATHNAME, path), AE_SUCCESS);
        return std::filesystem::file_size(dbf::MemoPathFor(path));
    }

    // Writes `text` into the NOTE of every record of `table` and returns the memo file size.
    std::uint64_t RewriteNotes(Handle table, const std::string& text) {
        EXPECT_EQ(engine.GotoTop(table), AE_SUCCESS);
        while (!Eof(table)) {
            EXPECT_EQ(engine.SetString(table, "NOTE", text.empty() ? String(table, "NOTE") : text),
                      AE_SUCCESS);
            if (engine.Skip(table, 1) != AE_SUCCESS) {
                ADD_FAILURE() << "Skip failed";
                break;
            }
        }
        EXPECT_EQ(engine.GotoTop(table), AE_SUCCESS);
        return MemoFileSize(table);
    }

    // Writes a binary value of `total` bytes into the NOTE of the first record, 1 KiB at a time,
    // and checks that it reads back whole.
    void WriteInPieces(Handle table, std::uint32_t total) {
        ASSERT_EQ(engine.GotoTop(table), AE_SUCCESS);
        std::string value;
        for (std::uint32_t offset = 0; offset < total; offset += 1024) {
            const std::string piece(1024, static_cast<char>('a' + offset / 1024 % 26));
            ASSERT_EQ(engine.SetBinary(table, "NOTE", ADS_BINARY, total, offset, piece),
                      AE_SUCCESS);
            value += piece;
        }
        std::string stored;
        ASSERT_EQ(engine.GetBinary(table, "NOTE", 0, total, stored), AE_SUCCESS);
        EXPECT_EQ(stored, value);
    }
};

TEST_F(CursorMemoTest, CursorMemoFileHoldsOnlyItsMemos) {
    const Handle statement = NewStatement();
    ASSERT_EQ(engine.StmtSetTableReadOnly(statement, ADS_CURSOR_READWRITE), AE_SUCCESS);
    Handle cursor = 0;
    ASSERT_EQ(engine.ExecuteSQLDirect(statement, "select CODE, NOTE from notes", cursor),
              AE_SUCCESS)
        << LastErrorText();
    std::vector<std::vector<std::string>> expected;
    for (std::size_t i = 0; i < notes.size(); ++i)
        expected.push_back({"N" + std::to_string(i) + "  ", notes[i]});
    EXPECT_EQ(Rows(cursor, {"CODE", "NOTE"}), expected);
    EXPECT_EQ(MemoFileSize(cursor), NeededBytes());

    // The first record's note leaves its one block for the end of the file, and grows there.
    WriteInPieces(cursor, 96 * 1024);
    EXPECT_EQ(MemoFileSize(cursor), NeededBytes() + MemoBytes(96 * 1024));
}

TEST_F(CursorMemoTest, TableMemoRewritesTakeNewBlocksThatPackGivesBack) {
    const Handle table = Open("notes", ADS_EXCLUSIVE);
    EXPECT_EQ(MemoFileSize(table), NeededBytes());
    // Every note written again, as long as before: each takes new blocks at the end.
    const std::uint64_t twice = 2 * NeededBytes() - kMemoHeaderBytes;
    EXPECT_EQ(RewriteNotes(table, ""), twice);
    WriteInPieces(table, 40 * 1024);
    EXPECT_EQ(MemoFileSize(table), twice + MemoBytes(40 * 1024));

    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS);
    EXPECT_EQ(MemoFileSize(table),
              NeededBytes() - MemoBytes(notes[0].size()) + MemoBytes(40 * 1024));
    for (std::size_t i = 1; i < notes.size(); ++i) {
        ASSERT_EQ(engine.GotoRecord(table, static_cast<std::uint32_t>(i + 1)), AE_SUCCESS);
        EXPECT_EQ(String(table, "NOTE"), notes[i]);
    }
}

}  // namespace
}  // namespace fnrk::engine

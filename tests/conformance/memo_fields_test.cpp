#include <gtest/gtest.h>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers

// Where NOTE sits in the record of the sample table.
constexpr std::size_t kNoteOffset = 1 + 6 + 20 + 10 + 4 + 8 + 8 + 1;
constexpr std::size_t kNoteLength = 10;

// What callers may rely on for a memo field in the record bytes: blank when the memo is empty,
// not blank otherwise. Which non-blank bytes is each implementation's own affair.
class MemoConformance : public Conformance {
  protected:
    std::string NoteBytes(Handle t) {
        std::string record;
        EXPECT_EQ(ops->GetRecord(t, record), AE_SUCCESS);
        return record.size() < kNoteOffset + kNoteLength ? std::string()
                                                         : record.substr(kNoteOffset, kNoteLength);
    }
    std::uint32_t NoteLength(Handle t) {
        std::uint32_t length = 0;
        EXPECT_EQ(ops->GetMemoLength(t, "NOTE", length), AE_SUCCESS);
        return length;
    }
    static constexpr std::string_view kBlank = "          ";
};

TEST_P(MemoConformance, RecordBytesTellWhetherThereIsAMemo) {
    Handle t = CreateItems();
    AddItem(t, "A", "with", 1);
    ASSERT_EQ(ops->SetString(t, "NOTE", "hello"), AE_SUCCESS);
    EXPECT_NE(NoteBytes(t), kBlank);  // before the record is written too
    AddItem(t, "B", "without", 2);
    EXPECT_EQ(NoteBytes(t), kBlank);

    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    EXPECT_NE(NoteBytes(t), kBlank);
    EXPECT_EQ(Text(t, "NOTE"), "hello");
    EXPECT_EQ(NoteLength(t), 5u);
    std::string piece;
    ASSERT_EQ(ops->GetBinary(t, "NOTE", 1, 3, piece), AE_SUCCESS);
    EXPECT_EQ(piece, "ell");
    EXPECT_EQ(ops->GetBinary(t, "NOTE", 6, 3, piece), AE_INVALID_BINARY_OFFSET);

    // Emptied, the memo leaves the record bytes blank.
    ASSERT_EQ(ops->SetString(t, "NOTE", ""), AE_SUCCESS);
    EXPECT_EQ(NoteBytes(t), kBlank);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    EXPECT_EQ(NoteBytes(t), kBlank);
    EXPECT_EQ(NoteLength(t), 0u);

    // Past the end there is no memo.
    ASSERT_EQ(ops->GotoRecord(t, 99), AE_SUCCESS);
    EXPECT_EQ(NoteBytes(t), kBlank);
    EXPECT_EQ(Text(t, "NOTE"), "");
}

TEST_P(MemoConformance, SetRecordKeepsOrClearsTheMemo) {
    Handle t = CreateItems();
    AddItem(t, "A", "first", 1);
    ASSERT_EQ(ops->SetString(t, "NOTE", "kept note"), AE_SUCCESS);
    AddItem(t, "B", "second", 2);
    ASSERT_EQ(ops->SetString(t, "NOTE", "lost note"), AE_SUCCESS);

    // The record's own bytes written back keep its memo.
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    std::string record;
    ASSERT_EQ(ops->GetRecord(t, record), AE_SUCCESS);
    record.replace(1, 1, "Z");
    ASSERT_EQ(ops->SetRecord(t, record), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    EXPECT_EQ(Text(t, "CODE"), "Z");
    EXPECT_EQ(Text(t, "NOTE"), "kept note");

    // Blanks in the memo field empty it.
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    ASSERT_EQ(ops->GetRecord(t, record), AE_SUCCESS);
    record.replace(kNoteOffset, kNoteLength, kBlank);
    ASSERT_EQ(ops->SetRecord(t, record), AE_SUCCESS);
    EXPECT_EQ(Text(t, "NOTE"), "");
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    EXPECT_EQ(Text(t, "NOTE"), "");
    EXPECT_EQ(NoteLength(t), 0u);
    EXPECT_EQ(NoteBytes(t), kBlank);
    // And it takes a new memo afterwards.
    ASSERT_EQ(ops->SetString(t, "NOTE", "new note"), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    EXPECT_EQ(Text(t, "NOTE"), "new note");

    // A record of the wrong length is refused and changes nothing.
    EXPECT_EQ(ops->SetRecord(t, record.substr(1)), AE_INVALID_RECORD_LENGTH);
    EXPECT_EQ(Text(t, "NOTE"), "new note");
}

TEST_P(MemoConformance, BinaryValuesArriveInPieces) {
    Handle t = CreateItems();
    AddItem(t, "A", "pieces", 1);
    ASSERT_EQ(ops->SetBinary(t, "NOTE", ADS_BINARY, 6, 0, "abc"), AE_SUCCESS);
    EXPECT_EQ(NoteLength(t), 3u);
    ASSERT_EQ(ops->SetBinary(t, "NOTE", ADS_BINARY, 6, 3, "def"), AE_SUCCESS);
    std::string whole;
    ASSERT_EQ(ops->GetBinary(t, "NOTE", 0, 100, whole), AE_SUCCESS);
    EXPECT_EQ(whole, "abcdef");
    // A new value starts at offset 0; more than the announced length, a gap or a type other
    // than binary is refused and changes nothing.
    ASSERT_EQ(ops->SetBinary(t, "NOTE", ADS_BINARY, 2, 0, "xy"), AE_SUCCESS);
    EXPECT_EQ(ops->SetBinary(t, "NOTE", ADS_BINARY, 2, 2, "z"), AE_DATA_TOO_LONG);
    EXPECT_EQ(ops->SetBinary(t, "NOTE", ADS_BINARY, 9, 5, "z"), AE_INVALID_BINARY_OFFSET);
    EXPECT_EQ(ops->SetBinary(t, "NOTE", ADS_STRING, 1, 0, "q"), AE_INVALID_DATA_TYPE);
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    ASSERT_EQ(ops->GetBinary(t, "NOTE", 0, 100, whole), AE_SUCCESS);
    EXPECT_EQ(whole, "xy");
}

INSTANTIATE_TEST_SUITE_P(Implementations, MemoConformance, ::testing::ValuesIn(Implementations()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace fnrk::conformance

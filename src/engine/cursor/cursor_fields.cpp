#include "engine/cursor/table_cursor.hpp"
#include "engine/dbf/field_codec.hpp"

namespace fnrk::engine::cursor {

Status TableCursor::GetMemo(const dbf::Field& field, memo::MemoBlock& memo) {
    if (!dbf::IsMemoType(field.type)) return AE_INVALID_FIELD_TYPE;
    memo = {};
    const char* record = CurrentRecord();
    if (!dbf::MemoBlockValid(record, field)) return AE_CORRUPT_TABLE;
    const std::uint32_t block = dbf::ReadMemoBlock(record, field);
    if (block == 0) return AE_SUCCESS;
    memo::MemoFile* file = file_.memo();
    if (file == nullptr) return AE_NO_MEMO_FILE;
    return file->Read(block, memo).empty() ? AE_SUCCESS : AE_CORRUPT_TABLE;
}

Status TableCursor::SetMemo(const dbf::Field& field, std::uint32_t type, std::string_view data) {
    if (!dbf::IsMemoType(field.type)) return AE_INVALID_FIELD_TYPE;
    memo::MemoFile* file = file_.memo();
    if (file == nullptr) return AE_NO_MEMO_FILE;
    if (Status status = BeginEdit(); status != AE_SUCCESS) return status;
    std::uint32_t block = dbf::ReadMemoBlock(edit_.data(), field);
    // The committed record keeps its memo until the record itself is written: a new text goes to
    // a block of its own (0: at the end of the file), which this edit may then rewrite or grow.
    if (block != 0 && block == CommittedMemoBlock(field)) block = 0;
    if (!file->Write(block, type, data).empty()) return AE_PERMISSION_DENIED;
    dbf::WriteMemoBlock(edit_.data(), field, block);
    return AE_SUCCESS;
}

std::uint32_t TableCursor::CommittedMemoBlock(const dbf::Field& field) {
    if (appended_) return 0;
    const char* committed = file_.ReadRecord(record_);
    return committed == nullptr ? 0 : dbf::ReadMemoBlock(committed, field);
}

Status TableCursor::ReadMemo(const dbf::Field& field, std::string& data) {
    memo::MemoBlock memo;
    if (Status status = GetMemo(field, memo); status != AE_SUCCESS) return status;
    data = std::move(memo.data);
    return AE_SUCCESS;
}

Status TableCursor::WriteMemo(const dbf::Field& field, std::uint32_t memoType,
                              std::string_view data) {
    return SetMemo(field, memoType, data);
}

}  // namespace fnrk::engine::cursor

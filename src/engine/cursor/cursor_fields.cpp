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
    // Only a memo this edit wrote may be rewritten or grown where it stands: the committed one
    // stays until the record itself is written, and a block that came in with a record copied
    // whole belongs to another record, or to another table's memo file.
    if (!editMemos_.contains(block)) block = 0;
    if (!file->Write(block, type, data).empty()) return AE_PERMISSION_DENIED;
    if (block != 0) editMemos_.insert(block);
    dbf::WriteMemoBlock(edit_.data(), field, block);
    return AE_SUCCESS;
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

#include "engine/dbf/table_check.hpp"

#include <sys/stat.h>

#include "engine/dbf/field_codec.hpp"
#include "engine/dbf/table_file.hpp"

namespace fnrk::engine::dbf {

namespace {

constexpr std::size_t kMaxProblems = 20;

std::uint64_t FileSize(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 ? static_cast<std::uint64_t>(info.st_size) : 0;
}

void CheckRecords(TableFile& table, std::vector<std::string>& problems) {
    const TableHeader& header = table.header();
    memo::MemoFile* memo = table.memo();
    for (std::uint32_t recno = 1; recno <= header.recordCount; ++recno) {
        if (problems.size() >= kMaxProblems) return;
        const char* record = table.ReadRecord(recno);
        const std::string where = "record " + std::to_string(recno) + ": ";
        if (record == nullptr) {
            problems.push_back(where + "cannot be read");
            return;
        }
        if (record[0] != ' ' && record[0] != '*') problems.push_back(where + "bad deletion flag");
        if (memo == nullptr) continue;
        for (const Field& field : header.fields) {
            if (!IsMemoType(field.type)) continue;
            if (!MemoBlockValid(record, field)) {
                problems.push_back(where + field.name + ": memo pointer \"" +
                                   std::string(FieldBytes(record, field)) +
                                   "\" is not a block number");
                if (problems.size() >= kMaxProblems) return;
                continue;
            }
            const std::uint32_t block = ReadMemoBlock(record, field);
            if (block == 0) continue;
            std::uint32_t type = 0;
            std::uint32_t length = 0;
            const std::string problem = memo->ReadBlockHeader(block, type, length);
            if (!problem.empty()) problems.push_back(where + field.name + ": " + problem);
            if (problems.size() >= kMaxProblems) return;
        }
    }
}

}  // namespace

std::vector<std::string> CheckTable(const std::string& path,
                                    std::shared_ptr<const crypt::FileCipher> cipher) {
    std::vector<std::string> problems;
    TableFile table;
    std::string message;
    if (table.Open(path, OpenRequest{.exclusive = false, .readOnly = true}, message) !=
        AE_SUCCESS) {
        problems.push_back(message);
        return problems;
    }
    const TableHeader& header = table.header();
    const std::uint64_t dataEnd =
        header.headerLength + std::uint64_t{header.recordCount} * header.recordLength;
    const std::uint64_t size = FileSize(path);
    if (size > dataEnd + 1) {
        problems.push_back("file holds " + std::to_string(size - dataEnd) +
                           " bytes after the last counted record");
    }
    if (memo::MemoFile* memo = table.memo()) {
        // The last block need not be padded to its full size.
        const std::uint64_t memoEnd = std::uint64_t{memo->NextFreeBlock() - 1} * memo->blockSize();
        if (memoEnd > FileSize(MemoPathFor(path)))
            problems.push_back("memo next free block beyond the end of the memo file");
    }
    if (table.locked() && cipher != nullptr) table.SetCipher(std::move(cipher));
    if (table.locked()) {
        problems.push_back("records and memos are encrypted: checking them needs the password");
        return problems;
    }
    CheckRecords(table, problems);
    return problems;
}

}  // namespace fnrk::engine::dbf

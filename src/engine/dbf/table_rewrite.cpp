// Pack and a change of encryption: the table, its memo file and its index files are written
// anew beside the old ones, and take their names only once all of them are complete. Until
// then the old files are untouched; a failure on the way leaves nothing behind.

#include <cstring>
#include <filesystem>

#include "engine/crypt/encryption_mark.hpp"
#include "engine/dbf/field_codec.hpp"
#include "engine/dbf/table_file.hpp"

namespace fnrk::engine::dbf {

namespace {

constexpr std::size_t kChunkRecords = 4096;

// Points the memo fields of `record` at their blocks in the packed memo file.
void RepointMemos(char* record, const std::vector<Field>& fields,
                  const std::unordered_map<std::uint32_t, std::uint32_t>& moved) {
    for (const Field& field : fields) {
        if (!IsMemoType(field.type)) continue;
        const std::uint32_t block = ReadMemoBlock(record, field);
        if (block == 0) continue;
        const auto found = moved.find(block);
        const std::uint32_t packed = found != moved.end() ? found->second : 0;
        // Unchanged pointers keep the bytes they were written with.
        if (packed != block) WriteMemoBlock(record, field, packed);
    }
}

}  // namespace

TableFile::Replacement::~Replacement() {
    if (placed) return;
    std::error_code ignored;
    if (!tablePath.empty()) std::filesystem::remove(tablePath, ignored);
    if (!memoPath.empty()) std::filesystem::remove(memoPath, ignored);
}

Status TableFile::StartReplacement(const char* operation, const std::string& suffix,
                                   Replacement& next, std::string& message) {
    if (Status status = RequireExclusiveWrite(operation, message); status != AE_SUCCESS)
        return status;
    if (locked()) return AE_ENCRYPTION_NOT_ENABLED;
    next.suffix = suffix;
    next.tablePath = path_ + suffix;
    next.table = io::NativeFile::CreateNew(next.tablePath);
    if (!next.table.valid()) {
        next.tablePath.clear();
        message = "cannot create " + path_ + suffix + ": " + std::strerror(errno);
        return AE_PERMISSION_DENIED;
    }
    // The header as it stands (a Visual FoxPro table's backlink included); its count and date
    // are set when the records are in.
    std::string header(header_.headerLength, '\0');
    if (file_.ReadAt(0, header.data(), header.size()) != header.size() ||
        !next.table.WriteAt(0, header.data(), header.size())) {
        message = "cannot copy the header of " + path_;
        return AE_PERMISSION_DENIED;
    }
    return AE_SUCCESS;
}

Status TableFile::PutInPlace(Replacement& next, TableHeader header,
                             std::shared_ptr<const crypt::FileCipher> cipher,
                             std::string& message) {
    // Of the copied header only the date, the count and the encryption mark can change.
    const std::string prefix = SerializeHeaderPrefix(header);
    if (!next.table.WriteAt(1, prefix.data() + 1, 7) ||
        !next.table.WriteAt(crypt::kReservedOffset, prefix.data() + crypt::kReservedOffset,
                            header.reserved.size()) ||
        !next.table.Sync() || (next.memo.IsOpen() && !next.memo.Flush().empty())) {
        message = "cannot write " + next.tablePath;
        return AE_PERMISSION_DENIED;
    }
    // The new files are the old ones for whoever may use them.
    if (!next.table.TakePermissionsOf(file_.native()) ||
        (next.memo.IsOpen() && !next.memo.TakePermissionsOf(memo_))) {
        message = "cannot give " + next.tablePath + " the permissions of " + path_;
        return AE_PERMISSION_DENIED;
    }
    // Held from the moment it takes the table's name.
    if (!lock::FileLocks(next.table.handle()).LockOpenExclusive()) {
        message = "cannot lock " + next.tablePath;
        return AE_LOCK_FAILED;
    }
    auto swap = [&] {
        ReleaseView();
        file_.Swap(next.table);
        std::swap(memo_, next.memo);
        std::swap(header_, header);
        std::swap(cipher_, cipher);
        memo_.SetCipher(cipher_.get());
        DropCache();
    };
    swap();
    if (observer_ != nullptr) {
        if (Status status = observer_->BuildBeside(next.suffix, message); status != AE_SUCCESS) {
            swap();
            return status;
        }
    }
    // The old files are let go of before the new ones take their names: Windows does not
    // rename over a file that is open, even by ourselves.
    const bool hadMemo = next.memo.IsOpen();
    next.table.Close();
    next.memo = memo::MemoFile();
    std::error_code error;
    if (memo_.IsOpen()) std::filesystem::rename(next.memoPath, MemoPathFor(path_), error);
    if (!error) std::filesystem::rename(next.tablePath, path_, error);
    if (error) {
        message = "cannot put " + next.tablePath + " in place: " + error.message();
        if (observer_ != nullptr) observer_->DropBeside();
        // Back to the old files, which are still under their names.
        next.table = io::NativeFile::Open(path_, false);
        const std::string memoReopened =
            hadMemo ? next.memo.Open(MemoPathFor(path_), false) : std::string();
        swap();
        if (!file_.valid() || !memoReopened.empty() ||
            !lock::FileLocks(file_.handle()).LockOpenExclusive())
            message += "; " + path_ + " could not be opened again";
        return AE_PERMISSION_DENIED;
    }
    next.placed = true;
    headerDirty_ = false;
    blankWithoutKeys_ = 0;
    tailReserved_ = false;
    return observer_ != nullptr ? observer_->PlaceBeside(message) : AE_SUCCESS;
}

Status TableFile::CopyKeptMemos(Replacement& next,
                                std::unordered_map<std::uint32_t, std::uint32_t>& moved,
                                std::string& message) {
    const std::string memoPath = MemoPathFor(path_) + next.suffix;
    message = memo::MemoFile::Create(memoPath, memo_.blockSize());
    if (!message.empty()) return AE_PERMISSION_DENIED;
    next.memoPath = memoPath;
    message = next.memo.Open(memoPath, false);
    if (!message.empty()) return AE_PERMISSION_DENIED;
    // Memos are ciphered by their place in the file, so each is written anew at its new one.
    next.memo.SetCipher(cipher_.get());
    for (std::uint32_t recno = 1; recno <= header_.recordCount; ++recno) {
        const char* record = ReadRecord(recno);
        if (record == nullptr) {
            message = "cannot read " + path_;
            return AE_CORRUPT_TABLE;
        }
        if (record[0] == '*') continue;
        for (const Field& field : header_.fields) {
            if (!IsMemoType(field.type)) continue;
            if (!MemoBlockValid(record, field)) {
                message = path_ + ": record " + std::to_string(recno) + ": " + field.name +
                          ": memo pointer is not a block number";
                return AE_CORRUPT_TABLE;
            }
            const std::uint32_t block = ReadMemoBlock(record, field);
            if (block == 0 || moved.contains(block)) continue;
            memo::MemoBlock memo;
            if (std::string problem = memo_.Read(block, memo); !problem.empty()) {
                message = path_ + ": record " + std::to_string(recno) + ": " + problem;
                return AE_CORRUPT_TABLE;
            }
            std::uint32_t copy = 0;
            message = next.memo.Write(copy, memo.type, memo.data);
            if (!message.empty()) return AE_PERMISSION_DENIED;
            moved[block] = copy;
        }
    }
    return AE_SUCCESS;
}

Status TableFile::Pack(std::string& message) {
    Replacement next;
    if (Status status = StartReplacement("pack", ".pack", next, message); status != AE_SUCCESS)
        return status;
    std::unordered_map<std::uint32_t, std::uint32_t> moved;
    if (memo_.IsOpen()) {
        if (Status status = CopyKeptMemos(next, moved, message); status != AE_SUCCESS)
            return status;
    }
    const std::size_t length = header_.recordLength;
    std::vector<char> chunk(kChunkRecords * length);
    std::vector<char> kept;
    kept.reserve(chunk.size());
    std::uint32_t count = 0;
    for (std::uint32_t first = 1; first <= header_.recordCount; first += kChunkRecords) {
        const std::uint32_t records =
            std::min<std::uint32_t>(kChunkRecords, header_.recordCount - first + 1);
        if (file_.ReadAt(RecordOffset(first), chunk.data(), records * length) != records * length) {
            message = "cannot read " + path_;
            return AE_CORRUPT_TABLE;
        }
        kept.clear();
        for (std::uint32_t i = 0; i < records; ++i) {
            char* record = chunk.data() + i * length;
            if (record[0] == '*') continue;
            ++count;
            // A record that moves takes the keystream of its new place.
            ApplyCipher(first + i, record);
            if (memo_.IsOpen()) RepointMemos(record, header_.fields, moved);
            ApplyCipher(count, record);
            kept.insert(kept.end(), record, record + length);
        }
        const std::uint64_t at = RecordOffset(count + 1) - kept.size();
        if (!next.table.WriteAt(at, kept.data(), kept.size())) {
            message = "cannot write " + next.tablePath;
            return AE_PERMISSION_DENIED;
        }
    }
    if (!next.table.WriteAt(RecordOffset(count + 1), &kEndOfFile, 1)) {
        message = "cannot write " + next.tablePath;
        return AE_PERMISSION_DENIED;
    }
    TableHeader header = header_;
    header.recordCount = count;
    StampUpdateDate(header);
    return PutInPlace(next, std::move(header), cipher_, message);
}

Status TableFile::Recode(std::shared_ptr<const crypt::FileCipher> cipher,
                         const std::array<std::uint8_t, 16>& reserved, std::string& message) {
    Replacement next;
    if (Status status = StartReplacement("encryption", ".crypt", next, message);
        status != AE_SUCCESS)
        return status;
    const std::size_t length = header_.recordLength;
    std::vector<char> chunk(kChunkRecords * length);
    for (std::uint32_t first = 1; first <= header_.recordCount; first += kChunkRecords) {
        const std::uint32_t count =
            std::min<std::uint32_t>(kChunkRecords, header_.recordCount - first + 1);
        const std::size_t bytes = count * length;
        if (file_.ReadAt(RecordOffset(first), chunk.data(), bytes) != bytes) {
            message = "cannot read " + path_;
            return AE_CORRUPT_TABLE;
        }
        for (std::uint32_t i = 0; i < count; ++i) {
            char* record = chunk.data() + std::size_t{i} * length;
            crypt::Recode(cipher_.get(), cipher.get(), crypt::CipherStream::Records,
                          RecordOffset(first + i) + 1, record + 1, length - 1);
        }
        if (!next.table.WriteAt(RecordOffset(first), chunk.data(), bytes)) {
            message = "cannot write " + next.tablePath;
            return AE_PERMISSION_DENIED;
        }
    }
    // Whatever follows the records (the end-of-file mark) goes over as it is.
    const std::uint64_t dataEnd = RecordOffset(header_.recordCount + 1);
    std::string tail(file_.Size() - std::min(file_.Size(), dataEnd), '\0');
    if (file_.ReadAt(dataEnd, tail.data(), tail.size()) != tail.size() ||
        !next.table.WriteAt(dataEnd, tail.data(), tail.size())) {
        message = "cannot write " + next.tablePath;
        return AE_PERMISSION_DENIED;
    }
    if (memo_.IsOpen()) {
        const std::string memoPath = MemoPathFor(path_) + next.suffix;
        message = memo_.WriteRecodedCopy(memoPath, cipher_.get(), cipher.get());
        if (message.empty()) {
            next.memoPath = memoPath;
            message = next.memo.Open(memoPath, false);
        }
        if (!message.empty()) return AE_PERMISSION_DENIED;
    }
    TableHeader header = header_;
    header.reserved = reserved;
    return PutInPlace(next, std::move(header), std::move(cipher), message);
}

}  // namespace fnrk::engine::dbf

#pragma once

// One open table file (and its memo file): header, record reads through a small read-ahead
// window, record writes, appends that keep the shared record count exact, pack and zap.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/crypt/file_cipher.hpp"
#include "engine/dbf/table_header.hpp"
#include "engine/dbf/upkeep_observer.hpp"
#include "engine/errors.hpp"
#include "engine/io/gathering_file.hpp"
#include "engine/io/mapped_view.hpp"
#include "engine/lock/file_locks.hpp"
#include "engine/memo/memo_file.hpp"

namespace fnrk::engine::dbf {

struct OpenRequest {
    bool exclusive = false;
    bool readOnly = false;
};

class TableFile {
  public:
    // Writes an empty table (and an empty memo file when a field needs one). An existing file is
    // replaced. AE_SUCCESS or a status with `message` set.
    [[nodiscard]] static Status Create(const std::string& path, std::vector<Field> fields,
                                       std::uint16_t memoBlockSize, std::string& message);

    TableFile() = default;
    ~TableFile();
    TableFile(const TableFile&) = delete;
    TableFile& operator=(const TableFile&) = delete;

    [[nodiscard]] Status Open(const std::string& path, OpenRequest request, std::string& message);

    const TableHeader& header() const { return header_; }
    const std::string& path() const { return path_; }
    bool exclusive() const { return exclusive_; }
    bool readOnly() const { return readOnly_; }
    lock::FileLocks locks() const { return lock::FileLocks(file_.handle()); }
    memo::MemoFile* memo() { return memo_.IsOpen() ? &memo_ : nullptr; }

    // --- encryption (see crypt/file_cipher.hpp). An encrypted table without its cipher is
    // locked: it reads no record and refuses every write.
    bool encrypted() const;
    bool locked() const { return encrypted() && cipher_ == nullptr; }
    const crypt::FileCipher* cipher() const { return cipher_.get(); }
    // Index files hold the cipher by address: whoever replaces it keeps this copy alive until
    // they are written anew.
    std::shared_ptr<const crypt::FileCipher> sharedCipher() const { return cipher_; }
    // Gives an encrypted table its cipher (for this handle only).
    void SetCipher(std::shared_ptr<const crypt::FileCipher> cipher);
    // Exclusive use only: rewrites every record and memo under `cipher` (null: plain) and
    // stores `reserved` as the header's reserved bytes, which carry the encryption mark; written
    // beside the old files as a pack is.
    [[nodiscard]] Status Recode(std::shared_ptr<const crypt::FileCipher> cipher,
                                const std::array<std::uint8_t, 16>& reserved, std::string& message);

    std::uint32_t recordCount() const { return header_.recordCount; }
    // Re-reads the record count from the file (other handles may have appended).
    void RefreshRecordCount();

    // The bytes of record `record` (1..recordCount), valid until the next call on this object.
    // nullptr when the record cannot be read.
    const char* ReadRecord(std::uint32_t record) {
        // Alone on a plain file, a record the mapping holds and no write keeps back is read
        // where it lies (checked here, inline: a walk reads a record every step).
        if (exclusive_ && cipher_ == nullptr && record >= 1 && record <= header_.recordCount) {
            const std::uint64_t offset = RecordOffset(record);
            if (offset + header_.recordLength <= view_.size() &&
                !file_.Keeps(offset, header_.recordLength) && !locked())
                return view_.data() + offset;
        }
        return ReadRecordElsewhere(record);
    }
    // Hints that record `record` will be read soon: where it is mapped, the processor starts
    // bringing it in while the caller goes on.
    void Prefetch(std::uint32_t record) const {
        if (record < 1 || !exclusive_ || cipher_ != nullptr) return;
        const std::uint64_t offset = RecordOffset(record);
        if (offset + header_.recordLength > view_.size()) return;
        io::PrefetchForRead(view_.data() + offset);
        io::PrefetchForRead(view_.data() + offset + header_.recordLength - 1);
    }
    // How many records one read of a scan brings in (0: as many as fit in 64 KiB).
    void SetReadAhead(std::uint32_t records);
    // Forgets cached records, so the next read comes from the file.
    void DropCache();
    // Reads record `record` from the file again when a copy of it is cached (another handle
    // may have written it); the rest of the cache stays.
    void RefreshRecord(std::uint32_t record);

    // Writes a whole record over record `record`; `oldRecord` is what it held before (for the
    // upkeep hook).
    [[nodiscard]] Status WriteRecord(std::uint32_t record, std::string_view oldRecord,
                                     std::string_view bytes);
    // Appends a record and returns its number.
    [[nodiscard]] Status AppendRecord(std::string_view bytes, std::uint32_t& record);
    // Shared use: appends a blank record under the header lock, so that other handles count it,
    // without telling the observer; its first WriteRecord is announced as BlankFilled. Its keys
    // are then written once, with the record's contents, instead of blank keys made and removed.
    [[nodiscard]] Status AppendBlank(std::uint32_t& record);
    // Exclusive use only: numbers a new record without writing it; the first WriteRecord of it
    // writes it (and the end-of-file mark), announced to the observer as an append.
    [[nodiscard]] Status ReserveRecord(std::uint32_t& record);

    // Exclusive use only: drops the deleted records, and from the memo file every memo that no
    // kept record points to. The new files replace the old ones only once all are complete.
    [[nodiscard]] Status Pack(std::string& message);
    [[nodiscard]] Status Zap(std::string& message);
    // Writes a pending record count and pushes the file to disk.
    [[nodiscard]] Status Flush();

    void SetObserver(UpkeepObserver* observer) { observer_ = observer; }
    const std::string& BlankRecord() const { return blank_; }

  private:
    std::uint64_t RecordOffset(std::uint32_t record) const {
        return header_.headerLength + std::uint64_t{record - 1} * header_.recordLength;
    }
    bool WriteHeaderPrefix();
    // Writes a new last record (under the header lock when shared) without telling the observer.
    [[nodiscard]] Status WriteAppended(std::string_view bytes, std::uint32_t& record);
    [[nodiscard]] Status RequireExclusiveWrite(const char* operation, std::string& message) const;
    // Makes `count` the number of records: end-of-file mark, file cut after it, header updated.
    [[nodiscard]] Status EndAfter(std::uint32_t count, std::string& message);
    // New files written beside the table's own (name + suffix) that take their names only once
    // all are complete; removed when they never do.
    struct Replacement {
        Replacement() = default;
        Replacement(const Replacement&) = delete;
        Replacement& operator=(const Replacement&) = delete;
        ~Replacement();
        std::string suffix;
        std::string tablePath;
        std::string memoPath;
        io::NativeFile table;
        memo::MemoFile memo;
        bool placed = false;
    };
    // Exclusive use only: creates the new table file with this one's header.
    [[nodiscard]] Status StartReplacement(const char* operation, const std::string& suffix,
                                          Replacement& next, std::string& message);
    // The new files, complete but for `header`'s date, count and encryption mark, become the
    // table's (with `cipher`): the observer builds the index files beside theirs, then all take
    // their names. On failure the table stays on its old files.
    [[nodiscard]] Status PutInPlace(Replacement& next, TableHeader header,
                                    std::shared_ptr<const crypt::FileCipher> cipher,
                                    std::string& message);
    // Copies the memos of the records a pack keeps into the new memo file; `moved` maps each of
    // their old blocks to its new one.
    [[nodiscard]] Status CopyKeptMemos(Replacement& next,
                                       std::unordered_map<std::uint32_t, std::uint32_t>& moved,
                                       std::string& message);
    static void StampUpdateDate(TableHeader& header);
    // ReadRecord's whole rule: the mapping (made or grown here), the recent blocks, the file.
    const char* ReadRecordElsewhere(std::uint32_t record);
    // Record `record` read straight from the file's mapping, or nullptr where the read-ahead
    // window and the recent blocks serve it.
    const char* MappedRecord(std::uint32_t record);
    // Lets go of the mapping (before the file is cut, replaced or renamed over).
    void ReleaseView();
    // XORs the bytes of record `record` after its deletion flag with their keystream, which
    // encrypts and decrypts alike; nothing for a plain table.
    void ApplyCipher(std::uint32_t record, char* bytes) const;

    std::string path_;
    // Exclusive and writable, its writes are gathered: appends go out in large pieces.
    io::GatheringFile file_;
    memo::MemoFile memo_;
    TableHeader header_;
    std::string blank_;  // a new record of this table
    bool exclusive_ = false;
    bool readOnly_ = false;
    bool headerDirty_ = false;
    bool tailReserved_ = false;           // the last record is numbered but not yet in the file
    std::uint32_t blankWithoutKeys_ = 0;  // appended by AppendBlank and not yet written since
    UpkeepObserver* observer_ = nullptr;
    std::shared_ptr<const crypt::FileCipher> cipher_;

    // Records read from the file (decrypted): the read-ahead window first, then the blocks read
    // by the last jumps.
    struct CachedRun {
        std::uint32_t first = 0;
        std::uint32_t count = 0;
        std::vector<char> bytes;
        bool Holds(std::uint32_t record) const { return record >= first && record - first < count; }
    };
    std::vector<CachedRun> runs_;
    std::size_t lastRun_ = 0;    // the run read last: a read next to it is a scan
    std::size_t nextBlock_ = 1;  // the recent block the next jump reads into
    // Alone on a plain table, records are read through a mapping of the file: scattered reads
    // (a walk in index order) then cost no call each.
    io::MappedView view_;
    bool viewRefused_ = false;  // the host would not map the file: reads go through the runs
};

// The memo file name beside a table: same stem, ".fpt" in the letter case of the table's
// extension.
std::string MemoPathFor(const std::string& tablePath);

}  // namespace fnrk::engine::dbf

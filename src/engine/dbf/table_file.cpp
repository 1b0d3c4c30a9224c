#include "engine/dbf/table_file.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>

#include "engine/crypt/encryption_mark.hpp"
#include "engine/dbf/field_codec.hpp"
#include "engine/io/byte_order.hpp"
#include "engine/lock/header_guard.hpp"
#include "platform/local_time.hpp"

namespace fnrk::engine::dbf {

namespace {

constexpr std::size_t kCacheBytes = 64 * 1024;
// A jump reads the records of one small block (one record when it is larger), kept among a few
// recent ones: reads in index order land on records far apart, and rarely on the same page.
constexpr std::size_t kBlockBytes = 512;
constexpr std::size_t kRecentBlocks = 16;
// A 32-bit host keeps its address space: records past this are read, not mapped.
constexpr std::uint64_t kViewLimit = sizeof(void*) == 4 ? 256u << 20 : std::uint64_t{1} << 44;

Status OpenFailure(const std::string& path, std::string& message) {
    const int error = errno;
    message = "cannot open " + path + ": " +
              (error == EINVAL ? std::string("not a regular file") : std::strerror(error));
    if (error == ENOENT) return AE_FILE_NOT_FOUND;
    if (error == EACCES || error == EPERM || error == EROFS) return AE_PERMISSION_DENIED;
    return AE_INVALID_PATH;
}

}  // namespace

std::string MemoPathFor(const std::string& tablePath) {
    const std::size_t dot = tablePath.find_last_of('.');
    const std::size_t slash = tablePath.find_last_of('/');
    const bool hasExtension =
        dot != std::string::npos && (slash == std::string::npos || dot > slash);
    const std::string stem = hasExtension ? tablePath.substr(0, dot) : tablePath;
    const bool upper = hasExtension && dot + 1 < tablePath.size() &&
                       std::isupper(static_cast<unsigned char>(tablePath[dot + 1]));
    return stem + (upper ? ".FPT" : ".fpt");
}

Status TableFile::Create(const std::string& path, std::vector<Field> fields,
                         std::uint16_t memoBlockSize, std::string& message) {
    TableHeader header;
    header.fields = std::move(fields);
    LayOutNewTable(header);
    std::uint32_t total = 1;
    for (const Field& field : header.fields) total += field.length;
    if (total > 65500) {
        message = "record too long";
        return AE_INVALID_RECORD_LENGTH;
    }
    std::time_t now = std::time(nullptr);
    const std::tm local = platform::LocalTime(now);
    header.updateYear = static_cast<std::uint8_t>(local.tm_year);
    header.updateMonth = static_cast<std::uint8_t>(local.tm_mon + 1);
    header.updateDay = static_cast<std::uint8_t>(local.tm_mday);

    io::NativeFile file = io::NativeFile::CreateNew(path);
    if (!file.valid()) return OpenFailure(path, message);
    const std::string bytes = SerializeTableHeader(header) + kEndOfFile;
    if (!file.WriteAt(0, bytes.data(), bytes.size())) {
        message = "cannot write " + path;
        return AE_PERMISSION_DENIED;
    }
    if (header.HasMemoFile()) {
        message = memo::MemoFile::Create(MemoPathFor(path), memoBlockSize);
        if (!message.empty()) return AE_PERMISSION_DENIED;
    }
    return AE_SUCCESS;
}

TableFile::~TableFile() {
    // A destructor cannot answer; Flush is the place to hear a failed write.
    IgnoreStatus(Flush());
}

Status TableFile::Open(const std::string& path, OpenRequest request, std::string& message) {
    // An exclusive open needs a write lock, which a read-only descriptor cannot take.
    io::NativeFile file = io::NativeFile::Open(path, request.readOnly && !request.exclusive);
    if (!file.valid()) return OpenFailure(path, message);
    lock::FileLocks locks(file.handle());
    if (!(request.exclusive ? locks.LockOpenExclusive() : locks.LockOpenShared())) {
        message = request.exclusive ? path + " is open elsewhere"
                                    : path + " is open exclusively elsewhere";
        return AE_LOCK_FAILED;
    }
    std::string bytes(kHeaderPrefixSize, '\0');
    bytes.resize(file.ReadAt(0, bytes.data(), bytes.size()));
    const std::size_t declared = DeclaredHeaderLength(bytes);
    if (bytes.size() == kHeaderPrefixSize && declared > kHeaderPrefixSize) {
        bytes.resize(declared);
        bytes.resize(kHeaderPrefixSize + file.ReadAt(kHeaderPrefixSize,
                                                     bytes.data() + kHeaderPrefixSize,
                                                     declared - kHeaderPrefixSize));
    }
    // The size is taken after the header: appenders extend the file before they raise the
    // count, so a count read first never points past a size read later.
    const std::uint64_t size = file.Size();
    TableHeader header;
    if (std::string problem = ParseTableHeader(bytes, size, header); !problem.empty()) {
        message = path + ": " + problem;
        return AE_CORRUPT_TABLE;
    }
    if (header.HasMemoFile()) {
        std::string problem = memo_.Open(MemoPathFor(path), request.readOnly);
        if (!problem.empty()) {
            message = path + ": " + problem;
            return memo_.IsOpen() ? AE_CORRUPT_TABLE : AE_NO_MEMO_FILE;
        }
    }
    // An append killed between writing its record and counting it leaves bytes past the count.
    // Shared, they may be an append in flight on another station and stay (the next append
    // writes over them); alone on the table for writing, nobody can be appending: they go.
    const std::uint64_t dataEnd = std::uint64_t{header.headerLength} +
                                  std::uint64_t{header.recordCount} * header.recordLength;
    if (request.exclusive && !request.readOnly && size > dataEnd + 1 &&
        (!file.WriteAt(dataEnd, &kEndOfFile, 1) || !file.Truncate(dataEnd + 1))) {
        message = "cannot cut the uncounted bytes at the end of " + path;
        return AE_PERMISSION_DENIED;
    }
    path_ = path;
    ReleaseView();
    file_.Reset(std::move(file));
    file_.Gather(request.exclusive && !request.readOnly);
    header_ = std::move(header);
    blank_ = dbf::BlankRecord(header_.fields, header_.recordLength);
    exclusive_ = request.exclusive;
    readOnly_ = request.readOnly;
    SetReadAhead(0);
    return AE_SUCCESS;
}

void TableFile::SetReadAhead(std::uint32_t records) {
    const std::size_t length = header_.recordLength;
    const std::size_t window =
        records != 0 ? records : std::max<std::size_t>(1, kCacheBytes / length);
    const std::size_t block = std::max<std::size_t>(1, kBlockBytes / length);
    runs_.assign(1 + kRecentBlocks, {});
    runs_[0].bytes.assign(window * length, '\0');
    for (std::size_t i = 1; i < runs_.size(); ++i) runs_[i].bytes.assign(block * length, '\0');
    lastRun_ = 0;
    nextBlock_ = 1;
}

void TableFile::DropCache() {
    for (CachedRun& run : runs_) run.count = 0;
}

void TableFile::RefreshRecordCount() {
    if (exclusive_) return;  // nobody else can append
    char bytes[4];
    if (file_.ReadAt(4, bytes, 4) == 4) header_.recordCount = io::ReadLe32(bytes);
}

bool TableFile::encrypted() const {
    return crypt::IsEncrypted(header_.reserved);
}

void TableFile::SetCipher(std::shared_ptr<const crypt::FileCipher> cipher) {
    cipher_ = std::move(cipher);
    memo_.SetCipher(cipher_.get());
    DropCache();
}

void TableFile::ApplyCipher(std::uint32_t record, char* bytes) const {
    if (cipher_ != nullptr)
        cipher_->Apply(crypt::CipherStream::Records, RecordOffset(record) + 1, bytes + 1,
                       header_.recordLength - 1u);
}

const char* TableFile::MappedRecord(std::uint32_t record) {
    if (!exclusive_ || cipher_ != nullptr || viewRefused_) return nullptr;
    // Writes still gathered in memory are not in the mapping yet.
    if (file_.Keeps(RecordOffset(record), header_.recordLength) && !file_.WriteGathered())
        return nullptr;
    const std::uint64_t end = RecordOffset(record) + header_.recordLength;
    if (end <= view_.size()) return view_.data() + RecordOffset(record);
    // Records appended since the file was mapped are read back rarely: the file is mapped
    // again only once it has grown by an eighth. Alone on the file, its length is known: the
    // records written so far (a reserved last one is not yet in the file).
    const std::uint32_t written = header_.recordCount - (tailReserved_ ? 1 : 0);
    const std::uint64_t known = RecordOffset(written + 1);
    if (end > known || (view_.size() > 0 && known < view_.size() + view_.size() / 8))
        return nullptr;
    // Never past the file's real end: reading a mapped page beyond it faults.
    const std::uint64_t size = std::min({known, file_.Size(), kViewLimit});
    if (end > size) return nullptr;
    if (!view_.Map(file_.handle(), size)) {
        viewRefused_ = true;
        return nullptr;
    }
    return view_.data() + RecordOffset(record);
}

void TableFile::ReleaseView() {
    view_.Release();
    viewRefused_ = false;
}

const char* TableFile::ReadRecordElsewhere(std::uint32_t record) {
    if (record < 1 || record > header_.recordCount || locked()) return nullptr;
    if (const char* mapped = MappedRecord(record)) return mapped;
    const std::size_t length = header_.recordLength;
    for (const CachedRun& run : runs_)
        if (run.Holds(record)) return run.bytes.data() + std::size_t{record - run.first} * length;
    // A scan (the record next to the last read) reads a whole window ahead, below the record
    // when going backwards; a jump reads the record's block into the oldest recent one.
    const CachedRun& last = runs_[lastRun_];
    const bool forward = last.count > 0 && record == last.first + last.count;
    const bool backward = last.count > 0 && record + 1 == last.first;
    std::size_t target = 0;
    if (!forward && !backward) {
        target = nextBlock_;
        nextBlock_ = nextBlock_ + 1 < runs_.size() ? nextBlock_ + 1 : 1;
    }
    CachedRun& run = runs_[target];
    const auto window = static_cast<std::uint32_t>(run.bytes.size() / length);
    std::uint32_t first = record;
    if (backward) first = record > window ? record - window + 1 : 1;
    if (target != 0) first = record - (record - 1) % window;
    const std::uint32_t count = std::min(window, header_.recordCount - first + 1);
    const std::size_t got = file_.ReadAt(RecordOffset(first), run.bytes.data(), count * length);
    run.first = first;
    run.count = static_cast<std::uint32_t>(got / length);
    lastRun_ = target;
    for (std::uint32_t i = 0; cipher_ != nullptr && i < run.count; ++i)
        ApplyCipher(first + i, run.bytes.data() + std::size_t{i} * length);
    if (!run.Holds(record)) return nullptr;
    return run.bytes.data() + std::size_t{record - first} * length;
}

void TableFile::RefreshRecord(std::uint32_t record) {
    const std::size_t length = header_.recordLength;
    for (CachedRun& run : runs_) {
        if (!run.Holds(record)) continue;
        char* cached = run.bytes.data() + std::size_t{record - run.first} * length;
        if (file_.ReadAt(RecordOffset(record), cached, length) != length) {
            DropCache();
            return;
        }
        ApplyCipher(record, cached);
    }
}

Status TableFile::WriteRecord(std::uint32_t record, std::string_view oldRecord,
                              std::string_view bytes) {
    if (readOnly_) return AE_TABLE_READONLY;
    if (locked()) return AE_ENCRYPTION_NOT_ENABLED;
    if (record < 1 || record > header_.recordCount || bytes.size() != header_.recordLength)
        return AE_INVALID_RECORD_NUMBER;
    std::string sealed;
    std::string_view stored = bytes;
    if (cipher_ != nullptr) {
        sealed.assign(bytes);
        ApplyCipher(record, sealed.data());
        stored = sealed;
    }
    RecordChange change =
        record == blankWithoutKeys_ ? RecordChange::BlankFilled : RecordChange::Rewritten;
    if (tailReserved_ && record == header_.recordCount) {
        change = RecordChange::Appended;
        std::string withEnd(stored);
        withEnd += kEndOfFile;
        if (!file_.WriteAt(RecordOffset(record), withEnd.data(), withEnd.size()))
            return AE_PERMISSION_DENIED;
        tailReserved_ = false;
        oldRecord = {};
    } else if (!file_.WriteAt(RecordOffset(record), stored.data(), stored.size())) {
        return AE_PERMISSION_DENIED;
    }
    for (CachedRun& run : runs_) {
        if (run.Holds(record))
            std::memcpy(run.bytes.data() + std::size_t{record - run.first} * header_.recordLength,
                        bytes.data(), bytes.size());
    }
    headerDirty_ = true;
    if (change == RecordChange::BlankFilled) blankWithoutKeys_ = 0;
    if (observer_ != nullptr) observer_->RecordWritten(record, change, oldRecord, bytes);
    return AE_SUCCESS;
}

Status TableFile::ReserveRecord(std::uint32_t& record) {
    if (readOnly_) return AE_TABLE_READONLY;
    if (!exclusive_ || tailReserved_) return AE_TABLE_NOT_EXCLUSIVE;
    if (locked()) return AE_ENCRYPTION_NOT_ENABLED;
    record = ++header_.recordCount;
    tailReserved_ = true;
    headerDirty_ = true;
    return AE_SUCCESS;
}

Status TableFile::AppendRecord(std::string_view bytes, std::uint32_t& record) {
    if (Status status = WriteAppended(bytes, record); status != AE_SUCCESS) return status;
    if (observer_ != nullptr) observer_->RecordWritten(record, RecordChange::Appended, {}, bytes);
    return AE_SUCCESS;
}

Status TableFile::AppendBlank(std::uint32_t& record) {
    if (Status status = WriteAppended(BlankRecord(), record); status != AE_SUCCESS) return status;
    blankWithoutKeys_ = record;
    if (observer_ != nullptr) observer_->BlankAppended(record);
    return AE_SUCCESS;
}

Status TableFile::WriteAppended(std::string_view bytes, std::uint32_t& record) {
    if (readOnly_) return AE_TABLE_READONLY;
    if (bytes.size() != header_.recordLength) return AE_INVALID_RECORD_LENGTH;
    if (locked()) return AE_ENCRYPTION_NOT_ENABLED;
    std::string withEnd(bytes);
    withEnd += kEndOfFile;
    if (exclusive_) {
        record = header_.recordCount + 1;
        ApplyCipher(record, withEnd.data());
        if (!file_.WriteAt(RecordOffset(record), withEnd.data(), withEnd.size()))
            return AE_PERMISSION_DENIED;
        header_.recordCount = record;
        headerDirty_ = true;
        return AE_SUCCESS;
    }
    lock::HeaderGuard guard(locks());
    if (!guard.acquired()) return AE_LOCK_FAILED;
    RefreshRecordCount();
    record = header_.recordCount + 1;
    ApplyCipher(record, withEnd.data());
    if (!file_.WriteAt(RecordOffset(record), withEnd.data(), withEnd.size()))
        return AE_PERMISSION_DENIED;
    header_.recordCount = record;
    StampUpdateDate(header_);
    return WriteHeaderPrefix() ? AE_SUCCESS : AE_PERMISSION_DENIED;
}

void TableFile::StampUpdateDate(TableHeader& header) {
    std::time_t now = std::time(nullptr);
    const std::tm local = platform::LocalTime(now);
    header.updateYear = static_cast<std::uint8_t>(local.tm_year);
    header.updateMonth = static_cast<std::uint8_t>(local.tm_mon + 1);
    header.updateDay = static_cast<std::uint8_t>(local.tm_mday);
}

// Bytes 1 to 7: update date and record count. The rest of the header is left as it is.
bool TableFile::WriteHeaderPrefix() {
    const std::string prefix = SerializeHeaderPrefix(header_);
    return file_.WriteAt(1, prefix.data() + 1, 7);
}

Status TableFile::Flush() {
    if (!file_.valid() || readOnly_) return AE_SUCCESS;
    // The records and their keys first: a count on disk never names a record that is not there.
    if (!file_.WriteGathered()) return AE_PERMISSION_DENIED;
    if (observer_ != nullptr) {
        if (Status status = observer_->WritePending(); status != AE_SUCCESS) return status;
    }
    if (headerDirty_) {
        StampUpdateDate(header_);
        // Shared handles only refresh the date: the count belongs to whoever appended last.
        const bool written = exclusive_ ? WriteHeaderPrefix() : [this] {
            const std::string prefix = SerializeHeaderPrefix(header_);
            return file_.WriteAt(1, prefix.data() + 1, 3);
        }();
        if (!written || !file_.WriteGathered()) return AE_PERMISSION_DENIED;
        headerDirty_ = false;
    }
    return AE_SUCCESS;
}

Status TableFile::RequireExclusiveWrite(const char* operation, std::string& message) const {
    if (readOnly_) return AE_TABLE_READONLY;
    if (exclusive_) return AE_SUCCESS;
    message = std::string(operation) + " needs the table open exclusively";
    return AE_TABLE_NOT_EXCLUSIVE;
}

Status TableFile::EndAfter(std::uint32_t count, std::string& message) {
    header_.recordCount = count;
    blankWithoutKeys_ = 0;  // record numbers change; the indexes are rebuilt
    const char end = kEndOfFile;
    const std::uint64_t endOffset = RecordOffset(count + 1);
    ReleaseView();
    if (!file_.WriteAt(endOffset, &end, 1) || !file_.Truncate(endOffset + 1)) {
        message = "cannot shorten " + path_;
        return AE_PERMISSION_DENIED;
    }
    headerDirty_ = true;
    DropCache();
    return Flush();
}

Status TableFile::Zap(std::string& message) {
    if (Status status = RequireExclusiveWrite("zap", message); status != AE_SUCCESS) return status;
    if (Status status = EndAfter(0, message); status != AE_SUCCESS) return status;
    if (memo_.IsOpen()) {
        message = memo_.Clear();
        if (!message.empty()) return AE_PERMISSION_DENIED;
    }
    if (observer_ != nullptr) observer_->TableZapped();
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::dbf

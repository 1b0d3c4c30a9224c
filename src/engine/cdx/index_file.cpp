#include "engine/cdx/index_file.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>
#include <vector>

#include "engine/cdx/index_format.hpp"
#include "engine/cdx/tag_header.hpp"
#include "engine/io/byte_order.hpp"
#include "engine/lock/file_locks.hpp"

namespace fnrk::engine::cdx {

namespace {

[[noreturn]] void ThrowErrno(const std::string& what, const std::filesystem::path& path) {
    throw std::system_error(errno, std::generic_category(), what + " " + path.string());
}

}  // namespace

IndexFile::IndexFile(std::filesystem::path path, io::NativeFile file, IndexOpenMode mode)
    : path_(std::move(path)),
      file_(std::move(file)),
      mode_(mode),
      size_(file_.Size()),
      diskSize_(size_) {
    if (size_ >= kHeaderSize) {
        char bytes[4];
        Read(kChangeCounterOffset, bytes, 4);
        changeCounter_ = io::ReadLe32(bytes);
    }
}

IndexFile::~IndexFile() {
    if (pending_.empty() || !writeFailure_.empty()) return;
    try {
        Flush();
    } catch (const std::exception&) {
        // A destructor cannot report; whoever needed to know called WritePending.
    }
}

std::unique_ptr<IndexFile> IndexFile::Create(const std::filesystem::path& path,
                                             const crypt::FileCipher* cipher) {
    io::NativeFile file = io::NativeFile::CreateNew(path.string());
    if (!file.valid()) ThrowErrno("cannot create", path);
    return std::unique_ptr<IndexFile>(
        new IndexFile(path, std::move(file), IndexOpenMode{.cipher = cipher}));
}

std::unique_ptr<IndexFile> IndexFile::Open(const std::filesystem::path& path, IndexOpenMode mode) {
    io::NativeFile file = io::NativeFile::Open(path.string(), mode.readOnly);
    if (!file.valid()) ThrowErrno("cannot open", path);
    return std::unique_ptr<IndexFile>(new IndexFile(path, std::move(file), mode));
}

void IndexFile::Read(std::uint64_t offset, char* out, std::size_t length) const {
    if (offset + length > size_)
        throw IndexCorrupt("index: offset " + std::to_string(offset) + " past the end of " +
                           path_.filename().string());
    if (pending_.empty()) return ReadFromDisk(offset, out, length);
    // Pages not yet written lie past the end on disk or over older bytes there.
    const std::size_t onDisk =
        offset >= diskSize_ ? 0 : std::min<std::uint64_t>(length, diskSize_ - offset);
    if (onDisk > 0) ReadFromDisk(offset, out, onDisk);
    std::memset(out + onDisk, 0, length - onDisk);
    const std::uint64_t end = offset + length;
    for (auto it = pending_.lower_bound(offset - offset % kNodeSize);
         it != pending_.end() && it->first < end; ++it) {
        const std::uint64_t from = std::max(offset, it->first);
        const std::uint64_t to = std::min(end, it->first + kNodeSize);
        std::memcpy(out + (from - offset), it->second.data() + (from - it->first), to - from);
    }
}

void IndexFile::ReadForWalk(std::uint64_t offset, char* out, bool forward) const {
    if (offset + kNodeSize <= diskSize_ && !InWalkWindow(offset, kNodeSize))
        FillWalkWindow(offset, forward);
    Read(offset, out, kNodeSize);
}

void IndexFile::FillWalkWindow(std::uint64_t offset, bool forward) const {
    const std::uint64_t below = std::min<std::uint64_t>(offset, kWalkWindow - kNodeSize);
    const std::uint64_t start = forward ? offset : offset - below;
    const std::size_t length = std::min<std::uint64_t>(kWalkWindow, diskSize_ - start);
    window_.resize(kWalkWindow);
    windowLength_ = 0;
    // A short read leaves the window empty: the node's own read then reports it.
    if (file_.ReadAt(start, window_.data(), length) != length) return;
    if (mode_.cipher != nullptr) ApplyCipher(start, window_.data(), length);
    windowStart_ = start;
    windowLength_ = length;
}

void IndexFile::ReadFromDisk(std::uint64_t offset, char* out, std::size_t length) const {
    if (InWalkWindow(offset, length)) {
        std::memcpy(out, window_.data() + (offset - windowStart_), length);
        return;
    }
    if (file_.ReadAt(offset, out, length) != length)
        throw IndexCorrupt("index: cannot read " + path_.filename().string());
    if (mode_.cipher != nullptr) ApplyCipher(offset, out, length);
}

void IndexFile::ApplyCipher(std::uint64_t offset, char* bytes, std::size_t length) const {
    if (offset + length <= kHeaderSize) return;
    const std::size_t skip = offset < kHeaderSize ? kHeaderSize - offset : 0;
    mode_.cipher->Apply(crypt::CipherStream::Index, offset + skip, bytes + skip, length - skip);
}

void IndexFile::Write(std::uint64_t offset, const char* bytes, std::size_t length) {
    if (mode_.readOnly) throw std::system_error(EROFS, std::generic_category(), path_.string());
    // Outside a guard a write goes straight out, unless kept pages must stay before it.
    if (lockDepth_ == 0 && pending_.empty()) return WriteToDisk(offset, bytes, length);
    changed_ = true;
    const std::uint64_t end = offset + length;
    for (std::uint64_t page = offset - offset % kNodeSize; page < end; page += kNodeSize) {
        auto [it, added] = pending_.try_emplace(page);
        const std::uint64_t from = std::max(offset, page);
        const std::uint64_t to = std::min(end, page + kNodeSize);
        if (added && (from != page || to != page + kNodeSize)) {
            // A partly written page starts from what the file holds.
            it->second.fill(0);
            if (page < diskSize_)
                ReadFromDisk(page, it->second.data(),
                             std::min<std::uint64_t>(kNodeSize, diskSize_ - page));
        }
        std::memcpy(it->second.data() + (from - page), bytes + (from - offset), to - from);
    }
    if (end > size_) size_ = end;
}

void IndexFile::Flush() {
    if (pending_.empty()) return;  // every read guard ends here
    // Consecutive pages go out in one write each. New pages at the end of the file go first:
    // a process killed between the writes then never leaves a page pointing past the end of
    // the file (a tag header naming a root not yet written), which would keep the file from
    // opening at all.
    const std::uint64_t end = diskSize_;
    std::vector<char> run;
    std::uint64_t runStart = 0;
    const auto writeRun = [&] {
        if (!run.empty()) WriteToDisk(runStart, run.data(), run.size());
        run.clear();
    };
    for (const bool appended : {true, false}) {
        for (const auto& [page, bytes] : pending_) {
            if ((page >= end) != appended) continue;
            if (run.empty() || page != runStart + run.size() || run.size() >= kFlushRun) {
                writeRun();
                runStart = page;
            }
            run.insert(run.end(), bytes.begin(), bytes.end());
        }
        writeRun();
    }
    pending_.clear();
}

void IndexFile::WritePending() {
    if (!writeFailure_.empty())
        throw std::system_error(EIO, std::generic_category(), writeFailure_);
    try {
        Flush();
    } catch (const std::exception& error) {
        pending_.clear();
        writeFailure_ = path_.string() + ": an update was not written (" + error.what() + ")";
        throw;
    }
}

void IndexFile::WriteToDisk(std::uint64_t offset, const char* bytes, std::size_t length) {
    std::string sealed;
    if (mode_.cipher != nullptr && offset + length > kHeaderSize) {
        sealed.assign(bytes, length);
        ApplyCipher(offset, sealed.data(), length);
        bytes = sealed.data();
    }
    // The window would go stale; a write that fails may have written part of its bytes.
    if (offset < windowStart_ + windowLength_ && offset + length > windowStart_) windowLength_ = 0;
    if (!file_.WriteAt(offset, bytes, length)) ThrowErrno("cannot write", path_);
    if (offset + length > diskSize_) diskSize_ = offset + length;
    if (diskSize_ > size_) size_ = diskSize_;
}

std::uint32_t IndexFile::AllocateNode() {
    char head[4];
    Read(kFreeListOffset, head, 4);
    const std::uint32_t free = io::ReadLe32(head);
    if (free != 0 && free != kNoNode) {
        if (free % kNodeSize != 0 || free < kHeaderSize || free + kNodeSize > size_)
            throw IndexCorrupt("index: free list points outside the file");
        char next[4];
        Read(free, next, 4);
        Write(kFreeListOffset, next, 4);
        return free;
    }
    const auto offset = static_cast<std::uint32_t>(size_);
    const std::string zeros(kNodeSize, '\0');
    Write(offset, zeros.data(), zeros.size());
    return offset;
}

std::uint32_t IndexFile::AllocateHeader() {
    const auto offset = static_cast<std::uint32_t>(size_);
    const std::string zeros(kHeaderSize, '\0');
    Write(offset, zeros.data(), zeros.size());
    return offset;
}

void IndexFile::FreeNode(std::uint32_t offset) {
    // A free node keeps only the link to the next free node in its first four bytes.
    std::string bytes(kNodeSize, '\0');
    Read(kFreeListOffset, bytes.data(), 4);
    Write(offset, bytes.data(), bytes.size());
    char head[4];
    io::WriteLe32(head, offset);
    Write(kFreeListOffset, head, 4);
}

void IndexFile::Lock(bool exclusive) {
    if (!mode_.shared) return;
    if (!lock::FileLocks(file_.handle()).WaitForIndex(exclusive)) ThrowErrno("cannot lock", path_);
}

void IndexFile::Unlock() {
    if (mode_.shared) lock::FileLocks(file_.handle()).UnlockIndex();
}

void IndexFile::Refresh() {
    if (!mode_.shared) return;
    char bytes[4];
    ReadFromDisk(kChangeCounterOffset, bytes, 4);
    const std::uint32_t counter = io::ReadLe32(bytes);
    // An unchanged counter means no other process wrote: the size and nodes we know still hold.
    if (counter == changeCounter_) return;
    changeCounter_ = counter;
    ++generation_;
    windowLength_ = 0;
    size_ = diskSize_ = file_.Size();
}

void IndexFile::NoticeChanges() {
    if (lockDepth_ == 0) Refresh();
}

void IndexFile::Enter(bool exclusive) {
    if (!writeFailure_.empty())
        throw std::system_error(EIO, std::generic_category(), writeFailure_);
    if (lockDepth_++ != 0) return;
    try {
        Lock(exclusive);
        Refresh();
    } catch (...) {
        lockDepth_ = 0;
        Unlock();
        throw;
    }
}

IndexFile::UpdateGuard::UpdateGuard(IndexFile& file) : file_(file) {
    file_.Enter(true);
}

IndexFile::UpdateGuard::~UpdateGuard() {
    file_.Release();
}

void IndexFile::Release() {
    if (lockDepth_ > 1) {
        --lockDepth_;
        return;
    }
    try {
        if (changed_ && mode_.shared) {
            ++changeCounter_;
            char bytes[4];
            io::WriteLe32(bytes, changeCounter_);
            // Into the first page when it goes out anyway, else on its own (no read of the page).
            if (pending_.contains(0))
                Write(kChangeCounterOffset, bytes, 4);
            else
                WriteToDisk(kChangeCounterOffset, bytes, 4);
        }
        if (mode_.shared || pending_.size() >= kHeldPages) Flush();
    } catch (const std::exception& error) {
        // A guard ends in a destructor, which cannot report: the next one does, and the lock
        // must still go now.
        pending_.clear();
        writeFailure_ = path_.string() + ": an update was not written (" + error.what() + ")";
    }
    lockDepth_ = 0;
    changed_ = false;
    Unlock();
}

}  // namespace fnrk::engine::cdx

#include "engine/cdx/index_file.hpp"

#include <fcntl.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "engine/cdx/index_format.hpp"
#include "engine/cdx/tag_header.hpp"
#include "engine/io/byte_order.hpp"

namespace fnrk::engine::cdx {

namespace {

// One byte far past any real index size: the index lock.
constexpr off_t kIndexLockOffset = 0x7FFF'FFFF'0000;

[[noreturn]] void ThrowErrno(const std::string& what, const std::filesystem::path& path) {
    throw std::system_error(errno, std::generic_category(), what + " " + path.string());
}

}  // namespace

IndexFile::IndexFile(std::filesystem::path path, io::PosixFile file, IndexOpenMode mode)
    : path_(std::move(path)), file_(std::move(file)), mode_(mode), size_(file_.Size()) {
    if (size_ >= kHeaderSize) {
        char bytes[4];
        Read(kChangeCounterOffset, bytes, 4);
        changeCounter_ = io::ReadLe32(bytes);
    }
}

std::unique_ptr<IndexFile> IndexFile::Create(const std::filesystem::path& path,
                                             const crypt::FileCipher* cipher) {
    io::PosixFile file = io::PosixFile::CreateNew(path.string());
    if (!file.valid()) ThrowErrno("cannot create", path);
    return std::unique_ptr<IndexFile>(
        new IndexFile(path, std::move(file), IndexOpenMode{.cipher = cipher}));
}

std::unique_ptr<IndexFile> IndexFile::Open(const std::filesystem::path& path, IndexOpenMode mode) {
    io::PosixFile file = io::PosixFile::Open(path.string(), mode.readOnly);
    if (!file.valid()) ThrowErrno("cannot open", path);
    return std::unique_ptr<IndexFile>(new IndexFile(path, std::move(file), mode));
}

void IndexFile::Read(std::uint64_t offset, char* out, std::size_t length) const {
    if (offset + length > size_)
        throw IndexCorrupt("index: offset " + std::to_string(offset) + " past the end of " +
                           path_.filename().string());
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
    std::string sealed;
    if (mode_.cipher != nullptr && offset + length > kHeaderSize) {
        sealed.assign(bytes, length);
        ApplyCipher(offset, sealed.data(), length);
        bytes = sealed.data();
    }
    if (!file_.WriteAt(offset, bytes, length)) ThrowErrno("cannot write", path_);
    if (offset + length > size_) size_ = offset + length;
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

void IndexFile::Lock(short type) {
    if (!mode_.shared) return;
    struct flock request {};
    request.l_type = type;
    request.l_whence = SEEK_SET;
    request.l_start = kIndexLockOffset;
    request.l_len = 1;
    while (::fcntl(file_.fd(), F_OFD_SETLKW, &request) != 0) {
        if (errno != EINTR) ThrowErrno("cannot lock", path_);
    }
}

void IndexFile::Unlock() {
    Lock(F_UNLCK);
}

void IndexFile::Refresh() {
    if (!mode_.shared) return;
    size_ = file_.Size();
    char bytes[4];
    Read(kChangeCounterOffset, bytes, 4);
    const std::uint32_t counter = io::ReadLe32(bytes);
    if (counter != changeCounter_) {
        changeCounter_ = counter;
        ++generation_;
    }
}

IndexFile::UpdateGuard::UpdateGuard(IndexFile& file) : file_(file) {
    if (file_.lockDepth_++ == 0) {
        file_.Lock(F_WRLCK);
        file_.Refresh();
    }
    file_.changed_ = true;
}

IndexFile::UpdateGuard::~UpdateGuard() {
    file_.Release();
}

IndexFile::ReadGuard::ReadGuard(IndexFile& file) : file_(file) {
    if (file_.lockDepth_++ == 0) {
        file_.Lock(F_RDLCK);
        file_.Refresh();
    }
}

IndexFile::ReadGuard::~ReadGuard() {
    file_.Release();
}

void IndexFile::Release() {
    if (--lockDepth_ != 0) return;
    if (changed_ && mode_.shared) {
        ++changeCounter_;
        char bytes[4];
        io::WriteLe32(bytes, changeCounter_);
        try {
            Write(kChangeCounterOffset, bytes, 4);
        } catch (const std::exception&) {
            // The update itself failed and reported it; the lock must still go.
        }
    }
    changed_ = false;
    Unlock();
}

}  // namespace fnrk::engine::cdx

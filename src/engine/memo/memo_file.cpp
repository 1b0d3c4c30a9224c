#include "engine/memo/memo_file.hpp"

#include <algorithm>

#include "engine/io/byte_order.hpp"
#include "engine/lock/header_guard.hpp"

namespace fnrk::engine::memo {

using namespace io;

namespace {

// Largest memo accepted when reading: anything bigger is a corrupt length, not data.
constexpr std::uint32_t kMaxMemoLength = 0x4000'0000;

std::string HeaderBytes(std::uint32_t nextFree, std::uint16_t blockSize) {
    std::string header(kMemoHeaderSize, '\0');
    WriteBe32(header.data(), nextFree);
    WriteBe16(header.data() + 6, blockSize);
    return header;
}

}  // namespace

std::string MemoFile::Create(const std::string& path, std::uint16_t blockSize) {
    if (blockSize == 0) blockSize = kDefaultBlockSize;
    NativeFile file = NativeFile::CreateNew(path);
    if (!file.valid()) return "cannot create the memo file " + path;
    const auto firstFree =
        static_cast<std::uint32_t>((kMemoHeaderSize + blockSize - 1) / blockSize);
    const std::string header = HeaderBytes(firstFree, blockSize);
    if (!file.WriteAt(0, header.data(), header.size())) return "cannot write the memo file";
    return {};
}

std::string MemoFile::Open(const std::string& path, bool readOnly) {
    NativeFile file = NativeFile::Open(path, readOnly);
    if (!file.valid()) return "cannot open the memo file " + path;
    char header[8];
    if (file.Size() < kMemoHeaderSize || file.ReadAt(0, header, 8) != 8)
        return "memo file too short for its header";
    const std::uint16_t blockSize = ReadBe16(header + 6);
    if (blockSize == 0) return "memo block size 0";
    const std::uint64_t nextFree = ReadBe32(header);
    if (nextFree * blockSize < kMemoHeaderSize) return "memo next free block inside the header";
    file_ = std::move(file);
    blockSize_ = blockSize;
    return {};
}

std::uint32_t MemoFile::NextFreeBlock() const {
    char bytes[4] = {};
    file_.ReadAt(0, bytes, 4);
    return ReadBe32(bytes);
}

std::string MemoFile::ReadBlockHeader(std::uint32_t block, std::uint32_t& type,
                                      std::uint32_t& length) const {
    const std::uint64_t start = std::uint64_t{block} * blockSize_;
    if (start < kMemoHeaderSize) return "memo block inside the memo header";
    char header[kBlockHeaderSize];
    if (file_.ReadAt(start, header, kBlockHeaderSize) != kBlockHeaderSize)
        return "memo block past the end of the memo file";
    ApplyCipher(start, header, kBlockHeaderSize);
    type = ReadBe32(header);
    length = ReadBe32(header + 4);
    if (length > kMaxMemoLength || start + kBlockHeaderSize + length > file_.Size())
        return "memo length runs past the end of the memo file";
    return {};
}

std::string MemoFile::Read(std::uint32_t block, MemoBlock& memo) const {
    std::uint32_t type = 0;
    std::uint32_t length = 0;
    if (std::string problem = ReadBlockHeader(block, type, length); !problem.empty())
        return problem;
    std::string data(length, '\0');
    const std::uint64_t start = std::uint64_t{block} * blockSize_ + kBlockHeaderSize;
    if (file_.ReadAt(start, data.data(), length) != length)
        return "memo length runs past the end of the memo file";
    ApplyCipher(start, data.data(), length);
    memo.type = type;
    memo.data = std::move(data);
    return {};
}

std::string MemoFile::Write(std::uint32_t& block, std::uint32_t type, std::string_view data) {
    if (data.empty()) {
        block = 0;
        return {};
    }
    if (data.size() > kMaxMemoLength) return "memo too long";
    std::string bytes(kBlockHeaderSize, '\0');
    WriteBe32(bytes.data(), type);
    WriteBe32(bytes.data() + 4, static_cast<std::uint32_t>(data.size()));
    bytes.append(data);

    std::uint32_t oldType = 0;
    std::uint32_t oldLength = 0;
    const bool replaces = block != 0 && ReadBlockHeader(block, oldType, oldLength).empty();
    if (replaces && BlocksFor(oldLength) >= BlocksFor(data.size())) {
        ApplyCipher(std::uint64_t{block} * blockSize_, bytes.data(), bytes.size());
        return file_.WriteAt(std::uint64_t{block} * blockSize_, bytes.data(), bytes.size())
                   ? std::string()
                   : "cannot write the memo file";
    }

    lock::HeaderGuard guard{lock::FileLocks(file_.handle())};
    if (!guard.acquired()) return "memo file header is locked";
    std::uint32_t start = NextFreeBlock();
    // The last memo of the file grows where it stands: a value written in pieces, each write
    // longer than the one before, would otherwise leave a copy behind at every piece.
    if (replaces && block + BlocksFor(oldLength) == start) start = block;
    const std::uint32_t next = start + BlocksFor(data.size());
    bytes.resize(std::size_t{next - start} * blockSize_, '\0');
    ApplyCipher(std::uint64_t{start} * blockSize_, bytes.data(), bytes.size());
    char header[4];
    WriteBe32(header, next);
    if (!file_.WriteAt(std::uint64_t{start} * blockSize_, bytes.data(), bytes.size()) ||
        !file_.WriteAt(0, header, 4))
        return "cannot write the memo file";
    block = start;
    return {};
}

std::string MemoFile::Clear() {
    const auto firstFree =
        static_cast<std::uint32_t>((kMemoHeaderSize + blockSize_ - 1) / blockSize_);
    char header[4];
    WriteBe32(header, firstFree);
    if (!file_.WriteAt(0, header, 4) || !file_.Truncate(std::uint64_t{firstFree} * blockSize_))
        return "cannot clear the memo file";
    return {};
}

std::string MemoFile::WriteRecodedCopy(const std::string& path, const crypt::FileCipher* from,
                                       const crypt::FileCipher* to) const {
    NativeFile copy = NativeFile::CreateNew(path);
    if (!copy.valid()) return "cannot create the memo file " + path;
    if (std::string problem = CopyRecoded(copy, from, to); !problem.empty()) {
        ::unlink(path.c_str());
        return problem + " " + path;
    }
    return {};
}

std::string MemoFile::CopyRecoded(io::NativeFile& copy, const crypt::FileCipher* from,
                                  const crypt::FileCipher* to) const {
    constexpr std::size_t kChunk = 64 * 1024;
    std::string chunk(kChunk, '\0');
    const std::uint64_t size = file_.Size();
    for (std::uint64_t at = 0; at < size; at += kChunk) {
        const std::size_t length =
            static_cast<std::size_t>(std::min<std::uint64_t>(kChunk, size - at));
        if (file_.ReadAt(at, chunk.data(), length) != length) return "cannot read the memo file";
        // The header stays plain.
        const std::size_t plain = at < kMemoHeaderSize ? kMemoHeaderSize - at : 0;
        if (plain < length)
            crypt::Recode(from, to, crypt::CipherStream::Memos, at + plain, chunk.data() + plain,
                          length - plain);
        if (!copy.WriteAt(at, chunk.data(), length)) return "cannot write the memo file";
    }
    return {};
}

std::string MemoFile::Flush() {
    return file_.Sync() ? std::string() : "cannot flush the memo file";
}

}  // namespace fnrk::engine::memo

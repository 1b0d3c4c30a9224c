#pragma once

// The FPT memo file beside a table: a 512-byte header (next free block and block size, both
// big-endian), then blocks, each memo starting on a block boundary with an 8-byte header (type:
// 1 text, 0 binary; data length; big-endian) followed by its bytes.

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/crypt/file_cipher.hpp"
#include "engine/io/native_file.hpp"

namespace fnrk::engine::memo {

inline constexpr std::uint32_t kMemoTypeBinary = 0;
inline constexpr std::uint32_t kMemoTypeText = 1;
inline constexpr std::uint16_t kDefaultBlockSize = 64;
inline constexpr std::size_t kMemoHeaderSize = 512;
inline constexpr std::size_t kBlockHeaderSize = 8;

struct MemoBlock {
    std::uint32_t type = kMemoTypeText;
    std::string data;
};

class MemoFile {
  public:
    // Creates an empty memo file (blockSize 0 means the default); empty string or a message.
    static std::string Create(const std::string& path, std::uint16_t blockSize);

    // Empty string on success, else what is wrong with the file.
    std::string Open(const std::string& path, bool readOnly);
    bool IsOpen() const { return file_.valid(); }
    std::uint16_t blockSize() const { return blockSize_; }

    // Reads the memo starting at `block`; empty string or a message for a block past the end or a
    // length that runs past the end of the file.
    std::string Read(std::uint32_t block, MemoBlock& memo) const;
    // Length and type only, without reading the data.
    std::string ReadBlockHeader(std::uint32_t block, std::uint32_t& type,
                                std::uint32_t& length) const;

    // Stores a memo and returns its block through `block` (0 for empty data). When `block` names
    // an existing memo whose blocks can hold the new one, or the last memo of the file, it is
    // overwritten in place, else the memo goes to the end. Empty string or a message.
    std::string Write(std::uint32_t& block, std::uint32_t type, std::string_view data);

    // Drops every memo (the file keeps only its header).
    std::string Clear();
    std::string Flush();

    // First block after the last memo, from the file header.
    std::uint32_t NextFreeBlock() const;

    // The cipher of an encrypted table (null: plain); the file header stays plain.
    void SetCipher(const crypt::FileCipher* cipher) { cipher_ = cipher; }
    // Writes a copy of this file at `path` with every byte after the header recoded from cipher
    // `from` to cipher `to` (null: plain). Empty string, or a message and no file.
    std::string WriteRecodedCopy(const std::string& path, const crypt::FileCipher* from,
                                 const crypt::FileCipher* to) const;
    // Gives this file the permission bits of `other`.
    bool TakePermissionsOf(const MemoFile& other) { return file_.TakePermissionsOf(other.file_); }

  private:
    std::string CopyRecoded(io::NativeFile& copy, const crypt::FileCipher* from,
                            const crypt::FileCipher* to) const;
    std::uint32_t BlocksFor(std::size_t length) const {
        return static_cast<std::uint32_t>((kBlockHeaderSize + length + blockSize_ - 1) /
                                          blockSize_);
    }
    void ApplyCipher(std::uint64_t offset, char* bytes, std::size_t length) const {
        if (cipher_ != nullptr) cipher_->Apply(crypt::CipherStream::Memos, offset, bytes, length);
    }
    io::NativeFile file_;
    std::uint16_t blockSize_ = kDefaultBlockSize;
    const crypt::FileCipher* cipher_ = nullptr;
};

}  // namespace fnrk::engine::memo

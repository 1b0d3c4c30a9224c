#include "engine/cdx/tag_header.hpp"

#include "engine/cdx/index_format.hpp"
#include "engine/io/byte_order.hpp"

namespace fnrk::engine::cdx {

using io::ReadLe16;
using io::ReadLe32;
using io::WriteLe16;
using io::WriteLe32;

namespace {

constexpr std::size_t kKeyLengthOffset = 12;
constexpr std::size_t kOptionsOffset = 14;
constexpr std::size_t kSignatureOffset = 15;
constexpr std::size_t kHeaderSizeOffset = 16;
constexpr std::size_t kNodeSizeOffset = 18;
constexpr std::size_t kDirectoryMarkOffset = 20;
constexpr std::size_t kDescendingOffset = 502;
constexpr std::size_t kForPositionOffset = 504;
constexpr std::size_t kForLengthOffset = 506;
constexpr std::size_t kKeyPositionOffset = 508;
constexpr std::size_t kKeyExpressionLengthOffset = 510;
constexpr std::size_t kPoolOffset = 512;
constexpr std::size_t kPoolSize = kHeaderSize - kPoolOffset;
constexpr std::uint8_t kSignature = 1;
// Four bytes that the engines writing these files put in the directory header; kept so that
// rebuilt files match theirs byte for byte.
constexpr char kDirectoryMark[] = "RCHB";

std::string PoolText(const char* pool, std::size_t position, std::size_t length) {
    if (length == 0) return {};
    if (position + length > kPoolSize) throw IndexCorrupt("tag header: expression past the header");
    std::string text(pool + position, length);
    if (auto end = text.find('\0'); end != std::string::npos) text.resize(end);
    return text;
}

}  // namespace

bool TagHeader::unique() const {
    return (options & kOptionUnique) != 0;
}
bool TagHeader::isDirectory() const {
    return (options & kOptionTagDirectory) != 0;
}

TagHeader TagHeader::Parse(const char* bytes, std::size_t fileSize) {
    TagHeader header;
    header.root = ReadLe32(bytes);
    header.freeList = ReadLe32(bytes + kFreeListOffset);
    header.changeCounter = ReadLe32(bytes + kChangeCounterOffset);
    header.keyLength = ReadLe16(bytes + kKeyLengthOffset);
    header.options = static_cast<std::uint8_t>(bytes[kOptionsOffset]);
    header.descending = ReadLe16(bytes + kDescendingOffset) != 0;
    if (header.keyLength == 0 || header.keyLength > kMaxKeyLength)
        throw IndexCorrupt("tag header: key length " + std::to_string(header.keyLength));
    if (header.root % kNodeSize != 0 || header.root < kHeaderSize ||
        header.root + kNodeSize > fileSize)
        throw IndexCorrupt("tag header: root node " + std::to_string(header.root) +
                           " outside the file");
    if (header.freeList != 0 && header.freeList != kNoNode &&
        (header.freeList % kNodeSize != 0 || header.freeList + kNodeSize > fileSize))
        throw IndexCorrupt("tag header: free list " + std::to_string(header.freeList) +
                           " outside the file");
    const char* pool = bytes + kPoolOffset;
    header.keyExpression = PoolText(pool, ReadLe16(bytes + kKeyPositionOffset),
                                    ReadLe16(bytes + kKeyExpressionLengthOffset));
    header.forExpression =
        PoolText(pool, ReadLe16(bytes + kForPositionOffset), ReadLe16(bytes + kForLengthOffset));
    return header;
}

std::string TagHeader::Serialize() const {
    std::string bytes(kHeaderSize, '\0');
    char* p = bytes.data();
    WriteLe32(p, root);
    WriteLe32(p + kFreeListOffset, freeList);
    WriteLe32(p + kChangeCounterOffset, changeCounter);
    WriteLe16(p + kKeyLengthOffset, keyLength);
    p[kOptionsOffset] = static_cast<char>(options);
    p[kSignatureOffset] = static_cast<char>(kSignature);
    WriteLe16(p + kHeaderSizeOffset, kHeaderSize);
    WriteLe16(p + kNodeSizeOffset, kNodeSize);
    if (isDirectory()) bytes.replace(kDirectoryMarkOffset, 4, kDirectoryMark);
    WriteLe16(p + kDescendingOffset, descending ? 1 : 0);
    // The pool holds the key expression, then the FOR expression, each with its zero byte.
    const std::size_t keySize = keyExpression.size() + 1;
    const std::size_t forSize = forExpression.size() + 1;
    if (keySize + forSize > kPoolSize) throw std::length_error("index expressions too long");
    bytes.replace(kPoolOffset, keyExpression.size(), keyExpression);
    bytes.replace(kPoolOffset + keySize, forExpression.size(), forExpression);
    WriteLe16(p + kForPositionOffset, static_cast<std::uint16_t>(keySize));
    WriteLe16(p + kForLengthOffset, static_cast<std::uint16_t>(forSize));
    WriteLe16(p + kKeyPositionOffset, 0);
    WriteLe16(p + kKeyExpressionLengthOffset, static_cast<std::uint16_t>(keySize));
    return bytes;
}

}  // namespace fnrk::engine::cdx

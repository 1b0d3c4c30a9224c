#include "engine/cdx/index_node.hpp"

#include <algorithm>
#include <bit>
#include <cstring>

#include "engine/io/byte_order.hpp"

namespace fnrk::engine::cdx {

using io::ReadBe32;
using io::ReadLe16;
using io::ReadLe32;
using io::WriteBe32;
using io::WriteLe16;
using io::WriteLe32;

namespace {

constexpr std::size_t kFreeSpaceOffset = 12;
constexpr std::size_t kRecordMaskOffset = 14;
constexpr std::size_t kDuplicateMaskOffset = 18;
constexpr std::size_t kTrailingMaskOffset = 19;
constexpr std::size_t kRecordBitsOffset = 20;
constexpr std::size_t kDuplicateBitsOffset = 21;
constexpr std::size_t kTrailingBitsOffset = 22;
constexpr std::size_t kBytesPerEntryOffset = 23;
constexpr std::size_t kLeafSpace = kNodeSize - kLeafHeaderSize;

std::size_t TrailingCount(const std::string& key, char pad) {
    std::size_t n = 0;
    while (n < key.size() && key[key.size() - 1 - n] == pad) ++n;
    return n;
}

std::size_t DuplicateCount(const std::string* previous, const std::string& key,
                           std::size_t trailing) {
    if (previous == nullptr) return 0;
    std::size_t n = 0;
    const std::size_t limit = key.size() - trailing;
    while (n < limit && (*previous)[n] == key[n]) ++n;
    return n;
}

std::uint64_t ReadLeBytes(const char* p, unsigned count) {
    std::uint64_t value = 0;
    for (unsigned i = 0; i < count; ++i)
        value |= std::uint64_t{static_cast<unsigned char>(p[i])} << (8 * i);
    return value;
}

IndexNode DecodeLeaf(const char* bytes, IndexNode node, std::size_t count, const KeyShape& shape) {
    const std::uint32_t recordMask = ReadLe32(bytes + kRecordMaskOffset);
    const unsigned duplicateMask = static_cast<unsigned char>(bytes[kDuplicateMaskOffset]);
    const unsigned trailingMask = static_cast<unsigned char>(bytes[kTrailingMaskOffset]);
    const unsigned recordBits = static_cast<unsigned char>(bytes[kRecordBitsOffset]);
    const unsigned duplicateBits = static_cast<unsigned char>(bytes[kDuplicateBitsOffset]);
    const unsigned trailingBits = static_cast<unsigned char>(bytes[kTrailingBitsOffset]);
    const unsigned bytesPerEntry = static_cast<unsigned char>(bytes[kBytesPerEntryOffset]);
    if (bytesPerEntry == 0 || bytesPerEntry > 8 || recordBits > 32 ||
        recordBits + duplicateBits + trailingBits > bytesPerEntry * 8)
        throw IndexCorrupt("leaf node: bad entry layout");
    if (count * bytesPerEntry > kLeafSpace) throw IndexCorrupt("leaf node: key count past the end");
    std::size_t keyEnd = kNodeSize;
    const std::size_t entriesEnd = kLeafHeaderSize + count * bytesPerEntry;
    node.entries.resize(count);
    const std::string* previous = nullptr;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t packed =
            ReadLeBytes(bytes + kLeafHeaderSize + i * bytesPerEntry, bytesPerEntry);
        const std::size_t duplicate = (packed >> recordBits) & duplicateMask;
        const std::size_t trailing = (packed >> (recordBits + duplicateBits)) & trailingMask;
        if (duplicate + trailing > shape.length || (previous == nullptr && duplicate != 0))
            throw IndexCorrupt("leaf node: bad key counts");
        const std::size_t stored = shape.length - duplicate - trailing;
        if (keyEnd < entriesEnd + stored) throw IndexCorrupt("leaf node: keys overlap entries");
        keyEnd -= stored;
        IndexEntry& entry = node.entries[i];
        entry.record = static_cast<std::uint32_t>(packed & recordMask);
        entry.key.reserve(shape.length);
        if (duplicate > 0) entry.key.assign(*previous, 0, duplicate);
        entry.key.append(bytes + keyEnd, stored);
        entry.key.append(trailing, shape.pad);
        previous = &entry.key;
    }
    return node;
}

}  // namespace

IndexNode DecodeNode(const char* bytes, const KeyShape& shape) {
    IndexNode node;
    node.attributes = ReadLe16(bytes);
    const std::size_t count = ReadLe16(bytes + 2);
    node.left = ReadLe32(bytes + 4);
    node.right = ReadLe32(bytes + 8);
    if (node.attributes > (kNodeRoot | kNodeLeaf))
        throw IndexCorrupt("node: unknown attributes " + std::to_string(node.attributes));
    if (node.isLeaf()) return DecodeLeaf(bytes, std::move(node), count, shape);
    if (count == 0 || count > InteriorCapacity(shape.length))
        throw IndexCorrupt("interior node: key count " + std::to_string(count));
    node.entries.resize(count);
    const char* p = bytes + kInteriorHeaderSize;
    for (auto& entry : node.entries) {
        entry.key.assign(p, shape.length);
        entry.record = ReadBe32(p + shape.length);
        entry.child = ReadBe32(p + shape.length + 4);
        p += shape.length + 8;
    }
    return node;
}

LeafLayout ChooseLeafLayout(std::size_t keyLength, std::uint32_t highestRecord) {
    LeafLayout layout;
    layout.countBits = static_cast<unsigned>(std::bit_width(keyLength));
    const unsigned needed = std::max(1u, static_cast<unsigned>(std::bit_width(highestRecord)));
    layout.bytesPerEntry = 3;
    while (layout.bytesPerEntry * 8 - 2 * layout.countBits < needed) ++layout.bytesPerEntry;
    layout.recordBits = std::min(32u, layout.bytesPerEntry * 8 - 2 * layout.countBits);
    return layout;
}

LeafSizer::LeafSizer(const KeyShape& shape, std::uint32_t recordHint)
    : shape_(shape), highestRecord_(recordHint) {}

bool LeafSizer::Add(const std::string& key, std::uint32_t record) {
    const std::size_t trailing = TrailingCount(key, shape_.pad);
    const std::size_t stored = key.size() - trailing - DuplicateCount(previous_, key, trailing);
    const std::uint32_t highest = std::max(highestRecord_, record);
    const LeafLayout layout = ChooseLeafLayout(shape_.length, highest);
    if ((count_ + 1) * layout.bytesPerEntry + keyBytes_ + stored > kLeafSpace) return false;
    highestRecord_ = highest;
    keyBytes_ += stored;
    ++count_;
    previous_ = &key;
    return true;
}

bool EncodeLeaf(const IndexNode& node, const KeyShape& shape, std::uint32_t recordHint, char* out) {
    std::uint32_t highest = recordHint;
    for (const auto& entry : node.entries) highest = std::max(highest, entry.record);
    const LeafLayout layout = ChooseLeafLayout(shape.length, highest);
    std::memset(out, 0, kNodeSize);
    std::size_t keyEnd = kNodeSize;
    const std::size_t entriesEnd = kLeafHeaderSize + node.entries.size() * layout.bytesPerEntry;
    if (entriesEnd > kNodeSize) return false;
    const std::string* previous = nullptr;
    for (std::size_t i = 0; i < node.entries.size(); ++i) {
        const IndexEntry& entry = node.entries[i];
        const std::size_t trailing = TrailingCount(entry.key, shape.pad);
        const std::size_t duplicate = DuplicateCount(previous, entry.key, trailing);
        const std::size_t stored = entry.key.size() - trailing - duplicate;
        if (keyEnd < entriesEnd + stored) return false;
        keyEnd -= stored;
        std::memcpy(out + keyEnd, entry.key.data() + duplicate, stored);
        const std::uint64_t packed =
            entry.record | (std::uint64_t{duplicate} << layout.recordBits) |
            (std::uint64_t{trailing} << (layout.recordBits + layout.countBits));
        char* field = out + kLeafHeaderSize + i * layout.bytesPerEntry;
        for (unsigned b = 0; b < layout.bytesPerEntry; ++b)
            field[b] = static_cast<char>((packed >> (8 * b)) & 0xFF);
        previous = &entry.key;
    }
    WriteLe16(out, node.attributes);
    WriteLe16(out + 2, static_cast<std::uint16_t>(node.entries.size()));
    WriteLe32(out + 4, node.left);
    WriteLe32(out + 8, node.right);
    WriteLe16(out + kFreeSpaceOffset, static_cast<std::uint16_t>(keyEnd - entriesEnd));
    const std::uint32_t countMask = (1u << layout.countBits) - 1;
    WriteLe32(out + kRecordMaskOffset,
              layout.recordBits >= 32 ? 0xFFFFFFFFu : (std::uint32_t{1} << layout.recordBits) - 1);
    out[kDuplicateMaskOffset] = static_cast<char>(countMask);
    out[kTrailingMaskOffset] = static_cast<char>(countMask);
    out[kRecordBitsOffset] = static_cast<char>(layout.recordBits);
    out[kDuplicateBitsOffset] = static_cast<char>(layout.countBits);
    out[kTrailingBitsOffset] = static_cast<char>(layout.countBits);
    out[kBytesPerEntryOffset] = static_cast<char>(layout.bytesPerEntry);
    return true;
}

void EncodeInterior(const IndexNode& node, const KeyShape& shape, char* out) {
    std::memset(out, 0, kNodeSize);
    WriteLe16(out, node.attributes);
    WriteLe16(out + 2, static_cast<std::uint16_t>(node.entries.size()));
    WriteLe32(out + 4, node.left);
    WriteLe32(out + 8, node.right);
    char* p = out + kInteriorHeaderSize;
    for (const auto& entry : node.entries) {
        std::memcpy(p, entry.key.data(), shape.length);
        WriteBe32(p + shape.length, entry.record);
        WriteBe32(p + shape.length + 4, entry.child);
        p += shape.length + 8;
    }
}

std::size_t InteriorCapacity(std::size_t keyLength) {
    return (kNodeSize - kInteriorHeaderSize) / (keyLength + 8);
}

}  // namespace fnrk::engine::cdx

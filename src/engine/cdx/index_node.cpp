#include "engine/cdx/index_node.hpp"

#include <algorithm>
#include <bit>
#include <cassert>
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

// Both counts run eight bytes at a time: they are the inner loop of every leaf written.
std::uint64_t Word(const char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, 8);
    return word;
}

std::size_t TrailingCount(std::string_view key, char pad) {
    const std::uint64_t pads = 0x0101010101010101ull * static_cast<unsigned char>(pad);
    std::size_t n = 0;
    while (n + 8 <= key.size()) {
        const std::uint64_t differ = Word(key.data() + key.size() - n - 8) ^ pads;
        if (differ != 0) {
            if constexpr (std::endian::native == std::endian::little)
                return n + static_cast<std::size_t>(std::countl_zero(differ)) / 8;
            break;
        }
        n += 8;
    }
    while (n < key.size() && key[key.size() - 1 - n] == pad) ++n;
    return n;
}

std::size_t DuplicateCount(std::string_view previous, std::string_view key, std::size_t trailing) {
    const std::size_t limit = std::min(key.size() - trailing, previous.size());
    std::size_t n = 0;
    while (n + 8 <= limit) {
        const std::uint64_t differ = Word(previous.data() + n) ^ Word(key.data() + n);
        if (differ != 0) {
            if constexpr (std::endian::native == std::endian::little)
                return n + static_cast<std::size_t>(std::countr_zero(differ)) / 8;
            break;
        }
        n += 8;
    }
    while (n < limit && previous[n] == key[n]) ++n;
    return n;
}

void WriteLeafHeader(char* out, const LeafLayout& layout, std::uint16_t attributes,
                     std::size_t count, std::uint32_t left, std::uint32_t right, std::size_t free) {
    WriteLe16(out, attributes);
    WriteLe16(out + 2, static_cast<std::uint16_t>(count));
    WriteLe32(out + kLeftPointerOffset, left);
    WriteLe32(out + kRightPointerOffset, right);
    WriteLe16(out + kFreeSpaceOffset, static_cast<std::uint16_t>(free));
    const std::uint32_t countMask = (1u << layout.countBits) - 1;
    WriteLe32(out + kRecordMaskOffset,
              layout.recordBits >= 32 ? 0xFFFFFFFFu : (std::uint32_t{1} << layout.recordBits) - 1);
    out[kDuplicateMaskOffset] = static_cast<char>(countMask);
    out[kTrailingMaskOffset] = static_cast<char>(countMask);
    out[kRecordBitsOffset] = static_cast<char>(layout.recordBits);
    out[kDuplicateBitsOffset] = static_cast<char>(layout.countBits);
    out[kTrailingBitsOffset] = static_cast<char>(layout.countBits);
    out[kBytesPerEntryOffset] = static_cast<char>(layout.bytesPerEntry);
}

std::uint64_t ReadLeBytes(const char* p, unsigned count) {
    std::uint64_t value = 0;
    for (unsigned i = 0; i < count; ++i)
        value |= std::uint64_t{static_cast<unsigned char>(p[i])} << (8 * i);
    return value;
}

// A copy of a few bytes, as the keys of a leaf are: overlapping moves of a fixed size. A plain
// copy of a size known only at run time becomes a string instruction here, which takes longer
// to start than a short key takes to copy.
void CopyFew(char* to, const char* from, std::size_t n) {
    if (n > 32) {
        std::memcpy(to, from, n);
    } else if (n >= 16) {
        std::memcpy(to, from, 16);
        std::memcpy(to + n - 16, from + n - 16, 16);
    } else if (n >= 8) {
        std::memcpy(to, from, 8);
        std::memcpy(to + n - 8, from + n - 8, 8);
    } else if (n >= 4) {
        std::memcpy(to, from, 4);
        std::memcpy(to + n - 4, from + n - 4, 4);
    } else if (n > 0) {
        to[0] = from[0];
        to[n / 2] = from[n / 2];
        to[n - 1] = from[n - 1];
    }
}

// A field at bit `bits` of an entry; none past its 64 bits (a plain shift that far is undefined,
// and a damaged leaf may claim a layout that reaches there).
std::uint64_t ShiftedDown(std::uint64_t packed, unsigned bits) {
    return bits < 64 ? packed >> bits : 0;
}

void DecodeLeaf(const char* bytes, IndexNode& node, std::size_t count, const KeyShape& shape) {
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
    // Room for several more (320 bytes): the inserts a cached leaf receives then seldom move its
    // entries to a new buffer.
    node.entries.reserve(count + 8);
    node.entries.resize(count);
    const KeyBytes* previous = nullptr;
    char pads[32];
    std::memset(pads, shape.pad, sizeof pads);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t packed =
            ReadLeBytes(bytes + kLeafHeaderSize + i * bytesPerEntry, bytesPerEntry);
        const std::size_t duplicate = ShiftedDown(packed, recordBits) & duplicateMask;
        const std::size_t trailing = ShiftedDown(packed, recordBits + duplicateBits) & trailingMask;
        if (duplicate + trailing > shape.length || (previous == nullptr && duplicate != 0))
            throw IndexCorrupt("leaf node: bad key counts");
        const std::size_t stored = shape.length - duplicate - trailing;
        if (keyEnd < entriesEnd + stored) throw IndexCorrupt("leaf node: keys overlap entries");
        keyEnd -= stored;
        IndexEntry& entry = node.entries[i];
        entry.record = static_cast<std::uint32_t>(packed & recordMask);
        entry.child = 0;
        // Written in place: a walk of a million-record tag decodes a million keys.
        entry.key.resize(shape.length);
        char* key = entry.key.data();
        if (previous != nullptr) CopyFew(key, previous->data(), duplicate);
        CopyFew(key + duplicate, bytes + keyEnd, stored);
        if (trailing <= sizeof pads)
            CopyFew(key + duplicate + stored, pads, trailing);
        else
            std::memset(key + duplicate + stored, shape.pad, trailing);
        previous = &entry.key;
    }
}

}  // namespace

void DecodeNode(const char* bytes, const KeyShape& shape, IndexNode& into) {
    into.attributes = ReadLe16(bytes);
    const std::size_t count = ReadLe16(bytes + 2);
    into.left = ReadLe32(bytes + kLeftPointerOffset);
    into.right = ReadLe32(bytes + kRightPointerOffset);
    into.written.clear();
    into.insertedSince = IndexNode::kNoInsert;
    if (into.attributes > (kNodeRoot | kNodeLeaf))
        throw IndexCorrupt("node: unknown attributes " + std::to_string(into.attributes));
    if (into.isLeaf()) return DecodeLeaf(bytes, into, count, shape);
    if (count == 0 || count > InteriorCapacity(shape.length))
        throw IndexCorrupt("interior node: key count " + std::to_string(count));
    into.entries.resize(count);
    const char* p = bytes + kInteriorHeaderSize;
    for (auto& entry : into.entries) {
        entry.key.assign({p, shape.length});
        entry.record = ReadBe32(p + shape.length);
        entry.child = ReadBe32(p + shape.length + 4);
        p += shape.length + 8;
    }
}

IndexNode DecodeNode(const char* bytes, const KeyShape& shape) {
    IndexNode node;
    DecodeNode(bytes, shape, node);
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

LeafWriter::LeafWriter(const KeyShape& shape, std::uint32_t recordHint, std::size_t keptFree)
    : shape_(shape),
      recordHint_(recordHint),
      space_(kLeafSpace - std::min(keptFree, kLeafSpace / 2)),
      highestRecord_(recordHint),
      layout_(ChooseLeafLayout(shape.length, recordHint)) {}

bool LeafWriter::Add(std::string_view key, std::uint32_t record) {
    const std::size_t trailing = TrailingCount(key, shape_.pad);
    const std::size_t duplicate = count_ == 0 ? 0 : DuplicateCount(previous_, key, trailing);
    const std::size_t stored = key.size() - trailing - duplicate;
    LeafLayout layout = layout_;
    if (record > highestRecord_) layout = ChooseLeafLayout(shape_.length, record);
    if (count_ == kMostEntries || (count_ + 1) * layout.bytesPerEntry + keyBytes_ + stored > space_)
        return false;
    if (record > highestRecord_) {
        highestRecord_ = record;
        layout_ = layout;
    }
    keyBytes_ += stored;
    std::memcpy(keys_ + kNodeSize - keyBytes_, key.data() + duplicate, stored);
    records_[count_] = record;
    duplicates_[count_] = static_cast<std::uint8_t>(duplicate);
    trailing_[count_] = static_cast<std::uint8_t>(trailing);
    ++count_;
    previous_ = key;
    return true;
}

void LeafWriter::Finish(std::uint16_t attributes, std::uint32_t left, std::uint32_t right,
                        char* out) {
    const LeafLayout layout = layout_;
    const std::size_t entriesEnd = kLeafHeaderSize + count_ * layout.bytesPerEntry;
    const std::size_t keyEnd = kNodeSize - keyBytes_;
    for (std::size_t i = 0; i < count_; ++i) {
        const std::uint64_t packed =
            records_[i] | (std::uint64_t{duplicates_[i]} << layout.recordBits) |
            (std::uint64_t{trailing_[i]} << (layout.recordBits + layout.countBits));
        char* field = out + kLeafHeaderSize + i * layout.bytesPerEntry;
        // Eight bytes at once where they fit: the next field, the free space and the keys that
        // the spare bytes cover are written after this one.
        if (std::endian::native == std::endian::little && field + 8 <= out + kNodeSize) {
            std::memcpy(field, &packed, 8);
        } else {
            for (unsigned b = 0; b < layout.bytesPerEntry; ++b)
                field[b] = static_cast<char>((packed >> (8 * b)) & 0xFF);
        }
    }
    std::memset(out + entriesEnd, 0, keyEnd - entriesEnd);
    std::memcpy(out + keyEnd, keys_ + keyEnd, keyBytes_);
    WriteLeafHeader(out, layout, attributes, count_, left, right, keyEnd - entriesEnd);
    highestRecord_ = recordHint_;
    layout_ = ChooseLeafLayout(shape_.length, recordHint_);
    keyBytes_ = 0;
    count_ = 0;
}

bool EncodeLeaf(const IndexNode& node, const KeyShape& shape, std::uint32_t recordHint, char* out) {
    // The layout for the highest record from the start: growing it entry by entry costs more
    // than the whole rest of an edited leaf's encoding.
    for (const auto& entry : node.entries) recordHint = std::max(recordHint, entry.record);
    LeafWriter writer(shape, recordHint);
    for (const auto& entry : node.entries)
        if (!writer.Add(entry.key, entry.record)) return false;
    writer.Finish(node.attributes, node.left, node.right, out);
    return true;
}

namespace {

// An entry's fields in a leaf this program wrote (duplicate and trailing counts share a width).
struct EntryFields {
    std::size_t duplicate = 0;
    std::size_t trailing = 0;
};

EntryFields FieldsAt(const char* leaf, std::size_t i, const LeafLayout& layout) {
    const char* field = leaf + kLeafHeaderSize + i * layout.bytesPerEntry;
    // Eight bytes at once where the node has them: the counts end within the entry's own bytes.
    std::uint64_t packed;
    if (std::endian::native == std::endian::little && field + 8 <= leaf + kNodeSize)
        std::memcpy(&packed, field, 8);
    else
        packed = ReadLeBytes(field, layout.bytesPerEntry);
    const std::uint64_t countMask = (std::uint64_t{1} << layout.countBits) - 1;
    return {static_cast<std::size_t>(ShiftedDown(packed, layout.recordBits) & countMask),
            static_cast<std::size_t>(ShiftedDown(packed, layout.recordBits + layout.countBits) &
                                     countMask)};
}

void PutFields(char* leaf, std::size_t i, const LeafLayout& layout, std::uint32_t record,
               EntryFields fields) {
    const std::uint64_t packed =
        record | (std::uint64_t{fields.duplicate} << layout.recordBits) |
        (std::uint64_t{fields.trailing} << (layout.recordBits + layout.countBits));
    char* field = leaf + kLeafHeaderSize + i * layout.bytesPerEntry;
    for (unsigned b = 0; b < layout.bytesPerEntry; ++b)
        field[b] = static_cast<char>((packed >> (8 * b)) & 0xFF);
}

// The layout of a leaf this program wrote (its duplicate and trailing counts share a width).
LeafLayout LayoutOf(const char* leaf) {
    return {static_cast<unsigned char>(leaf[kRecordBitsOffset]),
            static_cast<unsigned char>(leaf[kDuplicateBitsOffset]),
            static_cast<unsigned char>(leaf[kBytesPerEntryOffset])};
}

// The leaf `before` plus the entry node.entries[at]: the fields and keys in front of it are
// copied, those behind it moved, and only it and the entry after it (whose duplicate count now
// refers to it) encoded. False when the entry layout changes or the entries do not fit: the whole
// leaf is then encoded, or split.
bool EncodeAfterInsert(const char* before, const IndexNode& node, std::size_t at,
                       const KeyShape& shape, char* out) {
    const std::size_t count = node.entries.size();
    if (static_cast<std::size_t>(ReadLe16(before + 2)) + 1 != count) return false;
    const IndexEntry& inserted = node.entries[at];
    // The highest record of the other entries chose the layout of `before`; it stays unless the
    // new record needs wider entries.
    const LeafLayout layout = LayoutOf(before);
    if (ChooseLeafLayout(shape.length, inserted.record).bytesPerEntry > layout.bytesPerEntry)
        return false;
    const std::size_t width = layout.bytesPerEntry;
    const std::size_t oldKeyBytes = kLeafSpace - (count - 1) * width -
                                    std::min<std::size_t>(ReadLe16(before + kFreeSpaceOffset),
                                                          kLeafSpace - (count - 1) * width);
    // The key bytes of the old entries in front of the new one, counted from the nearer end.
    const auto storedBytes = [&](std::size_t from, std::size_t to) {
        std::size_t bytes = 0;
        for (std::size_t i = from; i < to; ++i) {
            const EntryFields fields = FieldsAt(before, i, layout);
            bytes += shape.length - fields.duplicate - fields.trailing;
        }
        return bytes;
    };
    std::size_t keysInFront = 0;
    if (at <= (count - 1) / 2) {
        keysInFront = storedBytes(0, at);
    } else {
        const std::size_t keysBehind = storedBytes(at, count - 1);
        if (keysBehind > oldKeyBytes) return false;
        keysInFront = oldKeyBytes - keysBehind;
    }
    EntryFields fields;
    fields.trailing = TrailingCount(inserted.key, shape.pad);
    fields.duplicate =
        at == 0 ? 0 : DuplicateCount(node.entries[at - 1].key, inserted.key, fields.trailing);
    const std::size_t stored = shape.length - fields.duplicate - fields.trailing;
    const bool hasNext = at + 1 < count;
    EntryFields next;
    std::size_t nextStoredBefore = 0;
    std::size_t nextStored = 0;
    if (hasNext) {
        next = FieldsAt(before, at, layout);
        nextStoredBefore = shape.length - next.duplicate - next.trailing;
        next.duplicate = DuplicateCount(inserted.key, node.entries[at + 1].key, next.trailing);
        nextStored = shape.length - next.duplicate - next.trailing;
    }
    const std::size_t keyBytes = oldKeyBytes + stored + nextStored - nextStoredBefore;
    const std::size_t entriesEnd = kLeafHeaderSize + count * width;
    if (keysInFront + nextStoredBefore > oldKeyBytes || entriesEnd + keyBytes > kNodeSize)
        return false;
    const std::size_t keyEnd = kNodeSize - keyBytes;

    std::memcpy(out + kLeafHeaderSize, before + kLeafHeaderSize, at * width);
    PutFields(out, at, layout, inserted.record, fields);
    if (hasNext) {
        PutFields(out, at + 1, layout, node.entries[at + 1].record, next);
        std::memcpy(out + kLeafHeaderSize + (at + 2) * width,
                    before + kLeafHeaderSize + (at + 1) * width, (count - at - 2) * width);
    }
    std::memset(out + entriesEnd, 0, keyEnd - entriesEnd);
    // Keys run from the node's end backwards in entry order.
    std::memcpy(out + kNodeSize - keysInFront, before + kNodeSize - keysInFront, keysInFront);
    char* key = out + kNodeSize - keysInFront - stored;
    std::memcpy(key, inserted.key.data() + fields.duplicate, stored);
    if (hasNext) {
        key -= nextStored;
        std::memcpy(key, node.entries[at + 1].key.data() + next.duplicate, nextStored);
        const std::size_t restEnd = kNodeSize - keysInFront - nextStoredBefore;
        const std::size_t restBytes = restEnd - (kNodeSize - oldKeyBytes);
        std::memcpy(key - restBytes, before + restEnd - restBytes, restBytes);
    }
    WriteLeafHeader(out, layout, node.attributes, count, node.left, node.right,
                    keyEnd - entriesEnd);
    return true;
}

}  // namespace

bool EncodeEditedLeaf(IndexNode& node, const KeyShape& shape, char* out) {
    const std::size_t at = node.insertedSince;
    node.insertedSince = IndexNode::kNoInsert;
    const bool moved = node.written.size() == kNodeSize && at < node.entries.size() &&
                       EncodeAfterInsert(node.written.data(), node, at, shape, out);
    if (!moved && !EncodeLeaf(node, shape, 0, out)) {
        node.written.clear();
        return false;
    }
#ifndef NDEBUG
    if (moved) {
        char whole[kNodeSize];
        assert(EncodeLeaf(node, shape, 0, whole) && std::memcmp(whole, out, kNodeSize) == 0);
    }
#endif
    node.written.assign(out, kNodeSize);
    return true;
}

namespace {

// Stored key bytes and trailing count of each entry as it follows the one before.
struct LeafSizes {
    std::vector<std::size_t> stored;
    std::vector<std::size_t> trailing;
};

LeafSizes SizesOf(const IndexNode& node, const KeyShape& shape) {
    LeafSizes sizes;
    sizes.stored.reserve(node.entries.size());
    sizes.trailing.reserve(node.entries.size());
    std::string_view previous;
    for (std::size_t i = 0; i < node.entries.size(); ++i) {
        const std::string_view key = node.entries[i].key;
        const std::size_t trailing = TrailingCount(key, shape.pad);
        const std::size_t duplicate = i == 0 ? 0 : DuplicateCount(previous, key, trailing);
        sizes.stored.push_back(key.size() - trailing - duplicate);
        sizes.trailing.push_back(trailing);
        previous = key;
    }
    return sizes;
}

std::size_t EntryBytes(const KeyShape& shape, std::size_t count, std::uint32_t highest) {
    return count * ChooseLeafLayout(shape.length, highest).bytesPerEntry;
}

}  // namespace

std::size_t LeafSplitPoint(const IndexNode& node, const KeyShape& shape) {
    const std::size_t n = node.entries.size();
    if (n < 2) return 0;
    const LeafSizes sizes = SizesOf(node, shape);
    // Prefix sums of stored bytes and running highest records from both ends.
    std::vector<std::size_t> storedBefore(n + 1, 0);
    std::vector<std::uint32_t> highestBefore(n + 1, 0);
    std::vector<std::uint32_t> highestFrom(n + 1, 0);
    for (std::size_t i = 0; i < n; ++i) {
        storedBefore[i + 1] = storedBefore[i] + sizes.stored[i];
        highestBefore[i + 1] = std::max(highestBefore[i], node.entries[i].record);
    }
    for (std::size_t i = n; i > 0; --i)
        highestFrom[i - 1] = std::max(highestFrom[i], node.entries[i - 1].record);
    const auto fits = [&](std::size_t at) {
        const std::size_t left = storedBefore[at] + EntryBytes(shape, at, highestBefore[at]);
        // The first key of the right half loses its duplicate compression.
        const std::size_t right = shape.length - sizes.trailing[at] + storedBefore[n] -
                                  storedBefore[at + 1] + EntryBytes(shape, n - at, highestFrom[at]);
        return left <= kLeafSpace && right <= kLeafSpace;
    };
    const std::size_t middle = n / 2;
    for (std::size_t distance = 0; distance < n; ++distance) {
        for (const std::size_t at : {middle - std::min(middle, distance), middle + distance}) {
            if (at == 0 || at >= n) continue;
            if (fits(at)) return at;
        }
    }
    return 0;
}

void EncodeInterior(const IndexNode& node, const KeyShape& shape, char* out) {
    std::memset(out, 0, kNodeSize);
    WriteLe16(out, node.attributes);
    WriteLe16(out + 2, static_cast<std::uint16_t>(node.entries.size()));
    WriteLe32(out + kLeftPointerOffset, node.left);
    WriteLe32(out + kRightPointerOffset, node.right);
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

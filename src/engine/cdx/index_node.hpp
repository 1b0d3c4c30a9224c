#pragma once

// One 512-byte node, decoded. Interior nodes hold, per child, the child's last key and record
// number; leaves hold keys and record numbers in the compact layout (bit-packed record number,
// duplicate count and trailing count per entry, key bytes stored from the node end backwards).

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/cdx/index_format.hpp"
#include "engine/cdx/key_bytes.hpp"

namespace fnrk::engine::cdx {

struct IndexEntry {
    KeyBytes key;
    std::uint32_t record = 0;
    std::uint32_t child = 0;  // interior nodes only
};

struct IndexNode {
    std::uint16_t attributes = kNodeLeaf;
    std::uint32_t left = kNoNode;
    std::uint32_t right = kNoNode;
    std::vector<IndexEntry> entries;
    // Leaves only: the bytes this program last wrote for the leaf, and the one entry inserted
    // since then (kNoInsert: none). The next write then encodes only what that insert moved.
    static constexpr std::size_t kNoInsert = ~std::size_t{0};
    std::string written;
    std::size_t insertedSince = kNoInsert;

    bool isLeaf() const { return (attributes & kNodeLeaf) != 0; }
    bool isRoot() const { return (attributes & kNodeRoot) != 0; }
};

// The shape of a tag's keys that the node codec needs.
struct KeyShape {
    std::size_t length = 0;
    char pad = ' ';
};

// Throws IndexCorrupt on counts, bit widths or key bytes that do not fit the node.
IndexNode DecodeNode(const char* bytes, const KeyShape& shape);
// The same into a node decoded before, reusing its memory.
void DecodeNode(const char* bytes, const KeyShape& shape, IndexNode& into);

// Bit widths of a compact leaf; recordHint is the highest record number the node should be able
// to hold without growing (the table's record count when a tag is built).
struct LeafLayout {
    unsigned recordBits = 0;
    unsigned countBits = 0;  // duplicate and trailing counts alike
    unsigned bytesPerEntry = 0;
};
LeafLayout ChooseLeafLayout(std::size_t keyLength, std::uint32_t highestRecord);

// Encodes a leaf entry by entry, as a sorted build or an edit fills it: key bytes are copied once,
// the bit-packed entry fields are written when the leaf is finished. recordHint is the highest
// record number the leaf should be able to hold without growing. A writer told to keep bytes
// free refuses entries that would use them.
class LeafWriter {
  public:
    LeafWriter(const KeyShape& shape, std::uint32_t recordHint, std::size_t keptFree = 0);
    // Adds an entry after the previous one; false (and nothing added) if it would not fit. The
    // key's bytes must stay in place until the next Add.
    bool Add(std::string_view key, std::uint32_t record);
    std::size_t count() const { return count_; }
    // Writes the leaf into kNodeSize bytes and starts an empty one.
    void Finish(std::uint16_t attributes, std::uint32_t left, std::uint32_t right, char* out);

  private:
    static constexpr std::size_t kMostEntries = (kNodeSize - kLeafHeaderSize) / 3;
    KeyShape shape_;
    std::uint32_t recordHint_;
    std::size_t space_;  // bytes that entry fields and keys may take
    std::uint32_t highestRecord_;
    LeafLayout layout_;  // for highestRecord_
    std::size_t keyBytes_ = 0;
    std::size_t count_ = 0;
    std::string_view previous_;
    char keys_[kNodeSize];  // stored key bytes, filled from the end backwards
    std::uint32_t records_[kMostEntries];
    std::uint8_t duplicates_[kMostEntries];
    std::uint8_t trailing_[kMostEntries];
};

// Where to cut a leaf whose entries do not fit: the middle, or the nearest place to it where both
// halves fit (keys compress unevenly); 0 when there is none.
std::size_t LeafSplitPoint(const IndexNode& node, const KeyShape& shape);

// Writes a leaf into kNodeSize bytes; false if its entries do not fit.
bool EncodeLeaf(const IndexNode& node, const KeyShape& shape, std::uint32_t recordHint, char* out);
// EncodeLeaf for a leaf being written back after an edit; the bytes are the same. The node
// remembers them, and after a single insert only the entries and keys it moved are encoded again.
bool EncodeEditedLeaf(IndexNode& node, const KeyShape& shape, char* out);
void EncodeInterior(const IndexNode& node, const KeyShape& shape, char* out);
std::size_t InteriorCapacity(std::size_t keyLength);

}  // namespace fnrk::engine::cdx

#pragma once

// The compound index file (.cdx), as this engine reads and writes it, and what every edit keeps
// true. The numbers below are its fixed sizes, offsets and bits.
//
// File
//   Offsets are byte positions in the file; a node pointer of 0xFFFFFFFF means none. The file
//   starts with the tag directory's 1,024-byte header; the directory is itself a tag whose keys
//   are the tag names (10 bytes) and whose records point at each tag's own 1,024-byte header.
//   A tag header holds the root node's offset, the key length, the option bits (unique, FOR
//   clause, compact, compound) and the key and FOR expressions. Free nodes form a list headed
//   in the directory's header. Everything else is 512-byte nodes, each owned by one tag.
//
// Nodes
//   Every node starts with attributes (2 bytes: root 0x01, leaf 0x02), key count (2), left and
//   right sibling offsets (4 each), all little-endian.
//   Interior node: from byte 12, per entry the key (key length bytes, padded), then its record
//   number and child offset as 4-byte big-endian numbers.
//   Leaf node (compact layout): free space (2) at 12, then the record mask (4), duplicate and
//   trailing masks (1 each), record, duplicate and trailing bit widths (1 each) and the bytes per
//   entry (1), 24 bytes in all. From byte 24, one packed entry per key: the record number, the
//   duplicate count, the trailing count, in that bit order. Key bytes are stored from the end
//   of the node backwards, entry after entry.
//
// Key compression (leaves)
//   A key is stored without the bytes it shares with the key before it in the same leaf (the
//   duplicate count; 0 for the first entry of a leaf) and without its trailing pad bytes (the
//   trailing count; blanks for character keys). Only the remaining middle bytes are stored.
//   Numeric and date keys are 8-byte doubles encoded so that byte order is value order.
//
// What an interior key means
//   Each interior entry is the last (highest) key and record number of the subtree its child
//   offset points to. A search goes down to the first entry not below what it looks for; keys
//   compare as bytes, then by record number, so equal keys stay in record order.
//
// What every edit keeps true (IndexTag::Insert, Remove and the Put / Split / Shrink under them)
//   - Order: within a node, and across the leaves from left to right, entries are in (key,
//     record) order; a unique tag holds a key once (Insert refuses a second).
//   - Interior keys: when a node's last entry changes, its parent's entry for it is rewritten
//     to match, up to the root (Put).
//   - Siblings: the nodes of each level form one doubly linked list in key order, the first
//     with no left and the last with no right sibling. A split links the new right half between
//     the node and its old right neighbour; a node that empties is unlinked from both
//     neighbours and goes to the free list. Only the four bytes of a pointer are rewritten.
//   - Fit: a node is written only when its entries fit in 512 bytes; one that does not is split
//     (a leaf where its bytes divide, an interior node in the middle of its entries).
//   - Root: exactly one node, the header's root, has the root bit. A root split makes a new
//     interior root over the two halves; a root left with one child hands the root over to it;
//     the last key gone leaves an empty root leaf. The header is written only when the root
//     moves.
//   - Cache: an edit changes cached nodes in place and writes each one it changed. If an
//     exception leaves it half way, the tag's whole node cache is dropped, because
//     changed nodes may no longer match the file; the cache is trimmed only between edits,
//     never under an edit that holds references into it.
//   - Damage: a pointer outside the file, a node that does not decode, a path deeper than any
//     real tree or a sibling that links to itself throws IndexCorrupt; nothing follows it.

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace fnrk::engine::cdx {

inline constexpr std::size_t kNodeSize = 512;
inline constexpr std::size_t kHeaderSize = 1024;
inline constexpr std::size_t kLeafHeaderSize = 24;
inline constexpr std::size_t kInteriorHeaderSize = 12;
// Every node starts with its attributes (2 bytes), key count (2) and sibling pointers (4 each).
inline constexpr std::size_t kLeftPointerOffset = 4;
inline constexpr std::size_t kRightPointerOffset = 8;
inline constexpr std::size_t kMaxKeyLength = 240;
inline constexpr std::size_t kTagNameLength = 10;  // key length of the tag directory
inline constexpr std::uint32_t kNoNode = 0xFFFFFFFF;

// Node attribute bits.
inline constexpr std::uint16_t kNodeRoot = 0x01;
inline constexpr std::uint16_t kNodeLeaf = 0x02;

// Header option bits.
inline constexpr std::uint8_t kOptionUnique = 0x01;
inline constexpr std::uint8_t kOptionForClause = 0x08;
inline constexpr std::uint8_t kOptionCompact = 0x20;
inline constexpr std::uint8_t kOptionCompound = 0x40;
inline constexpr std::uint8_t kOptionTagDirectory = 0x80;

// A file whose structure cannot be trusted. Readers throw it instead of following bad pointers;
// the engine turns it into AE_CORRUPT_INDEX.
class IndexCorrupt : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace fnrk::engine::cdx

#pragma once

// Fixed numbers of the compound index file: a 1,024-byte header per tag (and one for the tag
// directory), 512-byte nodes, node attribute bits and header option bits.

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

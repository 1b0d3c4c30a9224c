#pragma once

// The 1,024-byte header of one tag (and of the tag directory, which is a tag of tag names).

#include <cstddef>
#include <cstdint>
#include <string>

namespace fnrk::engine::cdx {

struct TagHeader {
    std::uint32_t root = 0;
    std::uint32_t freeList = 0;       // meaningful in the directory header only; 0 = none
    std::uint32_t changeCounter = 0;  // meaningful in the directory header only
    std::uint16_t keyLength = 0;
    std::uint8_t options = 0;
    bool descending = false;
    std::string keyExpression;
    std::string forExpression;

    bool unique() const;
    bool isDirectory() const;

    // Throws IndexCorrupt when lengths or offsets cannot be right.
    static TagHeader Parse(const char* bytes, std::size_t fileSize);
    // Exactly kHeaderSize bytes.
    std::string Serialize() const;
};

// The change counter's place inside the directory header, for readers that poll only it.
inline constexpr std::size_t kChangeCounterOffset = 8;
inline constexpr std::size_t kFreeListOffset = 4;

}  // namespace fnrk::engine::cdx

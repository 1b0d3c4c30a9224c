#pragma once

// The room memos take in a memo file made with the default block size.

#include <cstddef>
#include <cstdint>

namespace fnrk::engine {

inline constexpr std::uint64_t kMemoHeaderBytes = 512;
inline constexpr std::uint64_t kMemoBlockBytes = 64;

// A memo of `length` bytes: its 8-byte block header and its data, rounded up to whole blocks.
inline std::uint64_t MemoBytes(std::size_t length) {
    return length == 0 ? 0 : (8 + length + kMemoBlockBytes - 1) / kMemoBlockBytes * kMemoBlockBytes;
}

}  // namespace fnrk::engine

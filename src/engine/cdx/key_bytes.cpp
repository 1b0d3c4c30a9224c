#include "engine/cdx/key_bytes.hpp"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace fnrk::engine::cdx {

void KeyBytes::Reallocate(std::size_t n) {
    if (n == size_) return;
    if (n > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("key too long");
    if (n <= kInline) {
        if (onHeap()) {
            char* heap = Heap();
            std::memcpy(bytes_, heap, n);
            delete[] heap;
        }
        size_ = static_cast<std::uint32_t>(n);
        return;
    }
    char* block = new char[n];
    std::memcpy(block, data(), std::min<std::size_t>(size_, n));
    Free();
    std::memcpy(bytes_, &block, sizeof block);
    size_ = static_cast<std::uint32_t>(n);
}

}  // namespace fnrk::engine::cdx

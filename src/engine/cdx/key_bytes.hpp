#pragma once

// The bytes of one key held in a decoded node. A walk or the edits of a million-record tag decode
// a million keys, and typical keys (an account and a date) are a little longer than a std::string
// holds without a heap block: up to kInline bytes live inside the object, longer keys on the
// heap. The object takes 32 bytes, as a std::string does on a 64-bit host.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace fnrk::engine::cdx {

class KeyBytes {
  public:
    static constexpr std::size_t kInline = 28;

    KeyBytes() noexcept = default;
    explicit KeyBytes(std::string_view bytes) { assign(bytes); }
    KeyBytes(const KeyBytes& other) { assign(other); }
    KeyBytes(KeyBytes&& other) noexcept {
        std::memcpy(bytes_, other.bytes_, sizeof bytes_);
        size_ = other.size_;
        other.size_ = 0;
    }
    KeyBytes& operator=(const KeyBytes& other) {
        if (this != &other) assign(other);
        return *this;
    }
    KeyBytes& operator=(KeyBytes&& other) noexcept {
        if (this != &other) {
            Free();
            std::memcpy(bytes_, other.bytes_, sizeof bytes_);
            size_ = other.size_;
            other.size_ = 0;
        }
        return *this;
    }
    ~KeyBytes() { Free(); }

    std::size_t size() const { return size_; }
    const char* data() const { return onHeap() ? Heap() : bytes_; }
    char* data() { return onHeap() ? Heap() : bytes_; }
    operator std::string_view() const { return {data(), size_}; }

    void assign(std::string_view bytes) {
        resize(bytes.size());
        if (!bytes.empty()) std::memmove(data(), bytes.data(), bytes.size());
    }
    // The first min(size(), n) bytes stay; bytes beyond are unspecified until written.
    void resize(std::size_t n) {
        if (n <= kInline && !onHeap())
            size_ = static_cast<std::uint32_t>(n);
        else
            Reallocate(n);
    }

    friend bool operator==(const KeyBytes& a, const KeyBytes& b) {
        return std::string_view(a) == std::string_view(b);
    }
    friend bool operator==(const KeyBytes& a, std::string_view b) {
        return std::string_view(a) == b;
    }

  private:
    void Reallocate(std::size_t n);
    bool onHeap() const { return size_ > kInline; }
    char* Heap() const {
        char* heap;
        std::memcpy(&heap, bytes_, sizeof heap);
        return heap;
    }
    void Free() {
        if (onHeap()) delete[] Heap();
        size_ = 0;
    }

    // Inline bytes, or the address of the heap block when size_ > kInline.
    char bytes_[kInline] = {};
    std::uint32_t size_ = 0;
};

}  // namespace fnrk::engine::cdx

#pragma once

// A read-only view of the first bytes of an open file, through the host's file mapping: reads
// of scattered records become memory reads of the system's file cache, without a call per read.
// The view sees every later write to the mapped range (the same file cache), but not bytes
// added after it was made. A file must not be cut below its view while mapped; Windows also
// refuses to rename over or shorten such a file, so owners release the view first.

#include <cstddef>
#include <cstdint>
#include <utility>

#include "engine/io/native_file.hpp"

namespace fnrk::engine::io {

// Starts bringing the memory at `at` into the processor's cache. An instruction of its own on
// x86: GCC drops __builtin_prefetch behind a condition.
inline void PrefetchForRead(const char* at) {
#if defined(__x86_64__) || defined(__i386__)
    asm volatile("prefetcht0 %0" : : "m"(*at));
#else
    __builtin_prefetch(at);
#endif
}

class MappedView {
  public:
    MappedView() = default;
    ~MappedView() { Release(); }
    MappedView(const MappedView&) = delete;
    MappedView& operator=(const MappedView&) = delete;

    // Maps the first `size` bytes of `file` (which stays open while mapped); false when the host
    // refuses, and then nothing is mapped.
    bool Map(NativeHandle file, std::uint64_t size);
    void Release();

    const char* data() const { return data_; }
    std::uint64_t size() const { return size_; }

  private:
    const char* data_ = nullptr;
    std::uint64_t size_ = 0;
#ifdef _WIN32
    void* mapping_ = nullptr;  // the file mapping object the view is of
#endif
};

}  // namespace fnrk::engine::io

#ifndef _WIN32
#include <sys/mman.h>

namespace fnrk::engine::io {

inline bool MappedView::Map(NativeHandle file, std::uint64_t size) {
    Release();
    if (size == 0 || size > SIZE_MAX) return false;
    void* at = ::mmap(nullptr, static_cast<std::size_t>(size), PROT_READ, MAP_SHARED, file, 0);
    if (at == MAP_FAILED) return false;
    data_ = static_cast<const char*>(at);
    size_ = size;
    return true;
}

inline void MappedView::Release() {
    if (data_ != nullptr) ::munmap(const_cast<char*>(data_), static_cast<std::size_t>(size_));
    data_ = nullptr;
    size_ = 0;
}

}  // namespace fnrk::engine::io
#endif

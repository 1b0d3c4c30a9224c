#include "engine/io/mapped_view.hpp"

#include <windows.h>

namespace fnrk::engine::io {

bool MappedView::Map(NativeHandle file, std::uint64_t size) {
    Release();
    if (size == 0 || size > SIZE_MAX) return false;
    HANDLE mapping =
        CreateFileMappingW(file, nullptr, PAGE_READONLY, static_cast<DWORD>(size >> 32),
                           static_cast<DWORD>(size), nullptr);
    if (mapping == nullptr) return false;
    void* at = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, static_cast<SIZE_T>(size));
    if (at == nullptr) {
        CloseHandle(mapping);
        return false;
    }
    mapping_ = mapping;
    data_ = static_cast<const char*>(at);
    size_ = size;
    return true;
}

void MappedView::Release() {
    if (data_ != nullptr) UnmapViewOfFile(data_);
    if (mapping_ != nullptr) CloseHandle(mapping_);
    data_ = nullptr;
    mapping_ = nullptr;
    size_ = 0;
}

}  // namespace fnrk::engine::io

#pragma once

// Header-only, for the fuzz targets: a per-process scratch file in memory-backed storage, for
// readers that take files.

#include <unistd.h>

#include <cstdio>
#include <string>

namespace fnrk::engine::io {

inline std::string ScratchPath(const char* extension) {
    const char* base = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    return std::string(base) + "/fnrk-fuzz-" + std::to_string(getpid()) + extension;
}

inline void WriteScratch(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return;
    std::fwrite(data, 1, size, file);
    std::fclose(file);
}

}  // namespace fnrk::engine::io

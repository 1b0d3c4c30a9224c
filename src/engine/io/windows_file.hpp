#pragma once

// The Windows twin of PosixFile (same members, same meaning): a file handle owned by one object,
// with whole-buffer positional reads and writes. Failures set errno as the POSIX calls would, so
// that callers report them alike. Paths are UTF-8, handed to the W functions. The members are
// compiled in windows_file_win32.cpp, so that <windows.h> and its macros (DeleteFile,
// CopyFile, ...) stay out of every header that includes a file.

#include <cstdint>
#include <string>
#include <utility>

namespace fnrk::engine::io {

using NativeHandle = void*;  // a Win32 HANDLE

class WindowsFile {
  public:
    WindowsFile() = default;
    explicit WindowsFile(NativeHandle handle) : handle_(handle) {}
    ~WindowsFile() { Close(); }
    WindowsFile(WindowsFile&& other) noexcept : handle_(std::exchange(other.handle_, Invalid())) {}
    WindowsFile& operator=(WindowsFile&& other) noexcept {
        if (this != &other) {
            Close();
            handle_ = std::exchange(other.handle_, Invalid());
        }
        return *this;
    }
    WindowsFile(const WindowsFile&) = delete;
    WindowsFile& operator=(const WindowsFile&) = delete;

    // Regular files only (errno EINVAL otherwise). Others may read, write, rename and delete the
    // file meanwhile, as they may on Linux; the byte-range locks keep order.
    static WindowsFile Open(const std::string& path, bool readOnly);
    static WindowsFile CreateNew(const std::string& path);

    bool valid() const { return handle_ != Invalid(); }
    NativeHandle handle() const { return handle_; }

    void Close();
    std::uint64_t Size() const;
    // Reads up to `size` bytes at `offset`; returns how many were read (less at end of file).
    std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t size) const;
    bool WriteAt(std::uint64_t offset, const char* data, std::size_t size);
    // Gives this file the attributes of `other` (read-only, hidden, ...), Windows' permissions.
    bool TakePermissionsOf(const WindowsFile& other);
    bool Truncate(std::uint64_t size);
    bool Sync();

  private:
    // INVALID_HANDLE_VALUE
    static NativeHandle Invalid() { return reinterpret_cast<NativeHandle>(std::intptr_t{-1}); }

    NativeHandle handle_ = Invalid();
};

}  // namespace fnrk::engine::io

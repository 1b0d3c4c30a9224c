#pragma once

// Header-only. The Windows twin of PosixFile (same members, same meaning): a file handle owned by
// one object, with whole-buffer positional reads and writes. Failures set errno as the POSIX
// calls would, so that callers report them alike. Paths are UTF-8, handed to the W functions.

#include <windows.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/utf8.hpp"

namespace fnrk::engine::io {

using NativeHandle = HANDLE;

class WindowsFile {
  public:
    WindowsFile() = default;
    explicit WindowsFile(HANDLE handle) : handle_(handle) {}
    ~WindowsFile() { Close(); }
    WindowsFile(WindowsFile&& other) noexcept
        : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
    WindowsFile& operator=(WindowsFile&& other) noexcept {
        if (this != &other) {
            Close();
            handle_ = std::exchange(other.handle_, INVALID_HANDLE_VALUE);
        }
        return *this;
    }
    WindowsFile(const WindowsFile&) = delete;
    WindowsFile& operator=(const WindowsFile&) = delete;

    // Regular files only (errno EINVAL otherwise). Others may read, write, rename and delete the
    // file meanwhile, as they may on Linux; the byte-range locks keep order.
    static WindowsFile Open(const std::string& path, bool readOnly) {
        WindowsFile file(CreateFileW(platform::Utf8ToUtf16(path).c_str(),
                                     GENERIC_READ | (readOnly ? 0 : GENERIC_WRITE), kShareAll,
                                     nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file.valid()) {
            SetErrno();
            return file;
        }
        if (GetFileType(file.handle_) != FILE_TYPE_DISK) {
            file.Close();
            errno = EINVAL;
        }
        return file;
    }
    static WindowsFile CreateNew(const std::string& path) {
        WindowsFile file(CreateFileW(platform::Utf8ToUtf16(path).c_str(),
                                     GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr,
                                     CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file.valid()) SetErrno();
        return file;
    }

    bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE handle() const { return handle_; }

    void Close() {
        if (valid()) CloseHandle(handle_);
        handle_ = INVALID_HANDLE_VALUE;
    }

    std::uint64_t Size() const {
        LARGE_INTEGER size{};
        return GetFileSizeEx(handle_, &size) ? static_cast<std::uint64_t>(size.QuadPart) : 0;
    }

    // Reads up to `size` bytes at `offset`; returns how many were read (less at end of file).
    std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t size) const {
        std::size_t done = 0;
        while (done < size) {
            OVERLAPPED at = At(offset + done);
            DWORD got = 0;
            if (!ReadFile(handle_, buffer + done, Chunk(size - done), &got, &at) || got == 0) break;
            done += got;
        }
        return done;
    }

    bool WriteAt(std::uint64_t offset, const char* data, std::size_t size) {
        std::size_t done = 0;
        while (done < size) {
            OVERLAPPED at = At(offset + done);
            DWORD put = 0;
            if (!WriteFile(handle_, data + done, Chunk(size - done), &put, &at) || put == 0) {
                SetErrno();
                return false;
            }
            done += put;
        }
        return true;
    }

    // Gives this file the attributes of `other` (read-only, hidden, ...), Windows' permissions.
    bool TakePermissionsOf(const WindowsFile& other) {
        FILE_BASIC_INFO info{};
        if (!GetFileInformationByHandleEx(other.handle_, FileBasicInfo, &info, sizeof info))
            return false;
        FILE_BASIC_INFO attributes{};  // times of zero stay as they are
        attributes.FileAttributes = info.FileAttributes;
        return SetFileInformationByHandle(handle_, FileBasicInfo, &attributes, sizeof attributes);
    }

    bool Truncate(std::uint64_t size) {
        FILE_END_OF_FILE_INFO end{};
        end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
        return SetFileInformationByHandle(handle_, FileEndOfFileInfo, &end, sizeof end);
    }
    bool Sync() { return FlushFileBuffers(handle_); }

  private:
    static constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

    static OVERLAPPED At(std::uint64_t offset) {
        OVERLAPPED at{};
        at.Offset = static_cast<DWORD>(offset);
        at.OffsetHigh = static_cast<DWORD>(offset >> 32);
        return at;
    }
    static DWORD Chunk(std::size_t size) {
        return static_cast<DWORD>(std::min<std::size_t>(size, 1u << 30));
    }
    static void SetErrno() {
        switch (GetLastError()) {
            case ERROR_FILE_NOT_FOUND:
            case ERROR_PATH_NOT_FOUND:
            case ERROR_INVALID_NAME:
                errno = ENOENT;
                break;
            case ERROR_ACCESS_DENIED:
            case ERROR_SHARING_VIOLATION:
            case ERROR_LOCK_VIOLATION:
                errno = EACCES;
                break;
            case ERROR_DISK_FULL:
            case ERROR_HANDLE_DISK_FULL:
                errno = ENOSPC;
                break;
            default:
                errno = EIO;
        }
    }

    HANDLE handle_ = INVALID_HANDLE_VALUE;
};

}  // namespace fnrk::engine::io

#include "engine/io/windows_file.hpp"

#include <windows.h>

#include <algorithm>
#include <cerrno>

#include "platform/utf8.hpp"

namespace fnrk::engine::io {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

OVERLAPPED At(std::uint64_t offset) {
    OVERLAPPED at{};
    at.Offset = static_cast<DWORD>(offset);
    at.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return at;
}

DWORD Chunk(std::size_t size) {
    return static_cast<DWORD>(std::min<std::size_t>(size, 1u << 30));
}

void SetErrno() {
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

}  // namespace

WindowsFile WindowsFile::Open(const std::string& path, bool readOnly) {
    WindowsFile file(CreateFileW(platform::Utf8ToUtf16(path).c_str(),
                                 GENERIC_READ | (readOnly ? 0 : GENERIC_WRITE), kShareAll, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
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

WindowsFile WindowsFile::CreateNew(const std::string& path) {
    WindowsFile file(CreateFileW(platform::Utf8ToUtf16(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                                 kShareAll, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                 nullptr));
    if (!file.valid()) SetErrno();
    return file;
}

void WindowsFile::Close() {
    if (valid()) CloseHandle(handle_);
    handle_ = Invalid();
}

std::uint64_t WindowsFile::Size() const {
    LARGE_INTEGER size{};
    return GetFileSizeEx(handle_, &size) ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

std::size_t WindowsFile::ReadAt(std::uint64_t offset, char* buffer, std::size_t size) const {
    std::size_t done = 0;
    while (done < size) {
        OVERLAPPED at = At(offset + done);
        DWORD got = 0;
        if (!ReadFile(handle_, buffer + done, Chunk(size - done), &got, &at) || got == 0) break;
        done += got;
    }
    return done;
}

bool WindowsFile::WriteAt(std::uint64_t offset, const char* data, std::size_t size) {
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

bool WindowsFile::TakePermissionsOf(const WindowsFile& other) {
    FILE_BASIC_INFO info{};
    if (!GetFileInformationByHandleEx(other.handle_, FileBasicInfo, &info, sizeof info))
        return false;
    FILE_BASIC_INFO attributes{};  // times of zero stay as they are
    attributes.FileAttributes = info.FileAttributes;
    return SetFileInformationByHandle(handle_, FileBasicInfo, &attributes, sizeof attributes);
}

bool WindowsFile::Truncate(std::uint64_t size) {
    FILE_END_OF_FILE_INFO end{};
    end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
    return SetFileInformationByHandle(handle_, FileEndOfFileInfo, &end, sizeof end);
}

bool WindowsFile::Sync() {
    return FlushFileBuffers(handle_);
}

}  // namespace fnrk::engine::io

#pragma once

// Header-only. A file descriptor owned by one object, with whole-buffer positional reads and
// writes that retry short transfers.

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <utility>

namespace fnrk::engine::io {

using NativeHandle = int;

class PosixFile {
  public:
    PosixFile() = default;
    explicit PosixFile(int fd) : fd_(fd) {}
    ~PosixFile() { Close(); }
    PosixFile(PosixFile&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    PosixFile& operator=(PosixFile&& other) noexcept {
        if (this != &other) {
            Close();
            fd_ = std::exchange(other.fd_, -1);
        }
        return *this;
    }
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;

    // Regular files only (errno EINVAL otherwise): a FIFO or a device under a table's name
    // would block or never end. Opened without blocking, so that a FIFO cannot hang the open.
    static PosixFile Open(const std::string& path, bool readOnly) {
        PosixFile file(
            ::open(path.c_str(), (readOnly ? O_RDONLY : O_RDWR) | O_CLOEXEC | O_NONBLOCK));
        if (!file.valid()) return file;
        struct stat info {};
        if (::fstat(file.fd_, &info) != 0 || !S_ISREG(info.st_mode) ||
            ::fcntl(file.fd_, F_SETFL, ::fcntl(file.fd_, F_GETFL) & ~O_NONBLOCK) != 0) {
            file.Close();
            errno = EINVAL;
        }
        return file;
    }
    static PosixFile CreateNew(const std::string& path) {
        return PosixFile(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    }

    bool valid() const { return fd_ >= 0; }
    int handle() const { return fd_; }

    void Close() {
        if (fd_ >= 0) ::close(fd_);
        fd_ = -1;
    }

    std::uint64_t Size() const {
        struct stat info {};
        return ::fstat(fd_, &info) == 0 ? static_cast<std::uint64_t>(info.st_size) : 0;
    }

    // Reads up to `size` bytes at `offset`; returns how many were read (less at end of file).
    std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t size) const {
        std::size_t done = 0;
        while (done < size) {
            const ssize_t got =
                ::pread(fd_, buffer + done, size - done, static_cast<off_t>(offset + done));
            if (got <= 0) break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

    bool WriteAt(std::uint64_t offset, const char* data, std::size_t size) {
        std::size_t done = 0;
        while (done < size) {
            const ssize_t put =
                ::pwrite(fd_, data + done, size - done, static_cast<off_t>(offset + done));
            if (put <= 0) return false;
            done += static_cast<std::size_t>(put);
        }
        return true;
    }

    // Gives this file the permission bits of `other`.
    bool TakePermissionsOf(const PosixFile& other) {
        struct stat info {};
        return ::fstat(other.fd_, &info) == 0 && ::fchmod(fd_, info.st_mode & 07777) == 0;
    }

    bool Truncate(std::uint64_t size) { return ::ftruncate(fd_, static_cast<off_t>(size)) == 0; }
    bool Sync() { return ::fdatasync(fd_) == 0; }

  private:
    int fd_ = -1;
};

}  // namespace fnrk::engine::io

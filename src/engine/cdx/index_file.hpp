#pragma once

// The index file as pages: node reads and writes, node allocation (free list first), the change
// counter that tells readers of other processes that their cached nodes are stale, and the index
// lock that serializes updates between processes.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/cdx/index_format.hpp"
#include "engine/crypt/file_cipher.hpp"
#include "engine/io/native_file.hpp"

namespace fnrk::engine::cdx {

struct IndexOpenMode {
    bool readOnly = false;
    bool shared = false;  // other processes may change the file
    // An encrypted table's cipher: everything after the file header goes through it.
    const crypt::FileCipher* cipher = nullptr;
};

class IndexFile {
  public:
    // A new, empty file (truncated if it exists). Throws std::system_error.
    static std::unique_ptr<IndexFile> Create(const std::filesystem::path& path,
                                             const crypt::FileCipher* cipher = nullptr);
    static std::unique_ptr<IndexFile> Open(const std::filesystem::path& path, IndexOpenMode mode);
    // Writes the pages still kept; a failure is lost here (WritePending reports it).
    ~IndexFile();
    IndexFile(const IndexFile&) = delete;
    IndexFile& operator=(const IndexFile&) = delete;

    const std::filesystem::path& path() const { return path_; }
    bool readOnly() const { return mode_.readOnly; }
    bool shared() const { return mode_.shared; }
    std::uint64_t size() const { return size_; }

    // Throws IndexCorrupt when the range lies outside the file.
    void Read(std::uint64_t offset, char* out, std::size_t length) const;
    // Reads the node at `offset` for a walk going `forward` (or back): the nodes beyond it are
    // read with it in one read and kept until the file changes, so that a walk over leaves
    // written one after another reads the file once per kWalkWindow bytes, not once per leaf.
    void ReadForWalk(std::uint64_t offset, char* out, bool forward) const;
    // Under a guard, written pages are kept and go to the file, in runs of consecutive pages,
    // when the outermost guard ends; reads see them at once. A file that no other process uses
    // keeps them longer, until they fill kHeldPages or WritePending: the pages that every update
    // changes (the root, the last leaf) then go out once for many updates.
    void Write(std::uint64_t offset, const char* bytes, std::size_t length);
    // Writes the pages still kept. Throws std::system_error.
    void WritePending();

    // A node offset for a new node: the head of the free list, else the end of the file.
    std::uint32_t AllocateNode();
    // Room for a tag header (two nodes) at the end of the file.
    std::uint32_t AllocateHeader();
    void FreeNode(std::uint32_t offset);

    // Bumped whenever cached nodes must be dropped; tags compare it with the value they saw.
    std::uint64_t generation() const { return generation_; }
    // Looks, without taking the lock, whether another process changed a shared file since this
    // one last looked, and starts a new generation if so. Under a guard it has already looked.
    void NoticeChanges();

    // Holds the index lock for an update; when the outermost guard goes, the update's pages are
    // written and, if there were any, a shared file's change counter goes up by one so that
    // other processes drop their cached nodes. Guards nest, but an update must not start inside a
    // ReadGuard (the lock is not upgraded). A write that fails as the guard ends makes every later
    // guard throw.
    class UpdateGuard {
      public:
        explicit UpdateGuard(IndexFile& file);
        ~UpdateGuard();
        UpdateGuard(const UpdateGuard&) = delete;
        UpdateGuard& operator=(const UpdateGuard&) = delete;

      private:
        IndexFile& file_;
    };
    // Holds a shared lock while a reader walks nodes, so that it never sees half an update.
    class ReadGuard {
      public:
        // Alone on the file there is nothing to lock or to look at: the depth is counted here,
        // inline, since every step of a walk takes a guard.
        explicit ReadGuard(IndexFile& file) : file_(file) {
            if (!file_.mode_.shared && file_.writeFailure_.empty())
                ++file_.lockDepth_;
            else
                file_.Enter(false);
        }
        ~ReadGuard() {
            if (!file_.mode_.shared && !file_.changed_ && file_.pending_.size() < kHeldPages)
                --file_.lockDepth_;
            else
                file_.Release();
        }
        ReadGuard(const ReadGuard&) = delete;
        ReadGuard& operator=(const ReadGuard&) = delete;

      private:
        IndexFile& file_;
    };

  private:
    IndexFile(std::filesystem::path path, io::NativeFile file, IndexOpenMode mode);
    void Lock(bool exclusive);
    void Unlock();
    // Starts a guard: the outermost one takes the lock and looks for other processes' changes.
    void Enter(bool exclusive);
    void ReadFromDisk(std::uint64_t offset, char* out, std::size_t length) const;
    void FillWalkWindow(std::uint64_t offset, bool forward) const;
    bool InWalkWindow(std::uint64_t offset, std::size_t length) const {
        return offset >= windowStart_ && offset + length <= windowStart_ + windowLength_;
    }
    void WriteToDisk(std::uint64_t offset, const char* bytes, std::size_t length);
    // Writes the pages kept under the guard.
    void Flush();
    // Encrypts or decrypts the part of a range that lies past the file header.
    void ApplyCipher(std::uint64_t offset, char* bytes, std::size_t length) const;
    // Ends one guard; the outermost one publishes an update and unlocks.
    void Release();
    // Re-reads the change counter and file size; drops caches when another process wrote.
    void Refresh();

    std::filesystem::path path_;
    io::NativeFile file_;
    IndexOpenMode mode_;
    std::uint64_t size_ = 0;      // including pages not yet written
    std::uint64_t diskSize_ = 0;  // what the file holds
    std::uint32_t changeCounter_ = 0;
    std::uint64_t generation_ = 0;
    int lockDepth_ = 0;
    bool changed_ = false;  // pages were written under the lock now held
    std::map<std::uint64_t, std::array<char, kNodeSize>> pending_;
    std::string writeFailure_;
    // Bytes of the file as on disk (deciphered) from windowStart_, read ahead for walks.
    mutable std::vector<char> window_;
    mutable std::uint64_t windowStart_ = 0;
    mutable std::size_t windowLength_ = 0;
    static constexpr std::size_t kWalkWindow = 32 * kNodeSize;
    static constexpr std::size_t kFlushRun = 1 << 20;
    static constexpr std::size_t kHeldPages = 2048;
};

}  // namespace fnrk::engine::cdx

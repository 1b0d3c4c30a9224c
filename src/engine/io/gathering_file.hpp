#pragma once

// Header-only. A NativeFile whose writes, while gathering is on, are kept in memory as long as
// each one continues or overlaps the bytes kept so far, and go to the file in large pieces:
// records appended one by one cost one write per piece instead of one each. Every other access
// (a read, the size, a cut, a write elsewhere) writes the kept bytes first, so that the file
// always reads as if each write had gone straight to it.
//
// For a file that nobody else reads while it is open (an exclusive table). Once kept bytes could
// not be written, the file refuses every later write: what it holds stays what was written
// before, never a later write over a gap.

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "engine/io/native_file.hpp"

namespace fnrk::engine::io {

class GatheringFile {
  public:
    GatheringFile() = default;
    GatheringFile(const GatheringFile&) = delete;
    GatheringFile& operator=(const GatheringFile&) = delete;
    // The kept bytes are written first; a destructor cannot report a failure, WriteGathered can.
    ~GatheringFile() { WriteGathered(); }

    // Takes `file` in place of the one held (whose kept bytes are written first).
    void Reset(NativeFile file) {
        WriteGathered();
        file_ = std::move(file);
        failed_ = false;
    }
    // Exchanges the held file with `other`; nothing may be kept (WriteGathered first).
    void Swap(NativeFile& other) { std::swap(file_, other); }
    // Off: every write goes straight to the file (the kept bytes first).
    bool Gather(bool on) {
        gathering_ = on;
        return on || WriteGathered();
    }

    bool valid() const { return file_.valid(); }
    NativeHandle handle() const { return file_.handle(); }
    const NativeFile& native() const { return file_; }

    std::size_t ReadAt(std::uint64_t offset, char* buffer, std::size_t size) {
        if (!WriteGathered()) return 0;
        return file_.ReadAt(offset, buffer, size);
    }

    bool WriteAt(std::uint64_t offset, const char* data, std::size_t size) {
        if (failed_) return false;
        if (!gathering_) return file_.WriteAt(offset, data, size);
        const std::uint64_t keptEnd = keptAt_ + kept_.size();
        if (!kept_.empty() && (offset < keptAt_ || offset > keptEnd) && !WriteGathered())
            return false;
        if (kept_.empty()) keptAt_ = offset;
        const std::size_t from = static_cast<std::size_t>(offset - keptAt_);
        if (kept_.size() < from + size) kept_.resize(from + size);
        std::memcpy(kept_.data() + from, data, size);
        return kept_.size() < kGatherBytes || WriteGathered();
    }

    // Whether bytes kept in memory fall in [offset, offset + size): a reader that does not go
    // through ReadAt (a mapping of the file) must have them written first.
    bool Keeps(std::uint64_t offset, std::size_t size) const {
        return !kept_.empty() && offset < keptAt_ + kept_.size() && keptAt_ < offset + size;
    }
    // Writes the kept bytes; false when they could not be (the file then refuses writes).
    bool WriteGathered() {
        if (kept_.empty()) return !failed_;
        failed_ = failed_ || !file_.WriteAt(keptAt_, kept_.data(), kept_.size());
        kept_.clear();
        return !failed_;
    }

    std::uint64_t Size() {
        WriteGathered();
        return file_.Size();
    }
    bool Truncate(std::uint64_t size) { return WriteGathered() && file_.Truncate(size); }
    bool Sync() { return WriteGathered() && file_.Sync(); }

  private:
    static constexpr std::size_t kGatherBytes = 256 * 1024;

    NativeFile file_;
    bool gathering_ = false;
    bool failed_ = false;
    std::uint64_t keptAt_ = 0;
    std::vector<char> kept_;
};

}  // namespace fnrk::engine::io

#pragma once

// The keys and record numbers of a tag being built, held in one flat buffer of fixed-length keys
// and sorted into tag order (key bytes, then record number) without comparing strings.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace fnrk::engine::cdx {

class TagEntries {
  public:
    TagEntries() = default;
    explicit TagEntries(std::size_t keyLength) : keyLength_(keyLength) {}

    std::size_t keyLength() const { return keyLength_; }
    std::size_t size() const { return records_.size(); }
    bool empty() const { return records_.empty(); }
    void Reserve(std::size_t count);
    // Adds one entry; the key has exactly keyLength() bytes (std::invalid_argument otherwise).
    void Add(std::string_view key, std::uint32_t record);
    // Puts the entries in tag order; a unique tag keeps the lowest record of each key.
    void Sort(bool unique);

    // The i-th entry: in the order added, and in tag order after Sort.
    std::string_view KeyAt(std::size_t i) const {
        return {keys_.data() + i * keyLength_, keyLength_};
    }
    std::uint32_t RecordAt(std::size_t i) const { return records_[i]; }

  private:
    std::size_t keyLength_ = 0;
    std::vector<char> keys_;
    std::vector<std::uint32_t> records_;
    std::size_t commonPrefix_ = 0;  // bytes every key shares with the first
};

}  // namespace fnrk::engine::cdx

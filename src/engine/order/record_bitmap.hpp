#pragma once

// One bit per record number (1-based), for resolving optimized filters.

#include <bit>
#include <cstdint>
#include <vector>

namespace fnrk::engine::order {

class RecordBitmap {
  public:
    explicit RecordBitmap(std::uint32_t records = 0, bool set = false)
        : records_(records), words_((std::size_t{records} + 64) / 64, set ? ~0ull : 0ull) {
        Trim();
    }

    std::uint32_t records() const { return records_; }
    bool test(std::uint32_t record) const {
        return record >= 1 && record <= records_ && (words_[record / 64] >> (record % 64)) & 1u;
    }
    void set(std::uint32_t record, bool value = true) {
        if (record == 0) return;
        if (record > records_) Grow(record);
        auto& word = words_[record / 64];
        const std::uint64_t bit = std::uint64_t{1} << (record % 64);
        word = value ? word | bit : word & ~bit;
    }
    std::uint32_t count() const {
        std::uint32_t n = 0;
        for (const std::uint64_t word : words_)
            n += static_cast<std::uint32_t>(std::popcount(word));
        return n;
    }
    RecordBitmap& operator&=(const RecordBitmap& other) {
        for (std::size_t i = 0; i < words_.size(); ++i)
            words_[i] &= i < other.words_.size() ? other.words_[i] : 0;
        return *this;
    }
    RecordBitmap& operator|=(const RecordBitmap& other) {
        if (other.records_ > records_) Grow(other.records_);
        for (std::size_t i = 0; i < other.words_.size(); ++i) words_[i] |= other.words_[i];
        return *this;
    }
    void Flip() {
        for (auto& word : words_) word = ~word;
        Trim();
    }

  private:
    void Grow(std::uint32_t records) {
        records_ = records;
        words_.resize((std::size_t{records} + 64) / 64, 0);
    }
    // Bit 0 and the bits past the last record stay clear.
    void Trim() {
        if (words_.empty()) return;
        words_[0] &= ~std::uint64_t{1};
        const std::uint32_t used = (records_ + 1) % 64;
        if (used != 0) words_.back() &= (std::uint64_t{1} << used) - 1;
    }

    std::uint32_t records_;
    std::vector<std::uint64_t> words_;
};

}  // namespace fnrk::engine::order

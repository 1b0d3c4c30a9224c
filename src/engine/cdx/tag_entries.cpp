#include "engine/cdx/tag_entries.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

namespace fnrk::engine::cdx {

namespace {

// An entry to sort: eight key bytes past the common prefix as one big-endian number, so that most
// entries are ordered by integer passes alone; the rest of the key is compared only on a tie.
struct SortItem {
    std::uint64_t head;
    std::uint32_t record;
    std::uint32_t slot;
};

std::uint64_t HeadOf(const char* key, std::size_t length) {
    std::uint64_t head = 0;
    for (std::size_t i = 0; i < 8; ++i)
        head = (head << 8) | (i < length ? static_cast<unsigned char>(key[i]) : 0u);
    return head;
}

// Stable least-significant-byte-first radix sort on the heads; bytes that all items share are
// skipped.
void SortByHead(std::vector<SortItem>& items) {
    std::array<std::array<std::size_t, 256>, 8> counts{};
    for (const SortItem& item : items)
        for (unsigned b = 0; b < 8; ++b) ++counts[b][(item.head >> (8 * b)) & 0xFF];
    std::vector<SortItem> scratch(items.size());
    for (unsigned b = 0; b < 8; ++b) {
        auto& count = counts[b];
        if (std::find(count.begin(), count.end(), items.size()) != count.end()) continue;
        std::size_t start = 0;
        for (std::size_t& bucket : count) start += std::exchange(bucket, start);
        for (const SortItem& item : items) scratch[count[(item.head >> (8 * b)) & 0xFF]++] = item;
        items.swap(scratch);
    }
}

}  // namespace

void TagEntries::Reserve(std::size_t count) {
    keys_.reserve(count * keyLength_);
    records_.reserve(count);
}

void TagEntries::Add(std::string_view key, std::uint32_t record) {
    if (key.size() != keyLength_)
        throw std::invalid_argument("key of " + std::to_string(key.size()) + " bytes in a tag of " +
                                    std::to_string(keyLength_));
    if (records_.empty()) {
        commonPrefix_ = keyLength_;
    } else {
        const char* first = keys_.data();
        std::size_t same = 0;
        while (same < commonPrefix_ && first[same] == key[same]) ++same;
        commonPrefix_ = same;
    }
    keys_.insert(keys_.end(), key.begin(), key.end());
    records_.push_back(record);
}

void TagEntries::Sort(bool unique) {
    const std::size_t skip = commonPrefix_;
    const std::size_t headLength = std::min<std::size_t>(8, keyLength_ - skip);
    const std::size_t tail = skip + headLength;
    std::vector<SortItem> items(records_.size());
    for (std::size_t slot = 0; slot < items.size(); ++slot)
        items[slot] = {HeadOf(keys_.data() + slot * keyLength_ + skip, headLength), records_[slot],
                       static_cast<std::uint32_t>(slot)};
    SortByHead(items);
    const auto tailCompare = [&](const SortItem& a, const SortItem& b) {
        if (tail == keyLength_) return 0;
        return std::memcmp(keys_.data() + std::size_t{a.slot} * keyLength_ + tail,
                           keys_.data() + std::size_t{b.slot} * keyLength_ + tail,
                           keyLength_ - tail);
    };
    const auto tieOrder = [&](const SortItem& a, const SortItem& b) {
        if (const int c = tailCompare(a, b); c != 0) return c < 0;
        return a.record < b.record;
    };
    for (auto run = items.begin(); run != items.end();) {
        const auto end = std::find_if(run, items.end(),
                                      [&](const SortItem& item) { return item.head != run->head; });
        if (!std::is_sorted(run, end, tieOrder)) std::sort(run, end, tieOrder);
        run = end;
    }
    if (unique) {
        auto end =
            std::unique(items.begin(), items.end(), [&](const SortItem& a, const SortItem& b) {
                return a.head == b.head && tailCompare(a, b) == 0;
            });
        items.erase(end, items.end());
    }
    // The entries move into tag order once, so that a build reads them front to back.
    std::vector<char> keys(items.size() * keyLength_);
    for (std::size_t i = 0; i < items.size(); ++i) {
        std::memcpy(keys.data() + i * keyLength_,
                    keys_.data() + std::size_t{items[i].slot} * keyLength_, keyLength_);
        records_[i] = items[i].record;
    }
    records_.resize(items.size());
    keys_ = std::move(keys);
}

}  // namespace fnrk::engine::cdx

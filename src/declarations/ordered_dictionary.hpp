#pragma once

// A dictionary keyed by text that remembers the order in which keys were added: the VAT return's
// boxes are drawn in the order they were added, so a sorted map would lose the layout.

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace fnrk::declarations {

template <typename Value>
class OrderedDictionary {
  public:
    using Entry = std::pair<std::string, Value>;

    // Adds a key at the end. A key already present keeps its place and is not replaced: the
    // answer is false in that case.
    bool Add(std::string key, Value value) {
        if (positions_.contains(key)) return false;
        positions_.emplace(key, entries_.size());
        entries_.emplace_back(std::move(key), std::move(value));
        return true;
    }

    bool Exists(std::string_view key) const { return positions_.contains(std::string(key)); }

    // The value under a key, or nullptr when the key is absent.
    Value* Find(std::string_view key) {
        auto found = positions_.find(std::string(key));
        return found == positions_.end() ? nullptr : &entries_[found->second].second;
    }
    const Value* Find(std::string_view key) const {
        auto found = positions_.find(std::string(key));
        return found == positions_.end() ? nullptr : &entries_[found->second].second;
    }

    void Clear() {
        entries_.clear();
        positions_.clear();
    }

    std::size_t Count() const { return entries_.size(); }
    bool Empty() const { return entries_.empty(); }

    // Entries in insertion order.
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }
    auto begin() { return entries_.begin(); }
    auto end() { return entries_.end(); }

  private:
    std::vector<Entry> entries_;
    std::unordered_map<std::string, std::size_t> positions_;
};

}  // namespace fnrk::declarations

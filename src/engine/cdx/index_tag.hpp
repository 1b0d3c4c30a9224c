#pragma once

// One tag of a compound index: a B-tree of (key, record number) pairs in ascending byte order.
// A descending tag is stored the same way and read backwards by its users.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/cdx/index_file.hpp"
#include "engine/cdx/index_key.hpp"
#include "engine/cdx/index_node.hpp"
#include "engine/cdx/tag_header.hpp"

namespace fnrk::engine::cdx {

// A place in a tag: an entry of a leaf. leaf == kNoNode is "no entry" (before the first or after
// the last).
struct TagPosition {
    std::uint32_t leaf = kNoNode;
    std::size_t index = 0;
    bool valid() const { return leaf != kNoNode; }
};

class IndexTag {
  public:
    IndexTag(IndexFile& file, std::uint32_t headerOffset, std::string name, KeyKind kind);
    // The remembered node may be one of its own walk slots: a tag stays where it was made.
    IndexTag(const IndexTag&) = delete;
    IndexTag& operator=(const IndexTag&) = delete;

    const std::string& name() const { return name_; }
    std::uint32_t headerOffset() const { return headerOffset_; }
    const TagHeader& header() const { return header_; }
    const KeyShape& shape() const { return shape_; }
    KeyKind kind() const { return kind_; }
    IndexFile& file() { return file_; }

    // Edits; the caller holds the file's UpdateGuard. Insert returns false when a unique tag
    // already has the key; Remove returns false when the pair is not there.
    bool Insert(std::string_view key, std::uint32_t record);
    bool Remove(std::string_view key, std::uint32_t record);

    // Reads; the caller holds a ReadGuard or UpdateGuard when the file is shared.
    TagPosition First();
    TagPosition Last();
    // First entry whose key, compared on probe.size() bytes, is not below the probe.
    TagPosition LowerBound(std::string_view probe);
    // Last entry whose key, compared on probe.size() bytes, is not above the probe.
    TagPosition LastNotAbove(std::string_view probe);
    // The entry with exactly this key and record number.
    TagPosition Find(std::string_view key, std::uint32_t record);
    // Most steps of a walk stay in the leaf it stands on: those are answered here, inline.
    TagPosition Next(TagPosition position) {
        if (const IndexNode* leaf = Remembered(position.leaf);
            leaf != nullptr && position.valid() && position.index + 1 < leaf->entries.size())
            return {position.leaf, position.index + 1};
        return NextThroughNodes(position);
    }
    TagPosition Previous(TagPosition position) {
        if (position.valid() && position.index > 0) return {position.leaf, position.index - 1};
        return PreviousThroughNodes(position);
    }
    const IndexEntry& EntryAt(TagPosition position) {
        // A walk asks for entries of the leaf it stands on several times a step.
        if (const IndexNode* leaf = Remembered(position.leaf);
            leaf != nullptr && position.index < leaf->entries.size())
            return leaf->entries[position.index];
        return LookUpEntry(position);
    }
    // The record of the entry `distance` entries from `position`, in its own leaf or the next one
    // (0: none there). A hint for prefetching: a damaged link gives 0, the step there fails.
    std::uint32_t NeighbourRecord(TagPosition position, bool forward, std::size_t distance) {
        if (const IndexNode* leaf = Remembered(position.leaf);
            leaf != nullptr && position.valid()) {
            const std::size_t count = leaf->entries.size();
            if (forward && position.index + distance < count)
                return leaf->entries[position.index + distance].record;
            if (!forward && position.index >= distance && position.index - distance < count)
                return leaf->entries[position.index - distance].record;
        }
        return NeighbourRecordThroughNodes(position, forward, distance);
    }
    // More entries than a file of this size can hold: a walk that gets this far is looping.
    std::uint64_t WalkLimit() const;
    // Counts keys by descending the tree; throws IndexCorrupt on cycles.
    std::uint64_t CountKeys();

    // Changes with every edit of this tag through this object and with every change of the file
    // it sees from elsewhere: while it stays the same, a position names the same entry.
    struct Version {
        std::uint64_t serial = 0;  // of this object: positions of another one never match
        std::uint64_t generation = 0;
        std::uint64_t edits = 0;
        bool operator==(const Version&) const = default;
    };
    Version version() const { return {serial_, file_.generation(), edits_}; }

    // Decoded node at an offset, cached; throws IndexCorrupt for offsets outside the file.
    const IndexNode& Node(std::uint32_t offset);
    // Re-reads the header (after another process may have moved the root).
    void ReloadHeader();

  private:
    // Deeper than any real tree (a 512-byte node holds at least two keys): a deeper path is a
    // cycle.
    static constexpr std::size_t kMaxDepth = 40;
    // The steps of one descent, held in place: every seek and edit makes one.
    template <typename T>
    class Steps {
      public:
        void push_back(T value) { items_.at(count_++) = value; }
        T& operator[](std::size_t i) { return items_[i]; }
        const T& back() const { return items_[count_ - 1]; }
        std::size_t size() const { return count_; }

      private:
        std::array<T, kMaxDepth + 1> items_{};
        std::size_t count_ = 0;
    };
    struct Path {
        Steps<std::uint32_t> offsets;  // root first, leaf last
        Steps<std::size_t> indexes;    // child taken in each interior node
    };
    template <typename GoesBelow>
    Path Descend(GoesBelow goesBelow);
    Path DescendTo(std::string_view key, std::uint32_t record);
    // Edits change cached nodes in place and write each changed node; a failed edit drops the
    // cache (its nodes may no longer match the file).
    class EditScope {
      public:
        explicit EditScope(IndexTag& tag);
        ~EditScope();
        EditScope(const EditScope&) = delete;
        EditScope& operator=(const EditScope&) = delete;

      private:
        IndexTag& tag_;
        int exceptions_;
    };
    IndexNode& Cached(std::uint32_t offset) {
        if (IndexNode* node = Remembered(offset)) return *node;
        return Lookup(offset);
    }
    // The node asked for last, when that is the one wanted.
    IndexNode* Remembered(std::uint32_t offset) const {
        return lastNode_ != nullptr && lastOffset_ == offset &&
                       cacheGeneration_ == file_.generation()
                   ? lastNode_
                   : nullptr;
    }
    const IndexEntry& LookUpEntry(TagPosition position);
    // The whole rules of Next, Previous and NeighbourRecord, for steps that leave the leaf or
    // start on one that is not remembered.
    TagPosition NextThroughNodes(TagPosition position);
    TagPosition PreviousThroughNodes(TagPosition position);
    std::uint32_t NeighbourRecordThroughNodes(TagPosition position, bool forward,
                                              std::size_t distance);
    // Cached() from the map, the walk slots or the file, remembered for the next time.
    IndexNode& Lookup(std::uint32_t offset);
    // The leaf a walk steps onto from its neighbour: from the cache if it is there, otherwise
    // read into a walk slot. `forward`: the walk's direction, in which the file is read ahead.
    const IndexNode& Sibling(std::uint32_t offset, bool forward);
    // The node from the cache or a walk slot; nullptr when neither has it.
    IndexNode* Known(std::uint32_t offset);
    void ForgetWalked(std::uint32_t offset);
    const IndexNode& ReadIntoWalkSlot(std::uint32_t offset, bool forward);
    IndexNode& Remember(std::uint32_t offset, IndexNode& node);
    // Every removal from the cache goes through these, which forget the remembered node too.
    void ClearCache();
    void EraseCached(std::uint32_t offset);
    // Throws IndexCorrupt for an offset that is not a node of the file.
    void CheckNodeOffset(std::uint32_t offset) const;
    // Points a node's left or right sibling pointer (kLeftPointerOffset, kRightPointerOffset)
    // elsewhere.
    void SetSibling(std::uint32_t offset, std::size_t pointerOffset, std::uint32_t sibling);
    void DropLeaves();
    // The node at path.offsets[depth] has changed: write it, splitting it if it no longer fits.
    void Put(Path& path, std::size_t depth);
    void Split(Path& path, std::size_t depth);
    std::size_t SplitPoint(const IndexNode& node) const;
    // The node at path.offsets[depth] has lost an entry.
    void Shrink(Path& path, std::size_t depth);
    // Writes a node; false (nothing written) when its entries do not fit in one.
    bool TryStore(std::uint32_t offset, IndexNode& node);
    void Store(std::uint32_t offset, IndexNode& node);
    // Caches a new node and writes it.
    IndexNode& Place(std::uint32_t offset, IndexNode node);
    void WriteHeader();
    void SyncCache();

    IndexFile& file_;
    std::uint32_t headerOffset_;
    std::string name_;
    KeyKind kind_;
    TagHeader header_;
    KeyShape shape_;
    std::unordered_map<std::uint32_t, IndexNode> cache_;
    // The cache's answers for recent offsets, one per slot by offset: every descent asks for the
    // same few interior nodes, and a search of a map of thousands of nodes misses the processor's
    // caches. Whatever leaves the cache leaves this too.
    struct Recent {
        std::uint32_t offset = kNoNode;
        IndexNode* node = nullptr;
    };
    static constexpr std::size_t kRecentSlots = 256;
    std::array<Recent, kRecentSlots> recent_;
    Recent& RecentSlot(std::uint32_t offset) { return recent_[offset / kNodeSize % kRecentSlots]; }
    // A walk passes each leaf once: kept in the cache, the leaves of a long walk would push out
    // those that seeks and edits come back to, and each would cost a fresh allocation. They are
    // decoded into a few slots whose memory is reused, in turn; a node is in the cache or in a
    // slot, never both. Enough slots for several walks over one tag at once.
    struct WalkSlot {
        std::uint32_t offset = kNoNode;
        IndexNode node;
    };
    static constexpr std::size_t kWalkSlots = 8;
    std::array<WalkSlot, kWalkSlots> walkSlots_;
    std::size_t nextWalkSlot_ = 0;
    std::uint64_t cacheGeneration_ = 0;
    // The node Cached() returned last (elements of the map keep their address).
    std::uint32_t lastOffset_ = 0;
    IndexNode* lastNode_ = nullptr;
    bool editing_ = false;
    std::uint64_t serial_;
    std::uint64_t edits_ = 0;
};

// Composite order of tag entries: key bytes, then record number.
int CompareEntry(const IndexEntry& entry, std::string_view key, std::uint32_t record);

}  // namespace fnrk::engine::cdx

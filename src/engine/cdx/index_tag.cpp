#include "engine/cdx/index_tag.hpp"

#include <atomic>

#include <algorithm>
#include <exception>
#include <unordered_set>

#include "engine/io/byte_order.hpp"

namespace fnrk::engine::cdx {

namespace {

// Decoded nodes kept per tag: enough for the interior levels and the hot leaves of a million-key
// tag. A decoded leaf with the bytes last written for it takes some 4.7 KB for short keys, so
// the cache of one tag can reach about 75 MB.
constexpr std::size_t kCachedNodes = 16384;

bool SameLast(const IndexEntry& parentEntry, const IndexNode& child) {
    return !child.entries.empty() && parentEntry.key == child.entries.back().key &&
           parentEntry.record == child.entries.back().record;
}

}  // namespace

int CompareEntry(const IndexEntry& entry, std::string_view key, std::uint32_t record) {
    if (const int c = CompareKeys(entry.key, key); c != 0) return c;
    return entry.record < record ? -1 : (entry.record > record ? 1 : 0);
}

IndexTag::IndexTag(IndexFile& file, std::uint32_t headerOffset, std::string name, KeyKind kind)
    : file_(file), headerOffset_(headerOffset), name_(std::move(name)), kind_(kind) {
    static std::atomic<std::uint64_t> serials{0};
    serial_ = ++serials;
    ReloadHeader();
}

void IndexTag::ReloadHeader() {
    std::string bytes(kHeaderSize, '\0');
    file_.Read(headerOffset_, bytes.data(), bytes.size());
    header_ = TagHeader::Parse(bytes.data(), file_.size());
    shape_ = KeyShape{header_.keyLength, header_.isDirectory() ? ' ' : PadByteOf(kind_)};
    ClearCache();
    cacheGeneration_ = file_.generation();
}

void IndexTag::SyncCache() {
    if (cacheGeneration_ != file_.generation()) ReloadHeader();
}

const IndexNode& IndexTag::Node(std::uint32_t offset) {
    return Cached(offset);
}

void IndexTag::CheckNodeOffset(std::uint32_t offset) const {
    if (offset % kNodeSize != 0 || offset < kHeaderSize || offset + kNodeSize > file_.size())
        throw IndexCorrupt("tag " + name_ + ": node pointer " + std::to_string(offset) +
                           " outside the file");
}

IndexNode& IndexTag::Lookup(std::uint32_t offset) {
    SyncCache();
    if (IndexNode* known = Known(offset)) return Remember(offset, *known);
    CheckNodeOffset(offset);
    char bytes[kNodeSize];
    file_.Read(offset, bytes, kNodeSize);
    // An edit holds references to cached nodes; the cache shrinks only between edits.
    if (cache_.size() >= kCachedNodes && !editing_) DropLeaves();
    IndexNode& node = cache_.emplace(offset, DecodeNode(bytes, shape_)).first->second;
    RecentSlot(offset) = {offset, &node};
    return Remember(offset, node);
}

const IndexNode& IndexTag::Sibling(std::uint32_t offset, bool forward) {
    if (const IndexNode* node = Remembered(offset)) return *node;
    SyncCache();
    if (IndexNode* known = Known(offset)) return Remember(offset, *known);
    return ReadIntoWalkSlot(offset, forward);
}

IndexNode* IndexTag::Known(std::uint32_t offset) {
    Recent& recent = RecentSlot(offset);
    if (recent.offset == offset) return recent.node;
    if (auto it = cache_.find(offset); it != cache_.end()) {
        recent = {offset, &it->second};
        return &it->second;
    }
    // An edit may change a leaf in its slot: only a walk reuses a slot, and no edit walks.
    for (WalkSlot& slot : walkSlots_)
        if (slot.offset == offset) return &slot.node;
    return nullptr;
}

const IndexNode& IndexTag::ReadIntoWalkSlot(std::uint32_t offset, bool forward) {
    CheckNodeOffset(offset);
    char bytes[kNodeSize];
    file_.ReadForWalk(offset, bytes, forward);
    WalkSlot& slot = walkSlots_[nextWalkSlot_];
    nextWalkSlot_ = (nextWalkSlot_ + 1) % kWalkSlots;
    if (lastNode_ == &slot.node) lastNode_ = nullptr;
    slot.offset = kNoNode;  // until the node has been decoded whole
    DecodeNode(bytes, shape_, slot.node);
    slot.offset = offset;
    return Remember(offset, slot.node);
}

void IndexTag::ForgetWalked(std::uint32_t offset) {
    for (WalkSlot& slot : walkSlots_) {
        if (slot.offset != offset) continue;
        slot.offset = kNoNode;
        if (lastNode_ == &slot.node) lastNode_ = nullptr;
    }
}

IndexNode& IndexTag::Remember(std::uint32_t offset, IndexNode& node) {
    lastOffset_ = offset;
    lastNode_ = &node;
    return node;
}

void IndexTag::ClearCache() {
    cache_.clear();
    recent_.fill({});
    for (WalkSlot& slot : walkSlots_) slot.offset = kNoNode;
    lastNode_ = nullptr;
}

void IndexTag::EraseCached(std::uint32_t offset) {
    cache_.erase(offset);
    if (RecentSlot(offset).offset == offset) RecentSlot(offset) = {};
    ForgetWalked(offset);
    if (lastOffset_ == offset) lastNode_ = nullptr;
}

void IndexTag::DropLeaves() {
    // Interior nodes are few and on every descent's path: they stay. Leaves go, in no particular
    // order, until a quarter of the room is free: the next accesses still find most of theirs.
    constexpr std::size_t kKept = kCachedNodes / 4 * 3;
    lastNode_ = nullptr;
    recent_.fill({});
    for (auto it = cache_.begin(); it != cache_.end() && cache_.size() > kKept;)
        it = it->second.isLeaf() ? cache_.erase(it) : std::next(it);
    if (cache_.size() > kKept) ClearCache();
}

IndexTag::EditScope::EditScope(IndexTag& tag) : tag_(tag), exceptions_(std::uncaught_exceptions()) {
    // An edit holds references to cached nodes: the cache is trimmed before it starts.
    if (tag_.cache_.size() >= kCachedNodes) tag_.DropLeaves();
    tag_.editing_ = true;
    ++tag_.edits_;
}

IndexTag::EditScope::~EditScope() {
    tag_.editing_ = false;
    // A failed edit may leave cached nodes that were changed but never written.
    if (std::uncaught_exceptions() > exceptions_) tag_.ClearCache();
}

bool IndexTag::TryStore(std::uint32_t offset, IndexNode& node) {
    char bytes[kNodeSize];
    if (node.isLeaf()) {
        if (!EncodeEditedLeaf(node, shape_, bytes)) return false;
    } else {
        if (node.entries.size() > InteriorCapacity(shape_.length)) return false;
        EncodeInterior(node, shape_, bytes);
    }
    file_.Write(offset, bytes, kNodeSize);
    return true;
}

void IndexTag::Store(std::uint32_t offset, IndexNode& node) {
    if (!TryStore(offset, node)) throw std::logic_error("tag " + name_ + ": node does not fit");
}

void IndexTag::SetSibling(std::uint32_t offset, std::size_t pointerOffset, std::uint32_t sibling) {
    // Only the four bytes of the pointer change: the node need not be read, decoded and encoded.
    CheckNodeOffset(offset);
    if (auto it = cache_.find(offset); it != cache_.end())
        (pointerOffset == kLeftPointerOffset ? it->second.left : it->second.right) = sibling;
    ForgetWalked(offset);
    char bytes[4];
    io::WriteLe32(bytes, sibling);
    file_.Write(offset + pointerOffset, bytes, 4);
}

IndexNode& IndexTag::Place(std::uint32_t offset, IndexNode node) {
    IndexNode& placed = cache_.insert_or_assign(offset, std::move(node)).first->second;
    Store(offset, placed);
    return placed;
}

void IndexTag::WriteHeader() {
    // Only the root pointer changes after creation.
    char bytes[4];
    io::WriteLe32(bytes, header_.root);
    file_.Write(headerOffset_, bytes, 4);
}

template <typename GoesBelow>
IndexTag::Path IndexTag::Descend(GoesBelow goesBelow) {
    SyncCache();
    Path path;
    std::uint32_t offset = header_.root;
    for (;;) {
        if (path.offsets.size() > kMaxDepth)
            throw IndexCorrupt("tag " + name_ + ": tree deeper than " + std::to_string(kMaxDepth) +
                               " levels (a cycle?)");
        path.offsets.push_back(offset);
        const IndexNode& node = Node(offset);
        if (node.isLeaf()) return path;
        // The first child whose last entry is not below the target; the last child otherwise.
        const auto below = std::partition_point(node.entries.begin(), node.entries.end() - 1,
                                                [&](const IndexEntry& e) { return goesBelow(e); });
        const auto i = static_cast<std::size_t>(below - node.entries.begin());
        path.indexes.push_back(i);
        offset = node.entries[i].child;
    }
}

IndexTag::Path IndexTag::DescendTo(std::string_view key, std::uint32_t record) {
    return Descend([&](const IndexEntry& e) { return CompareEntry(e, key, record) < 0; });
}

bool IndexTag::Insert(std::string_view key, std::uint32_t record) {
    if (header_.unique()) {
        const TagPosition found = LowerBound(key);
        if (found.valid() && EntryAt(found).key == key) return false;
    }
    EditScope edit(*this);
    Path path = DescendTo(key, record);
    IndexNode& leaf = Cached(path.offsets.back());
    auto at = std::lower_bound(
        leaf.entries.begin(), leaf.entries.end(), 0,
        [&](const IndexEntry& e, int) { return CompareEntry(e, key, record) < 0; });
    if (at != leaf.entries.end() && at->key == key && at->record == record) return false;
    leaf.insertedSince = static_cast<std::size_t>(at - leaf.entries.begin());
    leaf.entries.insert(at, IndexEntry{KeyBytes(key), record, 0});
    Put(path, path.offsets.size() - 1);
    return true;
}

std::size_t IndexTag::SplitPoint(const IndexNode& node) const {
    if (!node.isLeaf()) return node.entries.size() / 2;
    const std::size_t at = LeafSplitPoint(node, shape_);
    if (at == 0) throw std::logic_error("tag " + name_ + ": no split point");
    return at;
}

void IndexTag::Put(Path& path, std::size_t depth) {
    const std::uint32_t offset = path.offsets[depth];
    IndexNode& node = Cached(offset);
    if (!TryStore(offset, node)) return Split(path, depth);
    if (depth == 0) return;
    IndexNode& parent = Cached(path.offsets[depth - 1]);
    IndexEntry& entry = parent.entries[path.indexes[depth - 1]];
    if (SameLast(entry, node)) return;
    entry.key = node.entries.back().key;
    entry.record = node.entries.back().record;
    Put(path, depth - 1);
}

void IndexTag::Split(Path& path, std::size_t depth) {
    const std::uint32_t offset = path.offsets[depth];
    const std::uint32_t newOffset = file_.AllocateNode();
    IndexNode& node = Cached(offset);
    IndexNode right;
    right.attributes = static_cast<std::uint16_t>(node.attributes & ~kNodeRoot);
    const auto half = static_cast<std::ptrdiff_t>(SplitPoint(node));
    right.entries.assign(std::make_move_iterator(node.entries.begin() + half),
                         std::make_move_iterator(node.entries.end()));
    node.entries.resize(static_cast<std::size_t>(half));
    node.attributes = static_cast<std::uint16_t>(node.attributes & ~kNodeRoot);
    right.left = offset;
    right.right = node.right;
    node.right = newOffset;
    if (right.right != kNoNode) {
        SetSibling(right.right, kLeftPointerOffset, newOffset);
    }
    Store(offset, node);
    IndexEntry leftEntry{node.entries.back().key, node.entries.back().record, offset};
    IndexEntry rightEntry{right.entries.back().key, right.entries.back().record, newOffset};
    Place(newOffset, std::move(right));
    if (depth == 0) {
        IndexNode root;
        root.attributes = kNodeRoot;
        root.entries = {std::move(leftEntry), std::move(rightEntry)};
        header_.root = file_.AllocateNode();
        Place(header_.root, std::move(root));
        WriteHeader();
        return;
    }
    IndexNode& parent = Cached(path.offsets[depth - 1]);
    const std::size_t i = path.indexes[depth - 1];
    parent.entries[i] = std::move(leftEntry);
    parent.entries.insert(parent.entries.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                          std::move(rightEntry));
    Put(path, depth - 1);
}

bool IndexTag::Remove(std::string_view key, std::uint32_t record) {
    EditScope edit(*this);
    Path path = DescendTo(key, record);
    IndexNode& leaf = Cached(path.offsets.back());
    auto at = std::find_if(leaf.entries.begin(), leaf.entries.end(),
                           [&](const IndexEntry& e) { return e.key == key && e.record == record; });
    if (at == leaf.entries.end()) return false;
    leaf.entries.erase(at);
    Shrink(path, path.offsets.size() - 1);
    return true;
}

void IndexTag::Shrink(Path& path, std::size_t depth) {
    const std::uint32_t offset = path.offsets[depth];
    IndexNode& node = Cached(offset);
    if (node.entries.empty() && depth > 0) {
        // An empty node leaves the tree: its neighbours link past it and it goes to the free list.
        const std::uint32_t left = node.left;
        const std::uint32_t right = node.right;
        if (left != kNoNode) {
            SetSibling(left, kRightPointerOffset, right);
        }
        if (right != kNoNode) {
            SetSibling(right, kLeftPointerOffset, left);
        }
        EraseCached(offset);
        file_.FreeNode(offset);
        IndexNode& parent = Cached(path.offsets[depth - 1]);
        parent.entries.erase(parent.entries.begin() +
                             static_cast<std::ptrdiff_t>(path.indexes[depth - 1]));
        return Shrink(path, depth - 1);
    }
    if (depth == 0 && !node.isLeaf() && node.entries.empty()) {
        node.attributes = kNodeRoot | kNodeLeaf;  // the last key went: an empty root leaf
        node.left = node.right = kNoNode;
    }
    if (depth == 0 && !node.isLeaf() && node.entries.size() == 1) {
        // A root with one child hands the root over to that child.
        const std::uint32_t child = node.entries.front().child;
        IndexNode& childNode = Cached(child);
        childNode.attributes |= kNodeRoot;
        Store(child, childNode);
        header_.root = child;
        WriteHeader();
        EraseCached(offset);
        file_.FreeNode(offset);
        return;
    }
    Put(path, depth);
}

TagPosition IndexTag::First() {
    Path path = Descend([](const IndexEntry&) { return false; });
    const IndexNode& leaf = Node(path.offsets.back());
    return leaf.entries.empty() ? TagPosition{} : TagPosition{path.offsets.back(), 0};
}

TagPosition IndexTag::Last() {
    Path path = Descend([](const IndexEntry&) { return true; });
    const IndexNode& leaf = Node(path.offsets.back());
    if (leaf.entries.empty()) return {};
    return TagPosition{path.offsets.back(), leaf.entries.size() - 1};
}

TagPosition IndexTag::LowerBound(std::string_view probe) {
    probe = probe.substr(0, shape_.length);
    Path path = Descend([&](const IndexEntry& e) { return ComparePrefix(e.key, probe) < 0; });
    const IndexNode& leaf = Node(path.offsets.back());
    const auto at =
        std::partition_point(leaf.entries.begin(), leaf.entries.end(),
                             [&](const IndexEntry& e) { return ComparePrefix(e.key, probe) < 0; });
    if (at != leaf.entries.end())
        return TagPosition{path.offsets.back(),
                           static_cast<std::size_t>(at - leaf.entries.begin())};
    // Every key of the leaf is below: the answer, if any, starts the next leaf.
    if (leaf.entries.empty()) return {};
    TagPosition next = Next(TagPosition{path.offsets.back(), leaf.entries.size() - 1});
    if (next.valid() && ComparePrefix(EntryAt(next).key, probe) < 0) return {};
    return next;
}

TagPosition IndexTag::LastNotAbove(std::string_view probe) {
    probe = probe.substr(0, shape_.length);
    Path path = Descend([&](const IndexEntry& e) { return ComparePrefix(e.key, probe) <= 0; });
    const IndexNode& leaf = Node(path.offsets.back());
    const auto after =
        std::partition_point(leaf.entries.begin(), leaf.entries.end(),
                             [&](const IndexEntry& e) { return ComparePrefix(e.key, probe) <= 0; });
    if (after != leaf.entries.begin())
        return TagPosition{path.offsets.back(),
                           static_cast<std::size_t>(after - leaf.entries.begin()) - 1};
    if (leaf.entries.empty()) return {};
    TagPosition previous = Previous(TagPosition{path.offsets.back(), 0});
    if (previous.valid() && ComparePrefix(EntryAt(previous).key, probe) > 0) return {};
    return previous;
}

TagPosition IndexTag::Find(std::string_view key, std::uint32_t record) {
    Path path = DescendTo(key, record);
    const IndexNode& leaf = Node(path.offsets.back());
    for (std::size_t i = 0; i < leaf.entries.size(); ++i)
        if (leaf.entries[i].key == key && leaf.entries[i].record == record)
            return TagPosition{path.offsets.back(), i};
    return {};
}

TagPosition IndexTag::NextThroughNodes(TagPosition position) {
    if (!position.valid()) return {};
    const IndexNode* leaf = &Node(position.leaf);
    if (position.index + 1 < leaf->entries.size()) return {position.leaf, position.index + 1};
    for (std::uint32_t right = leaf->right; right != kNoNode; right = leaf->right) {
        if (right == position.leaf) throw IndexCorrupt("tag " + name_ + ": leaf links to itself");
        leaf = &Sibling(right, true);
        if (!leaf->isLeaf()) throw IndexCorrupt("tag " + name_ + ": leaf links to a non-leaf");
        if (!leaf->entries.empty()) return {right, 0};
    }
    return {};
}

TagPosition IndexTag::PreviousThroughNodes(TagPosition position) {
    if (!position.valid()) return {};
    if (position.index > 0) return {position.leaf, position.index - 1};
    const IndexNode* leaf = &Node(position.leaf);
    for (std::uint32_t left = leaf->left; left != kNoNode; left = leaf->left) {
        if (left == position.leaf) throw IndexCorrupt("tag " + name_ + ": leaf links to itself");
        const std::uint32_t current = left;
        leaf = &Sibling(current, false);
        if (!leaf->isLeaf()) throw IndexCorrupt("tag " + name_ + ": leaf links to a non-leaf");
        if (!leaf->entries.empty()) return {current, leaf->entries.size() - 1};
    }
    return {};
}

const IndexEntry& IndexTag::LookUpEntry(TagPosition position) {
    const IndexNode& leaf = Node(position.leaf);
    if (position.index >= leaf.entries.size())
        throw std::out_of_range("tag " + name_ + ": position past the leaf");
    return leaf.entries[position.index];
}

std::uint32_t IndexTag::NeighbourRecordThroughNodes(TagPosition position, bool forward,
                                                    std::size_t distance) {
    if (!position.valid()) return 0;
    const IndexNode* leaf = &Node(position.leaf);
    if (forward && position.index + distance < leaf->entries.size())
        return leaf->entries[position.index + distance].record;
    if (!forward && position.index >= distance)
        return leaf->entries[position.index - distance].record;
    // Past the end of the leaf: the neighbour is the leaf the walk reads next anyway.
    const std::size_t beyond =
        forward ? position.index + distance - leaf->entries.size() : distance - position.index - 1;
    const std::uint32_t neighbour = forward ? leaf->right : leaf->left;
    if (neighbour == kNoNode || neighbour == position.leaf) return 0;
    try {
        leaf = &Sibling(neighbour, forward);
    } catch (const IndexCorrupt&) {
        return 0;
    }
    if (!leaf->isLeaf() || beyond >= leaf->entries.size()) return 0;
    return leaf->entries[forward ? beyond : leaf->entries.size() - 1 - beyond].record;
}

std::uint64_t IndexTag::WalkLimit() const {
    return file_.size() / kNodeSize * ((kNodeSize - kLeafHeaderSize) / 3);
}

std::uint64_t IndexTag::CountKeys() {
    SyncCache();
    std::uint64_t count = 0;
    std::unordered_set<std::uint32_t> seen;
    std::vector<std::pair<std::uint32_t, std::size_t>> stack{{header_.root, 0}};
    while (!stack.empty()) {
        auto [offset, depth] = stack.back();
        stack.pop_back();
        if (depth > kMaxDepth || !seen.insert(offset).second)
            throw IndexCorrupt("tag " + name_ + ": node " + std::to_string(offset) +
                               " reached twice (a cycle?)");
        const IndexNode& node = Node(offset);
        if (node.isLeaf()) {
            count += node.entries.size();
            continue;
        }
        for (const auto& entry : node.entries) stack.emplace_back(entry.child, depth + 1);
    }
    return count;
}

}  // namespace fnrk::engine::cdx

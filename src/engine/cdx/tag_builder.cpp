#include "engine/cdx/tag_builder.hpp"

#include <string_view>
#include <vector>

namespace fnrk::engine::cdx {

namespace {

constexpr std::size_t kLeafRoom = (kNodeSize - kLeafHeaderSize) / 8;

struct InteriorLevel {
    std::uint32_t offset = kNoNode;
    IndexNode node;
};

class TreeWriter {
  public:
    TreeWriter(IndexFile& file, const KeyShape& shape, std::uint32_t recordHint, LeafFill fill)
        : file_(file),
          shape_(shape),
          leaf_(shape, recordHint, fill == LeafFill::WithRoom ? kLeafRoom : 0),
          leafOffset_(file_.AllocateNode()) {}

    void AddLeafEntry(std::string_view key, std::uint32_t record) {
        if (!leaf_.Add(key, record)) {
            CloseLeaf();
            leaf_.Add(key, record);
        }
        lastKey_ = key;
        lastRecord_ = record;
    }

    std::uint32_t Finish() {
        char bytes[kNodeSize];
        const bool leafIsRoot = levels_.empty();
        leaf_.Finish(leafIsRoot ? kNodeRoot | kNodeLeaf : kNodeLeaf, leafLeft_, kNoNode, bytes);
        file_.Write(leafOffset_, bytes, kNodeSize);
        if (leafIsRoot) return leafOffset_;
        Push(1, IndexEntry{KeyBytes(lastKey_), lastRecord_, leafOffset_});
        for (std::size_t level = 1;; ++level) {
            InteriorLevel& current = levels_[level - 1];
            if (level == levels_.size()) {
                current.node.attributes |= kNodeRoot;
                Write(current);
                return current.offset;
            }
            Write(current);
            Push(level + 1, LastOf(current));
        }
    }

  private:
    // The leaf is full: start its right neighbour, write it, pass its last key up.
    void CloseLeaf() {
        const std::uint32_t next = file_.AllocateNode();
        char bytes[kNodeSize];
        leaf_.Finish(kNodeLeaf, leafLeft_, next, bytes);
        file_.Write(leafOffset_, bytes, kNodeSize);
        leafLeft_ = leafOffset_;
        leafOffset_ = next;
        Push(1, IndexEntry{KeyBytes(lastKey_), lastRecord_, leafLeft_});
    }

    // The same for an interior level (1 is the level above the leaves).
    void CloseInterior(std::size_t level) {
        InteriorLevel& current = levels_[level - 1];
        const std::uint32_t next = file_.AllocateNode();
        current.node.right = next;
        Write(current);
        InteriorLevel closed = std::move(current);
        levels_[level - 1] = InteriorLevel{next, IndexNode{}};
        levels_[level - 1].node.attributes = 0;
        levels_[level - 1].node.left = closed.offset;
        Push(level + 1, LastOf(closed));
    }

    static IndexEntry LastOf(const InteriorLevel& level) {
        const IndexEntry& last = level.node.entries.back();
        return IndexEntry{last.key, last.record, level.offset};
    }

    void Push(std::size_t level, IndexEntry entry) {
        if (level > levels_.size()) {
            levels_.push_back(InteriorLevel{file_.AllocateNode(), IndexNode{}});
            levels_.back().node.attributes = 0;
        } else if (levels_[level - 1].node.entries.size() == InteriorCapacity(shape_.length)) {
            CloseInterior(level);
        }
        levels_[level - 1].node.entries.push_back(std::move(entry));
    }

    void Write(const InteriorLevel& level) {
        char bytes[kNodeSize];
        EncodeInterior(level.node, shape_, bytes);
        file_.Write(level.offset, bytes, kNodeSize);
    }

    IndexFile& file_;
    KeyShape shape_;
    LeafWriter leaf_;
    std::uint32_t leafOffset_;
    std::uint32_t leafLeft_ = kNoNode;
    std::string_view lastKey_;
    std::uint32_t lastRecord_ = 0;
    std::vector<InteriorLevel> levels_;  // interior levels, lowest first
};

}  // namespace

std::uint32_t BuildTree(IndexFile& file, const KeyShape& shape, std::uint32_t recordHint,
                        const TagEntries& sorted, LeafFill fill) {
    TreeWriter writer(file, shape, recordHint, fill);
    for (std::size_t i = 0; i < sorted.size(); ++i)
        writer.AddLeafEntry(sorted.KeyAt(i), sorted.RecordAt(i));
    return writer.Finish();
}

}  // namespace fnrk::engine::cdx

#include "engine/cdx/tag_builder.hpp"

#include <optional>

namespace fnrk::engine::cdx {

namespace {

struct Level {
    std::uint32_t offset = kNoNode;
    IndexNode node;
};

class TreeWriter {
  public:
    TreeWriter(IndexFile& file, const KeyShape& shape, std::uint32_t recordHint)
        : file_(file), shape_(shape), recordHint_(recordHint), sizer_(shape, recordHint) {
        levels_.push_back(Level{file_.AllocateNode(), IndexNode{}});
    }

    void AddLeafEntry(const IndexEntry& entry) {
        if (!sizer_.Add(entry.key, entry.record)) {
            CloseNode(0);
            sizer_ = LeafSizer(shape_, recordHint_);
            sizer_.Add(entry.key, entry.record);
        }
        levels_[0].node.entries.push_back(IndexEntry{entry.key, entry.record, 0});
    }

    std::uint32_t Finish() {
        for (std::size_t level = 0;; ++level) {
            Level& current = levels_[level];
            if (level + 1 == levels_.size()) {
                current.node.attributes |= kNodeRoot;
                Write(current);
                return current.offset;
            }
            Write(current);
            Push(level + 1, LastOf(current));
        }
    }

  private:
    // The node of a level is full: start its right neighbour, write it, pass its last key up.
    void CloseNode(std::size_t level) {
        Level& current = levels_[level];
        const std::uint32_t next = file_.AllocateNode();
        current.node.right = next;
        Write(current);
        Level closed = std::move(current);
        levels_[level] = Level{next, IndexNode{}};
        levels_[level].node.attributes = closed.node.attributes;
        levels_[level].node.left = closed.offset;
        Push(level + 1, LastOf(closed));
    }

    static IndexEntry LastOf(const Level& level) {
        const IndexEntry& last = level.node.entries.back();
        return IndexEntry{last.key, last.record, level.offset};
    }

    void Push(std::size_t level, IndexEntry entry) {
        if (level == levels_.size()) {
            levels_.push_back(Level{file_.AllocateNode(), IndexNode{}});
            levels_.back().node.attributes = 0;
        } else if (levels_[level].node.entries.size() == InteriorCapacity(shape_.length)) {
            CloseNode(level);
        }
        levels_[level].node.entries.push_back(std::move(entry));
    }

    void Write(const Level& level) {
        char bytes[kNodeSize];
        if (level.node.isLeaf())
            EncodeLeaf(level.node, shape_, recordHint_, bytes);
        else
            EncodeInterior(level.node, shape_, bytes);
        file_.Write(level.offset, bytes, kNodeSize);
    }

    IndexFile& file_;
    KeyShape shape_;
    std::uint32_t recordHint_;
    LeafSizer sizer_;
    std::vector<Level> levels_;
};

}  // namespace

std::uint32_t BuildTree(IndexFile& file, const KeyShape& shape, std::uint32_t recordHint,
                        const std::vector<IndexEntry>& sorted) {
    TreeWriter writer(file, shape, recordHint);
    for (const auto& entry : sorted) writer.AddLeafEntry(entry);
    return writer.Finish();
}

}  // namespace fnrk::engine::cdx

#pragma once

// Writes a whole tree from entries already in tag order, bottom-up: each level's node is written
// when the next one is started. Nodes are taken from the file in the order a sorted build needs
// them; with leaves packed full, that gives the same file as other engines write.

#include <cstdint>

#include "engine/cdx/index_file.hpp"
#include "engine/cdx/index_node.hpp"
#include "engine/cdx/tag_entries.hpp"

namespace fnrk::engine::cdx {

enum class LeafFill {
    Packed,    // as full as they go
    WithRoom,  // an eighth of each leaf left free, so that inserts soon after do not split it
};

// Returns the root node's offset. recordHint is the highest record number of the table.
std::uint32_t BuildTree(IndexFile& file, const KeyShape& shape, std::uint32_t recordHint,
                        const TagEntries& sorted, LeafFill fill);

}  // namespace fnrk::engine::cdx

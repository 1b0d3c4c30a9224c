// Random bytes against the node reader: it must reject or decode, never crash, and a leaf it
// accepts must survive a write and a second read unchanged.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "engine/cdx/index_node.hpp"

using namespace fnrk::engine::cdx;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const KeyShape shape{1 + data[0] % kMaxKeyLength, (data[1] & 1) != 0 ? ' ' : '\0'};
    char bytes[kNodeSize] = {};
    std::memcpy(bytes, data + 2, std::min(size - 2, kNodeSize));
    try {
        const IndexNode node = DecodeNode(bytes, shape);
        if (!node.isLeaf()) return 0;
        char again[kNodeSize];
        if (!EncodeLeaf(node, shape, 0, again)) return 0;
        const IndexNode reread = DecodeNode(again, shape);
        if (reread.entries.size() != node.entries.size()) __builtin_trap();
        for (std::size_t i = 0; i < node.entries.size(); ++i)
            if (reread.entries[i].key != node.entries[i].key ||
                reread.entries[i].record != node.entries[i].record)
                __builtin_trap();
    } catch (const IndexCorrupt&) {
    }
    return 0;
}

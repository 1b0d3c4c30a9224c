#pragma once

#include <cstdint>
#include <string>

namespace fnrk::engine::dbf {

// One column of a table, as its 32-byte descriptor holds it. `offset` counts from the start of
// the record, whose first byte is the deletion flag.
struct Field {
    std::string name;  // upper case, at most 10 characters
    char type = 'C';   // C N F D L M G P I B Y T
    std::uint16_t length = 0;
    std::uint8_t decimals = 0;
    std::uint32_t offset = 0;
};

// Memo-like fields keep a block number of the memo file in the record.
inline bool IsMemoType(char type) {
    return type == 'M' || type == 'G' || type == 'P';
}

}  // namespace fnrk::engine::dbf

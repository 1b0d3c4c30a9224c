// Damaged memo files: open, then read every block a pointer could name near the start, and the
// blocks the file's own first words point at.

#include <cstdint>

#include "engine/io/byte_order.hpp"
#include "engine/io/fuzz_scratch_file.hpp"
#include "engine/memo/memo_file.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace fnrk::engine;
    static const std::string path = io::ScratchPath(".fpt");
    io::WriteScratch(path, data, size);
    memo::MemoFile memo;
    if (!memo.Open(path, true).empty()) return 0;
    memo::MemoBlock block;
    for (std::uint32_t number = 0; number < 64; ++number) memo.Read(number, block);
    for (std::size_t at = 8; at + 4 <= size && at < 64; at += 4)
        memo.Read(io::ReadBe32(reinterpret_cast<const char*>(data) + at), block);
    memo.Read(memo.NextFreeBlock(), block);
    return 0;
}

// Damaged table files: the header parser on the raw bytes, then the whole open, record reads and
// check on the same bytes as a file.

#include <cstdint>
#include <string_view>

#include "engine/dbf/table_check.hpp"
#include "engine/dbf/table_file.hpp"
#include "engine/io/fuzz_scratch_file.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace fnrk::engine::dbf;
    using fnrk::engine::io::ScratchPath;
    using fnrk::engine::io::WriteScratch;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    TableHeader header;
    if (!ParseTableHeader(bytes, size, header).empty()) return 0;

    static const std::string path = ScratchPath(".dbf");
    WriteScratch(path, data, size);
    {
        TableFile table;
        std::string message;
        if (table.Open(path, {.exclusive = false, .readOnly = true}, message) == 0) {
            for (std::uint32_t record = 1; record <= table.recordCount() + 1; ++record)
                table.ReadRecord(record);
        }
    }
    CheckTable(path);
    return 0;
}

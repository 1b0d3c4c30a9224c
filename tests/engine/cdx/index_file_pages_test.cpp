// Pages written under an update guard are kept until the outermost guard ends: the writer reads
// them at once, the file and other openers see them only afterwards, together with a change
// counter that moved once, and a guard that wrote nothing leaves the counter alone.

#include <gtest/gtest.h>

#include <cstring>

#include "engine/cdx/compound_index.hpp"
#include "engine/cdx/tag_header.hpp"
#include "engine/io/byte_order.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine::cdx {
namespace {

std::uint32_t CounterOnDisk(const std::filesystem::path& path) {
    return io::ReadLe32(fnrk::testing::ReadFileBytes(path).data() + kChangeCounterOffset);
}

TEST(IndexFilePages, AGuardsWritesReachTheFileAndOtherOpenersWhenItEnds) {
    fnrk::testing::TempDir dir;
    const auto path = dir / "pages.cdx";
    CompoundIndex::Create(path);
    const std::string before = fnrk::testing::ReadFileBytes(path);
    auto writer = IndexFile::Open(path, {.shared = true});
    auto reader = IndexFile::Open(path, {.shared = true});
    const std::uint32_t counter = CounterOnDisk(path);
    const std::string node(kNodeSize, 'N');
    std::uint32_t added = 0;
    {
        IndexFile::UpdateGuard guard(*writer);
        added = writer->AllocateNode();
        writer->Write(added, node.data(), node.size());
        // Four bytes inside the root leaf: the rest of that page stays as the file has it.
        writer->Write(kHeaderSize + 100, "ABCD", 4);
        {
            IndexFile::UpdateGuard nested(*writer);
            writer->Write(kHeaderSize + 200, "EF", 2);
        }
        std::string page(kNodeSize, '\0');
        writer->Read(added, page.data(), page.size());
        EXPECT_EQ(page, node);
        EXPECT_EQ(writer->size(), before.size() + kNodeSize);
        EXPECT_EQ(fnrk::testing::ReadFileBytes(path), before) << "written before the guard ended";
    }
    std::string expected = before + node;
    expected.replace(kHeaderSize + 100, 4, "ABCD");
    expected.replace(kHeaderSize + 200, 2, "EF");
    std::string onDisk = fnrk::testing::ReadFileBytes(path);
    ASSERT_EQ(onDisk.size(), expected.size());
    EXPECT_EQ(CounterOnDisk(path), counter + 1);
    // Apart from the counter, the file is exactly the pages written.
    std::memcpy(onDisk.data() + kChangeCounterOffset, expected.data() + kChangeCounterOffset, 4);
    EXPECT_EQ(onDisk, expected);

    const std::uint64_t generation = reader->generation();
    {
        IndexFile::ReadGuard guard(*reader);
        EXPECT_EQ(reader->generation(), generation + 1);
        std::string page(kNodeSize, '\0');
        reader->Read(added, page.data(), page.size());
        EXPECT_EQ(page, node);
    }
    { IndexFile::UpdateGuard idle(*writer); }
    EXPECT_EQ(CounterOnDisk(path), counter + 1) << "a guard without writes moved the counter";
    reader->NoticeChanges();
    EXPECT_EQ(reader->generation(), generation + 1);
}

}  // namespace
}  // namespace fnrk::engine::cdx

// Pages written under an update guard are kept until the outermost guard ends: the writer reads
// them at once, the file and other openers see them only afterwards, together with a change
// counter that moved once, and a guard that wrote nothing leaves the counter alone. The nodes a
// walk reads ahead are never older than the file.

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "engine/cdx/compound_index.hpp"
#include "engine/cdx/tag_header.hpp"
#include "engine/crypt/file_cipher.hpp"
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

// Node `i` of a run of nodes written one after another, each of its own bytes.
std::string RunNode(std::size_t i, char salt) {
    return std::string(kNodeSize, static_cast<char>('A' + (i * 7 + salt) % 26));
}

std::string ReadNode(IndexFile& file, std::uint64_t offset, int how) {
    std::string page(kNodeSize, '\0');
    if (how == 0)
        file.Read(offset, page.data(), page.size());
    else
        file.ReadForWalk(offset, page.data(), how > 0);
    return page;
}

TEST(IndexFilePages, AWalksReadAheadIsNeverOlderThanTheFile) {
    crypt::TableKey key{};
    key[0] = 7;
    const crypt::FileCipher cipher(key);
    for (const crypt::FileCipher* sealed :
         {static_cast<const crypt::FileCipher*>(nullptr), &cipher}) {
        SCOPED_TRACE(sealed != nullptr ? "encrypted" : "plain");
        fnrk::testing::TempDir dir;
        const auto path = dir / "walk.cdx";
        CompoundIndex::Create(path);
        constexpr std::size_t kRun = 80;  // more than one read-ahead, both ways
        auto writer = IndexFile::Open(path, {.shared = true, .cipher = sealed});
        std::vector<std::uint32_t> run;
        {
            IndexFile::UpdateGuard guard(*writer);
            for (std::size_t i = 0; i < kRun; ++i) {
                run.push_back(writer->AllocateNode());
                writer->Write(run.back(), RunNode(i, 0).data(), kNodeSize);
            }
        }
        auto walker = IndexFile::Open(path, {.shared = true, .cipher = sealed});
        std::vector<char> salts(kRun, 0);
        const auto expectRun = [&](int how) {
            IndexFile::ReadGuard guard(*walker);
            for (std::size_t n = 0; n < kRun; ++n) {
                const std::size_t i = how < 0 ? kRun - 1 - n : n;
                ASSERT_EQ(ReadNode(*walker, run[i], how), RunNode(i, salts[i])) << "node " << i;
            }
        };
        expectRun(1);
        expectRun(-1);
        // Another opener rewrites nodes the walker has read ahead, in the middle and at the
        // edges of its windows.
        for (const std::size_t i : {std::size_t{1}, std::size_t{31}, std::size_t{32}, kRun - 1}) {
            IndexFile::UpdateGuard guard(*writer);
            salts[i] = 3;
            writer->Write(run[i], RunNode(i, salts[i]).data(), kNodeSize);
        }
        expectRun(1);
        expectRun(0);
        // The walker itself rewrites a node inside its window: seen while its guard holds the
        // page and after the page has gone to the file.
        for (const int how : {1, -1}) {
            expectRun(how);
            {
                IndexFile::ReadGuard guard(*walker);
                ReadNode(*walker, run[40], how);  // now in the read-ahead
            }
            {
                IndexFile::UpdateGuard guard(*walker);
                salts[40] = static_cast<char>(salts[40] + 5);
                walker->Write(run[40], RunNode(40, salts[40]).data(), kNodeSize);
                EXPECT_EQ(ReadNode(*walker, run[40], how), RunNode(40, salts[40]));
            }
            {
                IndexFile::ReadGuard guard(*walker);
                EXPECT_EQ(ReadNode(*walker, run[40], how), RunNode(40, salts[40]));
            }
            expectRun(how);
        }
        // A node past the end of the file is refused, whatever the read-ahead holds.
        IndexFile::ReadGuard guard(*walker);
        EXPECT_THROW(ReadNode(*walker, walker->size(), 1), IndexCorrupt);
    }
}

}  // namespace
}  // namespace fnrk::engine::cdx

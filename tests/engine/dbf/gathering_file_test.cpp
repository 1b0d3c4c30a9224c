#include "engine/io/gathering_file.hpp"

#include <gtest/gtest.h>

#include <random>

#include "support/temp_dir.hpp"

namespace fnrk::engine::io {
namespace {

using testing::ReadFileBytes;
using testing::TempDir;

// Writes at `offset` into a model of the file's bytes.
void Put(std::string& model, std::uint64_t offset, const std::string& bytes) {
    if (model.size() < offset + bytes.size()) model.resize(offset + bytes.size(), '\0');
    model.replace(offset, bytes.size(), bytes);
}

// Records appended one after the other, each with an end mark that the next one overwrites, as
// a table appends them; among them rewrites of earlier records, writes far off (the header),
// reads and size queries, at random. Every read and the file at the end hold exactly what the
// writes put there, in their order.
TEST(GatheringFile, ReadsAndTheFileShowEveryWriteInItsOrder) {
    TempDir dir;
    const auto path = (dir / "t.dbf").string();
    GatheringFile file;
    file.Reset(NativeFile::CreateNew(path));
    ASSERT_TRUE(file.valid());
    file.Gather(true);

    constexpr std::uint64_t kHeader = 96;
    constexpr std::size_t kRecord = 85;  // many records per gathered piece, and one across its end
    std::string model;
    std::mt19937 random(7);
    const std::string header(kHeader, 'H');
    ASSERT_TRUE(file.WriteAt(0, header.data(), header.size()));
    Put(model, 0, header);
    std::uint32_t records = 0;
    for (int step = 0; step < 20000; ++step) {
        const std::uint32_t pick = random() % 100;
        if (pick < 80) {
            // An append: the record and the end mark after it.
            std::string bytes(kRecord, static_cast<char>('a' + records % 26));
            bytes += '\x1a';
            ASSERT_TRUE(file.WriteAt(kHeader + records * kRecord, bytes.data(), bytes.size()));
            Put(model, kHeader + records * kRecord, bytes);
            ++records;
        } else if (pick < 90 && records > 0) {
            // A rewrite of a record, lately appended or long ago.
            const std::uint32_t record = random() % 2 == 0
                                             ? records - 1 - random() % std::min(records, 4u)
                                             : static_cast<std::uint32_t>(random() % records);
            const std::string bytes(kRecord, static_cast<char>('A' + step % 26));
            ASSERT_TRUE(file.WriteAt(kHeader + record * kRecord, bytes.data(), bytes.size()));
            Put(model, kHeader + record * kRecord, bytes);
        } else if (pick < 93) {
            // The record count in the header.
            const std::string count = std::to_string(records);
            ASSERT_TRUE(file.WriteAt(4, count.data(), count.size()));
            Put(model, 4, count);
        } else if (pick < 98) {
            const std::uint64_t offset = random() % model.size();
            const std::size_t length = 1 + random() % 300;
            std::string read(length, '\0');
            read.resize(file.ReadAt(offset, read.data(), length));
            ASSERT_EQ(read, model.substr(offset, length)) << "step " << step;
        } else {
            ASSERT_EQ(file.Size(), model.size()) << "step " << step;
        }
    }
    ASSERT_TRUE(file.WriteGathered());
    EXPECT_EQ(ReadFileBytes(path), model);

    // Off, writes go straight to the file.
    ASSERT_TRUE(file.Gather(false));
    ASSERT_TRUE(file.WriteAt(model.size(), "tail", 4));
    EXPECT_EQ(ReadFileBytes(path), model + "tail");
}

}  // namespace
}  // namespace fnrk::engine::io

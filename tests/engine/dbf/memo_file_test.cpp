#include "engine/memo/memo_file.hpp"

#include <gtest/gtest.h>

#include "support/temp_dir.hpp"

namespace fnrk::engine::memo {
namespace {

using testing::ReadFileBytes;
using testing::TempDir;
using testing::WriteFileBytes;

// A new memo file of the default block size, open for writing.
class NewMemoFile : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(MemoFile::Create(path, 0), "");
        ASSERT_EQ(memo.Open(path, false), "");
    }

    TempDir dir;
    const std::string path = (dir / "t.fpt").string();
    MemoFile memo;
};

TEST_F(NewMemoFile, WritesReadsOverwritesInPlaceAndGrows) {
    EXPECT_EQ(memo.blockSize(), 64);
    EXPECT_EQ(memo.NextFreeBlock(), 8u);

    std::uint32_t first = 0;
    ASSERT_EQ(memo.Write(first, kMemoTypeText, "hello"), "");
    EXPECT_EQ(first, 8u);
    std::uint32_t second = 0;
    ASSERT_EQ(memo.Write(second, kMemoTypeBinary, std::string(100, 'b')), "");
    EXPECT_EQ(second, 9u);  // "hello" takes one 64-byte block
    EXPECT_EQ(memo.NextFreeBlock(), 11u);

    // Shorter data stays in its blocks; longer data moves to the end.
    std::uint32_t rewritten = first;
    ASSERT_EQ(memo.Write(rewritten, kMemoTypeText, "bye"), "");
    EXPECT_EQ(rewritten, first);
    ASSERT_EQ(memo.Write(rewritten, kMemoTypeText, std::string(200, 'x')), "");
    EXPECT_EQ(rewritten, 11u);

    MemoBlock block;
    ASSERT_EQ(memo.Read(first, block), "");
    EXPECT_EQ(block.data, "bye");
    EXPECT_EQ(block.type, kMemoTypeText);
    ASSERT_EQ(memo.Read(second, block), "");
    EXPECT_EQ(block.type, kMemoTypeBinary);
    EXPECT_EQ(block.data, std::string(100, 'b'));

    // The file layout: big-endian next free block and block size in the header.
    const std::string bytes = ReadFileBytes(path);
    EXPECT_EQ(bytes.substr(0, 4), std::string("\0\0\0\x0F", 4));
    EXPECT_EQ(bytes.substr(6, 2), std::string("\0\x40", 2));
    EXPECT_EQ(bytes.substr(8 * 64, 8), std::string("\0\0\0\x01\0\0\0\x03", 8));

    std::uint32_t empty = 5;
    ASSERT_EQ(memo.Write(empty, kMemoTypeText, ""), "");
    EXPECT_EQ(empty, 0u);

    ASSERT_EQ(memo.Clear(), "");
    EXPECT_EQ(memo.NextFreeBlock(), 8u);
    EXPECT_NE(memo.Read(first, block), "");
}

TEST_F(NewMemoFile, LastMemoGrowsWhereItStands) {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    ASSERT_EQ(memo.Write(first, kMemoTypeText, "one block"), "");
    ASSERT_EQ(memo.Write(last, kMemoTypeBinary, "one block too"), "");
    ASSERT_EQ(last, 9u);

    // A value written piece by piece, each write the whole value so far.
    std::string value;
    for (int piece = 0; piece < 20; ++piece) {
        value += std::string(100, static_cast<char>('a' + piece));
        std::uint32_t block = last;
        ASSERT_EQ(memo.Write(block, kMemoTypeBinary, value), "");
        EXPECT_EQ(block, last);
    }
    const std::uint32_t end = 9 + (8 + 2000 + 63) / 64;
    EXPECT_EQ(memo.NextFreeBlock(), end);
    EXPECT_EQ(ReadFileBytes(path).size(), std::size_t{end} * 64);

    // A memo with another after it still moves to the end when it outgrows its blocks.
    ASSERT_EQ(memo.Write(first, kMemoTypeText, std::string(100, 'x')), "");
    EXPECT_EQ(first, end);
    MemoBlock read;
    ASSERT_EQ(memo.Read(last, read), "");
    EXPECT_EQ(read.data, value);
    ASSERT_EQ(memo.Read(first, read), "");
    EXPECT_EQ(read.data, std::string(100, 'x'));
}

TEST(MemoFile, DamagedFilesAndPointersAreReported) {
    TempDir dir;
    const std::string path = (dir / "bad.fpt").string();
    MemoFile memo;
    EXPECT_NE(memo.Open(path, true), "");  // missing

    WriteFileBytes(path, std::string(100, '\0'));
    EXPECT_NE(memo.Open(path, true), "");  // shorter than its header

    std::string header(512, '\0');
    header[3] = 8;
    WriteFileBytes(path, header);  // block size 0
    EXPECT_NE(memo.Open(path, true), "");

    header[7] = 64;
    std::string block(64, '\0');
    block[3] = 1;
    block[4] = 0x7F;  // length far beyond the file
    WriteFileBytes(path, header + block);
    ASSERT_EQ(memo.Open(path, true), "");
    MemoBlock read;
    EXPECT_NE(memo.Read(8, read).find("past the end"), std::string::npos);
    EXPECT_NE(memo.Read(500, read).find("past the end"), std::string::npos);
    EXPECT_NE(memo.Read(2, read).find("inside the memo header"), std::string::npos);
}

}  // namespace
}  // namespace fnrk::engine::memo

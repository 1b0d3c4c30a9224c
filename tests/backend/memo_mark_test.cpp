#include <gtest/gtest.h>

#include "backend/column_codec.hpp"

namespace fnrk::backend {
namespace {

using engine::dbf::Field;

// The bytes of a memo field in the backend's record buffers, for the two memo field widths of
// table files: ten digits of text and a four-byte little-endian number.
TEST(MemoMarkTest, MarksTellOnlyWhetherThereIsAMemo) {
    const Field text{"NOTE", 'M', 10, 0, 3};
    const Field binary{"PICTURE", 'G', 4, 0, 13};
    std::string record(1 + 2 + 10 + 4, 'x');

    MarkMemo(text, true, record);
    MarkMemo(binary, true, record);
    EXPECT_EQ(record, std::string("xxx         1") + std::string("\x01\0\0\0", 4));
    EXPECT_TRUE(NamesMemo(record, text));
    EXPECT_TRUE(NamesMemo(record, binary));

    MarkMemo(text, false, record);
    MarkMemo(binary, false, record);
    EXPECT_EQ(record, "xxx" + std::string(10, ' ') + std::string(4, '\0'));  // as in a new record
    EXPECT_FALSE(NamesMemo(record, text));
    EXPECT_FALSE(NamesMemo(record, binary));

    // What a caller may put there: block 0, blanks, or any block number.
    record.replace(3, 10, "         0");
    record.replace(13, 4, "    ");
    EXPECT_FALSE(NamesMemo(record, text));
    EXPECT_FALSE(NamesMemo(record, binary));
    record.replace(3, 10, "      4711");
    record.replace(13, 4, "\x10\x02\0\0", 4);
    EXPECT_TRUE(NamesMemo(record, text));
    EXPECT_TRUE(NamesMemo(record, binary));
}

}  // namespace
}  // namespace fnrk::backend

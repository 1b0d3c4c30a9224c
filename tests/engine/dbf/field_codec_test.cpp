#include "engine/dbf/field_codec.hpp"

#include <gtest/gtest.h>

#include <string>

#include "engine/dbf/field_list.hpp"

namespace fnrk::engine::dbf {
namespace {

TEST(FieldCodec, NumbersAreRightAlignedRoundedAndRefusedWhenTooWide) {
    const Field amount{"AMOUNT", 'N', 8, 2, 1};
    std::string record(9, 'x');
    ASSERT_TRUE(WriteNumber(record.data(), amount, 12.345));
    EXPECT_EQ(record, "x   12.35");  // the 'x' deletion byte is left alone
    EXPECT_DOUBLE_EQ(ReadNumber(record.data(), amount), 12.35);
    ASSERT_TRUE(WriteNumber(record.data(), amount, -0.001));
    EXPECT_EQ(record.substr(1), "    0.00");
    ASSERT_TRUE(WriteNumber(record.data(), amount, -9999.99));
    EXPECT_EQ(record.substr(1), "-9999.99");
    EXPECT_FALSE(WriteNumber(record.data(), amount, 100000.0));
    EXPECT_FALSE(WriteNumber(record.data(), amount, 1.0 / 0.0));
    EXPECT_EQ(record.substr(1), "-9999.99");  // unchanged by the refused writes

    const Field count{"QTY", 'N', 3, 0, 1};
    std::string small(4, ' ');
    EXPECT_DOUBLE_EQ(ReadNumber(small.data(), count), 0);
    ASSERT_TRUE(WriteNumber(small.data(), count, 999));
    EXPECT_FALSE(WriteNumber(small.data(), count, -100));

    const Field integer{"N", 'I', 4, 0, 0};
    std::string binary(4, '\0');
    ASSERT_TRUE(WriteNumber(binary.data(), integer, -2));
    EXPECT_EQ(binary, std::string("\xFE\xFF\xFF\xFF", 4));
    EXPECT_FALSE(WriteNumber(binary.data(), integer, 3e9));
}

TEST(FieldCodec, TextLogicalAndMemoBlocks) {
    const Field name{"NAME", 'C', 5, 0, 0};
    std::string record = "abcde";
    WriteText(record.data(), name, "toolongtext");
    EXPECT_EQ(record, "toolo");
    WriteText(record.data(), name, "ab");
    EXPECT_EQ(record, "ab   ");

    const Field flag{"OK", 'L', 1, 0, 0};
    for (char c : std::string("TtYy")) {
        std::string one(1, c);
        EXPECT_TRUE(ReadLogical(one.data(), flag)) << c;
    }
    for (char c : std::string("FfNn ?")) {
        std::string one(1, c);
        EXPECT_FALSE(ReadLogical(one.data(), flag)) << c;
    }

    const Field memo{"NOTE", 'M', 10, 0, 0};
    std::string block(10, 'z');
    WriteMemoBlock(block.data(), memo, 1576);
    EXPECT_EQ(block, "      1576");
    EXPECT_EQ(ReadMemoBlock(block.data(), memo), 1576u);
    WriteMemoBlock(block.data(), memo, 0);
    EXPECT_EQ(block, std::string(10, ' '));
    EXPECT_EQ(ReadMemoBlock(block.data(), memo), 0u);
    EXPECT_TRUE(MemoBlockValid(block.data(), memo));
    // Pointers that are no block number read as none, and say so; none of them is converted
    // through a number that does not fit.
    for (const std::string bad :
         {"    12x456", "9999999999", "4294967296", "   -1     ", "  1.5     ", "\x01         "}) {
        EXPECT_FALSE(MemoBlockValid(bad.data(), memo)) << bad;
        EXPECT_EQ(ReadMemoBlock(bad.data(), memo), 0u) << bad;
    }
    for (const auto& [good, number] : std::vector<std::pair<std::string, std::uint32_t>>{
             {"4294967295", 4294967295u}, {"0000000008", 8}, {"8         ", 8}}) {
        EXPECT_TRUE(MemoBlockValid(good.data(), memo)) << good;
        EXPECT_EQ(ReadMemoBlock(good.data(), memo), number) << good;
    }
}

TEST(FieldList, TypeNamesInAnyFormAndBadDefinitions) {
    std::vector<Field> fields;
    ASSERT_EQ(ParseFieldList("name,Character,20,0;amount,numeric,12,2;Born,D;ok,logical,1;"
                             "note,MEMO;pic,binary;ratio,Double,8,3;n,integer",
                             fields),
              "");
    ASSERT_EQ(fields.size(), 8u);
    EXPECT_EQ(fields[0].name, "NAME");
    const std::string types = {fields[0].type, fields[1].type, fields[2].type, fields[3].type,
                               fields[4].type, fields[5].type, fields[6].type, fields[7].type};
    EXPECT_EQ(types, "CNDLMPBI");
    EXPECT_EQ(fields[1].decimals, 2);
    EXPECT_EQ(fields[2].length, 8);
    EXPECT_EQ(fields[4].length, 10);
    EXPECT_EQ(fields[6].decimals, 3);
    EXPECT_EQ(fields[7].length, 4);

    EXPECT_EQ(ParseFieldList("A,C,5;B,CHAR,7,0", fields), "");
    EXPECT_EQ(fields[1].length, 7);

    for (const char* bad : {"", "A,C,0", "A,C,256", "A,X,5", "A,N,5,4", "A,N,21", "ELEVENCHARS,C,5",
                            "A,C,5;a,N,3", "A B,C,5", "A,C,x", "A"}) {
        EXPECT_NE(ParseFieldList(bad, fields), "") << bad;
    }
}

}  // namespace
}  // namespace fnrk::engine::dbf

#include "engine/dbf/table_header.hpp"

#include <gtest/gtest.h>

#include "support/temp_dir.hpp"

namespace fnrk::engine::dbf {
namespace {

using testing::ReadFileBytes;
using testing::SharedDir;

std::string Fixture(const std::string& name) {
    return ReadFileBytes(SharedDir() / "fixtures" / "xbase" / name);
}

TEST(TableHeader, ReadsTheFixtureLayoutAndComputesOffsets) {
    const std::string bytes = Fixture("people.dbf");
    TableHeader header;
    ASSERT_EQ(ParseTableHeader(bytes, bytes.size(), header), "");
    EXPECT_EQ(header.version, kVersionWithMemo);
    EXPECT_EQ(header.recordCount, 600u);
    EXPECT_EQ(header.flags & kFlagStructuralIndex, kFlagStructuralIndex);
    ASSERT_EQ(header.fields.size(), 8u);
    const Field& amount = header.fields[3];
    EXPECT_EQ(amount.name, "AMOUNT");
    EXPECT_EQ(amount.type, 'N');
    EXPECT_EQ(amount.length, 12);
    EXPECT_EQ(amount.decimals, 2);
    // 1 (deletion flag) + NAME 15 + CODESOC 15 + PATH 60
    EXPECT_EQ(amount.offset, 91u);
    EXPECT_EQ(header.fields.back().type, 'M');
    EXPECT_TRUE(header.HasMemoFile());
    EXPECT_EQ(header.FindField("amount"), 3u);
    EXPECT_FALSE(header.FindField("AMOUNTS").has_value());
}

TEST(TableHeader, NewLayoutRoundTripsThroughTheBytes) {
    TableHeader header;
    header.fields = {{"CODE", 'C', 10, 0, 0}, {"PRICE", 'N', 12, 2, 0}, {"NOTE", 'M', 10, 0, 0}};
    header.recordCount = 3;
    LayOutNewTable(header);
    EXPECT_EQ(header.version, kVersionWithMemo);
    EXPECT_EQ(header.flags & kFlagMemo, kFlagMemo);
    EXPECT_EQ(header.recordLength, 33);
    EXPECT_EQ(header.headerLength, 32 + 3 * 32 + 2);
    std::string bytes = SerializeTableHeader(header);
    ASSERT_EQ(bytes.size(), header.headerLength);
    EXPECT_EQ(bytes[32 + 3 * 32], '\x0D');
    bytes.append(3 * 33, ' ');
    TableHeader parsed;
    ASSERT_EQ(ParseTableHeader(bytes, bytes.size(), parsed), "");
    EXPECT_EQ(parsed.recordCount, 3u);
    ASSERT_EQ(parsed.fields.size(), 3u);
    EXPECT_EQ(parsed.fields[1].offset, 11u);
    EXPECT_EQ(parsed.fields[2].name, "NOTE");
}

// Every damaged header is refused with a reason, never read past its bytes.
TEST(TableHeader, HostileHeadersAreRefusedWithAReason) {
    const std::string good = Fixture("SOC1_param.dbf");
    TableHeader header;
    ASSERT_EQ(ParseTableHeader(good, good.size(), header), "");

    auto refuse = [](std::string bytes, const std::string& expected) {
        TableHeader parsed;
        const std::string problem = ParseTableHeader(bytes, bytes.size(), parsed);
        EXPECT_NE(problem.find(expected), std::string::npos) << "got: " << problem;
    };
    refuse(good.substr(0, 20), "too short");
    refuse(good.substr(0, 100), "header length beyond the end");
    std::string version = good;
    version[0] = 0x7B;
    refuse(version, "version");
    std::string count = good;
    count[4] = '\xFF';
    count[5] = '\xFF';
    refuse(count, "record count beyond the end of the file");
    std::string small = good;
    small[8] = 40;
    small[9] = 0;
    refuse(small, "header length");
    std::string zeroLength = good;
    zeroLength[32 + 16] = 0;
    refuse(zeroLength, "length 0");
    std::string noTerminator = good;
    noTerminator[32 + 3 * 32] = 'X';
    refuse(noTerminator, "");
    std::string recordLength = good;
    recordLength[10] = 5;
    refuse(recordLength, "record length");
    std::string type = good;
    type[32 + 11] = 'Q';
    refuse(type, "unknown type");
}

}  // namespace
}  // namespace fnrk::engine::dbf

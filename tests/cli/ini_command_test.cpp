#include <gtest/gtest.h>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace {

using fnrk::testing::ReadFileBytes;
using fnrk::testing::RunFennrick;
using fnrk::testing::TempDir;
using fnrk::testing::WriteFileBytes;

TEST(IniCommand, GetPrintsTheValueCutToTheBuffer) {
    TempDir dir;
    const std::string file = (dir / "FennRick.ini").string();
    WriteFileBytes(file, "[Connection]\r\nMode = \"REMOTE\" \r\n");

    auto result = RunFennrick({"ini", "get", file, "connection", "MODE"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "REMOTE\n");

    result = RunFennrick({"ini", "get", file, "Connection", "Mode", "--size", "4"});
    EXPECT_EQ(result.out, "REM\n");
    result = RunFennrick({"ini", "get", file, "Connection", "Missing"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "\n");
    result = RunFennrick({"ini", "get", file, "Connection", "Mode", "--size", "-1"});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(RunFennrick({"ini", "get", file, "Connection"}).exitCode != 0);
}

TEST(IniCommand, SetWritesAndKeepsTheRestOfTheFile) {
    TempDir dir;
    const std::string file = (dir / "a.ini").string();
    WriteFileBytes(file, "; keep me\n[General]\nLanguage=F\n");

    auto result = RunFennrick({"ini", "set", file, "general", "language", "N"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    result = RunFennrick({"ini", "set", file, "Param", "Test", "TRUE"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(ReadFileBytes(file), "; keep me\n[General]\nLanguage=N\n[Param]\nTest=TRUE\n");

    result = RunFennrick({"ini", "set", (dir / "none" / "b.ini").string(), "S", "K", "V"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("cannot write"), std::string::npos) << result.err;
}

}  // namespace
